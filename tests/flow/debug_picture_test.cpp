#include "flow/debug_picture.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "foundation/image_scope.h"

namespace vkr {
namespace {

// Boxes inside, at the edges, across them and far away, against the outline pixel by pixel.
TEST(DebugPicture, OutlineIsDrawnInsideThePictureOnly)
{
    constexpr int w = 40, h = 28;
    const FaceBox vBoxes[] = {
        {0, 0, 0, 0},    {3, 2, 9, 8},       {0, 0, 19, 13},   {5, 5, 5, 9},   {9, 8, 3, 2},
        {-4, -3, 6, 30}, {15, 10, 400, 300}, {-9, -9, -2, -1}, {3, 20, 9, 30}, {INT_MIN, INT_MIN, INT_MAX, INT_MAX}};
    for (const FaceBox& box : vBoxes) {
        SCOPED_TRACE(testing::Message() << box.x1 << "," << box.y1 << "," << box.x2 << "," << box.y2);
        CYuvImage picture{};
        ImageScope<CYuvImage> scope(picture);
        ASSERT_TRUE(picture.Allocate(w, h));
        std::memset(picture.pBuffer, 77, w * h * 3 / 2);
        DrawBoxOutline(picture, box);
        for (int i = 0; i < w * h; ++i) ASSERT_EQ(77, picture.pY[i]);
        for (int y = 0; y < h / 2; ++y) {
            for (int x = 0; x < w / 2; ++x) {
                const bool bSide = (x == box.x1 || x == box.x2) && y >= box.y1 && y < box.y2;
                const bool bEnd = (y == box.y1 || y == box.y2) && x >= box.x1 && x <= box.x2;
                const int nWant = bSide || bEnd ? 0 : 77;
                ASSERT_EQ(nWant, picture.RowUV(y)[2 * x]) << x << ", " << y;
                ASSERT_EQ(nWant, picture.RowUV(y)[2 * x + 1]) << x << ", " << y;
            }
        }
    }
}

}  // namespace
}  // namespace vkr
