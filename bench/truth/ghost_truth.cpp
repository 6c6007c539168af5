// How well what moved is found and shown once, over drawn bursts whose movement is known:
//   ghost_truth [--sizes WxH,...] [--seeds N] [--first-seed N] [--preset default|photo] [--params FILE]
//               [--set NAME=VALUE]... [--variant NAME=VALUE,...]... [--stops F] [--noise F] [--step F] [--threads N]
//               [--list]
// A disc moves over a textured gradient, the camera stands still (alignment is off unless nGlobalAlignEnable=1 is set),
// and nRatio is what the exposures have. Options are those of align_truth, but that names of parameters are given in
// full, as to vkrhdr. --step: radii from one place of the disc to the next (0: drawn, 0.8 .. 1.8).
//
// covered: of the pixels where the disc is in an exposure and not in the reference, or the other way round, and shows
// (FindGhostTruth), those that the ghost map marks. still marked: of the pixels that no disc touches. one place, trace:
// DiscPresence, of results without tone curves, since those follow the picture and three results are compared. noise
// marked: of all pixels, when the disc stands still and every byte of the frames has noise of deviation 4.
#include <omp.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "pictures/tool_error.h"
#include "truth/ghost_run.h"
#include "truth/ghost_table.h"
#include "truth/stops.h"
#include "truth/truth_options.h"

namespace {

using vkr::tool::BurstError;
using vkr::tool::LibraryLines;
using vkr::tool::Size;
using vkr::tool::ToolParameters;
using namespace vkr::truth;

constexpr float kGreyNoise = 4;

// The bursts of one scene.
struct Bursts {
    GhostBurst moving, nowhere, everywhere, noisy;

    bool Draw(const GhostScene& scene, const Exposing& exposing)
    {
        const unsigned vMoving[] = {1, 2, 4}, vNowhere[] = {0, 0, 0}, vStill[] = {2, 2, 2};
        const unsigned vEverywhere[] = {GhostScene::kEverywhere, GhostScene::kEverywhere, GhostScene::kEverywhere};
        Exposing noise = exposing;
        noise.fGreyNoise = kGreyNoise;
        return moving.Draw(scene, vMoving, exposing) && nowhere.Draw(scene, vNowhere, exposing) &&
               everywhere.Draw(scene, vEverywhere, exposing) && noisy.Draw(scene, vStill, noise);
    }
};

// No alignment, no tone, and the ratio that the exposures have.
std::vector<std::string> AlwaysSet(const TruthOptions& options)
{
    std::vector<std::string> vSets{
        "nGlobalAlignEnable=0",         "bLogoEnable=0",          "bContrastEnable=0", "bBrightnessPRSV=0",
        "bKeepHighLightDetailEnable=0", "bKeepDarkDetailEnable=0"};
    const long nRatio = std::lround(16 * TwoToThe(options.fStops));  // Q4
    for (int k = 0; k + 1 < GhostBurst::kExposures; ++k) {
        vSets.push_back("nRatio_" + std::to_string(k) + "=" + std::to_string(nRatio));
    }
    return vSets;
}

// One set of parameters and what it did.
class Variant {
public:
    Variant(const TruthOptions& options, Size size, const std::string& sChanges, LibraryLines& lines)
        : m_options(options), m_size(size), m_sChanges(sChanges), m_lines(lines)
    {
        m_nThreshold = MakeEngine()->Get("nGhostBinaryThresh");
    }

    void Run(const GhostScene& scene, const Bursts& bursts, const std::vector<GhostTruth>& vTruth)
    {
        Fuse(bursts.moving, m_moving);
        Fuse(bursts.nowhere, m_nowhere);
        Fuse(bursts.everywhere, m_everywhere);
        Fuse(bursts.noisy, m_noisy);
        const std::vector<GhostTruth> vStill(vTruth.size(), GhostTruth::kStill);
        m_row.Add(ScoreMap(m_moving.Map(), vTruth, scene.Width() / 2, m_nThreshold),
                  MeasurePresence(scene, m_moving.Result(), m_nowhere.Result(), m_everywhere.Result()),
                  ScoreMap(m_noisy.Map(), vStill, scene.Width() / 2, m_nThreshold).fMarked);
    }

    std::string Name() const { return m_sChanges.empty() ? "as given" : m_sChanges; }
    const GhostRow& Row() const { return m_row; }

private:
    // What an engine keeps from one burst to the next is none of a measurement.
    std::unique_ptr<ToolParameters> MakeEngine() const
    {
        return MakeParameters(m_options, m_size, m_sChanges, "", AlwaysSet(m_options), m_lines);
    }

    void Fuse(const GhostBurst& burst, GhostRun& run)
    {
        const std::unique_ptr<ToolParameters> engine = MakeEngine();
        if (!run.Fuse(engine->Flow(), burst)) throw BurstError("no memory to fuse a burst");
    }

    const TruthOptions& m_options;
    Size m_size;
    std::string m_sChanges;
    LibraryLines& m_lines;
    int m_nThreshold;
    GhostRun m_moving, m_nowhere, m_everywhere, m_noisy;
    GhostRow m_row;
};

void PrintTable(const TruthOptions& options, const std::string& sSize,
                const std::vector<std::unique_ptr<Variant>>& vVariants)
{
    std::printf("\n%s, %d scenes, %d exposures, %d threads\n\n", sSize.c_str(), options.nSeeds, GhostBurst::kExposures,
                omp_get_max_threads());
    GhostRow::PrintHead(stdout);
    for (const auto& variant : vVariants) variant->Row().Print(stdout, variant->Name());
    std::fflush(stdout);
}

void MeasureSize(const TruthOptions& options, const std::string& sSize, LibraryLines& lines)
{
    const Size size = vkr::tool::ParseSize(sSize, "--sizes");
    std::vector<std::unique_ptr<Variant>> vVariants;
    for (const std::string& sChanges : options.vVariants) {
        vVariants.push_back(std::make_unique<Variant>(options, size, sChanges, lines));
    }
    Bursts bursts;
    for (int nSeed = options.nFirstSeed; nSeed < options.nFirstSeed + options.nSeeds; ++nSeed) {
        const uint32_t nScene = static_cast<uint32_t>(nSeed);
        const GhostScene scene({size.nWidth, size.nHeight, nScene, options.fStep});
        const Exposing exposing{options.fStops, options.fNoise, 0, nScene};
        if (!bursts.Draw(scene, exposing)) throw BurstError("no memory for a burst of " + sSize);
        const std::vector<GhostTruth> vTruth = FindGhostTruth(scene, exposing);
        for (const auto& variant : vVariants) {
            variant->Run(scene, bursts, vTruth);
            if (options.bList) variant->Row().PrintLast(stdout, variant->Name(), scene, nScene);
            std::fflush(stdout);
        }
    }
    PrintTable(options, sSize, vVariants);
}

}  // namespace

int main(int argc, char** argv)
{
    return RunSizes("ghost_truth", argc, argv, MeasureSize);
}
