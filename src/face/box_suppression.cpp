#include "face/box_suppression.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace vkr {

namespace {

struct ScoreIndexPair {
    int32_t nIndex;  // in the list of candidates
    double dScore;
};

std::vector<ScoreIndexPair> ByFallingScore(const std::vector<FaceBoxRecord>& vCandidates)
{
    std::vector<ScoreIndexPair> vPairs;
    vPairs.reserve(vCandidates.size());
    for (const FaceBoxRecord& box : vCandidates) vPairs.push_back({static_cast<int32_t>(vPairs.size()), box.dScore});
    std::stable_sort(vPairs.begin(), vPairs.end(),
                     [](const ScoreIndexPair& a, const ScoreIndexPair& b) { return a.dScore > b.dScore; });
    return vPairs;
}

double Area(const std::array<double, 4>& v)
{
    return (v[3] - v[1] + 1) * (v[2] - v[0] + 1);
}

double Overlap(const std::array<double, 4>& a, const std::array<double, 4>& b)
{
    const double w = std::max(0.0, std::min(a[2], b[2]) - std::max(a[0], b[0]) + 1);
    const double h = std::max(0.0, std::min(a[3], b[3]) - std::max(a[1], b[1]) + 1);
    const double dInter = w * h, dJoint = Area(a) + Area(b) - dInter;
    return dJoint == 0 ? 0 : dInter / dJoint;
}

}  // namespace

std::vector<FaceBoxRecord> SuppressOverlaps(const std::vector<FaceBoxRecord>& vCandidates, float fNMSThreshold)
{
    const double dThreshold = fNMSThreshold;
    std::vector<FaceBoxRecord> vKept;
    for (const ScoreIndexPair& pair : ByFallingScore(vCandidates)) {
        const FaceBoxRecord& box = vCandidates[static_cast<size_t>(pair.nIndex)];
        const bool bCovered = std::any_of(vKept.begin(), vKept.end(), [&](const FaceBoxRecord& kept) {
            return dThreshold < Overlap(box.vCoord, kept.vCoord);
        });
        if (!bCovered) vKept.push_back(box);
    }
    return vKept;
}

}  // namespace vkr
