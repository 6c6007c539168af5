#include "foundation/mem_pool.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "foundation/log.h"
#include "foundation/pool_family.h"

namespace vkr {

uint8_t g_bPoolStatEnable = 1;

namespace {

constexpr size_t kAlignment = 64;              // of blocks: their sizes are multiples of it
constexpr size_t kMaxSmallRequest = 0x600000;  // 6 MiB
constexpr size_t kSmallRegion = 0x1400000;     // 20 MiB, added on demand
constexpr size_t kMinBigRegion = 0x2800000;    // 40 MiB, the same
constexpr uint64_t kMaxSmallPool = 0x3C00000;  // 60 MiB: a pool above it opens with a big region too

void* HeapAllocate(size_t nBytes)
{
    if (nBytes > SIZE_MAX - kAlignment) return nullptr;
    return std::aligned_alloc(kAlignment, (nBytes + kAlignment - 1) / kAlignment * kAlignment);
}

constexpr RawAllocator kHeap{HeapAllocate, std::free};

// What a request takes: at least one unit, 0 when there is no such size.
size_t BlockBytes(size_t nAsked)
{
    if (nAsked > SIZE_MAX - kAlignment) return 0;
    return std::max((nAsked + kAlignment - 1) / kAlignment * kAlignment, kAlignment);
}

// Twice the request. A doubled size that does not fit signed 32 bits loses against the least one: a request of 1 GiB
// and more gets a region that can not hold it.
size_t BigRegionBytes(size_t nBytes)
{
    if (nBytes > static_cast<size_t>(INT32_MAX) / 2) return kMinBigRegion;
    return std::max(2 * nBytes, kMinBigRegion);
}

// Never destroyed: threads of the host may still hold pictures while the process ends.
class MemPool {
public:
    void Init(uint64_t nBytes);
    void* Allocate(size_t nAsked);
    void Free(void* pBlock);
    void Release();
    void NoteUse(size_t nBytes);
    PoolUse Use();
    void Install(const RawAllocator& raw);

private:
    bool AddRegion(PoolFamily& family, size_t nBytes)
    {
        ++m_nRawCalls;
        return family.AddRegion(nBytes, m_Raw);
    }
    uintptr_t AllocateLocked(size_t nBytes, size_t nAsked, bool& bExtended);

    std::mutex m_Mutex;
    RawAllocator m_Raw = kHeap;
    PoolFamily m_Small, m_Big;  // requests up to kMaxSmallRequest, and above
    int32_t m_nRefCount = 0;
    size_t m_nRunningUse = 0, m_nPeakUse = 0;
    size_t m_nRawCalls = 0;
};

MemPool g_Pool;

// Three fifths and 4 MiB go to the big family, the rest to the small one.
void MemPool::Init(uint64_t nBytes)
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    const bool bBig = nBytes > kMaxSmallPool;
    if (m_nRefCount < 1) {
        m_nRefCount = 0;
        m_Small.Forget();
        if (bBig) m_Big.Forget();
    }
    uint64_t nSmall = nBytes;
    if (bBig) {
        const uint64_t nBig = nBytes / 5 * 3 + nBytes % 5 * 3 / 5 + 0x400000;
        nSmall -= nBig;
        AddRegion(m_Big, static_cast<size_t>(nBig));
    }
    AddRegion(m_Small, static_cast<size_t>(nSmall));
    if (++m_nRefCount == 1) {
        m_Small.RewindCursor();
        m_Big.RewindCursor();
    }
}

void* MemPool::Allocate(size_t nAsked)
{
    const size_t nBytes = BlockBytes(nAsked);
    if (nBytes == 0) return nullptr;
    bool bExtended = false;
    const uintptr_t nStart = AllocateLocked(nBytes, nAsked, bExtended);
    if (bExtended) {
        HdrLog(nBytes <= kMaxSmallRequest ? "Alllocate MemPool extend !!!!\n"
                                          : "USED_BIG_SIZE Alllocate MemPool extend !!!!\n");
    }
    return reinterpret_cast<void*>(nStart);
}

uintptr_t MemPool::AllocateLocked(size_t nBytes, size_t nAsked, bool& bExtended)
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    const bool bSmall = nBytes <= kMaxSmallRequest;
    PoolFamily& family = bSmall ? m_Small : m_Big;
    const uintptr_t nStart = family.Allocate(nBytes, nAsked);
    if (nStart != 0) return nStart;
    bExtended = AddRegion(family, bSmall ? kSmallRegion : BigRegionBytes(nBytes));
    return bExtended ? family.Allocate(nBytes, nAsked) : 0;
}

void MemPool::Free(void* pBlock)
{
    if (pBlock == nullptr) return;
    const uintptr_t nStart = reinterpret_cast<uintptr_t>(pBlock);
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (!m_Big.FreeFromHead(nStart, m_Raw)) m_Small.FreeFromCursor(nStart, m_Raw);
}

void MemPool::Release()
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (--m_nRefCount > 0) return;
    m_nRefCount = 0;
    m_Small.Release(m_Raw);
    m_Big.Release(m_Raw);
}

void MemPool::NoteUse(size_t nBytes)
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    if (!g_bPoolStatEnable) return;
    m_nRunningUse += nBytes;
    m_nPeakUse = std::max(m_nPeakUse, m_nRunningUse);
}

PoolUse MemPool::Use()
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    return {m_Small.Regions() + m_Big.Regions(),
            m_Small.RegionBytes() + m_Big.RegionBytes(),
            m_Small.Blocks() + m_Big.Blocks(),
            m_Small.UsedBytes() + m_Big.UsedBytes(),
            m_nRunningUse,
            m_nPeakUse,
            m_nRawCalls};
}

void MemPool::Install(const RawAllocator& raw)
{
    const std::lock_guard<std::mutex> lock(m_Mutex);
    m_Raw = raw.pAllocate != nullptr && raw.pFree != nullptr ? raw : kHeap;
}

}  // namespace

bool PoolInit(size_t nBytes)
{
    g_Pool.Init(nBytes);
    return true;
}

void* PoolAlloc(size_t nBytes)
{
    return g_Pool.Allocate(nBytes);
}

void PoolFree(void* pBlock)
{
    g_Pool.Free(pBlock);
}

bool PoolRelease()
{
    g_Pool.Release();
    return true;
}

void PoolNoteUse(size_t nBytes)
{
    g_Pool.NoteUse(nBytes);
}

PoolUse ReadPoolUse()
{
    return g_Pool.Use();
}

void InstallRawAllocator(void* (*pAllocate)(size_t nBytes), void (*pFree)(void* pRaw))
{
    g_Pool.Install({pAllocate, pFree});
}

}  // namespace vkr
