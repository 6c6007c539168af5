#include "tone/edge_restore.h"

#include <gtest/gtest.h>

#include "primitives/gaussian_pyramid.h"
#include "support/for_threads.h"
#include "support/random_image.h"

namespace vkr {
namespace {

TEST(AddEdge, ClampsTheSum)
{
    TestYuvImage frame;
    TestShortImage edge;
    ASSERT_TRUE(frame.Allocate(4, 2));
    FillConstant(edge, 4, 2, 1, 0);
    const uint8_t vLuma[8] = {30, 230, 10, 10, 0, 255, 100, 77};
    const int16_t vEdge[8] = {-40, 40, 32767, -32768, 255, -255, -1, 0};
    std::copy(vLuma, vLuma + 8, frame.pY);
    std::fill_n(frame.pUV, 4, uint8_t{99});
    std::copy(vEdge, vEdge + 8, edge.pData);
    AddEdge(frame, edge, frame);  // in place
    EXPECT_EQ(std::vector<uint8_t>(frame.pY, frame.pY + 8), (std::vector<uint8_t>{0, 255, 255, 0, 255, 0, 99, 77}));
    EXPECT_EQ(frame.pUV[3], 99);
}

TEST(AddEdge, IsTheSameFromAnyTeamAtEveryWidth)
{
    std::mt19937 rng(76);
    for (int w = 2; w <= 70; w += 2) {
        TestYuvImage upscaled;
        TestShortImage edge;
        ASSERT_TRUE(upscaled.Allocate(w, 6));
        const auto vLuma = RandomRow<uint8_t>(rng, static_cast<size_t>(w) * 6, 0, 255);
        std::copy(vLuma.begin(), vLuma.end(), upscaled.pY);
        FillRandom(rng, edge, w, 6, 1, -300, 300);
        ForThreads([&](int) {
            TestYuvImage output;
            ASSERT_TRUE(output.Allocate(w, 6));
            std::fill_n(output.pBuffer, static_cast<size_t>(w) * 9, uint8_t{0x5A});
            AddEdge(upscaled, edge, output);
            for (size_t i = 0; i < vLuma.size(); ++i) {
                ASSERT_EQ(output.pY[i], std::min(std::max(vLuma[i] + edge.pData[i], 0), 255)) << w << " " << i;
            }
            EXPECT_EQ(output.pUV[0], 0x5A);
        });
    }
}

TEST(AddEdge, LeavesPicturesOfAnotherSizeAlone)
{
    TestYuvImage frame;
    TestShortImage edge;
    ASSERT_TRUE(frame.Allocate(4, 2));
    std::fill_n(frame.pY, 8, uint8_t{7});
    FillConstant(edge, 4, 3, 1, 5);
    AddEdge(frame, edge, frame);
    EXPECT_EQ(frame.pY[0], 7);
}

TEST(SplitAndUpscale, DoublesLumaAndKeepsChroma)
{
    std::mt19937 rng(77);
    for (const PyramidParams& pyramid :
         {PyramidParams{0, 0}, PyramidParams{0, 1}, PyramidParams{1, 0}, PyramidParams{1, 1}}) {
        TestImage picture;
        TestYuvImage frame;
        FillRandom(rng, picture, 13, 7, 3, 0, 255);
        ASSERT_TRUE(SplitAndUpscale(picture, pyramid, frame));
        ASSERT_EQ(frame.nWidth, 26);
        ASSERT_EQ(frame.nHeight, 14);
        std::vector<uint8_t> vLuma, vWant(26 * 14);
        for (size_t i = 0; i < 13 * 7; ++i) {
            vLuma.push_back(picture.pData[3 * i]);
            EXPECT_EQ(frame.pUV[2 * i], picture.pData[3 * i + 1]);
            EXPECT_EQ(frame.pUV[2 * i + 1], picture.pData[3 * i + 2]);
        }
        const bool bDither = pyramid.bUpScaleImageDither != 0;
        if (pyramid.bPyramidFilter) {
            ASSERT_TRUE(CGaussianPyramid2::UpScaleImage(vLuma.data(), vWant.data(), 13, 7, 1, bDither));
        } else {
            ASSERT_TRUE(CGaussianPyramid2::UpScaleImageFast(vLuma.data(), vWant.data(), 13, 7, 1));
        }
        EXPECT_EQ(std::vector<uint8_t>(frame.pY, frame.pY + vWant.size()), vWant);
    }
}

TEST(SplitAndUpscale, LeavesZerosForOneRowInThePlainForm)
{
    TestImage picture;
    TestYuvImage frame;
    FillConstant(picture, 5, 1, 3, 200);
    ASSERT_TRUE(frame.Allocate(10, 2));
    std::fill_n(frame.pBuffer, 30, uint8_t{1});
    ASSERT_TRUE(SplitAndUpscale(picture, PyramidParams{}, frame));
    EXPECT_EQ(std::vector<uint8_t>(frame.pY, frame.pY + 20), std::vector<uint8_t>(20, 0));
    EXPECT_EQ(std::vector<uint8_t>(frame.pUV, frame.pUV + 10), std::vector<uint8_t>(10, 200));
}

}  // namespace
}  // namespace vkr
