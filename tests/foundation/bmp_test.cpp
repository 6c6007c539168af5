#include "foundation/bmp.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "support/random_image.h"

namespace vkr {
namespace {

using Bytes = std::vector<uint8_t>;

const std::string& Path()
{
    static const std::string sPath = testing::TempDir() + "vkr_bmp_test_" + std::to_string(getpid()) + ".bmp";
    return sPath;
}

// The file's bytes; it is gone afterwards.
Bytes TakeFile()
{
    Bytes vBytes;
    if (std::FILE* pFile = std::fopen(Path().c_str(), "rb")) {
        for (int c = std::fgetc(pFile); c != EOF; c = std::fgetc(pFile)) vBytes.push_back(static_cast<uint8_t>(c));
        std::fclose(pFile);
    }
    std::remove(Path().c_str());
    return vBytes;
}

const Bytes kHeader3x2 = {'B', 'M', 78, 0, 0, 0, 0,  0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0,  // 12 * 2 + 54 bytes
                          3,   0,   0,  0, 2, 0, 0,  0, 1, 0, 24, 0, 0, 0, 0,  0, 0, 0,
                          0,   0,   75, 0, 0, 0, 75, 0, 0, 0, 0,  0, 0, 0, 0,  0, 0, 0};

Bytes Joined(std::initializer_list<Bytes> parts)
{
    Bytes vAll;
    for (const Bytes& vPart : parts) vAll.insert(vAll.end(), vPart.begin(), vPart.end());
    return vAll;
}

TEST(Bmp, ColourRowsInBothOrders)
{
    TestImage image;
    ASSERT_TRUE(image.Allocate(3, 2));
    for (int i = 0; i < 18; ++i) image.pData[i] = static_cast<uint8_t>(i + 1);
    const Bytes vTop = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 0}, vBottom = {10, 11, 12, 13, 14, 15, 16, 17, 18, 0, 0, 0};
    ASSERT_TRUE(SaveBmp(image, Path().c_str(), true));
    EXPECT_EQ(TakeFile(), Joined({kHeader3x2, vBottom, vTop}));
    ASSERT_TRUE(SaveBmp(image, Path().c_str(), false));
    EXPECT_EQ(TakeFile(), Joined({kHeader3x2, vTop, vBottom}));
}

TEST(Bmp, GrayIsWrittenThreeTimesBottomUp)
{
    TestImage image;
    ASSERT_TRUE(image.AllocateGray(3, 2));
    for (int i = 0; i < 6; ++i) image.pData[i] = static_cast<uint8_t>(250 + i);
    ASSERT_TRUE(SaveBmpGray(image, Path().c_str()));
    EXPECT_EQ(TakeFile(), Joined({kHeader3x2,
                                  {253, 253, 253, 254, 254, 254, 255, 255, 255, 0, 0, 0},
                                  {250, 250, 250, 251, 251, 251, 252, 252, 252, 0, 0, 0}}));
}

TEST(Bmp, SizesAreLittleEndian)
{
    TestImage image;
    FillConstant(image, 300, 259, 3, 5);
    ASSERT_TRUE(SaveBmp(image, Path().c_str(), true));
    const Bytes vFile = TakeFile();
    ASSERT_EQ(vFile.size(), 900U * 259U + 54U);  // 233154 = 0x038EC2
    EXPECT_EQ(Bytes(vFile.begin() + 2, vFile.begin() + 6), (Bytes{0xC2, 0x8E, 3, 0}));
    EXPECT_EQ(Bytes(vFile.begin() + 18, vFile.begin() + 26), (Bytes{0x2C, 1, 0, 0, 3, 1, 0, 0}));
}

TEST(Bmp, RefusesWhatItCanNotWrite)
{
    TestImage image, gray, empty;
    FillConstant(image, 3, 2, 3, 1);
    FillConstant(gray, 3, 2, 1, 1);
    EXPECT_FALSE(SaveBmp(empty, Path().c_str(), true));
    EXPECT_FALSE(SaveBmp(gray, Path().c_str(), true));
    EXPECT_FALSE(SaveBmpGray(image, Path().c_str()));
    EXPECT_TRUE(TakeFile().empty());
    EXPECT_FALSE(SaveBmp(image, (testing::TempDir() + "no/such/folder/a.bmp").c_str(), true));
    EXPECT_FALSE(SaveBmp(image, nullptr, true));
    if (std::FILE* pProbe = std::fopen("/dev/full", "wb")) {
        std::fclose(pProbe);
        EXPECT_FALSE(SaveBmp(image, "/dev/full", true));
    }
}

}  // namespace
}  // namespace vkr
