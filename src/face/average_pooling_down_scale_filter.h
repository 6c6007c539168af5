#pragma once

#include "foundation/image.h"
#include "parameters/filter.h"
#include "parameters/parameter_record.h"

namespace vkr {

// clang-format off
struct PoolingParams {
    PARAM(nDownScaleSize, 0, 16, 2, "pixels", "side of the block that becomes one pixel");
};
// clang-format on

// Makes pictures smaller by averaging blocks.
class CAveragePoolingDownScaleFilter : public CFilter, public PoolingParams {
public:
    void SetFilterName() override;
    void RegisterParameters() override;

    // dst receives src, a picture with nDim 3, in blocks of nSize x nSize; row-parallel, same bytes from any number of
    // threads. Two forms:
    //
    //   nSize 2, even sides   the four samples summed, >> 2. In the columns behind the last whole 16, component 0 takes
    //                         the lower right sample twice and the lower left not at all: part of the result
    //   all other             sides rounded up; every sample divided by nSize * nSize first, then added, wrapping at 8
    //                         bits; on one thread
    //
    // src and dst are two pictures. False, dst empty or untouched, when there was no memory, nSize is below 1 or src is
    // empty or not of nDim 3.
    static bool ApplyDownScale(const CImage& src, CImage& dst, int nSize);
};

}  // namespace vkr
