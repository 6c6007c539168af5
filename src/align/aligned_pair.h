#pragma once

namespace vkr {

// What alignment made of two neighbouring exposures.
struct AlignedPair {
    int nFirst, nSecond;    // exposures of the burst
    int nFeatures[2];       // corners found in each
    int nInitMatches;       // pairs of the first search
    int nRefinedMatches;    // of these, pairs that passed the check from coarse to fine
    int nInliers;           // of these, pairs that agree with the homography
    bool bAligned;          // false: the pair failed and its link is the identity
    double vHomography[9];  // row-major, takes points of nSecond to points of nFirst; origin at the picture's centre
};

// Who is told of every pair once it is done, on the thread that aligns. Off unless one is set.
struct PairProbe {
    void (*pOnPair)(void* pUser, const AlignedPair& pair);
    void* pUser;
};

// Null takes it away. The probe must live until then. Not to be changed while a burst runs.
void SetPairProbe(const PairProbe* pProbe);
void ProbePair(const AlignedPair& pair);

}  // namespace vkr
