#include "support/reference_pyramid.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vkr {

namespace {

// Turns sums into samples along the raster. Division is done as the mathematics say, not by shifts.
template <class T>
class Raster {
public:
    Raster(int nDim, int nWeight, Rest rest) : m_vCarry(nDim, 0), m_nWeight(nWeight), m_rest(rest) {}

    void Put(long nSum)
    {
        long& nCarry = m_vCarry[m_vOut.size() % m_vCarry.size()];
        const bool bCarry = m_rest == Rest::kCarry || m_rest == Rest::kFloorCarry;
        const bool bTruncate = m_rest == Rest::kCarry || m_rest == Rest::kTruncate;
        if (bCarry) nSum += nCarry;
        if (m_rest == Rest::kRound) nSum += m_nWeight / 2;
        const long nQuotient = bTruncate ? nSum / m_nWeight : std::lround(std::floor(1.0 * nSum / m_nWeight));
        if (bCarry) nCarry = nSum - nQuotient * m_nWeight;
        m_vOut.push_back(static_cast<T>(nQuotient));
    }
    const Pixels<T>& Out() const { return m_vOut; }

private:
    Pixels<T> m_vOut;
    std::vector<long> m_vCarry;
    int m_nWeight;
    Rest m_rest;
};

int Inside(int i, int n)
{
    return std::min(std::max(i, 0), n - 1);
}

int Inside6(int i, int n, bool bPlainTwo)
{
    return i < n || (bPlainTwo && n == 2) ? Inside(i, n) : i - 2;
}

constexpr int kTaps5[] = {1, 4, 6, 4, 1};
constexpr int kTaps6[] = {1, 5, 10, 10, 5, 1};

// The sum around (x, y), first tap at -2, of a kernel that is the same both ways. inside maps a coordinate and a side.
template <class T, int nTaps, class Inside>
long SumTaps(const Pixels<T>& vSrc, int nStride, int w, int h, int nDim, int x, int y, int c, const int (&taps)[nTaps],
             const Inside& inside)
{
    long nSum = 0;
    for (int j = 0; j < nTaps; ++j) {
        for (int i = 0; i < nTaps; ++i) {
            const int sx = inside(x + i - 2, w), sy = inside(y + j - 2, h);
            nSum += static_cast<long>(taps[i]) * taps[j] * vSrc[(static_cast<size_t>(sy) * nStride + sx) * nDim + c];
        }
    }
    return nSum;
}

template <class T, int nTaps, class Inside>
Pixels<T> Halve(const Pixels<T>& vSrc, int w, int h, int nDim, const int (&taps)[nTaps], int nWeight,
                const Inside& inside, Rest rest)
{
    Raster<T> raster(nDim, nWeight, rest);
    for (int y = 0; y < h / 2; ++y) {
        for (int x = 0; x < w / 2; ++x) {
            for (int c = 0; c < nDim; ++c) {
                raster.Put(SumTaps(vSrc, w, w & ~1, h & ~1, nDim, 2 * x, 2 * y, c, taps, inside));
            }
        }
    }
    return raster.Out();
}

// Row results of a doubling, 2w samples a channel, from the pixels before, at and after.
template <class T, class Pixel>
std::vector<long> WideRows(const Pixels<T>& vSrc, int w, int h, int nDim, const Pixel& pixel)
{
    std::vector<long> vWide;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < 2 * w; ++x) {
            for (int c = 0; c < nDim; ++c) {
                const auto At = [&](int i) -> long {
                    return vSrc[(static_cast<size_t>(y) * w + Inside(i, w)) * nDim + c];
                };
                vWide.push_back(pixel(x % 2 != 0, At(x / 2 - 1), At(x / 2), At(x / 2 + 1)));
            }
        }
    }
    return vWide;
}

// Output rows of a doubling: sum(bOdd, before, here, after) of the row results, in raster order.
template <class T, class Sum>
Pixels<T> Double(const std::vector<long>& vWide, int w, int h, int nDim, int nWeight, Rest rest, const Sum& sum)
{
    Raster<T> raster(nDim, nWeight, rest);
    const int nRow = 2 * w * nDim;
    for (int y = 0; y < 2 * h; ++y) {
        for (int i = 0; i < nRow; ++i) {
            const auto At = [&](int nAt) { return vWide[static_cast<size_t>(Inside(nAt, h)) * nRow + i]; };
            raster.Put(sum(y % 2 != 0, At(y / 2 - 1), At(y / 2), At(y / 2 + 1)));
        }
    }
    return raster.Out();
}

template <class T>
Pixels<T> Double161(const Pixels<T>& vSrc, int w, int h, int nDim, bool bCarry)
{
    const auto Pixel = [](bool bOdd, long b, long s, long a) { return bOdd ? s + a : (b + 6 * s + a) / 4; };
    return Double<T>(WideRows(vSrc, w, h, nDim, Pixel), w, h, nDim, 4, bCarry ? Rest::kCarry : Rest::kTruncate, Pixel);
}

long Mix31(bool bOdd, long b, long s, long a)
{
    return bOdd ? 3 * s + a : b + 3 * s;
}

template <class T>
Pixels<T> Smooth(const Pixels<T>& vSrc, int w, int h, int nDim, bool bCarry)
{
    Raster<T> raster(nDim, 256, bCarry ? Rest::kFloorCarry : Rest::kRound);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            for (int c = 0; c < nDim; ++c) raster.Put(SumTaps(vSrc, w, w, h, nDim, x, y, c, kTaps5, Inside));
        }
    }
    return raster.Out();
}

}  // namespace

Pixels<uint8_t> ReferenceHalve5(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, Rest rest)
{
    return Halve(vSrc, w, h, nDim, kTaps5, 256, Inside, rest);
}

Pixels<int16_t> ReferenceHalve5(const Pixels<int16_t>& vSrc, int w, int h, int nDim, Rest rest)
{
    return Halve(vSrc, w, h, nDim, kTaps5, 256, Inside, rest);
}

Pixels<uint8_t> ReferenceHalve6(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bPlainTwo, Rest rest)
{
    return Halve(
        vSrc, w, h, nDim, kTaps6, 1024, [&](int i, int n) { return Inside6(i, n, bPlainTwo); }, rest);
}

Pixels<int16_t> ReferenceHalve6(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bPlainTwo, Rest rest)
{
    return Halve(
        vSrc, w, h, nDim, kTaps6, 1024, [&](int i, int n) { return Inside6(i, n, bPlainTwo); }, rest);
}

Pixels<uint8_t> ReferenceDouble161(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bCarry)
{
    return Double161(vSrc, w, h, nDim, bCarry);
}

Pixels<int16_t> ReferenceDouble161(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry)
{
    return Double161(vSrc, w, h, nDim, bCarry);
}

Pixels<uint8_t> ReferenceDouble31(const Pixels<uint8_t>& vSrc, int w, int h, int nDim)
{
    return Double<uint8_t>(WideRows(vSrc, w, h, nDim, Mix31), w, h, nDim, 16, Rest::kTruncate, Mix31);
}

Pixels<int16_t> ReferenceDouble31Wrap(const Pixels<int16_t>& vSrc, int w, int h, int nDim)
{
    const auto Wrap = [](long v) -> long { return static_cast<int16_t>(v); };
    const auto Pixel = [&](bool bOdd, long b, long s, long a) { return Wrap(Mix31(bOdd, b, s, a)); };
    const std::vector<long> vWide = WideRows(vSrc, w, h, nDim, Pixel);
    Pixels<int16_t> vOut = Double<int16_t>(vWide, w, h, nDim, 16, Rest::kTruncate, Pixel);
    // The end rows are the row results by 4, with no sum that could wrap.
    const size_t nRow = static_cast<size_t>(2) * w * nDim;
    for (size_t i = 0; i < nRow; ++i) {
        vOut[i] = static_cast<int16_t>(vWide[i] / 4);
        vOut[vOut.size() - nRow + i] = static_cast<int16_t>(vWide[vWide.size() - nRow + i] / 4);
    }
    return vOut;
}

Pixels<int16_t> ReferenceDouble31Serial(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry)
{
    const Rest rest = bCarry ? Rest::kCarry : Rest::kTruncate;
    return Double<int16_t>(WideRows(vSrc, w, h, nDim, Mix31), w, h, nDim, 16, rest, Mix31);
}

Pixels<uint8_t> ReferenceSmooth5(const Pixels<uint8_t>& vSrc, int w, int h, int nDim, bool bCarry)
{
    return Smooth(vSrc, w, h, nDim, bCarry);
}

Pixels<int16_t> ReferenceSmooth5(const Pixels<int16_t>& vSrc, int w, int h, int nDim, bool bCarry)
{
    return Smooth(vSrc, w, h, nDim, bCarry);
}

}  // namespace vkr
