#include "interface/report.h"

#include <cstdarg>
#include <cstdio>

#include "foundation/log.h"

namespace vkr {

void Report(const char* pFormat, ...)
{
    char szLine[512];
    va_list values;
    va_start(values, pFormat);
    std::vsnprintf(szLine, sizeof(szLine), pFormat, values);
    va_end(values);
    HdrPrintf("%s", szLine);
    HdrLog("%s", szLine);
}

}  // namespace vkr
