#include "fuse/fuse_burst.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

#include "pictures/tool_error.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

class RemarkList : public Remarks {
public:
    void Add(RemarkLevel level, const std::string& sLine) override
    {
        (level == RemarkLevel::kPlain ? sPlain : sVerbose) += sLine + "\n";
    }
    std::string sPlain, sVerbose;
};

std::string LinesFrom(const std::string& sText, const std::string& sBegin)
{
    std::istringstream text(sText);
    std::string sFound;
    for (std::string sLine; std::getline(text, sLine);) {
        if (sLine.rfind(sBegin, 0) == 0) sFound += sLine + "\n";
    }
    return sFound;
}

// Three drawn exposures, brightest first, without any file.
std::vector<Photo> PhotosInMemory()
{
    const std::vector<Frame> vFrames = DrawnFrames();
    std::vector<Photo> vPhotos(vFrames.size());
    for (size_t k = 0; k < vFrames.size(); ++k) {
        vPhotos[k].frame = vFrames[vFrames.size() - 1 - k];
        vPhotos[k].sName = std::to_string(k) + ".nv12";
    }
    return vPhotos;
}

std::string WhyNotArranged(std::vector<Photo> vPhotos, int nReference)
{
    try {
        ArrangeBurst(std::move(vPhotos), nReference);
    } catch (const BurstError& error) {
        return error.what();
    }
    return "arranged";
}

}  // namespace

TEST(BurstFuser, MakesOfFramesInMemoryWhatTheProgramMakesOfFiles)
{
    std::vector<Photo> vPhotos = PhotosInMemory();
    const TestFolder folder;
    for (const Photo& photo : vPhotos) WriteWholeFile(folder.Path(photo.sName), WriteRaw(photo.frame));
    const ToolRun run = RunTool(
        folder, {"fuse", "--verbose", "--raw", "nv12", "--size", "160x120", "-o", "out.nv12", "--face", "20,20,90,90",
                 "--set", "nAIFaceHeightWidthThres=10", "--reference", "0", "0.nv12", "1.nv12", "2.nv12"});
    ASSERT_EQ(0, run.nStatus) << run.sErr;

    RemarkList remarks;
    BurstFuser fuser({{"photo", "", {"nAIFaceHeightWidthThres=10"}}, {FaceSource::kBoxes, {{20, 20, 90, 90}}}},
                     remarks);
    const FusedBurst fused = std::move(fuser).Fuse(ArrangeBurst(std::move(vPhotos), 0), {});
    EXPECT_EQ(ReadWholeFile(folder.Path("out.nv12")), WriteRaw(fused.result));
    EXPECT_EQ((std::vector<int>{2, 1, 0}), fused.burst.order.vFrames);
    EXPECT_EQ("2.nv12", fused.burst.Reference().sName);
    EXPECT_EQ(2u, fused.vPairs.size());
    EXPECT_EQ("", remarks.sPlain);
    EXPECT_NE("", LinesFrom(remarks.sVerbose, "nRatio_1="));
    EXPECT_EQ(LinesFrom(run.sErr, "nRatio_"), LinesFrom(remarks.sVerbose, "nRatio_"));
}

TEST(ArrangeBurst, RefusesWhatDoesNotGoTogether)
{
    const std::vector<Photo> vPhotos = PhotosInMemory();
    EXPECT_EQ("arranged", WhyNotArranged(vPhotos, 2));
    EXPECT_EQ("there is no frame 3 to be the reference, they are 0 .. 2", WhyNotArranged(vPhotos, 3));
    EXPECT_EQ("a burst has 1 to 8 frames, not 0", WhyNotArranged({}, -1));
    EXPECT_EQ("a burst has 1 to 8 frames, not 9", WhyNotArranged(std::vector<Photo>(9, vPhotos[0]), -1));
    std::vector<Photo> vOther = vPhotos;
    vOther[2].frame.Resize(100, 120);
    EXPECT_EQ("all frames must be of one size: 0.nv12 is 160x120, 2.nv12 is 100x120", WhyNotArranged(vOther, -1));
    vOther = vPhotos;
    vOther[1].frame.bCrFirst = true;
    EXPECT_EQ("all frames must have one order of chroma: 0.nv12 and 1.nv12 differ", WhyNotArranged(vOther, -1));
}

}  // namespace vkr::tool
