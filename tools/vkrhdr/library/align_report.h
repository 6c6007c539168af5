#pragma once

#include <string>
#include <vector>

#include "library/stage_listeners.h"

namespace vkr::tool {

// Keeps what alignment made of each pair of neighbouring exposures, darkest pair first.
class PairReports : public StageListener {
public:
    void OnPair(const AlignedPair& pair) override { m_vPairs.push_back(pair); }  // comes from one thread

    const std::vector<AlignedPair>& Pairs() const { return m_vPairs; }

private:
    std::vector<AlignedPair> m_vPairs;
};

// All about one pair, without a line end: "0 1: features 812 790, initial matches 402, refined matches 377, inliers
// 300, homography 1 0 3.5 0 1 -2 0 0 1", or "could not be aligned" in place of the homography. nFirst is the number of
// the burst's darkest exposure.
std::string PairLine(const AlignedPair& pair, int nFirst = 0);

// What a user should hear of a pair that failed: "vkrhdr: A and B could not be aligned; taken as they lie", or with
// bDropped which of the two, and all beyond it, is left out. vNames are the pictures' in the order of the exposures.
std::string FailureLine(const AlignedPair& pair, const std::vector<std::string>& vNames, int nReference, bool bDropped);

}  // namespace vkr::tool
