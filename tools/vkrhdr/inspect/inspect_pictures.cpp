#include "inspect/inspect_pictures.h"

#include <algorithm>

#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr int kFull = 128;           // a whole share or weight
constexpr int kTint = 160;           // 1/256: the most that a tint covers of what lies below it
constexpr int kThumbnailSide = 900;  // pixels, more or less

struct MixedColour {
    int vSums[3] = {};
    int nWeight = 0;

    void Add(Colour colour, int n)
    {
        vSums[0] += n * colour.nRed;
        vSums[1] += n * colour.nGreen;
        vSums[2] += n * colour.nBlue;
        nWeight += n;
    }
};

MixedColour MixOfExposures(const uint8_t* pWeights, int nExposures, int nFirst)
{
    MixedColour mix;
    for (int k = 0; k < nExposures; ++k) mix.Add(ExposureColour(nFirst + k), pWeights[k]);
    return mix;
}

int Luma(const uint8_t* pRgb)
{
    return (77 * pRgb[0] + 150 * pRgb[1] + 29 * pRgb[2] + 128) >> 8;
}

// How often a side of nFull was halved, rounding up, to become nSide.
int LevelOf(int nFull, int nSide)
{
    int nLevel = 0;
    for (; nFull > nSide && nFull > 1; ++nLevel) nFull = (nFull + 1) / 2;
    return nLevel;
}

// colourAt(pMap) gives the colour and weight of a map's pixel.
template <class Fn>
Raster Overlay(const Raster& reference, const Raster& map, const Fn& colourAt)
{
    const int nLevel = LevelOf(reference.nWidth, map.nWidth);
    Raster picture;
    picture.Resize(reference.nWidth, reference.nHeight, 3);
    for (int y = 0; y < reference.nHeight; ++y) {
        const uint8_t* pMap = map.Row(std::min(y >> nLevel, map.nHeight - 1));
        uint8_t* pDst = picture.Row(y);
        for (int x = 0; x < reference.nWidth; ++x, pDst += 3) {
            const MixedColour mix = colourAt(pMap + std::min(x >> nLevel, map.nWidth - 1) * map.nChannels);
            const int nTint = kTint * std::min(mix.nWeight, kFull) / kFull;
            const int nGrey = Luma(reference.Row(y) + 3 * x);
            for (int c = 0; c < 3; ++c) {
                const int nColour = mix.nWeight > 0 ? mix.vSums[c] / mix.nWeight : 0;
                pDst[c] = static_cast<uint8_t>((nTint * nColour + (256 - nTint) * nGrey + 128) >> 8);
            }
        }
    }
    return picture;
}

}  // namespace

Colour ExposureColour(int nExposure)
{
    static constexpr Colour kColours[] = {{40, 90, 255},  {40, 190, 70},  {235, 50, 40},  {245, 205, 40},
                                          {130, 70, 200}, {50, 210, 220}, {250, 140, 30}, {240, 240, 240}};
    return kColours[nExposure & 7];
}

Raster GhostOverlay(const Raster& reference, const Raster& ghost)
{
    return Overlay(reference, ghost, [](const uint8_t* pGhost) {
        MixedColour mix;
        mix.Add(kGhostColour, *pGhost);
        return mix;
    });
}

Raster ChoiceOverlay(const Raster& reference, const Raster& shares, int nFirst)
{
    return Overlay(reference, shares,
                   [&](const uint8_t* pShares) { return MixOfExposures(pShares, shares.nChannels, nFirst); });
}

Raster WeightColours(const Raster& weights, int nFirst)
{
    Raster picture;
    picture.Resize(weights.nWidth, weights.nHeight, 3);
    for (int y = 0; y < weights.nHeight; ++y) {
        const uint8_t* pWeights = weights.Row(y);
        uint8_t* pDst = picture.Row(y);
        for (int x = 0; x < weights.nWidth; ++x, pWeights += weights.nChannels, pDst += 3) {
            const MixedColour mix = MixOfExposures(pWeights, weights.nChannels, nFirst);
            for (int c = 0; c < 3; ++c) {
                pDst[c] = static_cast<uint8_t>(std::min((mix.vSums[c] + kFull / 2) / kFull, 255));
            }
        }
    }
    return picture;
}

Raster Thumbnail(const Raster& picture)
{
    const int nLongest = std::max(picture.nWidth, picture.nHeight);
    const int nFactor = (nLongest + kThumbnailSide / 2) / kThumbnailSide;
    const bool bRibbon = std::min(picture.nWidth, picture.nHeight) < nFactor;  // nothing would be left of it
    return nFactor < 2 || bRibbon ? picture : ScaleDown(picture, nFactor);
}

}  // namespace vkr::tool
