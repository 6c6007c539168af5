#include "fusion/fusion_dump.h"

#include "foundation/bmp.h"
#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

namespace {

void Dump(const CShortImage& image, const char* pName, int nLevel)
{
    CImage picture{};
    ImageScope scope(picture);
    if (image.Empty() || image.nDim != 3 || !picture.Allocate(image.nWidth, image.nHeight)) return;
    for (size_t i = 0; i < picture.Samples(); ++i) picture.pData[i] = ClampU8(image.pData[i]);
    char szPath[64];
    HdrSprintf(szPath, sizeof(szPath), "FusionDump/%s_%d.bmp", pName, nLevel);
    SaveBmp(picture, szPath, true);
}

}  // namespace

void DumpFused(const CShortImage& fused, int nLevel)
{
    Dump(fused, "Fusion", nLevel);
}

void DumpFusedUp(const CShortImage& up, int nLevel)
{
    Dump(up, "Fusion_US", nLevel);
}

void DumpFinestLevel(const CShortImage& up, const CShortImage& detail)
{
    CShortImage sum{};
    ImageScope scope(sum);
    if (sum.AllocateDim(detail.nWidth, detail.nHeight, detail.nDim)) {
        CGaussianPyramid2::AddShort(up.pData, detail.pData, sum.pData, detail.nWidth, detail.nHeight, up.nWidth,
                                    detail.nDim);
        DumpFused(sum, 0);
    }
    DumpFusedUp(up, 0);
}

}  // namespace vkr
