#include "foundation/parameters.h"

#include <cstring>

namespace vkr {

namespace {

constexpr size_t kMaxNameLength = 63;  // so that a name and its zero fit the 64 characters that readers keep

std::string IndexedName(const std::string& sName, int nIndex)
{
    return sName + "_" + std::to_string(nIndex);
}

}  // namespace

void AddParameter(ParamList& list, const char* pName, int32_t* pValue, int32_t nMin, int32_t nMax)
{
    list.push_back({std::string(pName, strnlen(pName, kMaxNameLength)), pValue, nMin, nMax});
}

void AddParameterArray(ParamList& list, const char* pName, int32_t* pFirst, int nCount, int32_t nMin, int32_t nMax)
{
    for (int i = 0; i < nCount; ++i) AddParameter(list, IndexedName(pName, i).c_str(), pFirst + i, nMin, nMax);
}

void AddParameterArray2D(ParamList& list, const char* pName, int32_t* pFirst, int nRow, int nCount, int32_t nMin,
                         int32_t nMax)
{
    AddParameterArray(list, IndexedName(pName, nRow).c_str(), pFirst, nCount, nMin, nMax);
}

ParamEntry* FindParameter(ParamList& list, const char* pName)
{
    for (ParamEntry& entry : list) {
        if (entry.sName == pName) return &entry;
    }
    return nullptr;
}

}  // namespace vkr
