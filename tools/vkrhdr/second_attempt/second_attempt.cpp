#include "second_attempt/second_attempt.h"

#include <algorithm>
#include <string>
#include <utility>

#include "library/align_report.h"
#include "library/photo_preset.h"
#include "pictures/picture_shift.h"
#include "second_attempt/align_attempt.h"
#include "second_attempt/near_frames.h"

namespace vkr::tool {

namespace {

using Pairs = std::vector<AlignedPair>;

// One way to lay the frames, and what came of it.
struct Attempt {
    std::vector<Frame> vFrames;  // as they go into alignment
    std::vector<Shift> vMoves;   // by how much they were moved
    bool bTolerant = false;
    Pairs vPairs;               // what alignment found
    std::vector<bool> vBeside;  // by pair: it failed at first and does not lie well now
    int nBeside = 0, nFailed = 0;

    bool IsBetterThan(const Attempt& other) const
    {
        return nBeside != other.nBeside ? nBeside < other.nBeside : nFailed < other.nFailed;
    }
};

std::vector<Frame> FramesOf(const PhotoBurst& burst)
{
    std::vector<Frame> vFrames;
    for (const Photo& photo : burst.vPhotos) vFrames.push_back(photo.frame);
    return vFrames;
}

// The values that the attempts differ in, as they are and as they are tolerant; without those that --set names.
class Tolerance {
public:
    Tolerance(const ParameterChoice& choice, Size size, ToolParameters& params) : m_params(params)
    {
        for (const std::string& sTolerant : TolerantAssignments(size)) {
            const std::string sName = sTolerant.substr(0, sTolerant.find('='));
            if (choice.Sets(sName)) continue;
            m_vTolerant.push_back(sTolerant);
            m_vStrict.push_back(sName + "=" + std::to_string(params.Get(sName)));
        }
    }

    void Set(bool bTolerant)
    {
        for (const std::string& sValue : bTolerant ? m_vTolerant : m_vStrict) m_params.Set(sValue);
    }

private:
    ToolParameters& m_params;
    std::vector<std::string> m_vStrict, m_vTolerant;
};

// Runs alignment over frames that were moved so, and judges what came of the pairs that failed at first.
Attempt Tried(std::vector<Frame> vFrames, const std::vector<Shift>& vMoves, int nReference, const Pairs& vAtFirst,
              ToolParameters& params)
{
    Attempt attempt;
    attempt.vFrames = std::move(vFrames);
    attempt.vMoves = vMoves;
    attempt.vBeside.resize(vAtFirst.size());
    const AlignAttempt aligned = AlignFrames(attempt.vFrames, nReference, params.AlignFilter());
    attempt.vPairs = aligned.vPairs;
    for (const AlignedPair& pair : aligned.vPairs) attempt.nFailed += pair.bAligned ? 0 : 1;
    for (size_t j = 0; j < vAtFirst.size(); ++j) {
        if (vAtFirst[j].bAligned) continue;
        if (LiesWell(HalfLuma(aligned.vFrames[j]), HalfLuma(aligned.vFrames[j + 1]))) continue;
        attempt.vBeside[j] = true;
        ++attempt.nBeside;
    }
    return attempt;
}

// As the frames lie, if they lie well; else brought near each other, with the values as they are and the tolerant ones:
// the first of the best, with its borders borrowed unless alignment is misled by them. Leaves params at those that it
// was made with.
Attempt BestAttempt(const ParameterChoice& choice, const Pairs& vPairs, const PhotoBurst& burst, ToolParameters& params)
{
    const std::vector<Frame> vFrames = FramesOf(burst);
    const auto tried = [&](std::vector<Frame> vTried, const std::vector<Shift>& vMoves) {
        return Tried(std::move(vTried), vMoves, burst.nReference, vPairs, params);
    };
    Attempt best = tried(vFrames, std::vector<Shift>(vFrames.size()));
    if (best.nBeside == 0) return best;
    const std::vector<Shift> vMoves = MovesOf(vFrames, burst.nReference, vPairs);
    Tolerance tolerance(choice, burst.FrameSize(), params);
    for (const bool bTolerant : {false, true}) {
        tolerance.Set(bTolerant);
        Attempt attempt = tried(MovedFrames(vFrames, vMoves), vMoves);
        attempt.bTolerant = bTolerant;
        if (attempt.IsBetterThan(best)) best = std::move(attempt);
        if (best.nBeside + best.nFailed == 0) break;
    }
    tolerance.Set(best.bTolerant);
    Attempt borrowed =
        tried(WithBorrowedBorders(best.vFrames, best.vMoves, best.vPairs, burst.nReference), best.vMoves);
    if (!best.IsBetterThan(borrowed)) best.vFrames = std::move(borrowed.vFrames);
    return best;
}

// The frames that stay, nEnd exclusive: from the reference outwards up to the first pair that lies beside it.
struct KeptFrames {
    int nBegin, nEnd;
};

KeptFrames KeptFramesOf(const Attempt& attempt, int nReference)
{
    const auto isBeside = [&](int nPair) { return attempt.vBeside[static_cast<size_t>(nPair)]; };
    const int nFrames = static_cast<int>(attempt.vFrames.size());
    KeptFrames kept{nReference, nReference + 1};
    while (kept.nBegin > 0 && !isBeside(kept.nBegin - 1)) --kept.nBegin;
    while (kept.nEnd < nFrames && !isBeside(kept.nEnd - 1)) ++kept.nEnd;
    return kept;
}

void SayMoved(const Attempt& attempt, const PhotoBurst& burst, KeptFrames kept, Remarks& remarks)
{
    for (int k = kept.nBegin; k < kept.nEnd; ++k) {
        const Shift move = attempt.vMoves[static_cast<size_t>(k)];
        if (!IsMoved(move)) continue;
        remarks.Say("vkrhdr: %s is moved by %d, %d pixels before it is aligned",
                    burst.vPhotos[static_cast<size_t>(k)].sName.c_str(), move.nX, move.nY);
    }
}

void SayLeftOut(const Pairs& vPairs, const PhotoBurst& burst, KeptFrames kept, Remarks& remarks)
{
    for (const AlignedPair& pair : vPairs) {
        if (pair.nSecond != kept.nBegin && pair.nFirst != kept.nEnd - 1) continue;
        remarks.Say("%s", FailureLine(pair, burst.Names(), burst.nReference, true).c_str());
    }
}

// The ratios go with their frames.
void LeaveOut(KeptFrames kept, PhotoBurst& burst, ToolParameters& params)
{
    const size_t nDropped = static_cast<size_t>(kept.nBegin), nKept = static_cast<size_t>(kept.nEnd) - nDropped;
    for (size_t k = 0; k + 1 < nKept; ++k) {
        params.SetNearest(RatioName(k), params.Get(RatioName(k + nDropped)));
    }
    std::vector<Photo>& vPhotos = burst.vPhotos;
    vPhotos.erase(vPhotos.begin() + kept.nEnd, vPhotos.end());
    vPhotos.erase(vPhotos.begin(), vPhotos.begin() + kept.nBegin);
    burst.nReference -= kept.nBegin;
    burst.nFirst += kept.nBegin;
}

}  // namespace

bool MayTryAgain(const ParameterChoice& choice, const std::vector<AlignedPair>& vPairs)
{
    if (!choice.IsPhoto() || choice.Sets("nGlobalAlignEnable")) return false;
    if (choice.Sets("CMultipleImagesAlignFilter.bDropAlignFail")) return false;
    return std::any_of(vPairs.begin(), vPairs.end(), [](const AlignedPair& pair) { return !pair.bAligned; });
}

bool TryAgain(const ParameterChoice& choice, const std::vector<AlignedPair>& vPairs, Remarks& remarks,
              PhotoBurst& burst, ToolParameters& params)
{
    Attempt best = BestAttempt(choice, vPairs, burst, params);
    const KeptFrames kept = KeptFramesOf(best, burst.nReference);
    const bool bMoved = std::any_of(best.vMoves.begin(), best.vMoves.end(), IsMoved);
    if (!bMoved && !best.bTolerant && best.nBeside == 0) return false;
    SayMoved(best, burst, kept, remarks);
    SayLeftOut(vPairs, burst, kept, remarks);
    for (size_t k = 0; k < burst.vPhotos.size(); ++k) burst.vPhotos[k].frame = std::move(best.vFrames[k]);
    LeaveOut(kept, burst, params);
    return true;
}

}  // namespace vkr::tool
