#include "interface/logo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "foundation/image_scope.h"

namespace vkr {
namespace {

TEST(Logo, IsADrawingOnWhite)
{
    const uint8_t* pFirst = LogoBitmap();
    const uint8_t* pEnd = pFirst + kLogoWidth * kLogoHeight;
    EXPECT_EQ(27, *std::min_element(pFirst, pEnd));
    EXPECT_EQ(255, *std::max_element(pFirst, pEnd));
    EXPECT_TRUE(std::all_of(pFirst, pFirst + kLogoWidth, [](uint8_t v) { return v == 255; }));
    EXPECT_GT(std::count(pFirst, pEnd, 255), kLogoWidth * kLogoHeight / 2);
}

// Sizes without room, with room for a part, for exactly all and for more: the mean of luma and logo where it lies, all
// else as it was.
TEST(Logo, IsCutAtTheEdges)
{
    struct Case {
        int w, h;
    };
    for (const Case size :
         {Case{50, 200}, {500, 50}, {2, 2}, {52, 52}, {100, 100}, {464, 190}, {466, 192}, {600, 300}}) {
        SCOPED_TRACE(testing::Message() << size.w << "x" << size.h);
        CYuvImage picture{};
        ImageScope<CYuvImage> scope(picture);
        ASSERT_TRUE(picture.Allocate(size.w, size.h));
        const int nBytes = size.w * size.h * 3 / 2;
        std::vector<uint8_t> vBefore(nBytes);
        for (int i = 0; i < nBytes; ++i) vBefore[i] = picture.pBuffer[i] = static_cast<uint8_t>(i * 7 + i / 13);
        BlendLogo(picture);
        for (int i = 0; i < nBytes; ++i) {
            const int x = i % size.w - 50, y = i / size.w - 50;
            const bool bLogo = i < size.w * size.h && x >= 0 && x < 415 && y >= 0 && y < 141;
            const int nWant = bLogo ? (LogoBitmap()[y * 415 + x] + vBefore[i]) >> 1 : vBefore[i];
            ASSERT_EQ(nWant, picture.pBuffer[i]) << x << ", " << y;
        }
    }
}

}  // namespace
}  // namespace vkr
