#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "pictures/colour_convert.h"
#include "run_tool.h"
#include "tagged_jpeg.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

void DrawDisc(int nX, int nY, int nRadius, Frame& frame)
{
    for (int y = nY - nRadius; y <= nY + nRadius; ++y) {
        for (int x = nX - nRadius; x <= nX + nRadius; ++x) {
            if ((x - nX) * (x - nX) + (y - nY) * (y - nY) > nRadius * nRadius) continue;
            frame.vY[static_cast<size_t>(y) * frame.nWidth + x] = static_cast<uint8_t>((x ^ y) % 16 < 8 ? 40 : 90);
        }
    }
}

// A drawn burst of three JPEG pictures. A fair-sized disc stands in the bright window of the first frame alone.
class InspectCommand : public testing::Test {
protected:
    void WriteBurst(const Names& vNames, int w, int h, int nRadius, const Tags& tags = {})
    {
        std::vector<Frame> vFrames = DrawnFrames(w, h);
        DrawDisc(w / 3, h / 2, nRadius, vFrames[0]);
        for (size_t k = 0; k < vNames.size(); ++k) {
            WriteWholeFile(m_folder.Path(vNames[k]), WithTags(WriteJpeg(vFrames[k], 95), tags));
        }
    }

    std::string Inspect(Names vArguments)
    {
        vArguments.insert(vArguments.begin(), "inspect");
        vArguments.insert(vArguments.end(), {"-o", "deep/page"});
        const ToolRun run = RunTool(m_folder, vArguments);
        EXPECT_EQ(0, run.nStatus) << run.sErr;
        return ReadText(m_folder.Path("deep/page/index.html"));
    }

    Raster Png(const std::string& sName) { return ReadPng(ReadWholeFile(m_folder.Path(sName)), sName); }

    TestFolder m_folder;
};

// All that a page links to or shows, but for its own sections.
std::set<std::string> LinksOf(const std::string& sPage)
{
    std::set<std::string> vLinks;
    for (const std::string sMark : {"href=\"", "src=\""}) {
        for (size_t n = sPage.find(sMark); n != std::string::npos; n = sPage.find(sMark, n + 1)) {
            const size_t nFrom = n + sMark.size();
            const std::string sLink = sPage.substr(nFrom, sPage.find('"', nFrom) - nFrom);
            if (sLink[0] != '#') vLinks.insert(sLink);
        }
    }
    return vLinks;
}

bool Has(const std::string& sPage, const std::string& sWords)
{
    return sPage.find(sWords) != std::string::npos;
}

// How far from grey the most coloured pixel of a part is.
int MostColour(const Raster& picture, int nX, int nY, int w, int h)
{
    int nMost = 0;
    for (int y = nY; y < nY + h; ++y) {
        for (int x = nX; x < nX + w; ++x) {
            const uint8_t* p = picture.Row(y) + 3 * x;
            nMost = std::max(nMost, std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]}));
        }
    }
    return nMost;
}

}  // namespace

TEST_F(InspectCommand, ShowsWhatMovedAndWhoHasIt)
{
    const Names vNames = {"a.jpg", "b.jpg", "c.jpg"};
    WriteBurst(vNames, 960, 720, 140);
    const std::string sPage = Inspect(vNames);
    for (const char* pName : {"ghost_map.png", "ghost_choice.png"}) {
        const Raster map = Png(std::string("deep/page/") + pName);
        ASSERT_EQ(480, map.nWidth) << pName;
        EXPECT_LT(60, MostColour(map, 480 / 3 - 10, 360 / 2 - 10, 20, 20)) << pName;
        EXPECT_EQ(0, MostColour(map, 420, 0, 60, 360)) << pName;
    }
    EXPECT_TRUE(Has(sPage, "weights_built.png"));
    EXPECT_NE(Png("deep/page/weights_built.png").vSamples, Png("deep/page/weights_ghosts.png").vSamples);
    EXPECT_TRUE(Has(sPage, "<td>kept</td>"));
    EXPECT_TRUE(Has(sPage, "<td>bLogoEnable</td><td>0</td><td>1</td>"));
    EXPECT_TRUE(Has(sPage, "AlignImages Done</td>"));
    const Names vFuse = {"fuse", "a.jpg", "b.jpg", "c.jpg", "-o", "out.png"};
    EXPECT_EQ(0, RunTool(m_folder, vFuse).nStatus);
    EXPECT_EQ(Png("out.png").vSamples, Png("deep/page/result.png").vSamples);
}

TEST_F(InspectCommand, LinksToPicturesThatAreThereAndWritesNothingElse)
{
    const Names vNames = {"a&amp;b<i>\"'.jpg", "dark.jpg", "bright.jpg"};
    WriteBurst(vNames, 1360, 80, 10);
    const std::string sPage = Inspect(vNames);
    EXPECT_FALSE(Has(sPage, "b<i>"));
    EXPECT_TRUE(Has(sPage, "a&amp;amp;b&lt;i&gt;&quot;&#39;.jpg"));
    std::set<std::string> vFiles = LinksOf(sPage);
    EXPECT_LT(12u, vFiles.size());
    vFiles.insert("index.html");
    std::set<std::string> vThere;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.Path("deep/page"))) {
        vThere.insert(entry.path().filename().string());
    }
    EXPECT_EQ(vThere, vFiles);
    EXPECT_EQ(680, Png("deep/page/result_small.png").nWidth);
}

TEST_F(InspectCommand, TurnsEveryPictureAndSaysWhatIsMissing)
{
    const Names vNames = {"a.jpg", "b.jpg", "c.jpg"};
    Tags tags;
    tags.nOrientation = 6;
    WriteBurst(vNames, 160, 120, 10, tags);
    const std::string sPage =
        Inspect({"a.jpg", "b.jpg", "c.jpg", "--set", "bGhostProcessEnable=0", "--set", "nGlobalAlignEnable=0"});
    for (const std::string& sFile : LinksOf(sPage)) {
        const Raster picture = Png("deep/page/" + sFile);
        EXPECT_EQ(picture.nWidth * 4, picture.nHeight * 3) << sFile;
    }
    EXPECT_TRUE(Has(sPage, "Ghosts are off"));
    EXPECT_TRUE(Has(sPage, "alignment is off"));
    const std::string sAlone = Inspect({"b.jpg"});
    EXPECT_TRUE(Has(sAlone, "Nothing was fused"));
}

}  // namespace vkr::tool
