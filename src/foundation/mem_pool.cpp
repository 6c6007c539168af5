#include "foundation/mem_pool.h"

#include <atomic>
#include <cstdlib>

namespace vkr {

namespace {

constexpr size_t kAlignment = 64;
std::atomic<size_t> g_nRunningUse{0};

}  // namespace

bool PoolInit(size_t /*nBytes*/)
{
    return true;
}

void* PoolAlloc(size_t nBytes)
{
    if (nBytes > static_cast<size_t>(-1) - kAlignment) return nullptr;
    const size_t nRounded = (nBytes + kAlignment - 1) / kAlignment * kAlignment;
    return std::aligned_alloc(kAlignment, nRounded > 0 ? nRounded : kAlignment);
}

void PoolFree(void* pBlock)
{
    std::free(pBlock);
}

bool PoolRelease()
{
    return true;
}

void PoolNoteUse(size_t nBytes)
{
    g_nRunningUse += nBytes;
}

}  // namespace vkr
