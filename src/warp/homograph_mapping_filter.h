#pragma once

#include <cstdint>

#include "algebra/matrix.h"
#include "foundation/image.h"
#include "parameters/filter.h"
#include "parameters/parameter_record.h"

namespace vkr {

// Parameters of the warp; none changes what it does.
// clang-format off
struct WarpParams {
    PARAM(bBicubicEnable,    0,   1, 1, "flag", "kept with the parameters; the warp is bilinear");
    PARAM(nBoundaryOption,   0,   1, 1, "choice", "kept with the parameters; the warp mirrors at the border");
    PARAM(nHomoGraphyOption, 0,   2, 0, "choice", "set by the warp itself: 1 from the first frame on");
    PARAM(mPatchSize,        0, 128, 8, "pixels", "kept with the parameters, nothing reads it");
};
// clang-format on

// Warps a frame or a picture through a homography. That of a frame is evaluated on a grid of 16-pixel cells only; every
// cell moves as a translation and a run of 8 luma samples shares one fractional position.
class CHomographMappingFilter : public CFilter, public WarpParams {
public:
    void SetFilterName() override;
    void RegisterParameters() override;

    // dst receives src warped, at src's size (even); homography takes destination pixels to source pixels. Bilinear in
    // float, truncated to 8 bits; positions outside are mirrored once at each border and then clamped, a position that
    // is not finite is sample 0. Sizes that are no multiple of 16 are warped as if padded to the next one (the last
    // column and row repeated, the borders are those of the padding). src and dst are two frames. Same bytes from any
    // number of threads. False when there was no memory, src is empty or homography is not 3 x 3.
    bool ProcessImage(const CYuvImage& src, CYuvImage& dst, const CMatrix& homography);

    // A picture of three channels into dst, of the size that dst has, pixel by pixel: see WarpImage.
    bool ProcessImage(const CImage& src, CImage& dst, const CMatrix& homography);
};

}  // namespace vkr
