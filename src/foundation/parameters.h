#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vkr {

// One named parameter: a 32-bit member of some filter and its range. The entry points at the member, it does not own
// it.
struct ParamEntry {
    std::string sName;  // shorter than 64 characters
    int32_t* pValue;
    int32_t nMin, nMax;
};

// In order of registration, which is the order of the text form.
using ParamList = std::vector<ParamEntry>;

// Appends one entry. The value is left alone: RegisterParameters stores the default behind the call.
void AddParameter(ParamList& list, const char* pName, int32_t* pValue, int32_t nMin, int32_t nMax);

// Appends nCount entries named NAME_0 .. NAME_(nCount - 1) for the elements from pFirst on; none for nCount below 1.
void AddParameterArray(ParamList& list, const char* pName, int32_t* pFirst, int nCount, int32_t nMin, int32_t nMax);

// Appends the nCount entries of one row of a table, named NAME_row_0 .. NAME_row_(nCount - 1).
void AddParameterArray2D(ParamList& list, const char* pName, int32_t* pFirst, int nRow, int nCount, int32_t nMin,
                         int32_t nMax);

// Entry of exactly that name, or null.
ParamEntry* FindParameter(ParamList& list, const char* pName);

// One line of a parameter table, inside RegisterParameters: registers the member under its own name and stores its
// default. An array takes one default per element, in order.
//
//    PARAM(nDominateWTh, 0, 255, 80);
//    PARAM_ARRAY(nFaceHighThres, 0, 255, 220, 200, 200);
#define PARAM(member, nMin, nMax, nDefault)                            \
    do {                                                               \
        ::vkr::AddParameter(m_Params, #member, &(member), nMin, nMax); \
        (member) = (nDefault);                                         \
    } while (false)
#define PARAM_ARRAY(member, nMin, nMax, ...)                                                             \
    do {                                                                                                 \
        constexpr int32_t vDefaults[] = {__VA_ARGS__};                                                   \
        static_assert(sizeof(vDefaults) == sizeof(member), "one default per element of " #member);       \
        constexpr int nElements = static_cast<int>(sizeof(vDefaults) / sizeof(vDefaults[0]));            \
        ::vkr::AddParameterArray(m_Params, #member, member, nElements, nMin, nMax);                      \
        for (int nElement = 0; nElement < nElements; ++nElement) member[nElement] = vDefaults[nElement]; \
    } while (false)

}  // namespace vkr
