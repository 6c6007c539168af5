#include "face/face_boxes.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace vkr {

namespace {

int32_t Truncate(double d)
{
    using Limits = std::numeric_limits<int32_t>;
    if (std::isnan(d)) return 0;
    if (d <= Limits::min()) return Limits::min();
    return d >= Limits::max() ? Limits::max() : static_cast<int32_t>(d);
}

int64_t Width(const FaceBox& box)
{
    return int64_t{box.x2} - box.x1;
}
int64_t Height(const FaceBox& box)
{
    return int64_t{box.y2} - box.y1;
}

}  // namespace

FaceBoxRecord MapToUnturned(const FaceBoxRecord& box, int nOrientation, int nWidth, int nHeight)
{
    const double w = nWidth, h = nHeight;
    const double x1 = box.vCoord[0], y1 = box.vCoord[1], x2 = box.vCoord[2], y2 = box.vCoord[3];
    const auto Whole = [](double d) { return static_cast<double>(Truncate(d)); };
    switch (nOrientation) {
        case 1:
            return {box.dScore, {y1, h - Whole(x2), y2, h - Whole(x1)}};
        case 2:
            return {box.dScore, {w - x2, h - y2, Whole(w - x1), Whole(h - y1)}};
        case 3:
            return {box.dScore, {w - Whole(y2), x1, w - Whole(y1), x2}};
        default:
            return box;
    }
}

FaceBox WholePixels(const FaceBoxRecord& box)
{
    return {Truncate(box.vCoord[0]), Truncate(box.vCoord[1]), Truncate(box.vCoord[2]), Truncate(box.vCoord[3])};
}

void TakeLarger(const FaceBox& box, int nMinSide, FaceBox& face)
{
    if (Width(box) <= nMinSide && Height(box) <= nMinSide) return;
    if (Width(box) + Height(box) > Width(face) + Height(face)) face = box;
}

}  // namespace vkr
