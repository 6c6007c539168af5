#include "commands/standard_error.h"

#include <cstdio>

namespace vkr::tool {

void StandardError::Add(RemarkLevel level, const std::string& sLine)
{
    if (level == RemarkLevel::kVerbose && !m_bVerbose) return;
    std::fprintf(stderr, "%s\n", sLine.c_str());
}

}  // namespace vkr::tool
