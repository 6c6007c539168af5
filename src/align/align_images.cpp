#include <cstring>

#include "align/multiple_images_align_filter.h"

namespace vkr {

bool FillAlignMasks(const CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks)
{
    for (int k = 0; k < nExposureNum; ++k) {
        const int w = vFrames[k].nWidth, h = vFrames[k].nHeight;
        const bool bFull = k == nReference;
        if (!vAlignMasks[k].AllocateGray(bFull ? w : (w + 1) / 2, bFull ? h : (h + 1) / 2)) return false;
        std::memset(vAlignMasks[k].pData, 255, vAlignMasks[k].Samples());
    }
    return true;
}

// The frames are taken as they lie.
bool CMultipleImagesAlignFilterOpt::AlignImages(CYuvImage* vFrames, int nExposureNum, int nReference,
                                                CImage* vAlignMasks, ValidRange& range)
{
    range.m_nFirstValid = 0;
    range.m_nLastValid = nExposureNum;
    return FillAlignMasks(vFrames, nExposureNum, nReference, vAlignMasks);
}

}  // namespace vkr
