#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "flow/enciphered_parameters.h"
#include "foundation/cipher.h"
#include "interface/engine_lifecycle.h"
#include "support/parameter_file.h"
#include "support/quiet_lines.h"
#include "vkrHdr.h"

namespace vkr {
namespace {

class EncipheredFile : public testing::Test {
protected:
    void TearDown() override
    {
        vkrHdrUninit();
        std::remove(m_sPath.c_str());
    }

    static std::string DefaultText()
    {
        const ParameterFile file({{"nTopLevel", 3}});
        std::ifstream in(file.Path(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    int Init(std::string sText)
    {
        uint8_t* pText = reinterpret_cast<uint8_t*>(sText.data());
        DecipherBuffer(pText, pText, static_cast<int>(sText.size()), kParameterFileKey, 0);
        return InitBytes(std::string("\1\2\3\4", 4) + std::string(32, '\xEE') + sText);
    }
    int InitBytes(const std::string& sBytes)
    {
        std::ofstream(m_sPath, std::ios::binary) << sBytes;
        m_lines.Text().clear();
        return vkrHdrInit({m_sPath.c_str(), nullptr, 0});
    }
    static std::string Version()
    {
        const char* pVersion = vkrHdrGetVersion()->pConfigVersion;
        return pVersion == nullptr ? "none" : pVersion;
    }

    LinesScope m_lines;
    const std::string m_sPath = testing::TempDir() + "vkr_enciphered_" + std::to_string(getpid()) + ".bin";
};

// Texts of every remainder of a block.
TEST_F(EncipheredFile, LoadsAndShowsItsVersion)
{
    for (size_t nMore = 0; nMore < 8; ++nMore) {
        ASSERT_EQ(0, Init(DefaultText() + "\ncfg_version=12.34.5;" + std::string(nMore, '\n')));
        EXPECT_EQ("12.34.5", Version());
        EXPECT_EQ(3, gVKRAlgoPool.load()->nTopLevel);
        EXPECT_EQ(0, vkrHdrUninit());
    }
    ASSERT_EQ(0, Init(DefaultText()));
    EXPECT_TRUE(m_lines.Contains("not found"));
    EXPECT_EQ("0.0.0.0", Version());
}

// The value overwrites "0.0.0.0" from its start and is not terminated; what is too long is cut to its place.
TEST_F(EncipheredFile, VersionsOfOtherLengths)
{
    ASSERT_EQ(0, Init(DefaultText() + "\ncfg_version=9.8;\n"));
    EXPECT_EQ("9.8.0.0", Version());
    vkrHdrUninit();
    ASSERT_EQ(0, Init(DefaultText() + "\ncfg_version=" + std::string(100, 'v')));
    EXPECT_EQ(std::string(64, 'v'), Version());
    vkrHdrUninit();
    ASSERT_EQ(0, Init(DefaultText() + "\ncfg_version"));
    EXPECT_EQ("0.0.0.0", Version());
    vkrHdrUninit();
    ASSERT_EQ(0, Init(DefaultText() + "\ncfg_version=7.7.7.7;" + std::string(128, '\n')));
    EXPECT_EQ("0.0.0.0", Version());
}

TEST_F(EncipheredFile, FailuresLeaveNoEngine)
{
    std::string sWrongName = DefaultText();
    sWrongName.replace(sWrongName.find("nTopLevel"), 9, "nSuchName");
    for (const std::string& sText : {sWrongName, std::string("garbage that is none"), std::string(8, '\0')}) {
        EXPECT_EQ(-1, Init(sText));
        EXPECT_TRUE(m_lines.Contains("Load from decypted parameter file error\n")) << sText;
        EXPECT_EQ(nullptr, gVKRAlgoPool.load());
    }
    for (const size_t nText : {size_t{0}, size_t{7}}) {
        EXPECT_EQ(-1, Init(std::string(nText, 'x')));
        EXPECT_TRUE(m_lines.Contains("Load parameter file error\n"));
        EXPECT_EQ(nullptr, gVKRAlgoPool.load());
    }
    for (const size_t nBytes : {size_t{4}, size_t{35}, kEncipheredMost + 1}) {  // cut inside the head, and too large
        SCOPED_TRACE(nBytes);
        EXPECT_EQ(-1, InitBytes(std::string("\1\2\3\4", 4) + std::string(nBytes - 4, 'x')));
        EXPECT_TRUE(m_lines.Contains("Load parameter file error\n"));
        EXPECT_EQ(nullptr, gVKRAlgoPool.load());
    }
    EXPECT_EQ(-1, InitBytes("\1\2\3"));  // no magic: a readable file that does not parse, which keeps the engine
    EXPECT_NE(nullptr, gVKRAlgoPool.load());
}

}  // namespace
}  // namespace vkr
