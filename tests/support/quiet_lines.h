#pragma once

#include <string>

#include "foundation/log.h"

namespace vkr {

// Collects the library's lines for one scope, instead of standard output.
class LinesScope {
public:
    LinesScope()
    {
        Text().clear();
        SetHdrPrintSink([](const char* pText) { Text() += pText; });
    }
    ~LinesScope() { SetHdrPrintSink(nullptr); }
    LinesScope(const LinesScope&) = delete;
    LinesScope& operator=(const LinesScope&) = delete;

    bool Contains(const std::string& sWords) const { return Text().find(sWords) != std::string::npos; }
    static std::string& Text()
    {
        static std::string sText;
        return sText;
    }
};

}  // namespace vkr
