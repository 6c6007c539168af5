#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "align/align_dump.h"
#include "align/align_pyramid.h"
#include "align/aligned_pair.h"
#include "align/frame_padding.h"
#include "align/multiple_images_align_filter.h"
#include "align/valid_mask.h"
#include "foundation/image_scope.h"
#include "foundation/log.h"
#include "foundation/parallel_rows.h"
#include "foundation/timing.h"

namespace vkr {

namespace {

bool FillMask(CImage& mask, int w, int h)
{
    if (!mask.AllocateGray(w, h)) return false;
    std::memset(mask.pData, 255, mask.Samples());
    return true;
}

// w + (w mod 2^L): halving is even on the first levels, not on all of them.
int PaddedSide(int nSide, int nTopLevel)
{
    return nSide + (nSide & ((1 << nTopLevel) - 1));
}

bool PadFrames(CYuvImage* vFrames, int nExposureNum, int w, int h)
{
    for (int k = 0; k < nExposureNum; ++k) {
        if ((vFrames[k].nWidth != w || vFrames[k].nHeight != h) && !PadFrame(vFrames[k], w, h)) return false;
    }
    return true;
}

// Frames that are padded in between have their own size again on every way out: the host's planes have it too.
class FrameSizeScope {
public:
    FrameSizeScope(CYuvImage* vFrames, int nExposureNum)
        : m_vFrames(vFrames), m_nExposureNum(nExposureNum), m_nWidth(vFrames[0].nWidth), m_nHeight(vFrames[0].nHeight)
    {
    }
    ~FrameSizeScope()
    {
        ParallelItems(m_nExposureNum, [this](int k) {
            CYuvImage& frame = m_vFrames[k];
            if (frame.nWidth != m_nWidth || frame.nHeight != m_nHeight) CropFrame(frame, m_nWidth, m_nHeight);
        });
    }
    FrameSizeScope(const FrameSizeScope&) = delete;
    FrameSizeScope& operator=(const FrameSizeScope&) = delete;

private:
    CYuvImage* m_vFrames;
    int m_nExposureNum, m_nWidth, m_nHeight;
};

CMatrix Translation(double x, double y)
{
    CMatrix matrix = IdentityHomography();
    matrix.At(0, 2) = x;
    matrix.At(1, 2) = y;
    return matrix;
}

CMatrix Product(const CMatrix& a, const CMatrix& b)
{
    CMatrix product;
    CMatrix::Multiply(product, a, b);
    return product;
}

// From points with the origin at the picture's centre to pixels.
CMatrix ToPixels(const CMatrix& centred, int w, int h)
{
    return Product(Product(Translation(w * 0.5, h * 0.5), centred), Translation(-w * 0.5, -h * 0.5));
}

// The same homography for pictures of half the size.
CMatrix ForHalfSize(const CMatrix& homography)
{
    CMatrix half = homography;
    half.At(0, 2) *= 0.5;
    half.At(1, 2) *= 0.5;
    half.At(2, 0) *= 2.0;
    half.At(2, 1) *= 2.0;
    return half;
}

bool IsUsable(const CMatrix& homography)
{
    for (int i = 0; i < 9; ++i) {
        if (!std::isfinite(homography.At(i / 3, i % 3))) return false;
    }
    return homography.At(2, 2) != 0.0;
}

bool IsIdentity(const CMatrix& homography)
{
    for (int i = 0; i < 9; ++i) {
        if (homography.At(i / 3, i % 3) != (i % 4 == 0 ? 1.0 : 0.0)) return false;
    }
    return true;
}

}  // namespace

bool FillAlignMasks(const CYuvImage* vFrames, int nExposureNum, int nReference, CImage* vAlignMasks)
{
    for (int k = 0; k < nExposureNum; ++k) {
        const int w = vFrames[k].nWidth, h = vFrames[k].nHeight;
        const bool bFull = k == nReference;
        if (!FillMask(vAlignMasks[k], bFull ? w : (w + 1) / 2, bFull ? h : (h + 1) / 2)) return false;
    }
    return true;
}

bool CMultipleImagesAlignFilterOpt::AlignImages(CYuvImage* vFrames, int nExposureNum, int nReference,
                                                CImage* vAlignMasks, ValidRange& range, const StageDumps& allowed)
{
    range.m_nFirstValid = 0;
    range.m_nLastValid = nExposureNum;
    const StageDumps dumps = allowed.If(bDumpDebug);
    bool bDone = false;
    {
        const FrameSizeScope scope(vFrames, nExposureNum);
        bDone = AlignPadded(vFrames, nExposureNum, nReference, vAlignMasks, range, dumps);
    }
    if (!bDone) {
        for (int k = 0; k < nExposureNum; ++k) vAlignMasks[k].Release();
        return false;
    }
    DumpAligned(dumps, vFrames[nReference], vAlignMasks[nReference], nReference);
    HdrPrintf("Global Alignement Done\n!!!");
    return true;
}

// Pads the frames to what the pyramid asks for, and leaves them so.
bool CMultipleImagesAlignFilterOpt::AlignPadded(CYuvImage* vFrames, int nExposureNum, int nReference,
                                                CImage* vAlignMasks, ValidRange& range, const StageDumps& dumps)
{
    const int wPadded = PaddedSide(vFrames[0].nWidth, nFeatureMatchLevel);
    const int hPadded = PaddedSide(vFrames[0].nHeight, nFeatureMatchLevel);
    if (!PadFrames(vFrames, nExposureNum, wPadded, hPadded)) return false;
    HdrPrintf("Global Alignement Start\n!!!");

    AlignPyramids pyramids;
    const AlignPyramidParams params{nFeatureMatchLevel, std::min(nHistogramMatchingLevel, nFeatureMatchLevel),
                                    bAlignPyramidDither != 0, bAlignPyramidFilter != 0};
    if (!pyramids.Build(vFrames, nExposureNum, params)) return false;
    for (int i = 0; dumps && i < nExposureNum; ++i) DumpPyramid(pyramids, i);
    if (!MatchPairs(pyramids, nReference, range, dumps)) return false;
    pyramids.Release();

    CMatrix vToReference[kMaxExposures];
    ComposeHomographies(nExposureNum, nReference, vToReference);
    return WarpFrames(vFrames, nExposureNum, nReference, vToReference, vAlignMasks, dumps);
}

// One pair after the other: each maps its first picture in place, and the random numbers are one sequence.
bool CMultipleImagesAlignFilterOpt::MatchPairs(AlignPyramids& pyramids, int nReference, ValidRange& range,
                                               const StageDumps& dumps)
{
    AlignRandom random;
    for (int j = 0; j + 1 < pyramids.ExposureNum(); ++j) {
        pyramids.MapHistogram(j);
        if (dumps) DumpMappedPyramid(pyramids, j);
        std::snprintf(m_szPairTag, sizeof(m_szPairTag), "_Exp%d_%d", j, j + 1);
        AlignedPair report{};
        report.nFirst = j;
        report.nSecond = j + 1;
        m_H[j] = IdentityHomography();
        report.bAligned = TimedStage("==== ==== ==== PyramidFeatureMatch Done", [&] {
            return PyramidFeatureMatch(pyramids.Levels(j), pyramids.Levels(j + 1), random, m_H[j], dumps, report);
        });
        if (m_H[j].Rows() != 3) return false;
        for (int i = 0; i < 9; ++i) report.vHomography[i] = m_H[j].At(i / 3, i % 3);
        ProbePair(report);
        if (report.bAligned) continue;
        HdrPrintf("Pyramid Match %d with %d fail\n", j, j + 1);
        if (!bDropAlignFail) continue;
        if (nReference <= j) {
            range.m_nLastValid = std::min(range.m_nLastValid, j + 1);
        } else {
            range.m_nFirstValid = std::max(range.m_nFirstValid, j + 1);
        }
    }
    return true;
}

// The links from every exposure to the reference, one after the other.
void CMultipleImagesAlignFilterOpt::ComposeHomographies(int nExposureNum, int nReference, CMatrix* vToReference) const
{
    vToReference[nReference] = IdentityHomography();
    for (int k = nReference - 1; k >= 0; --k) {
        CMatrix inverse = m_H[k];
        inverse.Invert();
        vToReference[k] = Product(vToReference[k + 1], inverse);
    }
    for (int k = nReference; k + 1 < nExposureNum; ++k) vToReference[k + 1] = Product(vToReference[k], m_H[k]);
    for (int k = 0; k < nExposureNum; ++k) {
        if (vToReference[k].Rows() == 3 && IsUsable(vToReference[k])) {
            vToReference[k].DivideByScalar(vToReference[k].At(2, 2));
        } else {
            vToReference[k] = IdentityHomography();
        }
        HdrPrintf("sH[%d]=\n", k);
    }
}

bool CMultipleImagesAlignFilterOpt::WarpFrames(CYuvImage* vFrames, int nExposureNum, int nReference,
                                               const CMatrix* vToReference, CImage* vAlignMasks,
                                               const StageDumps& dumps)
{
    const int w = vFrames[0].nWidth, h = vFrames[0].nHeight;
    CYuvImage warped{};
    ImageScope scope(warped);
    if (!FillMask(vAlignMasks[nReference], w, h)) return false;
    for (int k = 0; k < nExposureNum; ++k) {
        if (k == nReference) continue;
        CMatrix toPixel = ToPixels(vToReference[k], w, h);
        if (toPixel.Rows() != 3) return false;
        if (!CutValidRegion((w + 1) / 2, (h + 1) / 2, ForHalfSize(toPixel), vAlignMasks[k], vAlignMasks[nReference])) {
            return false;
        }
        if (toPixel.Invert() != CMatrix::kNoError) toPixel.Identity();
        const bool bDone = TimedStage("==== ==== ==== m_HomographMappingFilter.ProcessImage Done", [&] {
            return IsIdentity(toPixel) || m_HomographMappingFilter.ProcessImage(vFrames[k], warped, toPixel);
        });
        if (!bDone) return false;
        if (!IsIdentity(toPixel)) vFrames[k].Swap(warped);
        DumpAligned(dumps, vFrames[k], vAlignMasks[k], k);
    }
    return true;
}

}  // namespace vkr
