#include "ghosts/ghost_pair.h"

#include <algorithm>
#include <cstring>

#include "foundation/image_scope.h"
#include "ghosts/ghost_cleanup.h"
#include "ghosts/ghost_difference.h"
#include "primitives/morphology.h"
#include "primitives/smooth.h"

namespace vkr {

namespace {

using Morphology = CMorphologyFilter;

// What a pair works with; the steps below are in calling order.
struct PairWork {
    const GhostPair& pair;
    const CGhostProcessFilter& params;
    const PyramidParams& pyramid;
    const GhostDumps& dumps;
};

void DumpFullPictures(const PairWork& work)
{
    const GhostDumps& dumps = work.dumps;
    dumps.Save(work.pair.matched.Image(0), "GhostDump/TestMatPyr_%s_dark.bmp", dumps.Tag());
    dumps.Save(work.pair.bright.Image(0), "GhostDump/TestMatPyr_%s_Bright.bmp", dumps.Tag());
    dumps.Save(work.pair.dark.Image(0), "GhostDump/TestOriPyr_%s_dark.bmp", dumps.Tag());
    dumps.Save(work.pair.bright.Image(0), "GhostDump/TestOriPyr_%s_Bright.bmp", dumps.Tag());
}

bool DetectLevel(const PairWork& work, int nLevel, CImage& ghost)
{
    const GhostDumps& dumps = work.dumps;
    const GhostSide dark = work.pair.matched.Side(nLevel), bright = work.pair.bright.Side(nLevel);
    const int nList = std::min(nLevel, CGhostProcessFilter::kLevelLists - 1);
    CImage diff{};
    ImageScope scope(diff);
    if (!BuildDiffImage(dark, bright, work.params, nList, diff)) return false;
    if (!ApplyGhostThre(diff, work.params.nGhostThre[nList], ghost)) return false;
    dumps.Save(diff, "GhostDump/Diff_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    dumps.Save(dark.image, "GhostDump/ImDark_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    dumps.Save(bright.image, "GhostDump/ImBright_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    dumps.SaveEdges(dark.edges, "GhostDump/EdgeDark_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    dumps.SaveEdges(bright.edges, "GhostDump/EdgeBright_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    dumps.Save(ghost, "GhostDump/GhostImage_%s_Lvl_%d.bmp", dumps.Tag(), nLevel);
    return true;
}

// Doubles src and keeps the top left part that a picture of the size of like has. An empty like has no size to take.
bool DoubleToSizeOf(const CImage& src, const CImage& like, const PyramidParams& pyramid, CImage& dst)
{
    CImage up{};
    ImageScope scope(up);
    if (!DoubleImage(src, up, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither)) return false;
    if (!dst.AllocateGray(like.nWidth, like.nHeight)) return false;
    for (int y = 0; y < dst.nHeight; ++y) std::memcpy(dst.Row(y), up.Row(y), static_cast<size_t>(dst.nWidth));
    return true;
}

bool DetectStartLevel(const PairWork& work, CImage& ghost)
{
    const int nLevel = work.params.nGhostPyramidStartLevel;
    const int nRounds = work.params.nGrayCloseItAtGhostStartLevel;
    if (!DetectLevel(work, nLevel, ghost) || !GhostClose(ghost, nRounds)) return false;
    work.dumps.Save(ghost, "GhostDump/GhostImage_%s_Lvl_%d_C_%d.bmp", work.dumps.Tag(), nLevel, nRounds);
    return true;
}

// ghost, found on the next coarser level, gains what this one shows.
bool DetectFinerLevel(const PairWork& work, int nLevel, CImage& ghost)
{
    CImage carried{};
    ImageScope scope(carried);
    if (!DoubleToSizeOf(ghost, work.pair.bright.Image(nLevel), work.pyramid, carried)) return false;
    if (!DetectLevel(work, nLevel, ghost)) return false;
    TakeLarger(carried, ghost);
    if (!GhostClose(ghost, work.params.nGrayCloseItAtGhostOtherLevel)) return false;
    work.dumps.Save(ghost, "GhostDump/GhostImage_%s_Lvl_%d_merge.bmp", work.dumps.Tag(), nLevel);
    return true;
}

bool DetectLevels(const PairWork& work, CImage& ghost)
{
    if (!DetectStartLevel(work, ghost)) return false;
    for (int i = work.params.nGhostPyramidStartLevel - 1; i >= work.params.nMinGhostLevel; --i) {
        if (!DetectFinerLevel(work, i, ghost)) return false;
    }
    return true;
}

bool DropWeakGhosts(const PairWork& work, CImage& ghost)
{
    const CGhostProcessFilter& params = work.params;
    if (!params.bCheckThreEnable) return true;
    if (!CheckThre(ghost, params.nCheckThre[0], params.nCheckThre[1], params, work.dumps)) return false;
    work.dumps.Save(ghost, "GhostDump/GhostImage_%s_checkThre.bmp", work.dumps.Tag());
    return true;
}

bool DilateGhost(const PairWork& work, CImage& ghost)
{
    for (int i = 0; i < work.params.nGhostDilationIt; ++i) {
        if (!Morphology::DilateGraySquareFast(ghost, ghost) || !Morphology::DilateGrayCrossFast(ghost, ghost) ||
            !CSmoothFilter5x5::SmoothImage8(ghost, ghost, true)) {
            return false;
        }
    }
    work.dumps.Save(ghost, "GhostDump/GhostImage_%s_Mofo.bmp", work.dumps.Tag());
    return true;
}

bool RefineAtFinestLevel(const PairWork& work, CImage& ghost)
{
    const GhostDumps& dumps = work.dumps;
    if (!work.params.bRefineGhostAtMinGhostLevel) return true;
    const int nLevel = work.params.nMinGhostLevel;
    const GhostSide dark = work.pair.dark.Side(nLevel), bright = work.pair.bright.Side(nLevel);
    if (!RefineGhost(ghost, dark, bright, work.params.nRefineMaxItMinGhost, work.params, dumps)) return false;
    dumps.Save(ghost, "GhostDump/GhostImage_%s_refine_Pre.bmp", dumps.Tag());
    dumps.SaveEdges(dark.edges, "GhostDump/Refine_Edge_dark_%s.bmp", dumps.Tag());
    dumps.SaveEdges(bright.edges, "GhostDump/Refine_Edge_bright_%s.bmp", dumps.Tag());
    dumps.Save(dark.image, "GhostDump/Refine_Brightness_dark_%s.bmp", dumps.Tag());
    dumps.Save(bright.image, "GhostDump/Refine_Brightness_bright_%s.bmp", dumps.Tag());
    return true;
}

// Counts from nMinGhostLevel even where detection ended on a finer level: the ghost is then cut at each doubling.
bool DoubleToFullSize(const PairWork& work, CImage& ghost)
{
    CImage doubled{};
    ImageScope scope(doubled);
    for (int i = work.params.nMinGhostLevel; i > 0; --i) {
        if (!DoubleToSizeOf(ghost, work.pair.bright.Image(i - 1), work.pyramid, doubled)) return false;
        ghost.Swap(doubled);
    }
    return true;
}

bool RefineAtFullSize(const PairWork& work, CImage& ghost)
{
    if (!work.params.bRefineGhostAtFullRes) return true;
    if (!RefineGhost(ghost, work.pair.dark.Side(0), work.pair.bright.Side(0), work.params.nRefineMaxItFullRes,
                     work.params, work.dumps)) {
        return false;
    }
    work.dumps.Save(ghost, "GhostDump/GhostImage_%s_refine_Aft.bmp", work.dumps.Tag());
    return true;
}

// Whether every level that a step asks for is there.
bool HasAllLevels(const PairWork& work)
{
    const CGhostProcessFilter& params = work.params;
    const bool bRefineLevel = params.nMinGhostLevel <= params.nGhostPyramidStartLevel;
    if (params.bRefineGhostAtMinGhostLevel && !bRefineLevel) return false;
    return params.nMinGhostLevel == 0 || !work.pair.bright.Image(params.nMinGhostLevel - 1).Empty();
}

}  // namespace

uint32_t GhostDetectLevels(const CGhostProcessFilter& params)
{
    const int nStart = params.nGhostPyramidStartLevel;
    const int nFinest = std::min(params.nMinGhostLevel, nStart);
    return (2u << nStart) - (1u << nFinest);
}

uint32_t GhostEdgeLevels(const CGhostProcessFilter& params)
{
    return GhostDetectLevels(params) | (params.bRefineGhostAtFullRes ? 1u : 0u);
}

bool DetectGhostPair(const GhostPair& pair, const CGhostProcessFilter& params, const PyramidParams& pyramid,
                     const GhostDumps& dumps, CImage& ghost)
{
    const PairWork work{pair, params, pyramid, dumps};
    DumpFullPictures(work);
    if (!HasAllLevels(work)) return false;
    return DetectLevels(work, ghost) && DropWeakGhosts(work, ghost) && DilateGhost(work, ghost) &&
           RefineAtFinestLevel(work, ghost) && DoubleToFullSize(work, ghost) && RefineAtFullSize(work, ghost);
}

}  // namespace vkr
