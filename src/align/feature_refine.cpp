#include <algorithm>
#include <cstdint>

#include "align/feature_point_detection.h"
#include "align/feature_response.h"
#include "foundation/parallel_rows.h"

namespace vkr {

namespace {

// A place moves by up to 2, its 5 x 5 block reaches 2 further and the differences 1 more.
constexpr int kReach = 5;
constexpr int kBlockSize = 2 * kReach + 1;

struct RefineBlock {
    uint8_t vSamples[kBlockSize][kBlockSize];
    const uint8_t* vRows[kBlockSize];
};

// The samples around (x, y), which may lie outside the picture.
void CopyClampedBlock(const CImage& level, int x, int y, RefineBlock& block)
{
    for (int j = 0; j < kBlockSize; ++j) {
        const uint8_t* pSrc = level.Row(y - kReach + j);
        for (int i = 0; i < kBlockSize; ++i) {
            block.vSamples[j][i] = pSrc[std::clamp(x - kReach + i, 0, static_cast<int>(level.nWidth) - 1)];
        }
        block.vRows[j] = block.vSamples[j];
    }
}

// Moves the feature to the highest response above 0 of the 25 places around it.
void MoveToPeak(const RefineBlock& block, float fHarrisK, FeaturePoint& feature)
{
    float fPeak = 0.0f;
    int nSumX = 0;
    int nSumY = 0;
    int nPeaks = 0;
    for (int j = 0; j < 5; ++j) {
        for (int i = 0; i < 5; ++i) {
            const float fResponse = HarrisResponse(block.vRows + j, i, fHarrisK);
            if (fResponse > fPeak) {
                fPeak = fResponse;
                nSumX = nSumY = nPeaks = 0;
            }
            if (fResponse != fPeak || !(fPeak > 0.0f)) continue;
            nSumX += feature.x + i - 2;
            nSumY += feature.y + j - 2;
            ++nPeaks;
        }
    }
    feature.fResponse = fPeak;
    if (nPeaks == 0) return;
    feature.x = nSumX / nPeaks;
    feature.y = nSumY / nPeaks;
}

}  // namespace

void CFeaturePointDetectionOpt::RefineLevel(const CImage& level, FeaturePoint* pFeatures, int nCount) const
{
    const float fHarrisK = HarrisK();
    ParallelRows(nCount, [&](RowBlock features) {
        RefineBlock block;
        for (int i = features.nBegin; i < features.nEnd; ++i) {
            FeaturePoint& feature = pFeatures[i];
            feature.x *= 2;
            feature.y *= 2;
            feature.fResponse = 0.0f;
            if (level.Empty()) continue;
            CopyClampedBlock(level, feature.x, feature.y, block);
            MoveToPeak(block, fHarrisK, feature);
        }
    });
}

}  // namespace vkr
