#pragma once

#include "face/face_box.h"
#include "face/face_intensity.h"
#include "foundation/fixed_point.h"
#include "foundation/image.h"
#include "foundation/image_scope.h"

namespace vkr {

// Every temporary picture of one burst, empty at its start, released on every way out.
struct FlowTemporaries {
    CImage vAlignMasks[kMaxExposures] = {};         // 255 where the aligned frame covers the picture
    CImage vWorkFrames[kMaxExposures] = {};         // B, G, R at working size (half the frame)
    CShortImage vDetailLayers[kMaxExposures] = {};  // luma detail at frame size
    CImage m_SatuMask{};                            // blown out in the darkest exposure, working size
    CImage vWeights[kMaxLevels] = {};               // one channel per exposure, Q7
    CShortImage vCoefs[kMaxLevels] = {};            // one channel per exposure, Q7; filled for ghost regions
    CImage m_Level0Weights{};                       // copy of level 0 for the edge layer
    CShortImage m_EdgeLayer{};                      // fused luma detail at frame size
    CShortImage m_Fused{};                          // 3 base and 3 high-frequency components
    CImage m_Tone{};                                // B, G, R at working size, later Y and chroma
    CYuvImage m_Upscaled{};                         // the tone picture at frame size
    bool bGhosts = false;                           // the engine's ghost map is this burst's
    FaceBox m_FaceBox;                              // working pixels; all zero: no face
    MeasuredFace m_Face;                            // levels of its skin, zero until they are measured

private:
    ImageScope<CImage[kMaxExposures]> m_Scope1{vAlignMasks};
    ImageScope<CImage[kMaxExposures]> m_Scope2{vWorkFrames};
    ImageScope<CShortImage[kMaxExposures]> m_Scope3{vDetailLayers};
    ImageScope<CImage> m_Scope4{m_SatuMask};
    ImageScope<CImage[kMaxLevels]> m_Scope5{vWeights};
    ImageScope<CShortImage[kMaxLevels]> m_Scope6{vCoefs};
    ImageScope<CImage> m_Scope7{m_Level0Weights};
    ImageScope<CShortImage> m_Scope8{m_EdgeLayer};
    ImageScope<CShortImage> m_Scope9{m_Fused};
    ImageScope<CImage> m_Scope10{m_Tone};
    ImageScope<CYuvImage> m_Scope11{m_Upscaled};
};

}  // namespace vkr
