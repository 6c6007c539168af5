#include "flow/multi_exposure_flow.h"

namespace vkr {

// The sub-filters are made in the order of their members; each takes its name and its parameters before the engine's
// own list of sub-filters is formed.
CMultiExposureHDRProcessFlow::CMultiExposureHDRProcessFlow()
{
    m_GhostFilter.Initialize();
    m_LocalCurve.Initialize();
    CMultiExposureHDRProcessFlow::SetFilterName();
    CMultiExposureHDRProcessFlow::RegisterFilters();
    CMultiExposureHDRProcessFlow::RegisterParameters();
}

CMultiExposureHDRProcessFlow::~CMultiExposureHDRProcessFlow()
{
    for (int k = kMaxExposures - 1; k >= 0; --k) m_YuvFrames[k].Release();
    m_GhostMap.Release();
}

void CMultiExposureHDRProcessFlow::RegisterFilters()
{
    AddFilter(m_Filters, m_AlignFilter, nullptr);
    AddFilter(m_Filters, m_GhostFilter, nullptr);
    AddFilter(m_Filters, m_LocalCurve, nullptr);
}

}  // namespace vkr
