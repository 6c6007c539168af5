#pragma once

#include <cstdint>
#include <vector>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// An engine for all cases of a run, since making one costs more than a case: every case begins with the defaults.
class KeptEngine {
public:
    KeptEngine() { Collect(m_Engine); }

    CMultiExposureHDRProcessFlowOpt& Engine() { return m_Engine; }
    const std::vector<CFilter*>& Filters() const { return m_vFilters; }  // the engine first, then what is inside it
    void Restore()
    {
        for (const Default& value : m_vDefaults) *value.pValue = value.nValue;
    }

private:
    struct Default {
        int32_t* pValue;
        int32_t nValue;
    };

    void Collect(CFilter& filter)
    {
        m_vFilters.push_back(&filter);
        for (const ParamEntry& entry : filter.Params()) m_vDefaults.push_back({entry.pValue, *entry.pValue});
        if (auto* pFlow = dynamic_cast<CMultiFilterProcessFlow*>(&filter)) {
            for (CFilter* pSub : pFlow->Filters()) Collect(*pSub);
        }
    }

    CMultiExposureHDRProcessFlowOpt m_Engine;
    std::vector<CFilter*> m_vFilters;
    std::vector<Default> m_vDefaults;
};

}  // namespace vkr
