#include "foundation/ready_flags.h"

namespace vkr {

namespace {
constexpr int32_t kNotReady = 0;
constexpr int32_t kReady = 1;
constexpr int32_t kTaken = -1;
}  // namespace

void ReadyFlags::Reset()
{
    for (std::atomic<int32_t>& flag : m_vFlags) flag.store(kNotReady, std::memory_order_relaxed);
}

// Release here pairs with acquire in TakeReady: whoever takes the flag sees the whole working frame.
void ReadyFlags::SetReady(int nExposure)
{
    if (nExposure >= 0 && nExposure < kMaxExposures) m_vFlags[nExposure].store(kReady, std::memory_order_release);
}

int ReadyFlags::TakeReady(int nExposureNum)
{
    for (int k = 0; k < nExposureNum && k < kMaxExposures; ++k) {
        int32_t nExpected = kReady;
        if (m_vFlags[k].compare_exchange_strong(nExpected, kTaken, std::memory_order_acquire)) return k;
    }
    return -1;
}

}  // namespace vkr
