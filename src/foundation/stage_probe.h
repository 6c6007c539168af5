#pragma once

#include "foundation/image.h"

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

// A look between the stages, for finding where two runs part: hashes in the tests, pictures in the tool. Off unless a
// probe is set; a stage's picture is then handed over once it is complete, on the thread that made it. Callbacks may be
// null.
struct StageProbe {
    void (*pOnImage)(void* pUser, const char* pName, const CImage& image);
    void (*pOnShortImage)(void* pUser, const char* pName, const CShortImage& image);
    void (*pOnYuvImage)(void* pUser, const char* pName, const CYuvImage& image);
    void (*pOnPair)(void* pUser, const AlignedPair& pair);
    void* pUser;
};

// Null takes the probe away. The probe must live until then. Not to be changed while a burst runs.
void SetStageProbe(const StageProbe* pProbe);

void ProbePair(const AlignedPair& pair);

// nIndex, if not negative, is appended to the name. An empty picture is not shown.
void ProbeImage(const char* pName, const CImage& image, int nIndex = -1);
void ProbeImage(const char* pName, const CShortImage& image, int nIndex = -1);
void ProbeImage(const char* pName, const CYuvImage& image, int nIndex = -1);

}  // namespace vkr
