#pragma once

#include "align/match_list.h"
#include "foundation/row_view.h"

namespace vkr {

// The strict maxima above 0 of the 7 x 7 neighbourhoods that lie inside the map of nWidth columns, the first nCapacity
// of the raster: two equal neighbours reject each other. Coordinates of the map, nMatch -1. Same list from any number
// of threads. False, with nCount 0, when there is no memory.
bool CollectMaxima(const RowView<float>& map, int nWidth, FeaturePoint* pFeatures, int& nCount, int nCapacity);

// By rising response, equal ones in raster order.
void SortByResponse(FeaturePoint* pFeatures, int nCount);

}  // namespace vkr
