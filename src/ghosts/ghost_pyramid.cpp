#include "ghosts/ghost_pyramid.h"

#include "foundation/image_scope.h"
#include "foundation/parallel_rows.h"
#include "primitives/gaussian_pyramid.h"

namespace vkr {

GhostPyramid::~GhostPyramid()
{
    for (CImage& image : m_vImages) image.Release();
    for (CShortImage& edges : m_vEdges) edges.Release();
}

bool GhostPyramid::TakeFrame(const CImage& workFrame, const PyramidParams& pyramid)
{
    return HalveImage(workFrame, m_vImages[0], pyramid.bPyramidFilter, pyramid.bDownScaleImageDither);
}

bool GhostPyramid::TakeMatched(const GhostPyramid& dark, const GhostShares& darkShares, const GhostShares& brightShares)
{
    const CImage& src = dark.m_vImages[0];
    CImage& dst = m_vImages[0];
    if (!dst.AllocateDim(src.nWidth, src.nHeight, 3)) return false;
    uint8_t vTables[3][256];
    for (int c = 0; c < 3; ++c) MatchHistogram(darkShares.vShares[c], brightShares.vShares[c], vTables[c]);
    ParallelRows(src.nHeight, [&](RowBlock rows) {
        for (int y = rows.nBegin; y < rows.nEnd; ++y) {
            const uint8_t* pSrc = src.Row(y);
            uint8_t* pDst = dst.Row(y);
            for (int i = 0; i < 3 * src.nWidth; i += 3) {
                for (int c = 0; c < 3; ++c) pDst[i + c] = vTables[c][pSrc[i + c]];
            }
        }
    });
    return true;
}

bool GhostPyramid::Build(int nStartLevel, uint32_t nEdgeLevels, const PyramidParams& pyramid)
{
    CImage up{};
    ImageScope scope(up);
    for (int i = 0; i <= nStartLevel; ++i) {
        if (!HalveImage(m_vImages[i], m_vImages[i + 1], pyramid.bPyramidFilter, pyramid.bDownScaleImageDither)) {
            return false;
        }
        if ((nEdgeLevels >> i & 1) != 0 && !BuildEdges(i, pyramid, up)) return false;
    }
    return true;
}

// The doubled level is a column or row larger than an odd one; what it has too much is not read.
bool GhostPyramid::BuildEdges(int nLevel, const PyramidParams& pyramid, CImage& up)
{
    const CImage& image = m_vImages[nLevel];
    CShortImage& edges = m_vEdges[nLevel];
    if (!DoubleImage(m_vImages[nLevel + 1], up, pyramid.bPyramidFilter, pyramid.bUpScaleImageDither)) return false;
    if (!edges.AllocateDim(image.nWidth, image.nHeight, image.nDim)) return false;
    CGaussianPyramid2::SubtractImage(image.pData, up.pData, edges.pData, image.nWidth, image.nHeight, up.nWidth,
                                     image.nDim);
    return true;
}

}  // namespace vkr
