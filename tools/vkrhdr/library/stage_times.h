#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace vkr::tool {

// What the library tells about the time of its stages, gathered over one or more runs.
class StageTimes {
public:
    struct Row {
        std::string sName;
        int nDepth = 0;     // stages inside stages
        int nMedianMs = 0;  // over the runs; a stage that occurs several times in a run counts with its sum
    };

    // Takes a line as Toc prints it: "==== ==== NAME", then the milliseconds and "ms". False, nothing taken, for any
    // other line.
    bool AddLine(const std::string& sLine);

    void EndRun();

    // In the order in which the stages ended first. Stages since the last EndRun are a run of their own.
    std::vector<Row> Medians() const;

    void Print(std::FILE* pFile) const;

private:
    struct Stage {
        std::string sName;
        int nDepth = 0;
        std::map<int, int> vSums;  // run to milliseconds
    };

    std::vector<Stage> m_vStages;
    int m_nRun = 0;
};

// The middle one; of an even number the lower middle one. 0 for none.
int Median(std::vector<int> vValues);

}  // namespace vkr::tool
