#include "ghosts/embedding_dump.h"

#include <algorithm>

#include "foundation/bmp.h"
#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"

namespace vkr {

namespace {

constexpr int kPathLength = 64;

void DumpChannels(const CShortImage& coefs, int nLevel)
{
    CImage picture{};
    ImageScope scope(picture);
    if (coefs.Empty() || !picture.AllocateGray(coefs.nWidth, coefs.nHeight)) return;
    for (int k = 0; k < coefs.nDim; ++k) {
        for (size_t i = 0; i < picture.Samples(); ++i) picture.pData[i] = ClampU8(coefs.pData[i * coefs.nDim + k]);
        char szPath[kPathLength];
        HdrSprintf(szPath, sizeof(szPath), "GhostDump/EdgeCoef_%d_Lvl%d.bmp", k, nLevel);
        SaveBmpGray(picture, szPath);
    }
}

}  // namespace

void DumpStartFrame(const CImage& frame, int nExposure)
{
    char szPath[kPathLength];
    HdrSprintf(szPath, sizeof(szPath), "GhostDump/Im_%d.bmp", nExposure);
    SaveBmp(frame, szPath, true);
}

void DumpLabels(const CLabelImage& labels, int nRegions, const char* pName)
{
    CImage picture{};
    ImageScope scope(picture);
    if (!picture.AllocateGray(labels.nWidth, labels.nHeight)) return;
    for (size_t i = 0; i < picture.Samples(); ++i) {
        picture.pData[i] = static_cast<uint8_t>(DivOrZero64(int64_t{255} * labels.pData[i], nRegions));
    }
    char szPath[kPathLength];
    HdrSprintf(szPath, sizeof(szPath), "GhostDump/%s.bmp", pName);
    SaveBmpGray(picture, szPath);
}

void DumpRegionMap(const CShortImage& map, int x, int y, int w, int h, int nRegion, const char* pTail)
{
    CImage picture{};
    ImageScope scope(picture);
    if (!picture.AllocateGray(w, h)) return;
    std::fill_n(picture.pData, picture.Samples(), uint8_t{0});
    for (int i = 0; i < map.nHeight; ++i) {
        std::transform(map.Row(i), map.Row(i) + map.nWidth, picture.Row(y + i) + x, ClampU8);
    }
    char szPath[kPathLength];
    HdrSprintf(szPath, sizeof(szPath), "ClusterDump/Cluster_%d_%s.bmp", nRegion, pTail);
    SaveBmpGray(picture, szPath);
}

void DumpEdgeCoefs(const CShortImage* vCoefs, int nMin, int nMax)
{
    for (int i = nMin; i <= nMax; ++i) DumpChannels(vCoefs[i], i);
}

}  // namespace vkr
