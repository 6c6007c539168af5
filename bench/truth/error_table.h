#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "truth/align_run.h"

namespace vkr::truth {

// The value below which fShare (0 .. 1) of the values lie; 0 of none.
double Quantile(std::vector<double> vValues, double fShare);

// What one set of parameters did to many bursts of one size. A burst whose pairs failed counts with the error of the
// frames as they came.
class ErrorRow {
public:
    void Add(const TruthBurst& burst, const AlignResult& result);

    static void PrintHead(std::FILE* pFile);
    void Print(std::FILE* pFile, const std::string& sName) const;

    // Of the burst that was added last.
    void PrintLast(std::FILE* pFile, const std::string& sName, unsigned nSeed) const;

private:
    double Percent(size_t nCount) const;
    size_t CountBelow(double fPixels) const;

    std::vector<double> m_vErrors, m_vMs;                              // one a burst
    std::vector<double> m_vFeatures, m_vInit, m_vRefined, m_vInliers;  // one a pair, features one an exposure
    size_t m_nAligned = 0, m_nWorse = 0;
    AlignResult m_last;
    double m_vLastErrors[TruthBurst::kExposures] = {};
};

}  // namespace vkr::truth
