#include "parameters/parameters.h"

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
    list.push_back({std::string(pName, strnlen(pName, kMaxNameLength)), pValue, nMin, nMax, *pValue});
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

void AddDescribed(ParamList& list, const ParamInfo& info, int32_t* pFirst, const char* pGroup)
{
    size_t nEntry = list.size();
    if (info.nColumns == 0) AddParameter(list, info.pName, pFirst, info.nMin, info.nMax);
    if (info.nRows == 0) AddParameterArray(list, info.pName, pFirst, info.nColumns, info.nMin, info.nMax);
    for (int nRow = 0; nRow < info.nRows; ++nRow) {
        int32_t* const pRow = pFirst + nRow * info.nColumns;
        AddParameterArray2D(list, info.pName, pRow, nRow, info.nColumns, info.nMin, info.nMax);
    }
    for (; nEntry < list.size(); ++nEntry) {
        list[nEntry].pInfo = &info;
        list[nEntry].pGroup = pGroup;
    }
}

ParamEntry* FindParameter(ParamList& list, const char* pName)
{
    for (ParamEntry& entry : list) {
        if (entry.sName == pName) return &entry;
    }
    return nullptr;
}

}  // namespace vkr
