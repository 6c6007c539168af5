#pragma once

#include "pictures/remarks.h"

namespace vkr::tool {

// What there is to say, on standard error; verbose lines only for who wants them.
class StandardError : public Remarks {
public:
    explicit StandardError(bool bVerbose) : m_bVerbose(bVerbose) {}

    void Add(RemarkLevel level, const std::string& sLine) override;

private:
    bool m_bVerbose;
};

}  // namespace vkr::tool
