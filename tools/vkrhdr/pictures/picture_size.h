#pragma once

#include <string>

namespace vkr::tool {

struct Size {
    int nWidth, nHeight;
};

// "WxH", both even, 2 .. 16384. UsageError, which names pOption, for anything else.
Size ParseSize(const std::string& sText, const char* pOption = "--size");

}  // namespace vkr::tool
