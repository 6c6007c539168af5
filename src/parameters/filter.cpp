#include "parameters/filter.h"

#include <cstring>

namespace vkr {

void CFilter::Initialize()
{
    SetFilterName();
    RegisterParameters();
}

void CFilter::StoreName(const char* pName)
{
    const size_t nLength = strnlen(pName, sizeof(m_szName) - 1);
    std::memcpy(m_szName, pName, nLength);
    m_szName[nLength] = '\0';
}

void CMultiFilterProcessFlow::Initialize()
{
    SetFilterName();
    RegisterFilters();
    RegisterParameters();
}

std::vector<CFilter*> AllFilters(CFilter& filter)
{
    std::vector<CFilter*> vFilters = {&filter};
    const auto* const pFlow = dynamic_cast<CMultiFilterProcessFlow*>(&filter);
    if (pFlow == nullptr) return vFilters;
    for (CFilter* pSub : pFlow->m_Filters) {
        const std::vector<CFilter*> vBelow = AllFilters(*pSub);
        vFilters.insert(vFilters.end(), vBelow.begin(), vBelow.end());
    }
    return vFilters;
}

void AddFilter(FilterList& list, CFilter& filter, const char* pSuffix)
{
    if (pSuffix != nullptr) {
        const size_t nLength = std::strlen(filter.m_szName);
        const size_t nSuffix = strnlen(pSuffix, sizeof(filter.m_szName) - 1 - nLength);
        std::memcpy(filter.m_szName + nLength, pSuffix, nSuffix);
        filter.m_szName[nLength + nSuffix] = '\0';
    }
    list.push_back(&filter);
}

}  // namespace vkr
