#include "foundation/cipher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>
#include <vector>

namespace vkr {
namespace {

std::string Hex(const std::vector<uint8_t>& vBytes)
{
    std::string s;
    for (const uint8_t v : vBytes) {
        s += "0123456789abcdef"[v >> 4];
        s += "0123456789abcdef"[v & 15];
    }
    return s;
}

std::vector<uint8_t> Cipher(const std::vector<uint8_t>& vIn, const std::string& sKey, int nDirection)
{
    std::vector<uint8_t> vOut(vIn.size(), 0xEE);
    EXPECT_EQ(1, DecipherBuffer(vOut.data(), vIn.data(), static_cast<int>(vIn.size()), static_cast<int>(sKey.size()),
                                reinterpret_cast<const uint8_t*>(sKey.data()), nDirection));
    return vOut;
}

// Known answers, by a second writing of the cipher whose tables were held against a standard program's answers.
TEST(Cipher, KnownAnswersAndBack)
{
    std::vector<uint8_t> vCount(32);
    std::iota(vCount.begin(), vCount.end(), uint8_t{0});
    const std::vector<uint8_t> vParameter = Cipher(vCount, kParameterFileKey.pText, 0);
    EXPECT_EQ("194a91ce02f7c18cd6540fbe544908a67ddd05fe133bfac74ffe4a80a15b0c29", Hex(vParameter));
    EXPECT_EQ("0ea9601018add07c767255f180f3d3044897a8b55df3f5a2e5c3c55a76b10de2",
              Hex(Cipher(vCount, kModelFileKey.pText, 0)));
    EXPECT_EQ("716af59a0392bc07c1d5d9d42910783a92531b1dea9f2e162f9ceefc5a448403", Hex(Cipher(vCount, "abc", 0)));
    EXPECT_EQ(vCount, Cipher(vParameter, kParameterFileKey.pText, 1));
    EXPECT_EQ(vCount, Cipher(vParameter, "ZQRTMNWXsomething else, longer than any key", 1));
    EXPECT_EQ(vCount, Cipher(Cipher(vCount, std::string("abc\0\0", 5), 0), "abc", 1));

    std::vector<uint8_t> vInPlace = vParameter;
    EXPECT_EQ(1, DecipherBuffer(vInPlace.data(), vInPlace.data(), 32, kParameterFileKey, 1));
    EXPECT_EQ(vCount, vInPlace);
}

TEST(Cipher, TouchesWholeBlocksOnly)
{
    uint8_t vOut[16];
    const uint8_t vIn[16] = {1, 2, 3};
    std::memset(vOut, 0xEE, sizeof(vOut));
    EXPECT_EQ(0, DecipherBuffer(vOut, vIn, 7, kModelFileKey, 1));
    EXPECT_EQ(0, DecipherBuffer(vOut, vIn, -8, kModelFileKey, 1));
    EXPECT_EQ(0, DecipherBuffer(nullptr, vIn, 8, kModelFileKey, 1));
    EXPECT_EQ(0, DecipherBuffer(vOut, nullptr, 8, kModelFileKey, 1));
    EXPECT_EQ(0, DecipherBuffer(vOut, vIn, 8, 13, nullptr, 1));
    EXPECT_EQ(16, std::count(vOut, vOut + 16, 0xEE));
    EXPECT_EQ(1, DecipherBuffer(vOut, vIn, 15, kModelFileKey, 1));
    EXPECT_EQ(8, std::count(vOut + 8, vOut + 16, 0xEE));
}

}  // namespace
}  // namespace vkr
