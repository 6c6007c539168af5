#include "pictures/remarks.h"

#include <cstdarg>
#include <cstdio>

namespace vkr::tool {

namespace {

__attribute__((format(printf, 1, 0))) std::string Written(const char* pFormat, std::va_list args)
{
    std::va_list again;
    va_copy(again, args);
    const int nLength = std::vsnprintf(nullptr, 0, pFormat, again);
    va_end(again);
    std::string sLine(nLength > 0 ? static_cast<size_t>(nLength) : 0, '\0');
    std::vsnprintf(sLine.data(), sLine.size() + 1, pFormat, args);
    return sLine;
}

}  // namespace

void Remarks::Say(const char* pFormat, ...)
{
    std::va_list args;
    va_start(args, pFormat);
    const std::string sLine = Written(pFormat, args);
    va_end(args);
    Add(RemarkLevel::kPlain, sLine);
}

void Remarks::SayVerbose(const char* pFormat, ...)
{
    std::va_list args;
    va_start(args, pFormat);
    const std::string sLine = Written(pFormat, args);
    va_end(args);
    Add(RemarkLevel::kVerbose, sLine);
}

}  // namespace vkr::tool
