#pragma once

#include <cstdint>
#include <vector>

#include "truth/light_map.h"
#include "truth/octave_texture.h"
#include "truth/plane_homography.h"

namespace vkr::truth {

struct SceneParams {
    int nWidth = 640, nHeight = 480;
    uint32_t nSeed = 0;
    float fStep = 0;  // from one place of the disc to the next, in radii; 0: drawn with the rest, 0.8 .. 1.8
};

// A textured gradient in linear light, and a disc with a texture of its own that goes over it on a straight line: one
// place for each exposure. Sizes go by the width. 1 is the white of the middle exposure.
class GhostScene {
public:
    static constexpr int kPlaces = 3;
    static constexpr unsigned kNowhere = 0, kEverywhere = (1U << kPlaces) - 1;  // sets of places, a bit each

    explicit GhostScene(const SceneParams& params);

    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    float Radius() const { return m_fRadius; }
    Point Place(int k) const { return m_vPlaces[k]; }

    // How far (x, y) is from the centre of place k, in radii.
    double Distance(int k, double x, double y) const;

    struct Scratch {
        std::vector<float> vSums, vStops;
    };

    // Row y with a disc at each of nPlaces: LightMap::kChannels floats a pixel, of which the fourth is not used.
    void LightRow(int y, unsigned nPlaces, Scratch& scratch, float* pLight) const;

private:
    void PaintDisc(Point place, int y, Scratch& scratch, float* pLight) const;

    int m_nWidth, m_nHeight;
    float m_fMiddle, m_fAcross, m_fDown;  // stops of the gradient: in the middle, per pixel
    float m_fContrast, m_fDiscContrast;   // times what the textures have
    float m_fRadius;
    float m_vDisc[LightMap::kChannels];  // light
    Point m_vPlaces[kPlaces];
    OctaveTexture m_texture, m_discTexture;
};

}  // namespace vkr::truth
