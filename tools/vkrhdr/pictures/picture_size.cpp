#include "pictures/picture_size.h"

#include <cstdio>

#include "pictures/tool_error.h"

namespace vkr::tool {

Size ParseSize(const std::string& sText, const char* pOption)
{
    Size size{};
    char cRest = 0;
    const int nRead = std::sscanf(sText.c_str(), "%5dx%5d%c", &size.nWidth, &size.nHeight, &cRest);
    const auto isSide = [](int n) { return n >= 2 && n <= 16384 && n % 2 == 0; };
    if (nRead != 2 || !isSide(size.nWidth) || !isSide(size.nHeight)) {
        throw UsageError(std::string(pOption) + " takes WxH with even sides of 2 .. 16384, not '" + sText + "'");
    }
    return size;
}

}  // namespace vkr::tool
