#pragma once

#include <cstdint>

#include "align/match_list.h"
#include "foundation/filter.h"
#include "foundation/image.h"

namespace vkr {

// Corner points of a grey image pyramid.
class CFeaturePointDetection : public CFilter {
public:
    void SetFilterName() override;
    void RegisterParameters() override;
    void UpdateParameter() override;

    int32_t nPtThre1 = 0;
    int32_t nPtThre2 = 0;
    int32_t nThre = 0;
    int32_t nRatio = 0;
    int32_t nHarris_K = 0;
    int32_t nHarrisThre = 0;

    // Harris constant as of the last UpdateParameter. Not every way of loading calls that: a pass over a picture takes
    // HarrisK.
    float m_fHarrisK = 0.0f;

protected:
    float HarrisK() const { return static_cast<float>(nHarris_K / 100.0); }
};

// The one that alignment runs with. It keeps the name of its base.
//
// Both passes read a picture of nDim 1; samples outside it are those of the nearest edge. They keep no state and may
// run from any thread on different features.
class CFeaturePointDetectionOpt : public CFeaturePointDetection {
public:
    // Finds the corners of columns x0 .. x1 - 1 and rows y0 .. y1 - 1 of level; the rectangle is first clipped to the
    // picture. A corner passes the ring test, has a Harris response of at least nHarrisThre and is the strict maximum
    // of its 7 x 7 neighbourhood, so none is nearer than 3 to the border of the rectangle.
    //
    //   pFeatures  room for nCapacity records; receives nCount of them, in pixels of level, nMatch -1, by rising
    //              response, of equal responses the one that comes first in the raster
    //   returns    false, with nCount 0, when the clipped rectangle is empty or there is no memory; a picture without
    //              corners is a success
    //
    // Of more than nCapacity corners the first ones of the raster survive, not the strongest. Same list from any number
    // of threads.
    bool Detect(const CImage& level, FeaturePoint* pFeatures, int& nCount, int nCapacity, int x0, int y0, int x1,
                int y1) const;

    // Carries features to the next finer level, in place: the coordinates are doubled and moved by up to 2 pixels to
    // where the Harris response is highest, the integer average, truncated toward zero, of the places that share the
    // maximum. fResponse becomes that maximum. Where no response is positive the doubled place stays, with response
    // 0. A feature may be moved past the border and stays there. Same result from any number of threads.
    void RefineLevel(const CImage& level, FeaturePoint* pFeatures, int nCount) const;
};

}  // namespace vkr
