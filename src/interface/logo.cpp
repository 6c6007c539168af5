#include "interface/logo.h"

#include <algorithm>
#include <array>

namespace vkr {

namespace {

constexpr uint8_t kRuns[] = {
#include "interface/logo_bitmap.inc"
};
constexpr size_t kSamples = static_cast<size_t>(kLogoWidth) * kLogoHeight;

// Unrolled by the compiler.
constexpr std::array<uint8_t, kSamples> Unroll()
{
    std::array<uint8_t, kSamples> samples{};
    size_t nSample = 0;
    for (size_t i = 0; i < sizeof(kRuns); i += 2) {
        for (int k = 0; k < kRuns[i]; ++k) samples[nSample++] = kRuns[i + 1];
    }
    return samples;
}

constexpr std::array<uint8_t, kSamples> kBitmap = Unroll();

}  // namespace

const uint8_t* LogoBitmap()
{
    return kBitmap.data();
}

void BlendLogo(CYuvImage& picture)
{
    const int nRows = std::min(picture.nHeight - kLogoPlace, kLogoHeight);
    const int nColumns = std::min(picture.nWidth - kLogoPlace, kLogoWidth);
    for (int y = 0; y < nRows; ++y) {
        const uint8_t* pLogo = kBitmap.data() + static_cast<size_t>(y) * kLogoWidth;
        uint8_t* pLuma = picture.RowY(kLogoPlace + y) + kLogoPlace;
        for (int x = 0; x < nColumns; ++x) pLuma[x] = static_cast<uint8_t>((pLogo[x] + pLuma[x]) >> 1);
    }
}

}  // namespace vkr
