#pragma once

#include <cstdint>
#include <vector>

namespace vkr::truth {

// What becomes of a row of light behind the lens: charge with its noise, clipped at white, and the curve of displays.
class Sensor {
public:
    // fGain: light to charge, white is 1. fNoise 0: none.
    Sensor(float fGain, float fNoise, uint32_t nSeed);

    // nPixels times LightMap::kChannels samples of light to grey values 0 .. 255, not rounded. y only chooses the
    // noise. pIndex is scratch of as many values.
    void ExposeRow(const float* pLight, int y, int nPixels, int32_t* pIndex, float* pGrey) const;

private:
    float m_fGain, m_fNoise;
    uint32_t m_nSeed;
    std::vector<float> m_vCurve;
};

// Two rows of R, G, B, unused in grey values to two rows of luma and one of Cb, Cr.
void StoreRowPair(const float* pUpper, const float* pLower, int nPixels, uint8_t* pUpperY, uint8_t* pLowerY,
                  uint8_t* pUV);

}  // namespace vkr::truth
