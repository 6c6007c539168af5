#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "truth/plane_homography.h"

namespace vkr::truth {

// A scene in linear light on a grid of pixels, and its value anywhere between them: the cubic B-spline with the grid's
// values as coefficients. That is one continuous picture, a little soft as behind a lens, which every frame of a burst
// samples at its own places, so that no frame is sharper or rather a copy of the grid.
//
// Drawn like nature's pictures: opaque shapes of all sizes over one another, each with its own tone and texture, the
// texture with the same contrast in every octave, under uneven light, with bright openings, lamps and deep shadows.
// Red, green, blue; 1 is the white of the middle exposure; some ten stops from the darkest to the brightest.
class LightMap {
public:
    static constexpr int kChannels = 4;  // R, G, B and one that is of use only while the map is drawn

    // nUnit: pixels of what counts as the scene's width, to which the sizes of shapes are in proportion. The same from
    // any number of threads. Keeps its buffer for the next scene.
    void Draw(int w, int h, int nUnit, uint32_t nSeed);

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    float* Row(int y) { return m_pLight.get() + RowOffset(y); }
    const float* Row(int y) const { return m_pLight.get() + RowOffset(y); }

    // Light at the places of the pixels (0, y) .. (nPixels - 1, y) of a picture, kChannels floats each; toMap takes its
    // pixels to the map's. Places outside are moved to the edge.
    void SampleRow(const Homography& toMap, int y, int nPixels, float* pLight) const;

    // Of the green light, from every 16th place of every 16th row.
    float MedianLight() const;

private:
    size_t RowOffset(int y) const { return static_cast<size_t>(y) * static_cast<size_t>(m_nWidth) * kChannels; }

    int m_nWidth = 0, m_nHeight = 0;
    size_t m_nCapacity = 0;  // floats
    std::unique_ptr<float[]> m_pLight;
};

}  // namespace vkr::truth
