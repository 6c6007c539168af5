#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "parameters/test_filters.h"

namespace vkr {
namespace {

std::string Saved(const CFilter& filter)
{
    TextStream stream("");
    EXPECT_TRUE(filter.SaveParameterStream(stream));
    std::rewind(stream);
    return stream.Rest();
}

TEST(ParameterSave, WritesTheTreeInOrder)
{
    const CRoot root;
    EXPECT_EQ(Saved(root), kDefaultText);
}

TEST(ParameterSave, HexadecimalModesRoundTripThroughAStream)
{
    const char* const vLines[] = {
        nullptr, "nAmount=HFFFFFFFD;\trange=[FFFFFFFB,0A]\nnNodes_0=H10;\trange=[00,FF]\n",
        "nAmount=HFFFFFFFD;\trange=[FFFFFFFB,000A]\nnNodes_0=H0010;\trange=[0000,00FF]\n",
        "nAmount=HFFFFFFFD;\trange=[FFFFFFFB,0000000A]\nnNodes_0=H00000010;\trange=[00000000,000000FF]\n"};
    for (int nMode = 1; nMode <= 3; ++nMode) {
        SCOPED_TRACE(nMode);
        CRoot source, target;
        source.middle.inner.nAmount = -3;
        g_nParamPrintMode = nMode;
        const std::string sText = Saved(source);
        g_nParamPrintMode = 0;
        EXPECT_NE(sText.find(vLines[nMode]), std::string::npos) << sText;
        TextStream stream(sText.substr(sizeof("\nCRoot\n") - 1));
        EXPECT_TRUE(target.LoadParameterStream(stream));
        EXPECT_EQ(Saved(target), Saved(source));
    }
}

TEST(ParameterSave, FileRoundTripGivesEqualValues)
{
    const std::string sPath = testing::TempDir() + "vkr_parameter_save_test_" + std::to_string(getpid()) + ".txt";
    CRoot source, target, fromText;
    source.nWide = -2147483647 - 1;
    source.middle.nShift = 8;
    source.middle.inner.nNodes[1] = 255;
    ASSERT_TRUE(source.SaveParameterFile(sPath.c_str()));
    EXPECT_TRUE(target.LoadParameterFile(sPath.c_str()));
    EXPECT_EQ(Saved(target), Saved(source));
    EXPECT_TRUE(fromText.LoadParameterBuffer(Saved(source).c_str(), nullptr));
    EXPECT_EQ(Saved(fromText), Saved(source));
    std::remove(sPath.c_str());
}

TEST(ParameterSave, ReportsWhatCannotBeWritten)
{
    const CRoot root;
    EXPECT_FALSE(root.SaveParameterStream(nullptr));
    EXPECT_FALSE(root.SaveParameterFile(nullptr));
    EXPECT_FALSE(root.SaveParameterFile((testing::TempDir() + "no/such/folder/file.txt").c_str()));
    if (std::FILE* pProbe = std::fopen("/dev/full", "wt")) {
        std::fclose(pProbe);
        EXPECT_FALSE(root.SaveParameterFile("/dev/full")) << "seen at the latest when the file is closed";
    }
}

}  // namespace
}  // namespace vkr
