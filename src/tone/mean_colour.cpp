#include "tone/mean_colour.h"

#include <algorithm>

namespace vkr {

namespace {

MeanHsv ToHsv(double b, double g, double r)
{
    const double fMax = std::max({b, g, r});
    const double fSpread = fMax - std::min({b, g, r});
    if (fSpread <= 0.0 || fMax <= 0.0) return {0.0, 0.0, fMax / 255.0};
    double fSixths = 4.0 + (r - g) / fSpread;
    if (fMax == g) fSixths = 2.0 + (b - r) / fSpread;
    if (fMax == r) fSixths = (g - b) / fSpread;
    return {60.0 * (fSixths < 0.0 ? fSixths + 6.0 : fSixths), fSpread / fMax, fMax / 255.0};
}

template <class Image>
MeanHsv MeanOf(const Image& image)
{
    if (image.Empty() || image.nDim < 3) return {};
    int64_t vSum[3] = {};
    for (size_t i = 0; i < image.Samples(); i += static_cast<size_t>(image.nDim)) {
        for (size_t c = 0; c < 3; ++c) vSum[c] += image.pData[i + c];
    }
    const double fPixels = static_cast<double>(image.nWidth) * image.nHeight;
    return ToHsv(static_cast<double>(vSum[0]) / fPixels, static_cast<double>(vSum[1]) / fPixels,
                 static_cast<double>(vSum[2]) / fPixels);
}

}  // namespace

MeanHsv MeanColour(const CImage& image)
{
    return MeanOf(image);
}

MeanHsv MeanColour(const CShortImage& image)
{
    return MeanOf(image);
}

}  // namespace vkr
