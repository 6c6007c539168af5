#include "fusion/fusion_levels.h"

namespace vkr {

FusionLevels::~FusionLevels()
{
    DropExposures();
    for (CShortImage& level : m_vDetail) level.Release();
    m_Fused.Release();
    m_FusedUp.Release();
}

bool FusionLevels::TakeFrames(const CImage* vFrames, int nExposureNum)
{
    if (nExposureNum < 1 || nExposureNum > kMaxExposures) return false;
    m_nExposureNum = nExposureNum;
    for (int k = 0; k < nExposureNum; ++k) {
        const CImage& frame = vFrames[k];
        if (frame.Empty() || frame.nDim != 3) return false;
        if (frame.nWidth != vFrames[0].nWidth || frame.nHeight != vFrames[0].nHeight) return false;
        m_vAtWork[k] = &frame;
    }
    return true;
}

bool FusionLevels::HalveLevel(const PyramidParams& pyramid)
{
    for (int k = 0; k < m_nExposureNum; ++k) {
        if (!HalveImage(*m_vAtWork[k], m_vCoarser[k], pyramid.bPyramidFilter, pyramid.bDownScaleImageDither)) {
            return false;
        }
    }
    return true;
}

void FusionLevels::GoCoarser()
{
    for (int k = 0; k < m_nExposureNum; ++k) {
        m_vFiner[k].Swap(m_vCoarser[k]);
        m_vAtWork[k] = &m_vFiner[k];
    }
}

void FusionLevels::DropExposures()
{
    for (CImage& level : m_vFiner) level.Release();
    for (CImage& level : m_vCoarser) level.Release();
}

}  // namespace vkr
