#include "face/model_container.h"

#include <gtest/gtest.h>

#include <random>

#include "face/container_bytes.h"

namespace vkr {
namespace {

// The sections of a file held in a block of just its size, so that the sanitizers see a read beyond it.
bool Parse(const std::string& sFile, ModelContainer& container, std::vector<uint8_t>& vHeld)
{
    vHeld.assign(sFile.begin(), sFile.end());
    vHeld.shrink_to_fit();
    return ParseModelContainer(vHeld.data(), vHeld.size(), container);
}

bool IsContainer(const std::string& sFile)
{
    ModelContainer container{};
    std::vector<uint8_t> vHeld;
    if (!Parse(sFile, container, vHeld)) return false;
    HeapBuffer<uint8_t> plain;
    DecipherSection(container.model, plain);
    DecipherSection(container.second, plain);
    return true;
}

TEST(ModelContainer, GivesBackSectionsOfAllSizes)
{
    for (const size_t nSize : {8, 64, 19992, 20000, 20001, 20013, 50000}) {
        SCOPED_TRACE(nSize);
        std::mt19937 rng(static_cast<uint32_t>(nSize));
        std::string sModel(nSize, '\0');
        for (char& c : sModel) c = static_cast<char>(rng());
        ModelContainer container{};
        std::vector<uint8_t> vHeld;
        ASSERT_TRUE(Parse(ContainerBytes(sModel), container, vHeld));
        HeapBuffer<uint8_t> plain;
        ASSERT_TRUE(DecipherSection(container.model, plain));
        EXPECT_EQ(sModel, std::string(plain.Data(), plain.Data() + plain.Count()));
    }
}

// 19999 bytes are ciphered as far as they are whole blocks, one byte more all of them.
TEST(ModelContainer, TheLastBytesOfAShortSectionAreZero)
{
    const std::vector<uint8_t> vCiphered(19999, 0x77);
    HeapBuffer<uint8_t> plain;
    ASSERT_TRUE(DecipherSection({vCiphered.data(), vCiphered.size()}, plain));
    EXPECT_NE(std::vector<uint8_t>(8, 0), std::vector<uint8_t>(plain.Data() + 19984, plain.Data() + 19992));
    for (size_t i = 19992; i < 19999; ++i) EXPECT_EQ(0, plain[i]) << i;
    EXPECT_FALSE(DecipherSection({vCiphered.data(), 7}, plain));
}

TEST(ModelContainer, RefusesWrongTables)
{
    const std::string sFile = ContainerBytes(std::string(40, 'm'));
    ASSERT_TRUE(IsContainer(sFile));
    for (size_t nCut = 0; nCut < sFile.size(); ++nCut) EXPECT_FALSE(IsContainer(sFile.substr(0, nCut))) << nCut;

    const int32_t nBody = static_cast<int32_t>(sFile.size()) - 68;
    const struct {
        int nWord;
        int32_t nValue;
        bool bGood;
    } vCases[] = {
        {0, 2, false},  {0, -1, false},        {1, -8, false}, {1, INT32_MIN, false}, {1, nBody, false},
        {1, 27, false}, {1, INT32_MAX, false}, {2, -1, false}, {2, INT32_MIN, false}, {2, INT32_MAX, false},
        {2, 41, false}, {2, 39, true},         {5, 28, false}, {5, 67, false},        {5, nBody + 1, false},
        {5, -1, false}, {6, -8, false},        {6, 25, false}, {6, INT32_MAX, false}, {6, 0, true},
    };
    for (const auto& wrong : vCases) {
        EXPECT_EQ(wrong.bGood, IsContainer(WithTableWord(sFile, wrong.nWord, wrong.nValue)))
            << "word " << wrong.nWord << " = " << wrong.nValue;
    }
}

// Random tables over a small body: whatever is accepted is deciphered, under the sanitizers.
TEST(ModelContainer, ReadsNothingOutsideTheFile)
{
    std::mt19937 rng(5);
    int nAccepted = 0;
    for (int i = 0; i < 20000; ++i) {
        std::string sFile(68 + rng() % 96, '\1');
        for (int nWord = 0; nWord < 7; ++nWord) {
            const int32_t nValue = rng() % 8 == 0 ? static_cast<int32_t>(rng()) : static_cast<int32_t>(rng() % 80);
            if (sFile.size() >= 72 + 4U * nWord) sFile = WithTableWord(sFile, nWord, nValue);
        }
        nAccepted += IsContainer(sFile);
    }
    EXPECT_GT(nAccepted, 50);
}

}  // namespace
}  // namespace vkr
