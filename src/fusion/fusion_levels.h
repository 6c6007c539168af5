#pragma once

#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "primitives/doubled_rows.h"
#include "primitives/pyramid_levels.h"

namespace vkr {

// The pictures of a pyramid fusion, released with it. The exposures stay side by side, each a picture of its own. Of
// their pyramids only the level at work and the next coarser one stand at a time: a Laplacian level is blended while it
// is made, and only its blend is kept.
class FusionLevels {
public:
    FusionLevels() = default;
    ~FusionLevels();
    FusionLevels(const FusionLevels&) = delete;
    FusionLevels& operator=(const FusionLevels&) = delete;

    // Level 0 is the frames themselves, which must live on. False unless they are pictures B, G, R of one size.
    bool TakeFrames(const CImage* vFrames, int nExposureNum);

    // Halves the level at work into the next coarser one.
    bool HalveLevel(const PyramidParams& pyramid);

    // The next coarser level becomes the level at work.
    void GoCoarser();

    // Gives back the levels of the exposures; from then on only what is fused stands.
    void DropExposures();

    int ExposureNum() const { return m_nExposureNum; }
    int Width() const { return m_vAtWork[0]->nWidth; }
    int Height() const { return m_vAtWork[0]->nHeight; }
    const CImage& AtWork(int k) const { return *m_vAtWork[k]; }
    const CImage& Coarser(int k) const { return m_vCoarser[k]; }

    DoubledRows m_vUp[kMaxExposures];          // of the next coarser level
    CShortImage m_vDetail[kMaxLevels] = {};    // fused Laplacian levels
    CShortImage m_Fused = {}, m_FusedUp = {};  // the fused picture, from the top level down, and doubled

private:
    int m_nExposureNum = 0;
    const CImage* m_vAtWork[kMaxExposures] = {};
    CImage m_vFiner[kMaxExposures] = {}, m_vCoarser[kMaxExposures] = {};
};

}  // namespace vkr
