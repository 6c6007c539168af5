#include "library/stage_times.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace vkr::tool {

namespace {

// Cuts the milliseconds and what stands behind them off. False when the line does not end that way.
bool CutMilliseconds(std::string& sLine, int& nMs)
{
    const std::string sUnit = " ms";
    if (sLine.size() < sUnit.size() || sLine.compare(sLine.size() - 3, 3, sUnit) != 0) return false;
    sLine.resize(sLine.size() - sUnit.size());
    const size_t nBlank = sLine.find_last_of(' ');
    if (nBlank == std::string::npos || nBlank + 1 == sLine.size()) return false;
    const std::string sNumber = sLine.substr(nBlank + 1);
    if (sNumber.find_first_not_of("0123456789") != std::string::npos || sNumber.size() > 9) return false;
    nMs = std::atoi(sNumber.c_str());
    sLine.resize(nBlank);
    return true;
}

// "==== ==== NAME  " to "NAME" and the number of marks before it. Words that the library left without a line end may
// stand before the marks.
std::string CutMarks(const std::string& sLine, int& nDepth)
{
    const size_t nMarks = sLine.find("====");
    const std::string sTitle = nMarks == std::string::npos ? sLine : sLine.substr(nMarks);
    size_t i = 0;
    for (nDepth = 0; i < sTitle.size() && (sTitle[i] == '=' || sTitle[i] == ' ' || sTitle[i] == '@'); ++i) {
        if (sTitle[i] == '=' && (i == 0 || sTitle[i - 1] == ' ')) ++nDepth;
    }
    const size_t nEnd = sTitle.find_last_not_of(' ');
    return nEnd == std::string::npos || nEnd < i ? std::string() : sTitle.substr(i, nEnd + 1 - i);
}

}  // namespace

bool StageTimes::AddLine(const std::string& sLine)
{
    std::string sTitle = sLine;
    int nMs = 0, nDepth = 0;
    if (!CutMilliseconds(sTitle, nMs)) return false;
    const std::string sName = CutMarks(sTitle, nDepth);
    if (sName.empty()) return false;
    auto stage = std::find_if(m_vStages.begin(), m_vStages.end(), [&](const Stage& s) { return s.sName == sName; });
    if (stage == m_vStages.end()) stage = m_vStages.insert(stage, Stage{sName, nDepth, {}});
    stage->vSums[m_nRun] += nMs;
    return true;
}

void StageTimes::EndRun()
{
    ++m_nRun;
}

std::vector<StageTimes::Row> StageTimes::Medians() const
{
    std::vector<Row> vRows;
    for (const Stage& stage : m_vStages) {
        std::vector<int> vMs;
        for (const auto& sum : stage.vSums) vMs.push_back(sum.second);
        vRows.push_back({stage.sName, stage.nDepth, Median(vMs)});
    }
    return vRows;
}

void StageTimes::Print(std::FILE* pFile) const
{
    std::fprintf(pFile, "%-48s %8s\n", "stage", "ms");
    for (const Row& row : Medians()) {
        std::fprintf(pFile, "%*s%-*s %8d\n", 2 * row.nDepth, "", 48 - 2 * row.nDepth, row.sName.c_str(), row.nMedianMs);
    }
}

int Median(std::vector<int> vValues)
{
    if (vValues.empty()) return 0;
    std::sort(vValues.begin(), vValues.end());
    return vValues[(vValues.size() - 1) / 2];
}

}  // namespace vkr::tool
