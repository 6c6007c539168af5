#pragma once

#include <vector>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// An engine for all cases of a run, since making one costs more than a case: every case begins with the defaults.
class KeptEngine {
public:
    CMultiExposureHDRProcessFlowOpt& Engine() { return m_Engine; }
    const std::vector<CFilter*>& Filters() const { return m_vFilters; }  // the engine first, then what is inside it
    void Restore()
    {
        for (CFilter* pFilter : m_vFilters) {
            for (const ParamEntry& entry : pFilter->Params()) *entry.pValue = entry.nDefault;
        }
    }

private:
    CMultiExposureHDRProcessFlowOpt m_Engine;
    const std::vector<CFilter*> m_vFilters = AllFilters(m_Engine);
};

}  // namespace vkr
