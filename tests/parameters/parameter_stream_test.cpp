#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "parameters/test_filters.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

// Loads the lines of CInner alone.
bool LoadInner(CRoot& root, const std::string& sLines)
{
    TextStream stream(sLines);
    return root.middle.inner.LoadParameterStream(stream);
}

// Loads a whole text, its first name included, by way of a file.
bool LoadTree(CRoot& root, const std::string& sText)
{
    const std::string sPath = testing::TempDir() + "vkr_parameter_stream_test_" + std::to_string(getpid()) + ".txt";
    std::FILE* const pFile = std::fopen(sPath.c_str(), "wb");
    std::fwrite(sText.data(), 1, sText.size(), pFile);
    std::fclose(pFile);
    const bool bLoaded = root.LoadParameterFile(sPath.c_str());
    std::remove(sPath.c_str());
    return bLoaded;
}

TEST(ParameterStream, TakesLinesInAnyOrderAndUpdatesOnce)
{
    LinesScope lines;
    CRoot root;
    EXPECT_TRUE(LoadInner(root, "nNodes_1=255\nnAmount=-5;\trange=[0,0]\nnNodes_0= 0 x\n"));
    EXPECT_EQ(root.middle.inner.nAmount, -5);
    EXPECT_EQ(root.middle.inner.nNodes[0], 0);
    EXPECT_EQ(root.middle.inner.nNodes[1], 255);
    EXPECT_EQ(root.middle.inner.nUpdates, 1);
    EXPECT_EQ(lines.Text(), "") << "both ends of a range are inside it";
}

TEST(ParameterStream, ClampsWithAMessageAndGoesOn)
{
    LinesScope lines;
    CRoot root;
    EXPECT_TRUE(LoadInner(root, "nAmount=-6\nnNodes_0=256\nnNodes_1=99999999999999999999\n"));
    EXPECT_EQ(root.middle.inner.nAmount, -5);
    EXPECT_EQ(root.middle.inner.nNodes[0], 255);
    EXPECT_EQ(root.middle.inner.nNodes[1], 255);
    EXPECT_EQ(lines.Text(),
              "nAmount value -6 is out of range [-5,10]!!!\n"
              "nNodes_0 value 256 is out of range [0,255]!!!\n"
              "nNodes_1 value 2147483647 is out of range [0,255]!!!\n");
}

TEST(ParameterStream, ReadsHexadecimalAndCrLf)
{
    LinesScope lines;
    CRoot root;
    EXPECT_TRUE(LoadInner(root, "nAmount=h0A\r\nnNodes_0=H1F;\trange=[00,FF]\r\nnNodes_1=7\r\n"));
    EXPECT_EQ(root.middle.inner.nAmount, 10);
    EXPECT_EQ(root.middle.inner.nNodes[0], 31);
    EXPECT_EQ(root.middle.inner.nNodes[1], 7);
}

TEST(ParameterStream, RepeatsTheLastLineAtTheEndOfTheFile)
{
    LinesScope lines;
    CRoot root;
    EXPECT_TRUE(LoadInner(root, "nAmount=1\nnNodes_0=9\n"));
    EXPECT_EQ(root.middle.inner.nNodes[0], 9);
    EXPECT_EQ(root.middle.inner.nNodes[1], 32);
    EXPECT_TRUE(LoadInner(root, "nAmount=2"));
    EXPECT_EQ(root.middle.inner.nAmount, 2);
    EXPECT_FALSE(LoadInner(root, "")) << "no line to repeat yet";
    EXPECT_FALSE(root.middle.inner.LoadParameterStream(nullptr));
    EXPECT_EQ(root.middle.inner.nUpdates, 2);
}

TEST(ParameterStream, LeavesALineTooManyForTheNextName)
{
    LinesScope lines;
    CRoot root;
    TextStream stream("nAmount=1\nnNodes_0=2\nnNodes_1=3\nnAmount=4\n");
    EXPECT_TRUE(root.middle.inner.LoadParameterStream(stream));
    EXPECT_EQ(stream.Rest(), "nAmount=4\n");
    EXPECT_FALSE(LoadTree(root, Changed("nShift=4;", "nShift=5\nnShift=6;")));
    EXPECT_EQ(lines.Text(), "Can not find filter name nShift=6;!!!\n");
    EXPECT_EQ(root.middle.nShift, 5) << "nothing is rolled back";
}

TEST(ParameterStream, RefusesLinesWithoutNameOrValue)
{
    LinesScope lines;
    CRoot root;
    for (const char* pText :
         {"\nnAmount=1\n", "nAmount 1\n", "nAmount=\n", "nAmount=x1\n", "nAmount=H\n", "nAmount=Hg\n"}) {
        EXPECT_FALSE(LoadInner(root, pText)) << pText;
    }
    EXPECT_FALSE(LoadInner(root, std::string("\0nAmount=1\n", 11)));
    EXPECT_EQ(lines.Text(), "");
    EXPECT_FALSE(LoadInner(root, " nAmount=1\n"));
    EXPECT_FALSE(LoadInner(root, "nNodes=1\n"));
    EXPECT_FALSE(LoadInner(root, "=1\n"));
    EXPECT_EQ(lines.Text(), "Unknown Parameter  nAmount!!!\nUnknown Parameter nNodes!!!\nUnknown Parameter !!!\n");
    EXPECT_EQ(root.middle.inner.nAmount, 3);
}

TEST(ParameterStream, TakesLongLinesInPieces)
{
    LinesScope lines;
    CRoot root;
    // 255 characters fill the first piece; the rest of the line is the next one.
    std::string sLong = "nAmount=1;";
    sLong.resize(255, '.');
    EXPECT_TRUE(LoadInner(root, sLong + "nNodes_0=2\nnNodes_1=3\n"));
    EXPECT_EQ(root.middle.inner.nNodes[0], 2);
    EXPECT_EQ(root.middle.inner.nNodes[1], 3);
    EXPECT_FALSE(LoadInner(root, std::string(64, 'n') + "=1\n"));
    EXPECT_FALSE(LoadInner(root, std::string(100000, 'n')));
    EXPECT_EQ(lines.Text(), "Unknown Parameter " + std::string(64, 'n') + "!!!\n");
}

TEST(ParameterStream, TakesSubFiltersInAnyOrder)
{
    LinesScope lines;
    CRoot root;
    EXPECT_TRUE(LoadTree(root,
                         "CRoot\nnWide=7\nbOn=0\n\n\nCBare\n\nCMiddle\n\n"
                         "nShift=1\nCInner nAmount=2\nnNodes_0=3\nnNodes_1=4\n"));
    EXPECT_EQ(root.nWide, 7);
    EXPECT_EQ(root.middle.nShift, 1);
    EXPECT_EQ(root.middle.inner.nAmount, 2);
    EXPECT_EQ(root.middle.inner.nNodes[1], 4);
    EXPECT_EQ(root.middle.inner.nUpdates, 1);
    EXPECT_EQ(root.bare.nUpdates, 1);
    EXPECT_EQ(lines.Text(), "");
}

TEST(ParameterStream, NamesMustBeKnown)
{
    LinesScope lines;
    CRoot root;
    EXPECT_FALSE(LoadTree(root, Changed("CRoot", "CRoots")));
    EXPECT_FALSE(LoadTree(root, Changed("CInner", "CBare")));
    EXPECT_EQ(lines.Text(), "Can not match filter name CRoots!!!\nCan not find filter name CBare!!!\n");
    lines.Text().clear();
    EXPECT_FALSE(LoadTree(root, Changed("\nCBare\n", "")));
    EXPECT_FALSE(LoadTree(root, " \n\t"));
    EXPECT_FALSE(root.LoadParameterFile("no such file"));
    EXPECT_FALSE(root.LoadParameterFile(nullptr));
    EXPECT_EQ(lines.Text(), "");
    EXPECT_FALSE(LoadTree(root, std::string(5000, 'C')));
    EXPECT_EQ(lines.Text(), "Can not match filter name " + std::string(256, 'C') + "!!!\n");
    EXPECT_FALSE(root.LoadParameterFile("/dev/zero")) << "a word that never ends";
}

}  // namespace
}  // namespace vkr
