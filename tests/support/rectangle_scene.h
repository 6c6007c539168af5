#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "support/random_image.h"

namespace vkr {

// A flat picture full of random rectangles, from which frames of a burst are cut at chosen places and brightnesses.
class RectangleScene {
public:
    static constexpr int kWidth = 720, kHeight = 600;

    explicit RectangleScene(unsigned nSeed) : m_vCanvas(kWidth * kHeight, 90)
    {
        std::mt19937 rng(nSeed);
        for (int i = 0; i < 900; ++i) {
            const int w = 5 + static_cast<int>(rng() % 40), h = 5 + static_cast<int>(rng() % 40);
            const int x = static_cast<int>(rng() % (kWidth - w)), y = static_cast<int>(rng() % (kHeight - h));
            const uint8_t nGrey = static_cast<uint8_t>(20 + rng() % 200);
            for (int j = y; j < y + h; ++j) std::fill_n(&m_vCanvas[j * kWidth + x], w, nGrey);
        }
    }

    // The w x h part whose top left corner is (x, y), times fGain; chroma follows luma.
    void Cut(int x, int y, int w, int h, double fGain, CYuvImage& frame) const
    {
        ASSERT_TRUE(frame.Allocate(w, h));
        const auto sample = [&](int i, int j) {
            return static_cast<uint8_t>(std::min(255.0, m_vCanvas[(y + j) * kWidth + x + i] * fGain));
        };
        for (int j = 0; j < h; ++j) {
            for (int i = 0; i < w; ++i) frame.RowY(j)[i] = sample(i, j);
        }
        for (int j = 0; j < h / 2; ++j) {
            for (int i = 0; i < w; ++i) frame.RowUV(j)[i] = static_cast<uint8_t>(sample(i & ~1, 2 * j) / (1 + (i & 1)));
        }
    }

private:
    std::vector<uint8_t> m_vCanvas;
};

}  // namespace vkr
