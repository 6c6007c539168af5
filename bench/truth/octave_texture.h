#pragma once

#include <cstdint>
#include <vector>

namespace vkr::truth {

// Noise with the same contrast in every octave of sizes, from an eighth of the width down to the pixel: grids of random
// values, each doubled by the subdivision of the cubic B-spline before the next finer one is added. The finest grid is
// never stored; rows of it are made when they are asked for.
class OctaveTexture {
public:
    OctaveTexture(int w, int h, uint32_t nSeed);

    // Row y of the finest grid, in stops: mean 0, standard deviation about 0.4. scratch is the caller's own and grows
    // to what is needed.
    void Row(int y, int nWidth, std::vector<float>& scratch, float* pStops) const;

private:
    struct Grid {
        int nWidth, nHeight;
        std::vector<float> vValues;
    };

    Grid RandomGrid(int w, int h) const;
    void DoubledRow(const Grid& grid, int y, int nWidth, std::vector<float>& scratch, float* pRow) const;
    void AddNoise(int nOctave, int y, int nWidth, float fContrast, float* pRow) const;

    uint32_t m_nSeed;
    Grid m_half;  // the last but one
};

}  // namespace vkr::truth
