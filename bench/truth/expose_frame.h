#pragma once

#include <functional>

#include "foundation/image.h"
#include "truth/sensor_rows.h"

namespace vkr::truth {

// Fills a frame (allocated, even size) with what the sensor makes of the light. lightRow(nBlock, y, pLight) gives
// LightMap::kChannels floats for each pixel of row y; calls with different nBlock (below MaxTeam()) may run at once.
// The same bytes from any number of threads.
void ExposeFrame(const Sensor& sensor, const std::function<void(int nBlock, int y, float* pLight)>& lightRow,
                 CYuvImage& frame);

}  // namespace vkr::truth
