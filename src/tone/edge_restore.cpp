#include "tone/edge_restore.h"

#include <algorithm>
#include <cstring>

#include "foundation/fixed_point.h"
#include "foundation/image_scope.h"
#include "foundation/parallel_rows.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

namespace {

// Component 0 to luma, components 1 and 2 to the frame's chroma pairs: its chroma plane has this picture's size, so
// nothing is resampled.
void SplitComponents(const CImage& ycbcr, CImage& luma, CYuvImage& frame)
{
    ParallelRows(ycbcr.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const uint8_t* pPixel = ycbcr.Row(y);
            uint8_t* pLuma = luma.Row(y);
            uint8_t* pPair = frame.RowUV(y);
            for (int x = 0; x < ycbcr.nWidth; ++x, pPixel += 3) {
                pLuma[x] = pPixel[0];
                pPair[2 * x] = pPixel[1];
                pPair[2 * x + 1] = pPixel[2];
            }
        }
    });
}

bool DoubleLuma(const CImage& luma, const PyramidParams& pyramid, CYuvImage& frame)
{
    const int w = luma.nWidth;
    const int h = luma.nHeight;
    if (pyramid.bPyramidFilter) {
        return CGaussianPyramid2::UpScaleImage(luma.pData, frame.pY, w, h, 1, pyramid.bUpScaleImageDither != 0);
    }
    // The plain doubling works on pairs of rows and writes nothing for a single one.
    if (h == 1) std::memset(frame.pY, 0, static_cast<size_t>(frame.nWidth) * frame.nHeight);
    return CGaussianPyramid2::UpScaleImageFast(luma.pData, frame.pY, w, h, 1);
}

// An edge beyond +-255 clips as 255 does; cutting it first keeps the sum in 16 bits.
void AddEdgeRow(const uint8_t* pUpscaled, const int16_t* pEdge, uint8_t* pOut, int nWidth)
{
    for (int x = 0; x < nWidth; ++x) {
        const int16_t nEdge = std::min<int16_t>(std::max<int16_t>(pEdge[x], -255), 255);
        const int16_t nSum = static_cast<int16_t>(pUpscaled[x] + nEdge);
        pOut[x] = static_cast<uint8_t>(std::min<int16_t>(std::max<int16_t>(nSum, 0), 255));
    }
}

}  // namespace

bool SplitAndUpscale(const CImage& ycbcr, const PyramidParams& pyramid, CYuvImage& frame)
{
    if (ycbcr.Empty() || ycbcr.nDim != 3) return false;
    CImage luma{};
    ImageScope scope(luma);
    if (!luma.AllocateGray(ycbcr.nWidth, ycbcr.nHeight)) return false;
    if (!frame.Allocate(2 * ycbcr.nWidth, 2 * ycbcr.nHeight)) return false;
    SplitComponents(ycbcr, luma, frame);
    return DoubleLuma(luma, pyramid, frame);
}

void AddEdge(const CYuvImage& upscaled, const CShortImage& edge, CYuvImage& output)
{
    const int w = upscaled.nWidth;
    const int h = upscaled.nHeight;
    if (edge.Empty() || edge.nDim != 1 || edge.nWidth != w || edge.nHeight != h) return;
    if (output.nWidth != w || output.nHeight != h) return;
    ParallelRows(h, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) AddEdgeRow(upscaled.RowY(y), edge.Row(y), output.RowY(y), w);
    });
}

}  // namespace vkr
