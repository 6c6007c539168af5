#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "parameters/parameter_record.h"

namespace vkr {

// One named parameter: a 32-bit member of some filter and its range. The entry points at the member, it does not own
// it.
struct ParamEntry {
    std::string sName;  // shorter than 64 characters; of an element with its indices
    int32_t* pValue;
    int32_t nMin, nMax;
    int32_t nDefault;                  // the value at registration
    const ParamInfo* pInfo = nullptr;  // null where there is none; the same for all elements of a list or a table
    const char* pGroup = "";           // heading under which the parameter stands; may be empty
};

// In order of registration, which is the order of the text form.
using ParamList = std::vector<ParamEntry>;

// Appends one entry. The value is left alone; it is what the entry takes for the default.
void AddParameter(ParamList& list, const char* pName, int32_t* pValue, int32_t nMin, int32_t nMax);

// Appends nCount entries named NAME_0 .. NAME_(nCount - 1) for the elements from pFirst on; none for nCount below 1.
void AddParameterArray(ParamList& list, const char* pName, int32_t* pFirst, int nCount, int32_t nMin, int32_t nMax);

// Appends the nCount entries of one row of a table, named NAME_row_0 .. NAME_row_(nCount - 1).
void AddParameterArray2D(ParamList& list, const char* pName, int32_t* pFirst, int nRow, int nCount, int32_t nMin,
                         int32_t nMax);

// Appends all that info tells of: one entry, a list or a table; pFirst is its first value.
void AddDescribed(ParamList& list, const ParamInfo& info, int32_t* pFirst, const char* pGroup);

// Entry of exactly that name, or null.
ParamEntry* FindParameter(ParamList& list, const char* pName);

}  // namespace vkr
