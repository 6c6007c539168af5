#include <gtest/gtest.h>

#include <random>

#include "parameters/test_filters.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

constexpr int kNotSet = -1;

int Consumed(CFilter& filter, const std::string& sText)
{
    int nConsumed = kNotSet;
    const bool bLoaded = filter.LoadParameterBuffer(sText.c_str(), &nConsumed);
    EXPECT_EQ(bLoaded, nConsumed != kNotSet) << sText;
    return nConsumed;
}

TEST(ParameterBuffer, LoadsWhatWasWrittenWithoutUpdating)
{
    LinesScope lines;
    CRoot root;
    const std::string sText = kDefaultText;
    root.nWide = root.middle.nShift = root.middle.inner.nNodes[1] = 0;
    EXPECT_EQ(Consumed(root, sText), static_cast<int>(sText.size()) - 1) << "the last line feed is left";
    EXPECT_EQ(root.nWide, -2);
    EXPECT_EQ(root.middle.nShift, 4);
    EXPECT_EQ(root.middle.inner.nNodes[1], 32);
    EXPECT_EQ(root.middle.inner.nUpdates + root.bare.nUpdates, 0);
    EXPECT_EQ(lines.Text(), "");
    EXPECT_FALSE(root.LoadParameterBuffer(nullptr, nullptr));
}

TEST(ParameterBuffer, RefusesValuesOutOfRange)
{
    LinesScope lines;
    CRoot root;
    CInner& inner = root.middle.inner;
    EXPECT_EQ(Consumed(inner, "CInner\nnAmount=10\nnNodes_0=256\nnNodes_1=1\n"), kNotSet);
    EXPECT_EQ(inner.nAmount, 10) << "nothing is rolled back";
    EXPECT_EQ(inner.nNodes[0], 16);
    EXPECT_EQ(Consumed(inner, "CInner\nnAmount=-20000000000000000000"), kNotSet);
    EXPECT_EQ(lines.Text(),
              "nNodes_0 value 256 is out of range [0,255]!!!\nFilter CInner loading parameter fail!!!\n"
              "nAmount value -2147483648 is out of range [-5,10]!!!\nFilter CInner loading parameter fail!!!\n");
}

TEST(ParameterBuffer, RefusesUnknownNames)
{
    LinesScope lines;
    CRoot root;
    EXPECT_EQ(Consumed(root, Changed("nShift", "nShift\t")), kNotSet);
    EXPECT_EQ(Consumed(root, Changed("CMiddle", "CBare")), kNotSet);
    EXPECT_EQ(Consumed(root, Changed("CRoot", "")), kNotSet);
    EXPECT_EQ(Consumed(root, " \n"), kNotSet);
    EXPECT_EQ(lines.Text(),
              "Can not find parameter name nShift\t!!!\nFilter CMiddle loading parameter fail!!!\n"
              "Filter CMiddle find non-matched name CBare!!!\n"
              "Filter CRoot find non-matched name bOn=1;!!!\n"
              "Filter CRoot find non-matched name !!!\n");
}

TEST(ParameterBuffer, AValueThatDoesNotScanRepeatsTheOneBefore)
{
    LinesScope lines;
    CRoot root;
    CInner& inner = root.middle.inner;
    EXPECT_NE(Consumed(inner, "CInner\nnAmount=H1F\nnNodes_0 = = 9\nnNodes_1=H1F\n"), kNotSet);
    EXPECT_EQ(inner.nAmount, 0) << "the first line has none before it";
    EXPECT_EQ(inner.nNodes[0], 9);
    EXPECT_EQ(inner.nNodes[1], 9);
    EXPECT_NE(Consumed(inner, "CInner\nnAmount=2\nnNodes_0\nnNodes_1 \n"), kNotSet);
    EXPECT_EQ(inner.nNodes[0], 2);
    EXPECT_EQ(inner.nNodes[1], 2);
}

TEST(ParameterBuffer, ASectionEndsAtABlankLine)
{
    LinesScope lines;
    CRoot root;
    CInner& inner = root.middle.inner;
    const std::string sShort = "\t CInner\nnAmount=7\n\nNext\n";
    EXPECT_EQ(Consumed(inner, sShort), static_cast<int>(sShort.find("Next")));
    EXPECT_EQ(inner.nAmount, 7);
    EXPECT_EQ(Consumed(inner, "CInner\nnAmount=8\n"), 17);
    EXPECT_EQ(Consumed(inner, "CInner\n\nnAmount=9\n"), 8);
    EXPECT_EQ(inner.nAmount, 8);
    EXPECT_EQ(Consumed(inner, "CInner"), 6);
    EXPECT_EQ(Consumed(root.bare, "CBare\n\nNext"), 5) << "nothing is taken behind the name of a bare filter";
}

TEST(ParameterBuffer, CrLfIsOneLineBreak)
{
    LinesScope lines;
    CRoot root;
    CInner& inner = root.middle.inner;
    const std::string sText = "CInner\r\nnAmount=1\r\nnNodes_0=2\r\n\r\nnNodes_1=3\r\n";
    EXPECT_EQ(Consumed(inner, sText), static_cast<int>(sText.find("nNodes_1")));
    EXPECT_EQ(inner.nNodes[0], 2);
    EXPECT_EQ(inner.nNodes[1], 32);
    EXPECT_NE(Consumed(inner, "CInner\rnNodes_0=4\r\rnNodes_1=5\r"), kNotSet);
    EXPECT_EQ(inner.nNodes[0], 4);
    EXPECT_EQ(inner.nNodes[1], 32);
}

TEST(ParameterBuffer, SectionsStandInTheOrderOfTheList)
{
    LinesScope lines;
    CRoot root;
    EXPECT_EQ(Consumed(root, "CRoot\nbOn=0\nnWide=0\n\nCBare\n\nCMiddle\nnShift=1\n\nCInner\n"), kNotSet);
    EXPECT_EQ(lines.Text(), "Filter CMiddle find non-matched name CBare!!!\n");
    EXPECT_NE(Consumed(root, "CRoot\nnWide=5\n\nCMiddle\n\nCInner\n\nCBare"), kNotSet);
    EXPECT_EQ(root.nWide, 5);
}

TEST(ParameterBuffer, SurvivesLongWordsAndLines)
{
    LinesScope lines;
    CRoot root;
    CInner& inner = root.middle.inner;
    const std::string sLong(100000, 'n');
    EXPECT_EQ(Consumed(inner, sLong), kNotSet);
    EXPECT_EQ(lines.Text(), "Filter CInner find non-matched name " + std::string(255, 'n') + "!!!\n");
    EXPECT_EQ(Consumed(inner, "CInner\n" + std::string(64, 'n') + "=1"), kNotSet);
    EXPECT_EQ(Consumed(inner, "CInner\n" + sLong + "=1"), kNotSet);
    EXPECT_NE(Consumed(inner, "CInner\n" + std::string(5000, '#') + "nAmount=6;" + sLong + "\nnNodes_0=7\n"), kNotSet);
    EXPECT_EQ(inner.nAmount, 6);
    EXPECT_EQ(inner.nNodes[0], 7);
}

// Nothing to compare with: values stay in range and the position inside the text, and the sanitizers watch the rest.
TEST(ParameterBuffer, SurvivesAnyText)
{
    LinesScope lines;
    std::mt19937 rng(22);
    for (int nRound = 0; nRound < 2000; ++nRound) {
        CRoot root;
        std::string sText = kDefaultText;
        for (int nChange = 0; nChange < 4; ++nChange) sText[rng() % sText.size()] = static_cast<char>(rng() % 255 + 1);
        const int nConsumed = Consumed(root, sText);
        EXPECT_LE(nConsumed, static_cast<int>(sText.size()));
        TextStream stream(sText);
        root.LoadParameterStream(stream);
        EXPECT_TRUE(root.bOn == 0 || root.bOn == 1);
        EXPECT_TRUE(root.middle.nShift >= 0 && root.middle.nShift <= 8);
        lines.Text().clear();
    }
}

}  // namespace
}  // namespace vkr
