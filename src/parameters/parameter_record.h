#pragma once

#include <cstdint>
#include <initializer_list>

namespace vkr {

// What is known of a parameter beside its value; one for all elements of a list or a table. Static: entries point at
// it.
struct ParamInfo {
    const char* pName;
    int nRows, nColumns;   // 0, 0 a single value; 0, n a list; m, n a table
    int32_t nMin, nMax;    // of every element, inclusive
    const char* pUnit;     // "Q7", "grey value", "pyramid level" ...; a flag is 0 or 1, a choice one of several
    const char* pMeaning;  // one sentence without its full stop, for who sees no other parameter
};

constexpr bool AllInRange(int32_t nMin, int32_t nMax, int nCount, std::initializer_list<int32_t> vValues)
{
    for (const int32_t nValue : vValues) {
        if (nValue < nMin || nValue > nMax) return false;
    }
    return static_cast<int>(vValues.size()) == nCount;
}

// One line of a record of parameters says all there is about one of them: the member, its range, the default that a
// record starts with, its unit and its meaning. A list has its defaults at the end, a table those of one row, which all
// rows have. A filter that has the record as a base adds its members to the parameter text by ADD_PARAM (filter.h).
//
//    struct FaceParams {
//        PARAM(nFaceHighCombineWeight, 0, 256, 85, "1/256", "a face's top level: from the middle to the greatest");
//        PARAM_LIST(nFaceHighThres, 3, 0, 255, "grey value", "most that a face's top level may be", 220, 200, 200);
//    };
#define PARAM(member, nMin, nMax, nDefault, pUnit, pMeaning)                                       \
    int32_t member = nDefault;                                                                     \
    static constexpr ::vkr::ParamInfo member##Info = {#member, 0, 0, nMin, nMax, pUnit, pMeaning}; \
    static_assert(::vkr::AllInRange(nMin, nMax, 1, {nDefault}), "the default of " #member " is out of range")
#define PARAM_LIST(member, nCount, nMin, nMax, pUnit, pMeaning, ...)                                    \
    int32_t member[nCount] = {__VA_ARGS__};                                                             \
    static constexpr ::vkr::ParamInfo member##Info = {#member, 0, nCount, nMin, nMax, pUnit, pMeaning}; \
    static_assert(::vkr::AllInRange(nMin, nMax, nCount, {__VA_ARGS__}), "defaults of " #member)
#define PARAM_TABLE_8(member, nColumns, nMin, nMax, pUnit, pMeaning, ...)                                 \
    int32_t member[8][nColumns] = {{__VA_ARGS__}, {__VA_ARGS__}, {__VA_ARGS__}, {__VA_ARGS__},            \
                                   {__VA_ARGS__}, {__VA_ARGS__}, {__VA_ARGS__}, {__VA_ARGS__}};           \
    static constexpr ::vkr::ParamInfo member##Info = {#member, 8, nColumns, nMin, nMax, pUnit, pMeaning}; \
    static_assert(::vkr::AllInRange(nMin, nMax, nColumns, {__VA_ARGS__}), "defaults of " #member)

}  // namespace vkr
