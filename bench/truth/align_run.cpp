#include "truth/align_run.h"

#include <algorithm>
#include <chrono>

#include "align/aligned_pair.h"

namespace vkr::truth {

namespace {

// Alignment repeats the last samples until a side is n + (n mod 2^levels); points count from the middle of that.
double PaddedCentre(int nSide, int nTopLevel)
{
    return 0.5 * (nSide + nSide % (1 << nTopLevel));
}

void ToReference(const CMultipleImagesAlignFilterOpt& filter, const CYuvImage& frame, AlignResult& result)
{
    const double x = PaddedCentre(frame.nWidth, filter.nFeatureMatchLevel);
    const double y = PaddedCentre(frame.nHeight, filter.nFeatureMatchLevel);
    Homography vPairs[TruthBurst::kExposures];
    for (const AlignedPair& pair : result.vPairs) {
        Homography centred;
        std::copy_n(pair.vHomography, 9, centred.v);
        if (pair.bAligned) vPairs[pair.nFirst] = FromCentred(centred, x, y);
    }
    ChainPairs(vPairs, TruthBurst::kExposures, TruthBurst::kReference, result.vToReference);
}

}  // namespace

bool AlignResult::AllAligned() const
{
    const auto isAligned = [](const AlignedPair& pair) { return pair.bAligned; };
    return vPairs.size() + 1 == TruthBurst::kExposures && std::all_of(vPairs.begin(), vPairs.end(), isAligned);
}

AlignRun::~AlignRun()
{
    for (CYuvImage& frame : m_vFrames) frame.Release();
    for (CImage& mask : m_vMasks) mask.Release();
}

bool AlignRun::Align(CMultipleImagesAlignFilterOpt& filter, const TruthBurst& burst, AlignResult& result)
{
    result = {};
    for (int k = 0; k < TruthBurst::kExposures; ++k) {
        if (!m_vFrames[k].CopyFrom(burst.Frame(k))) return false;
    }
    const auto OnPair = [](void* pUser, const AlignedPair& pair) {
        static_cast<AlignResult*>(pUser)->vPairs.push_back(pair);
    };
    const PairProbe probe{OnPair, &result};
    ValidRange range;
    SetPairProbe(&probe);
    const auto start = std::chrono::steady_clock::now();
    const bool bDone = filter.AlignImages(m_vFrames, TruthBurst::kExposures, TruthBurst::kReference, m_vMasks, range);
    result.fMs = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    SetPairProbe(nullptr);
    ToReference(filter, burst.Frame(0), result);
    return bDone;
}

}  // namespace vkr::truth
