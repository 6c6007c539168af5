#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/fixed_point.h"

namespace vkr {

// Lock-free handshake between the working frames and the weights, one flag per exposure: 0 not ready, 1 ready (set by
// the thread that made the working frame, after its last write), -1 taken. Reset at the start of each burst, before
// either side runs.
class ReadyFlags {
public:
    void Reset();
    void SetReady(int nExposure);

    // Takes the lowest ready exposure below nExposureNum and returns its index; -1 when none is ready now.
    int TakeReady(int nExposureNum);

private:
    std::atomic<int32_t> m_vFlags[kMaxExposures] = {};
};

}  // namespace vkr
