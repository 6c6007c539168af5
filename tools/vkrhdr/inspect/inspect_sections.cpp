#include "inspect/inspect_sections.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <filesystem>

#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

std::string Text(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));
std::string Text(const char* pFormat, ...)
{
    char szText[256];
    va_list args;
    va_start(args, pFormat);
    std::vsnprintf(szText, sizeof(szText), pFormat, args);
    va_end(args);
    return szText;
}

// Alignment may leave frames out at both ends; stages behind it count from the first that is left.
struct UsedFrames {
    int nFirst = 0, nEnd = 0;
};

UsedFrames FramesAfterAlignment(const InspectedBurst& inspected)
{
    UsedFrames used{0, static_cast<int>(inspected.burst.vPhotos.size())};
    if (inspected.params.Get("CMultipleImagesAlignFilter.bDropAlignFail") == 0) return used;
    for (const AlignedPair& pair : inspected.vPairs) {
        if (pair.bAligned) continue;
        if (inspected.burst.nReference <= pair.nFirst) {
            used.nEnd = std::min(used.nEnd, pair.nSecond);
        } else {
            used.nFirst = std::max(used.nFirst, pair.nSecond);
        }
    }
    return used;
}

std::string FrameName(const PhotoBurst& burst, int k)
{
    const std::filesystem::path path(burst.vPhotos[static_cast<size_t>(k)].sName);
    return std::to_string(burst.nFirst + k) + ": " + path.filename().string() +
           (k == burst.nReference ? ", reference" : "");
}

// The colours of the exposures that were fused.
std::vector<LegendEntry> ExposureLegend(const PhotoBurst& burst, const UsedFrames& used)
{
    std::vector<LegendEntry> vLegend;
    for (int k = used.nFirst; k < used.nEnd; ++k) vLegend.push_back({ExposureColour(k), FrameName(burst, k)});
    return vLegend;
}

PageSection FramesSection(const PhotoBurst& burst, PictureFolder& folder)
{
    PageSection section{"Frames", "As they were read, darkest first."};
    for (int k = 0; k < static_cast<int>(burst.vPhotos.size()); ++k) {
        const Photo& photo = burst.vPhotos[static_cast<size_t>(k)];
        const std::string sCaption = FrameName(burst, k) + Text(", mean luma %.1f", photo.light.fMeanLuma) +
                                     (photo.info.sExposure.empty() ? "" : ", " + photo.info.sExposure);
        section.vPictures.push_back(folder.Add("frame_" + std::to_string(k), sCaption, RgbFromFrame(photo.frame)));
    }
    return section;
}

// Where the middle of the second picture lies in the first.
std::string ShiftOf(const AlignedPair& pair)
{
    const double* h = pair.vHomography;
    return h[8] == 0 ? std::string("none") : Text("%+.1f, %+.1f", h[2] / h[8], h[5] / h[8]);
}

PageTable PairTable(const std::vector<AlignedPair>& vPairs, int nFirst)
{
    PageTable vTable;
    for (const AlignedPair& pair : vPairs) {
        vTable.push_back({Text("%d, %d", nFirst + pair.nFirst, nFirst + pair.nSecond),
                          pair.bAligned ? "kept" : "failed", Text("%d, %d", pair.nFeatures[0], pair.nFeatures[1]),
                          std::to_string(pair.nInitMatches), std::to_string(pair.nRefinedMatches),
                          std::to_string(pair.nInliers), pair.bAligned ? ShiftOf(pair) : "taken as 0, 0"});
    }
    if (vTable.empty()) return vTable;
    vTable.insert(vTable.begin(), {"pair", "result", "features", "initial matches", "refined matches", "inliers",
                                   "shift of the middle, x, y in pixels"});
    return vTable;
}

PageSection AlignmentSection(const InspectedBurst& inspected, const UsedFrames& used, PictureFolder& folder)
{
    PageSection section{"Aligned frames", "The frames as they lie on the reference."};
    if (inspected.vPairs.empty()) section.sWords += " Nothing was aligned: alignment is off, or there is one frame.";
    for (int k = 0; k < static_cast<int>(inspected.burst.vPhotos.size()); ++k) {
        const Frame* pFrame = inspected.stages.AlignedFrame(k);
        if (pFrame == nullptr) continue;
        const bool bUsed = k >= used.nFirst && k < used.nEnd;
        section.vPictures.push_back(folder.Add("aligned_" + std::to_string(k),
                                               FrameName(inspected.burst, k) + (bUsed ? "" : ", left out"),
                                               RgbFromFrame(*pFrame)));
    }
    section.vTable = PairTable(inspected.vPairs, inspected.burst.nFirst);
    return section;
}

// Adds the pictures of those stages that showed one.
struct StagePicture {
    const char *pStage, *pFile, *pCaption;
};

void AddStages(const KeptStages& stages, const std::vector<StagePicture>& vStages, PictureFolder& folder,
               PageSection& section)
{
    for (const StagePicture& stage : vStages) {
        const Raster* pPicture = stages.Picture(stage.pStage);
        if (pPicture != nullptr) section.vPictures.push_back(folder.Add(stage.pFile, stage.pCaption, *pPicture));
    }
}

PageSection SaturationSection(const InspectedBurst& inspected, PictureFolder& folder)
{
    PageSection section{"Saturation mask", "What is blown out in the darkest exposure. Working size, half the frames."};
    AddStages(inspected.stages, {{"satumask", "saturation", "saturation mask"}}, folder, section);
    if (section.vPictures.empty()) section.sWords = "None was made: bCheckSatuEnable is 0, or nothing was fused.";
    return section;
}

// Whether the ghosts were too many for regions of their own.
bool HasWholePicture(const Raster& choice, int nExposure)
{
    for (size_t i = static_cast<size_t>(nExposure); i < choice.vSamples.size(); i += choice.nChannels) {
        if (choice.vSamples[i] != 128) return false;
    }
    return true;
}

const char* GhostWords(const InspectedBurst& inspected, int nReference)
{
    const Raster* pChoice = inspected.stages.Picture("ghostchoice");
    if (inspected.params.Get("bGhostProcessEnable") == 0) return "Ghosts are off: bGhostProcessEnable is 0.";
    if (inspected.stages.Picture("ghost") == nullptr) return "No ghost map was made.";
    if (pChoice == nullptr) {
        return "No region was given to an exposure: none is large enough (nMinConnectAreaPer), or there are too many "
               "(nMaxGhostRegionNum). The weights stay as they were built.";
    }
    if (HasWholePicture(*pChoice, nReference)) {
        return "What moved covers more than nGhostLimitPerTh allows: the reference has all of the picture.";
    }
    return "What moved, over the reference; then the regions that came of it, in the colour of the exposure that each "
           "was given, on the level where they are found (nStartDeghostLevel). On their soft outer sides the built "
           "weights have the rest.";
}

std::string GhostCaption(const Raster& ghost, int nThreshold)
{
    const auto nAbove =
        std::count_if(ghost.vSamples.begin(), ghost.vSamples.end(), [&](int nGhost) { return nGhost > nThreshold; });
    return Text("ghost map, %.2f %% of it above nGhostBinaryThresh",
                100.0 * static_cast<double>(nAbove) / static_cast<double>(ghost.vSamples.size()));
}

PageSection GhostSection(const InspectedBurst& inspected, const UsedFrames& used, PictureFolder& folder)
{
    const int nReference = inspected.burst.nReference - used.nFirst;
    PageSection section{"Ghosts", GhostWords(inspected, nReference)};
    const KeptStages& stages = inspected.stages;
    const Raster* pReference = stages.Picture("work" + std::to_string(nReference));
    const Raster *pGhost = stages.Picture("ghost"), *pChoice = stages.Picture("ghostchoice");
    if (pReference == nullptr) return section;
    if (pGhost != nullptr) {
        section.vLegend.push_back({kGhostColour, "moved"});
        section.vPictures.push_back(folder.Add("ghost_map",
                                               GhostCaption(*pGhost, inspected.params.Get("nGhostBinaryThresh")),
                                               GhostOverlay(*pReference, *pGhost)));
    }
    if (pChoice != nullptr) {
        for (LegendEntry& entry : ExposureLegend(inspected.burst, used)) section.vLegend.push_back(entry);
        section.vPictures.push_back(folder.Add("ghost_choice", "chosen exposure of each region",
                                               ChoiceOverlay(*pReference, *pChoice, used.nFirst)));
    }
    return section;
}

PageSection WeightSection(const InspectedBurst& inspected, const UsedFrames& used, PictureFolder& folder)
{
    PageSection section{"Weights", "Level 0, each pixel the mix of its exposures' colours.",
                        ExposureLegend(inspected.burst, used)};
    const std::vector<StagePicture> vStages = {
        {"builtweights", "weights_built", "as built"},
        {"edgeweights", "weights_ghosts", "ghosts embedded; the edge layer takes these"},
        {"weights0", "weights_fused", "as fused, built again where the frames were re-linearised"}};
    for (const StagePicture& stage : vStages) {
        const Raster* pWeights = inspected.stages.Picture(stage.pStage);
        if (pWeights == nullptr) continue;
        section.vPictures.push_back(folder.Add(stage.pFile, stage.pCaption, WeightColours(*pWeights, used.nFirst)));
    }
    if (section.vPictures.empty()) section.sWords = "None were built: nothing was fused.";
    return section;
}

PageSection ToneSection(const InspectedBurst& inspected, PictureFolder& folder)
{
    PageSection section{"Fusion and tone", "Working size but for the edge layer, which is shown as value / 2 + 128."};
    AddStages(inspected.stages,
              {{"fused", "fused", "fused, before tone"},
               {"stretched", "stretched", "stretched over all"},
               {"tone", "tone", "after the local curves"},
               {"edge", "edge", "edge layer: the luma detail that is added at full size"}},
              folder, section);
    if (section.vPictures.empty()) section.sWords = "Nothing was fused: the result is the reference with its tone.";
    return section;
}

PageSection ResultSection(const InspectedBurst& inspected, PictureFolder& folder)
{
    PageSection section{"Result", ""};
    section.vPictures.push_back(folder.Add("result", "result", RgbFromFrame(inspected.result)));
    return section;
}

}  // namespace

std::vector<PageSection> StageSections(const InspectedBurst& inspected, PictureFolder& folder)
{
    const UsedFrames used = FramesAfterAlignment(inspected);
    std::vector<PageSection> vSections;
    vSections.push_back(FramesSection(inspected.burst, folder));
    vSections.push_back(AlignmentSection(inspected, used, folder));
    vSections.push_back(SaturationSection(inspected, folder));
    vSections.push_back(GhostSection(inspected, used, folder));
    vSections.push_back(WeightSection(inspected, used, folder));
    vSections.push_back(ToneSection(inspected, folder));
    vSections.push_back(ResultSection(inspected, folder));
    return vSections;
}

PageSection TimesSection(const StageTimes& times)
{
    PageSection section{"Times", "As the stages take them, inner ones indented."};
    section.vTable.push_back({"stage", "ms"});
    for (const StageTimes::Row& row : times.Medians()) {
        section.vTable.push_back(
            {std::string(static_cast<size_t>(2 * row.nDepth), ' ') + row.sName, std::to_string(row.nMedianMs)});
    }
    return section;
}

PageSection ParametersSection(const ToolParameters& params)
{
    PageSection section{"Parameters", "Those that differ from the library's defaults."};
    section.vTable.push_back({"parameter", "value", "default"});
    for (const ChangedParameter& changed : params.Changed()) {
        section.vTable.push_back({changed.sFullName, std::to_string(changed.nValue), std::to_string(changed.nDefault)});
    }
    return section;
}

}  // namespace vkr::tool
