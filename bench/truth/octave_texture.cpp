#include "truth/octave_texture.h"

#include <algorithm>
#include <utility>

#include "foundation/parallel_rows.h"
#include "scene/scene_math.h"

namespace vkr::truth {

namespace {

constexpr float kContrast = 0.5f;  // stops either way; the spline leaves about a quarter of it as deviation
constexpr int kCoarsest = 8;       // values across the coarsest grid, at least

}  // namespace

OctaveTexture::OctaveTexture(int w, int h, uint32_t nSeed) : m_nSeed(nSeed), m_half{}
{
    int nOctaves = 1;
    while (w >> (nOctaves + 1) >= kCoarsest) ++nOctaves;
    const auto side = [](int n, int nOctave) { return (n >> nOctave) + 2; };
    Grid grid{side(w, nOctaves), side(h, nOctaves), {}};
    grid.vValues.assign(static_cast<size_t>(grid.nWidth) * static_cast<size_t>(grid.nHeight), 0);
    for (int y = 0; y < grid.nHeight; ++y) {
        AddNoise(nOctaves, y, grid.nWidth, kContrast, &grid.vValues[static_cast<size_t>(y * grid.nWidth)]);
    }
    for (int i = nOctaves - 1; i >= 1; --i) {
        Grid finer{side(w, i), side(h, i), {}};
        finer.vValues.resize(static_cast<size_t>(finer.nWidth) * static_cast<size_t>(finer.nHeight));
        std::vector<std::vector<float>> vScratch(static_cast<size_t>(MaxTeam()));
        ParallelRows(finer.nHeight, [&](RowBlock rows) {
            for (int y = rows.nBegin; y < rows.nEnd; ++y) {
                float* pRow = finer.vValues.data() + static_cast<size_t>(y) * static_cast<size_t>(finer.nWidth);
                DoubledRow(grid, y, finer.nWidth, vScratch[static_cast<size_t>(rows.nIndex)], pRow);
                AddNoise(i, y, finer.nWidth, kContrast, pRow);
            }
        });
        grid = std::move(finer);
    }
    m_half = std::move(grid);
}

void OctaveTexture::Row(int y, int nWidth, std::vector<float>& scratch, float* pStops) const
{
    DoubledRow(m_half, y, nWidth, scratch, pStops);
    AddNoise(0, y, nWidth, 0.5f * kContrast, pStops);  // what a lens leaves of the finest detail
}

// Even places: (a + 6 b + c) / 8, odd ones: (b + c) / 2; the last value repeats beyond the border.
void OctaveTexture::DoubledRow(const Grid& grid, int y, int nWidth, std::vector<float>& scratch, float* pRow) const
{
    const auto row = [&](int i) {
        const size_t nRow = static_cast<size_t>(std::clamp(i, 0, grid.nHeight - 1));
        return grid.vValues.data() + nRow * static_cast<size_t>(grid.nWidth);
    };
    const float *pAbove = row(y / 2 - 1), *pHere = row(y / 2), *pBelow = row(y / 2 + 1);
    const int nCoarse = std::min(grid.nWidth, nWidth / 2 + 2);
    scratch.resize(static_cast<size_t>(grid.nWidth) + 2);
    float* pSums = scratch.data() + 1;
    for (int i = 0; i < nCoarse; ++i) {
        pSums[i] = y % 2 == 0 ? 0.125f * (pAbove[i] + 6 * pHere[i] + pBelow[i]) : 0.5f * (pHere[i] + pBelow[i]);
    }
    pSums[-1] = pSums[0];
    pSums[nCoarse] = pSums[nCoarse - 1];
    for (int i = 0; 2 * i < nWidth; ++i) pRow[2 * i] = 0.125f * (pSums[i - 1] + 6 * pSums[i] + pSums[i + 1]);
    for (int i = 0; 2 * i + 1 < nWidth; ++i) pRow[2 * i + 1] = 0.5f * (pSums[i] + pSums[i + 1]);
}

// One hash feeds four neighbours, a byte each.
void OctaveTexture::AddNoise(int nOctave, int y, int nWidth, float fContrast, float* pRow) const
{
    const uint32_t nRowSeed = scene::HashBits(static_cast<uint32_t>(y), static_cast<uint32_t>(nOctave), m_nSeed);
    const float fScale = fContrast / 127.5f;
    for (int x = 0; x < nWidth; x += 4) {
        uint32_t nBits = scene::HashBits(nRowSeed + static_cast<uint32_t>(x));
        for (int i = x; i < x + 4 && i < nWidth; ++i, nBits >>= 8) {
            pRow[i] += fScale * (static_cast<float>(nBits & 255) - 127.5f);
        }
    }
}

}  // namespace vkr::truth
