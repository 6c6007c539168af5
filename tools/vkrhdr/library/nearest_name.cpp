#include "library/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace vkr::tool {

namespace {

char Lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Levenshtein's distance, row by row of its table.
size_t EditDistance(const std::string& sFrom, const std::string& sTo)
{
    std::vector<size_t> vRow(sTo.size() + 1);
    std::iota(vRow.begin(), vRow.end(), size_t{0});
    for (size_t i = 0; i < sFrom.size(); ++i) {
        size_t nDiagonal = vRow[0]++;
        for (size_t j = 0; j < sTo.size(); ++j) {
            const size_t nChanged = nDiagonal + (Lower(sFrom[i]) == Lower(sTo[j]) ? 0 : 1);
            nDiagonal = vRow[j + 1];
            vRow[j + 1] = std::min(nChanged, std::min(vRow[j], vRow[j + 1]) + 1);
        }
    }
    return vRow.back();
}

// A name may be given without the filter in front of it.
size_t Distance(const std::string& sFrom, const std::string& sTo)
{
    const size_t nDot = sTo.find('.');
    const size_t nWhole = EditDistance(sFrom, sTo);
    return nDot == std::string::npos ? nWhole : std::min(nWhole, EditDistance(sFrom, sTo.substr(nDot + 1)));
}

}  // namespace

std::string NearestName(const std::string& sName, const std::vector<std::string>& vNames, size_t nMost)
{
    const auto Nearer = [&](const std::string& a, const std::string& b) {
        return Distance(sName, a) < Distance(sName, b);
    };
    const auto pNearest = std::min_element(vNames.begin(), vNames.end(), Nearer);
    return pNearest == vNames.end() || Distance(sName, *pNearest) > nMost ? std::string() : *pNearest;
}

}  // namespace vkr::tool
