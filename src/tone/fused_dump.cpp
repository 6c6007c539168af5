#include "tone/fused_dump.h"

#include "foundation/bmp.h"
#include "foundation/fixed_point.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// The base alone (nHigh 0) or with its high frequencies (nHigh 1), clipped to 8 bits.
void FillUnstretched(const CShortImage& fused, int nHigh, CImage& out)
{
    ParallelRows(fused.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const int16_t* pIn = fused.Row(y);
            uint8_t* pOut = out.Row(y);
            for (int x = 0; x < fused.nWidth; ++x, pIn += 6, pOut += 3) {
                for (int c = 0; c < 3; ++c) pOut[c] = ClampU8(pIn[c] + nHigh * pIn[3 + c]);
            }
        }
    });
}

}  // namespace

void DumpFused(const CShortImage& fused, CImage& out)
{
    FillUnstretched(fused, 1, out);
    SaveBmp(out, "Dump/FusionWithHighFeq.bmp", true);
    FillUnstretched(fused, 0, out);
    SaveBmp(out, "Dump/FusionNoHighFeq.bmp", true);
}

}  // namespace vkr
