#include "truth/ghost_table.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "truth/error_table.h"

namespace vkr::truth {

namespace {

constexpr double kWithin = 0.25;
constexpr double kRimIn = 0.75, kRimOut = 1.25;    // radii: as far from the rim counts
constexpr double kInside = 0.95, kOutside = 1.05;  // and as near to it nothing does

double Share(size_t nPart, size_t nAll)
{
    return nAll == 0 ? 0 : static_cast<double>(nPart) / static_cast<double>(nAll);
}

// 1 inside the rim of place k and -1 outside of it, where no other disc comes near; else 0.
int SideOfRim(const GhostScene& scene, int k, double x, double y)
{
    const double fDistance = scene.Distance(k, x, y);
    if (fDistance < kRimIn || fDistance > kRimOut || (fDistance > kInside && fDistance < kOutside)) return 0;
    for (int i = 0; i < GhostScene::kPlaces; ++i) {
        if (i != k && scene.Distance(i, x, y) < kOutside) return 0;
    }
    return fDistance < 1 ? 1 : -1;
}

// The step of the luma of what across the rim of place k, from outside to inside.
double RimStep(const GhostScene& scene, int k, const CYuvImage& what)
{
    const int nReach = static_cast<int>(kRimOut * static_cast<double>(scene.Radius())) + 1;
    const int xMiddle = static_cast<int>(scene.Place(k).x), yMiddle = static_cast<int>(scene.Place(k).y);
    double vSum[2] = {}, vCount[2] = {};
    for (int y = std::max(0, yMiddle - nReach); y < std::min(what.nHeight, yMiddle + nReach); ++y) {
        for (int x = std::max(0, xMiddle - nReach); x < std::min(what.nWidth, xMiddle + nReach); ++x) {
            const int nSide = SideOfRim(scene, k, x, y);
            if (nSide == 0) continue;
            vSum[nSide > 0] += what.RowY(y)[x];
            ++vCount[nSide > 0];
        }
    }
    return vCount[0] > 0 && vCount[1] > 0 ? vSum[1] / vCount[1] - vSum[0] / vCount[0] : 0;
}

double Mean(const std::vector<double>& vValues)
{
    return vValues.empty() ? 0
                           : std::accumulate(vValues.begin(), vValues.end(), 0.0) / static_cast<double>(vValues.size());
}

double Below(const std::vector<double>& vValues, double fLimit)
{
    const auto isBelow = [=](double f) { return f <= fLimit; };
    return 100 * Share(static_cast<size_t>(std::count_if(vValues.begin(), vValues.end(), isBelow)), vValues.size());
}

}  // namespace

MapScore ScoreMap(const CImage& map, const std::vector<GhostTruth>& vTruth, int nWidth, int nThreshold)
{
    size_t nGhost = 0, nCovered = 0, nStill = 0, nMarked = 0;
    for (size_t i = 0; i < vTruth.size(); ++i) {
        const int x = static_cast<int>(i) % nWidth, y = static_cast<int>(i) / nWidth;
        const bool bMarked = !map.Empty() && map.Row(y)[x] > nThreshold;
        nGhost += vTruth[i] == GhostTruth::kGhost;
        nCovered += vTruth[i] == GhostTruth::kGhost && bMarked;
        nStill += vTruth[i] == GhostTruth::kStill;
        nMarked += vTruth[i] == GhostTruth::kStill && bMarked;
    }
    return {Share(nCovered, nGhost), Share(nMarked, nStill)};
}

bool DiscPresence::IsOnePlace() const
{
    int nThere = 0, nGone = 0;
    for (const double f : vOf) {
        nThere += std::abs(f - 1) < kWithin;
        nGone += std::abs(f) < kWithin;
    }
    return nThere == 1 && nGone == GhostScene::kPlaces - 1;
}

double DiscPresence::LargestTrace() const
{
    const double* pMost = std::max_element(vOf, vOf + GhostScene::kPlaces);
    double fLargest = 0;
    for (const double& f : vOf) {
        if (&f != pMost) fLargest = std::max(fLargest, std::abs(f));
    }
    return fLargest;
}

DiscPresence MeasurePresence(const GhostScene& scene, const CYuvImage& result, const CYuvImage& nowhere,
                             const CYuvImage& everywhere)
{
    DiscPresence presence;
    for (int k = 0; k < GhostScene::kPlaces; ++k) {
        const double fNone = RimStep(scene, k, nowhere), fWhole = RimStep(scene, k, everywhere) - fNone;
        presence.vOf[k] = fWhole != 0 ? (RimStep(scene, k, result) - fNone) / fWhole : 0;
    }
    return presence;
}

void GhostRow::Add(const MapScore& moving, const DiscPresence& presence, double fNoiseMarked)
{
    m_vCovered.push_back(moving.fCovered);
    m_vMarked.push_back(moving.fMarked);
    m_vNoise.push_back(fNoiseMarked);
    m_vTraces.push_back(presence.LargestTrace());
    m_nOnePlace += presence.IsOnePlace() ? 1 : 0;
    m_last = presence;
}

void GhostRow::PrintHead(std::FILE* pFile)
{
    std::fputs(
        "| parameters | covered %, mean | least | >= 98 % | still marked %, mean | most | <= 5 % "
        "| one place % | trace %, median | 95 % | noise marked %, mean | most | <= 1 % |\n"
        "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n",
        pFile);
}

void GhostRow::Print(std::FILE* pFile, const std::string& sName) const
{
    const size_t nScenes = m_vCovered.size();
    std::vector<double> vMissed = m_vCovered;
    for (double& f : vMissed) f = 1 - f;
    std::fprintf(pFile, "| %s | %.1f | %.1f | %.0f | %.2f | %.2f | %.0f | %.0f | %.0f | %.0f | %.2f | %.2f | %.0f |\n",
                 sName.c_str(), 100 * Mean(m_vCovered), 100 - 100 * Quantile(vMissed, 1), Below(vMissed, 0.02),
                 100 * Mean(m_vMarked), 100 * Quantile(m_vMarked, 1), Below(m_vMarked, 0.05),
                 100 * Share(m_nOnePlace, nScenes), 100 * Quantile(m_vTraces, 0.5), 100 * Quantile(m_vTraces, 0.95),
                 100 * Mean(m_vNoise), 100 * Quantile(m_vNoise, 1), Below(m_vNoise, 0.01));
}

void GhostRow::PrintLast(std::FILE* pFile, const std::string& sName, const GhostScene& scene, unsigned nSeed) const
{
    const double fStep = scene.Distance(0, scene.Place(1).x, scene.Place(1).y);
    std::fprintf(pFile,
                 "seed %2u, radius %.0f, step %.2f radii, %s: covered %.1f %%, still marked %.2f %%, present %.2f %.2f "
                 "%.2f%s, noise marked %.2f %%\n",
                 nSeed, static_cast<double>(scene.Radius()), fStep, sName.c_str(), 100 * m_vCovered.back(),
                 100 * m_vMarked.back(), m_last.vOf[0], m_last.vOf[1], m_last.vOf[2],
                 m_last.IsOnePlace() ? "" : " NOT ONE PLACE", 100 * m_vNoise.back());
}

}  // namespace vkr::truth
