#include "truth/error_table.h"

#include <algorithm>

namespace vkr::truth {

double Quantile(std::vector<double> vValues, double fShare)
{
    if (vValues.empty()) return 0;
    std::sort(vValues.begin(), vValues.end());
    const size_t nLast = vValues.size() - 1;
    return vValues[std::min(nLast, static_cast<size_t>(fShare * static_cast<double>(vValues.size())))];
}

void ErrorRow::Add(const TruthBurst& burst, const AlignResult& result)
{
    m_vErrors.push_back(burst.WorstCornerError(result.vToReference));
    m_vMs.push_back(result.fMs);
    m_nAligned += result.AllAligned() ? 1 : 0;
    m_nWorse += burst.IsWorseThanNothing(result.vToReference) ? 1 : 0;
    for (const AlignedPair& pair : result.vPairs) {
        m_vFeatures.insert(m_vFeatures.end(), pair.nFeatures, pair.nFeatures + 2);
        m_vInit.push_back(pair.nInitMatches);
        m_vRefined.push_back(pair.nRefinedMatches);
        m_vInliers.push_back(pair.nInliers);
    }
    m_last = result;
    for (int k = 0; k < TruthBurst::kExposures; ++k) m_vLastErrors[k] = burst.FrameError(result.vToReference, k);
}

double ErrorRow::Percent(size_t nCount) const
{
    return m_vErrors.empty() ? 0 : 100.0 * static_cast<double>(nCount) / static_cast<double>(m_vErrors.size());
}

size_t ErrorRow::CountBelow(double fPixels) const
{
    return static_cast<size_t>(
        std::count_if(m_vErrors.begin(), m_vErrors.end(), [=](double fError) { return fError < fPixels; }));
}

void ErrorRow::PrintHead(std::FILE* pFile)
{
    std::fputs(
        "| parameters | aligned % | < 1 px % | < 0.5 px % | median px | 95 % px | worst px | worse than left alone "
        "| features | initial | refined | inliers | ms |\n"
        "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n",
        pFile);
}

void ErrorRow::Print(std::FILE* pFile, const std::string& sName) const
{
    std::fprintf(pFile, "| %s | %.0f | %.0f | %.0f | %.2f | %.2f | %.2f | %zu | %.0f | %.0f | %.0f | %.0f | %.0f |\n",
                 sName.c_str(), Percent(m_nAligned), Percent(CountBelow(1)), Percent(CountBelow(0.5)),
                 Quantile(m_vErrors, 0.5), Quantile(m_vErrors, 0.95), Quantile(m_vErrors, 1), m_nWorse,
                 Quantile(m_vFeatures, 0.5), Quantile(m_vInit, 0.5), Quantile(m_vRefined, 0.5),
                 Quantile(m_vInliers, 0.5), Quantile(m_vMs, 0.5));
}

void ErrorRow::PrintLast(std::FILE* pFile, const std::string& sName, unsigned nSeed) const
{
    std::fprintf(pFile, "seed %2u, %s: %.2f px, %.0f ms", nSeed, sName.c_str(), m_vErrors.back(), m_vMs.back());
    for (const AlignedPair& pair : m_last.vPairs) {
        const int nMoved = pair.nFirst < TruthBurst::kReference ? pair.nFirst : pair.nSecond;
        std::fprintf(pFile, "; %d-%d %s %.2f px, %d/%d features, %d initial, %d refined, %d inliers", pair.nFirst,
                     pair.nSecond, pair.bAligned ? "aligned" : "FAILED", m_vLastErrors[nMoved], pair.nFeatures[0],
                     pair.nFeatures[1], pair.nInitMatches, pair.nRefinedMatches, pair.nInliers);
    }
    std::fputc('\n', pFile);
}

}  // namespace vkr::truth
