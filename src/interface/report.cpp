#include "interface/report.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "foundation/log.h"

namespace vkr {

void Report(const char* pFormat, ...)
{
    char szLine[512];
    va_list values;
    va_start(values, pFormat);
    const int nLength = std::vsnprintf(szLine, sizeof(szLine), pFormat, values);
    va_end(values);
    if (nLength >= static_cast<int>(sizeof(szLine))) {
        const size_t nFormat = std::strlen(pFormat);
        const char* const pEnd = nFormat > 0 && pFormat[nFormat - 1] == '\n' ? "...\n" : "...";
        const size_t nEnd = std::strlen(pEnd) + 1;
        std::memcpy(szLine + sizeof(szLine) - nEnd, pEnd, nEnd);
    }
    HdrPrintf("%s", szLine);
    HdrLog("%s", szLine);
}

}  // namespace vkr
