#include "local_curve/local_auto_curve_filter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "local_curve/slow_local_curve.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"

namespace vkr {
namespace {

struct QuietFilter : CLocalAutoCurveFilter {
    QuietFilter()
    {
        Initialize();
        bDumpDebugFile = 0;
    }
};

// Shades that differ from block to block, so that the curves do.
void FillShades(std::mt19937& rng, CImage& image, int w, int h)
{
    FillRandom(rng, image, w, h, 3, 0, 90);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < 3 * w; ++x) {
            uint8_t& n = image.Row(y)[x];
            n = static_cast<uint8_t>(std::min(255, n + 180 * (x / 3) / w * (y % 37 < 30 ? 1 : 0)));
        }
    }
}

class LocalAutoCurve : public testing::Test {
protected:
    void ExpectSlow(CLocalAutoCurveFilter& filter, SlowLocalCurve& slow, int w, int h)
    {
        TestImage image;
        FillShades(m_rng, image, w, h);
        const std::vector<uint8_t> vWant = slow.Map(image);
        ASSERT_TRUE(filter.ProcessImage(image));
        ASSERT_EQ(Samples(image), vWant) << w << "x" << h << " grid " << filter.nWinXNum << "x" << filter.nWinYNum
                                         << " nWYUV " << filter.nWYUV << " boost " << filter.nSaturateBoost;
    }
    void ExpectSlow(CLocalAutoCurveFilter& filter, int w, int h)
    {
        SlowLocalCurve slow(filter);
        ExpectSlow(filter, slow, w, h);
    }

    LinesScope m_lines;
    ThreadsScope m_threads{1};  // the team has a test of its own
    std::mt19937 m_rng{75};
};

TEST_F(LocalAutoCurve, EqualsTheSlowWritingAtEveryWidth)
{
    for (int w = 1; w <= 40; ++w) {
        QuietFilter filter;
        ExpectSlow(filter, w, 1 + w % 19);
    }
    for (const int w : {255, 256, 257, 519}) {  // across the runs of the row loop, one block wide and several
        QuietFilter one, many;
        one.nWinXNum = one.nWinYNum = 1;
        ExpectSlow(one, w, 5);
        ExpectSlow(many, w, 21);
    }
}

TEST_F(LocalAutoCurve, EqualsTheSlowWritingOnEveryGrid)
{
    for (int n = 1; n <= 16; ++n) {
        QuietFilter filter;
        filter.nWinXNum = n;
        filter.nWinYNum = 17 - n;
        filter.nWYUV = n;
        filter.nSmoothMaskSize = n % 5;
        filter.nLocalWeight = 17 - n;
        filter.nContrastLevel = 2 * n;
        filter.nMinBin = 1 + n % 8;
        filter.nMaxBin = 8 + n;
        ExpectSlow(filter, 61, 43);
    }
}

TEST_F(LocalAutoCurve, EqualsTheSlowWritingInEveryMapping)
{
    for (int nWYUV = 0; nWYUV <= 16; ++nWYUV) {
        for (const int nBoost : {0, -256, -100, 1, 256}) {
            QuietFilter filter;
            filter.nWYUV = nWYUV;
            filter.nSaturateBoost = nBoost;
            filter.nContrastLevel = 32;
            ExpectSlow(filter, 37, 23);
        }
    }
}

TEST_F(LocalAutoCurve, MixesHugeBlocksIn64Bits)
{
    QuietFilter filter;  // one block: blocks of 8192 rows, or of 131072 columns, can pass 32 bits
    filter.nWinXNum = filter.nWinYNum = 1;
    filter.nContrastLevel = 32;
    ExpectSlow(filter, 3, 16000);
    ExpectSlow(filter, 140000, 2);
}

TEST_F(LocalAutoCurve, FollowsOverPicturesOfAnySize)
{
    for (const int nStep : {0, 1, 5, 16}) {
        QuietFilter filter;
        filter.nCurveStep = nStep;
        SlowLocalCurve slow(filter);
        ExpectSlow(filter, slow, 64, 48);
        ExpectSlow(filter, slow, 33, 17);
        ExpectSlow(filter, slow, 5, 90);
    }
}

TEST_F(LocalAutoCurve, KeepsEveryPixelUnderIdentityCurves)
{
    QuietFilter filter;
    filter.nCurveStep = 0;  // curves stay what registration made them
    for (const int nWYUV : {0, 7, 16}) {
        filter.nWYUV = nWYUV;
        TestImage image;
        FillRandom(m_rng, image, 128, 64, 3, 0, 255);  // blocks of 16 x 8: their reciprocals are exact
        const std::vector<uint8_t> vWant = Samples(image);
        ASSERT_TRUE(filter.ProcessImage(image));
        EXPECT_EQ(Samples(image), vWant);
    }
}

TEST_F(LocalAutoCurve, BoostsColourAroundTheLuma)
{
    QuietFilter filter;
    filter.nCurveStep = 0;
    filter.nWinXNum = filter.nWinYNum = 1;
    const auto mapped = [&](int nBoost) {
        filter.nSaturateBoost = nBoost;
        TestImage image;
        FillConstant(image, 1, 1, 3, 10);
        image.pData[1] = 100;
        image.pData[2] = 50;  // luma 73
        EXPECT_TRUE(filter.ProcessImage(image));
        return Samples(image);
    };
    EXPECT_EQ(mapped(256), (std::vector<uint8_t>{0, 127, 27}));   // twice the distance
    EXPECT_EQ(mapped(-128), (std::vector<uint8_t>{42, 86, 62}));  // half: 73 - 31, 73 + 13, 73 - 11, toward zero
    EXPECT_EQ(mapped(-256), (std::vector<uint8_t>{73, 73, 73}));
}

TEST_F(LocalAutoCurve, TellsOfBlocksWithoutPixels)
{
    for (const auto& size : {std::pair(1, 1), std::pair(9, 3), std::pair(3, 40), std::pair(17, 12)}) {
        QuietFilter filter;
        SlowLocalCurve slow(filter);
        LinesScope::Text().clear();
        ExpectSlow(filter, slow, size.first, size.second);
        EXPECT_EQ(LinesScope::Text().substr(0, slow.sMessages.size()), slow.sMessages);
        EXPECT_TRUE(m_lines.Contains("Apply Local Curves!"));
    }
}

TEST_F(LocalAutoCurve, IsTheSameFromAnyTeam)
{
    TestImage source;
    FillShades(m_rng, source, 83, 29);
    std::vector<uint8_t> vWant;
    ForThreads([&](int nThreads) {
        QuietFilter filter;
        filter.nWYUV = 9;
        TestImage image;
        ASSERT_TRUE(image.CopyFrom(source));
        ASSERT_TRUE(filter.ProcessImage(image));
        if (nThreads == 1) vWant = Samples(image);
        EXPECT_EQ(Samples(image), vWant);
    });
}

TEST_F(LocalAutoCurve, RefusesWhatIsNoPicture)
{
    QuietFilter filter;
    TestImage image;
    EXPECT_FALSE(filter.ProcessImage(image));
    FillConstant(image, 4, 4, 1, 7);
    EXPECT_FALSE(filter.ProcessImage(image));
    EXPECT_EQ(LinesScope::Text(), "");
}

TEST_F(LocalAutoCurve, RegistersItsParametersInOrder)
{
    QuietFilter filter;
    filter.bDumpDebugFile = 1;
    std::FILE* pFile = std::tmpfile();
    ASSERT_NE(pFile, nullptr);
    EXPECT_TRUE(filter.SaveParameterStream(pFile));
    std::rewind(pFile);
    std::string sText(4096, '\0');
    sText.resize(std::fread(&sText[0], 1, sText.size(), pFile));
    std::fclose(pFile);
    EXPECT_EQ(sText,
              "\nCLocalAutoCurveFilter\n"
              "bDumpDebugFile=1;\trange=[0,1]\n"
              "nWinXNum=8;\trange=[1,16]\n"
              "nWinYNum=8;\trange=[1,16]\n"
              "nLocalWeight=8;\trange=[0,16]\n"
              "nCurveStep=16;\trange=[0,16]\n"
              "nSmoothMaskSize=4;\trange=[0,10]\n"
              "nMinBin=4;\trange=[1,8]\n"
              "nMaxBin=16;\trange=[8,32]\n"
              "nContrastLevel=16;\trange=[0,32]\n"
              "nWYUV=16;\trange=[0,16]\n"
              "nSaturateBoost=0;\trange=[-256,256]\n");
    CLocalAutoCurveFilter fresh;
    fresh.Initialize();
    EXPECT_EQ(fresh.bDumpDebugFile, 1);
}

// Runs in a folder of its own: the names hold backslashes, which are no folders everywhere.
TEST_F(LocalAutoCurve, DumpsPicturesAndCurves)
{
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    const fs::path folder = fs::path(testing::TempDir()) / "vkr_local_curve_dump";
    fs::create_directories(folder);
    fs::current_path(folder);
    QuietFilter filter;
    filter.bDumpDebugFile = 1;
    filter.nWinXNum = 2;
    filter.nWinYNum = 1;
    filter.nCurveStep = 0;
    TestImage image;
    FillConstant(image, 8, 8, 3, 50);
    QuietFilter off;
    off.bDumpDebugFile = 1;
    TestImage other;
    FillConstant(other, 8, 8, 3, 50);
    EXPECT_TRUE(off.ProcessImage(other));
    EXPECT_TRUE(fs::is_empty(folder)) << "the burst's own switch is off";
    fs::create_directory("LocalContrastDump\\Curve\\curve_001_002.txt");  // can not be opened for writing
    EXPECT_TRUE(filter.ProcessImage(image, 1));
    EXPECT_TRUE(m_lines.Contains("Apply Local Curves!row=2,col=1\n"));
    EXPECT_TRUE(m_lines.Contains("file open fail, LocalContrastDump\\Curve\\curve_001_002.txt\n"));
    EXPECT_TRUE(fs::exists("LocalContrastDump\\before.bmp"));
    EXPECT_TRUE(fs::exists("LocalContrastDump\\after.bmp"));
    std::ifstream curve("LocalContrastDump\\Curve\\curve_001_001.txt");
    std::string sFirst, sLast, sLine;
    std::getline(curve, sFirst);
    int nLines = 1;
    for (; std::getline(curve, sLine); ++nLines) sLast = sLine;
    EXPECT_EQ(nLines, 63);
    EXPECT_EQ(sFirst, "000  004");
    EXPECT_EQ(sLast, "062  252");
    fs::current_path(before);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace vkr
