#include "pictures/picture_shift.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "pictures/colour_convert.h"
#include "run_tool.h"
#include "second_attempt/borrowed_border.h"
#include "second_attempt/moved_frame.h"

namespace vkr::tool {

namespace {

constexpr int kWidth = 320, kHeight = 240, kMargin = 40;

// A window of the drawn scene's exposure nExposure.
Raster Window(int nExposure, int nX, int nY)
{
    static const std::vector<Frame> vScene = DrawnFrames(kWidth + 2 * kMargin, kHeight + 2 * kMargin);
    const Frame& frame = vScene[static_cast<size_t>(nExposure)];
    Raster window;
    window.Resize(kWidth, kHeight, 1);
    for (int y = 0; y < kHeight; ++y) {
        const auto row = frame.vY.begin() + static_cast<std::ptrdiff_t>(kMargin + nY + y) * frame.nWidth;
        std::copy_n(row + kMargin + nX, kWidth, window.Row(y));
    }
    return window;
}

}  // namespace

TEST(FindShift, SeesThroughTheExposure)
{
    const Shift vShifts[] = {{0, 0}, {1, -1}, {-7, 12}, {33, 4}, {-36, -30}};
    for (const Shift shift : vShifts) {
        const Shift found = FindShift(Window(0, 0, 0), Window(1, -shift.nX, -shift.nY));
        EXPECT_EQ(shift.nX, found.nX);
        EXPECT_EQ(shift.nY, found.nY);
    }
}

TEST(FindShift, StaysWhereNothingTells)
{
    for (const int nSide : {1, 7, 8, 130}) {
        Raster flat;
        flat.Resize(nSide, nSide, 1);
        const Shift found = FindShift(flat, flat);
        EXPECT_EQ(0, found.nX) << nSide;
        EXPECT_EQ(0, found.nY) << nSide;
    }
}

TEST(LiesWell, TellsAShiftAndATurnFromTheSamePlace)
{
    const Raster dark = Window(0, 0, 0), bright = Window(2, 0, 0);
    EXPECT_TRUE(LiesWell(dark, bright));
    EXPECT_TRUE(LiesWell(dark, Window(2, 1, 1)));
    EXPECT_FALSE(LiesWell(Window(1, 0, 0), Window(2, 9, -6)));
    Raster turned = Window(1, 0, 0);
    std::reverse(turned.vSamples.begin(), turned.vSamples.end());
    EXPECT_FALSE(LiesWell(Window(1, 0, 0), turned));
}

// Every sample of both planes from where it stood; outside, the picture mirrored at its border sample.
TEST(MovedFrame, MovesBothPlanesTogether)
{
    Frame frame;
    frame.Resize(10, 6);
    for (size_t i = 0; i < frame.vY.size(); ++i) frame.vY[i] = static_cast<uint8_t>(i);
    for (size_t i = 0; i < frame.vUV.size(); ++i) frame.vUV[i] = static_cast<uint8_t>(100 + i);
    const Frame moved = MovedFrame(frame, {4, -2});
    const int vX[] = {4, 3, 2, 1, 0, 1, 2, 3, 4, 5}, vY[] = {2, 3, 4, 5, 4, 3};
    const int vPairs[] = {2, 1, 0, 1, 2}, vPairRows[] = {1, 2, 1};
    for (int i = 0; i < 60; ++i) EXPECT_EQ(10 * vY[i / 10] + vX[i % 10], moved.vY[static_cast<size_t>(i)]);
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(100 + 10 * vPairRows[i / 10] + 2 * vPairs[i % 10 / 2] + i % 2, moved.vUV[static_cast<size_t>(i)]);
    }
}

// The neighbour stands 2 to the right and 2 up, at levels that a curve takes to the frame's. What the frame does not
// show is borrowed at the levels and the places that the frame would have given it. Periods divide what both show.
TEST(BorrowBorder, ContinuesTheFrame)
{
    constexpr int w = 40, h = 30;
    const Shift shift = {4, -2};
    const auto luma = [](int x, int y) { return 10 + (x + 9) % 9 * 10 + (y + 4) % 4 * 2; };
    const auto chroma = [](int x, int y, int c) { return 20 + (x + 9) % 9 * 8 + (y + 7) % 7 + 100 * c; };
    Frame frame, neighbour;
    for (Frame* pFrame : {&frame, &neighbour}) pFrame->Resize(w, h);
    for (int i = 0; i < w * h; ++i) {
        const int x = i % w, y = i / w;
        const bool bShown = x >= shift.nX && y < h + shift.nY;
        frame.vY[static_cast<size_t>(i)] = static_cast<uint8_t>(bShown ? luma(x, y) : 1);
        neighbour.vY[static_cast<size_t>(i)] = static_cast<uint8_t>(20 + 2 * luma(x - 2, y + 2));
    }
    for (int i = 0; i < w * h / 2; ++i) {
        const int x = i % w / 2, y = i / w;
        const bool bShown = x >= shift.nX / 2 && y < (h + shift.nY) / 2;
        frame.vUV[static_cast<size_t>(i)] = static_cast<uint8_t>(bShown ? chroma(x, y, i % 2) : 1);
        neighbour.vUV[static_cast<size_t>(i)] = static_cast<uint8_t>(10 + chroma(x - 1, y + 1, i % 2));
    }
    BorrowBorder(frame, shift, neighbour, InverseOf({1, 0, -2, 0, 1, 2, 0, 0, 1}));
    for (int i = 0; i < w * (h - 2); ++i) {  // past its last columns and above its first rows the neighbour ends
        const int x = i % (w - 2), y = 2 + i / w;
        ASSERT_EQ(luma(x, y), frame.vY[static_cast<size_t>(y * w + x)]) << x << " " << y;
        ASSERT_EQ(chroma(x / 2, y / 2, i % 2), frame.vUV[static_cast<size_t>(y / 2 * w + x / 2 * 2 + i % 2)]);
    }
}

}  // namespace vkr::tool
