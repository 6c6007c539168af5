#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// A parameter file for one scope: the registered defaults without debug pictures, and the settings of the test. A name
// with a dot belongs to a sub-filter.
class ParameterFile {
public:
    using Setting = std::pair<const char*, int>;
    explicit ParameterFile(std::initializer_list<Setting> settings = {})
        : m_sPath(testing::TempDir() + "vkr_parameters_" + std::to_string(getpid()) + ".txt")
    {
        CMultiExposureHDRProcessFlowOpt engine;
        Set(engine.m_AlignFilter, "bDumpDebug", 0);
        Set(engine.m_LocalCurve, "bDumpDebugFile", 0);
        for (const Setting& setting : settings) {
            const std::string sName = setting.first;
            const size_t nDot = sName.find('.');
            if (nDot == std::string::npos) {
                Set(engine, setting.first, setting.second);
                continue;
            }
            for (CFilter* pFilter : engine.Filters()) {
                if (sName.substr(0, nDot) == pFilter->Name()) Set(*pFilter, setting.first + nDot + 1, setting.second);
            }
        }
        EXPECT_TRUE(engine.SaveParameterFile(m_sPath.c_str()));
    }
    ~ParameterFile() { std::remove(m_sPath.c_str()); }
    ParameterFile(const ParameterFile&) = delete;
    ParameterFile& operator=(const ParameterFile&) = delete;

    const char* Path() const { return m_sPath.c_str(); }

private:
    static void Set(CFilter& filter, const char* pName, int nValue)
    {
        ParamEntry* pEntry = FindParameter(filter.Params(), pName);
        ASSERT_NE(pEntry, nullptr) << pName;
        ASSERT_TRUE(nValue >= pEntry->nMin && nValue <= pEntry->nMax) << pName << "=" << nValue;
        *pEntry->pValue = nValue;
    }
    std::string m_sPath;
};

}  // namespace vkr
