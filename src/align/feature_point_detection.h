#pragma once

#include <cstdint>

#include "align/match_list.h"
#include "foundation/image.h"
#include "parameters/filter.h"
#include "parameters/parameter_record.h"

namespace vkr {

// What counts as a corner.
// clang-format off
struct CornerParams {
    PARAM(nPtThre1,    2,     3,     2, "hits", "least in each of the four groups of the ring around a corner");
    PARAM(nPtThre2,    8,    15,    10, "hits", "least in the whole ring around a corner");
    PARAM(nThre,       0,   255,     4, "grey values", "least margin of brightness of a hit");
    PARAM(nRatio,      0,   255,     8, "1/128", "growth of the margin of a hit in dark pixels");
    PARAM(nHarris_K,   1,    10,     5, "1/100", "Harris constant");
    PARAM(nHarrisThre, 1, 65536, 10000, "Harris response", "least of a corner");
};
// clang-format on

// Corner points of a grey image pyramid.
class CFeaturePointDetection : public CFilter, public CornerParams {
public:
    void SetFilterName() override;
    void RegisterParameters() override;
    void UpdateParameter() override;

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
