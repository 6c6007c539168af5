#include "foundation/colour.h"

#include "foundation/colour_rows.h"
#include "foundation/parallel_rows.h"

namespace vkr {

void BGRToYCbCr(CImage& image, int nMode)
{
    if (image.Empty() || image.nDim != 3) return;
    ParallelRows(image.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) BgrToYCbCrRow(image.Row(y), image.nWidth, nMode != 0);
    });
}

void YCbCrToBGR(CImage& image, int nMode)
{
    if (image.Empty() || image.nDim != 3) return;
    ColourCarry carry = {};
    for (int y = 0; y < image.nHeight; ++y) YCbCrToBgrRow(image.Row(y), image.nWidth, nMode != 0, carry);
}

}  // namespace vkr
