#include "second_attempt/borrowed_border.h"

#include <algorithm>
#include <cmath>

namespace vkr::tool {

namespace {

using Counts = std::array<size_t, 256>;
using Levels = std::array<uint8_t, 256>;

// Tight rows of nChannels interleaved samples a place: 1 of luma, 2 of chroma, each of nStep x nStep pixels.
struct PlaneShape {
    int nWidth, nHeight, nChannels, nStep;

    size_t At(int x, int y) const { return (static_cast<size_t>(y) * nWidth + x) * nChannels; }
};

// What the frame shows itself, ends exclusive; nothing when it was moved out of the picture.
struct Shown {
    Shown(const PlaneShape& shape, Shift shift)
        : nBeginX(std::max(shift.nX, 0)),
          nEndX(shape.nWidth + std::min(shift.nX, 0)),
          nBeginY(std::max(shift.nY, 0)),
          nEndY(nBeginX < nEndX ? shape.nHeight + std::min(shift.nY, 0) : 0)
    {
    }
    bool Has(int x, int y) const { return x >= nBeginX && x < nEndX && y >= nBeginY && y < nEndY; }
    int nBeginX, nEndX, nBeginY, nEndY;
};

Counts CountLevels(const Bytes& vPlane, const PlaneShape& shape, int nChannel, const Shown& shown)
{
    Counts vCounts{};
    for (int y = shown.nBeginY; y < shown.nEndY; ++y) {
        const uint8_t* pSample = vPlane.data() + shape.At(shown.nBeginX, y) + nChannel;
        for (int x = shown.nBeginX; x < shown.nEndX; ++x, pSample += shape.nChannels) ++vCounts[*pSample];
    }
    return vCounts;
}

// For each level of the first the level of the same rank in the second, both counted over as many samples.
Levels SameRanks(const Counts& vFirst, const Counts& vSecond)
{
    Levels vLevels{};
    size_t nBelow = 0, nUpTo = vSecond[0], nLevel = 0;
    for (size_t v = 0; v < vFirst.size(); ++v) {
        while (nLevel < 255 && nUpTo <= nBelow + vFirst[v] / 2) nUpTo += vSecond[++nLevel];
        vLevels[v] = static_cast<uint8_t>(nLevel);
        nBelow += vFirst[v];
    }
    return vLevels;
}

// The neighbour's plane, read between its samples.
class NeighbourPlane {
public:
    NeighbourPlane(const Bytes& vPlane, const PlaneShape& shape, const PlaneMap& map)
        : m_vPlane(vPlane), m_shape(shape), m_map(map)
    {
    }

    // What stands there at the frame's place, clamped to the plane.
    uint8_t Sample(int x, int y, int nChannel) const
    {
        const double fStep = m_shape.nStep, fMiddle = 0.5 * (fStep - 1);
        const double fX = fStep * (x - 0.5 * m_shape.nWidth) + fMiddle,
                     fY = fStep * (y - 0.5 * m_shape.nHeight) + fMiddle;
        const double fDepth = m_map[6] * fX + m_map[7] * fY + m_map[8];
        const double fToX = (m_map[0] * fX + m_map[1] * fY + m_map[2]) / fDepth;
        const double fToY = (m_map[3] * fX + m_map[4] * fY + m_map[5]) / fDepth;
        return Between((fToX - fMiddle) / fStep + 0.5 * m_shape.nWidth,
                       (fToY - fMiddle) / fStep + 0.5 * m_shape.nHeight, nChannel);
    }

private:
    uint8_t Between(double x, double y, int nChannel) const
    {
        x = std::isfinite(x) ? std::clamp(x, 0.0, m_shape.nWidth - 1.0) : 0;
        y = std::isfinite(y) ? std::clamp(y, 0.0, m_shape.nHeight - 1.0) : 0;
        const int x0 = static_cast<int>(x), y0 = static_cast<int>(y);
        const int x1 = std::min(x0 + 1, m_shape.nWidth - 1), y1 = std::min(y0 + 1, m_shape.nHeight - 1);
        const auto at = [&](int nX, int nY) { return static_cast<double>(m_vPlane[m_shape.At(nX, nY) + nChannel]); };
        const double fUpper = at(x0, y0) + (x - x0) * (at(x1, y0) - at(x0, y0));
        const double fLower = at(x0, y1) + (x - x0) * (at(x1, y1) - at(x0, y1));
        return static_cast<uint8_t>(std::lround(fUpper + (y - y0) * (fLower - fUpper)));
    }

    const Bytes& m_vPlane;
    const PlaneShape& m_shape;
    const PlaneMap& m_map;
};

void BorrowPlane(Bytes& vPlane, const Bytes& vNeighbour, const PlaneShape& shape, Shift shift, const PlaneMap& map)
{
    const Shown shown(shape, shift);
    const NeighbourPlane neighbour(vNeighbour, shape, map);
    for (int c = 0; c < shape.nChannels; ++c) {
        const Levels vLevels =
            SameRanks(CountLevels(vNeighbour, shape, c, shown), CountLevels(vPlane, shape, c, shown));
        for (int y = 0; y < shape.nHeight; ++y) {
            for (int x = 0; x < shape.nWidth; ++x) {
                if (!shown.Has(x, y)) vPlane[shape.At(x, y) + c] = vLevels[neighbour.Sample(x, y, c)];
            }
        }
    }
}

}  // namespace

PlaneMap InverseOf(const PlaneMap& m)
{
    return {m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
            m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
            m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
}

void BorrowBorder(Frame& frame, Shift shift, const Frame& neighbour, const PlaneMap& toNeighbour)
{
    BorrowPlane(frame.vY, neighbour.vY, {frame.nWidth, frame.nHeight, 1, 1}, shift, toNeighbour);
    BorrowPlane(frame.vUV, neighbour.vUV, {frame.nWidth / 2, frame.nHeight / 2, 2, 2}, {shift.nX / 2, shift.nY / 2},
                toNeighbour);
}

}  // namespace vkr::tool
