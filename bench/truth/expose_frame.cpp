#include "truth/expose_frame.h"

#include <cstdint>
#include <vector>

#include "foundation/parallel_rows.h"
#include "truth/light_map.h"

namespace vkr::truth {

void ExposeFrame(const Sensor& sensor, const std::function<void(int nBlock, int y, float* pLight)>& lightRow,
                 CYuvImage& frame)
{
    struct Scratch {
        std::vector<float> vLight, vGrey;
        std::vector<int32_t> vIndex;
    };
    const int w = frame.nWidth;
    const size_t nRow = static_cast<size_t>(w) * LightMap::kChannels;
    std::vector<Scratch> vScratch(static_cast<size_t>(MaxTeam()));
    for (Scratch& scratch : vScratch) {
        scratch.vLight.resize(nRow);
        scratch.vIndex.resize(nRow);
        scratch.vGrey.resize(2 * nRow);
    }
    ParallelRows(frame.nHeight / 2, [&](RowBlock pairs) {
        Scratch& scratch = vScratch[static_cast<size_t>(pairs.nIndex)];
        float* vGrey[2] = {scratch.vGrey.data(), scratch.vGrey.data() + nRow};
        for (int nPair = pairs.nBegin; nPair < pairs.nEnd; ++nPair) {
            for (int i = 0; i < 2; ++i) {
                lightRow(pairs.nIndex, 2 * nPair + i, scratch.vLight.data());
                sensor.ExposeRow(scratch.vLight.data(), 2 * nPair + i, w, scratch.vIndex.data(), vGrey[i]);
            }
            StoreRowPair(vGrey[0], vGrey[1], w, frame.RowY(2 * nPair), frame.RowY(2 * nPair + 1), frame.RowUV(nPair));
        }
    });
}

}  // namespace vkr::truth
