#include "foundation/pool_family.h"

#include "foundation/pool_check.h"

namespace vkr {

namespace {

// A region's first usable byte lies this far behind its raw memory, which is asked for as much more: all bytes that the
// blocks tell of are there.
constexpr size_t kRawHead = 128;

void FreeRaw(const PoolNode* pRegion, const RawAllocator& raw)
{
    const uintptr_t nRaw = pRegion->nStart - kRawHead;
    AllowBytes(nRaw, kRawHead + pRegion->nSize);
    raw.pFree(reinterpret_cast<void*>(nRaw));
}

}  // namespace

bool PoolFamily::AddRegion(size_t nBytes, const RawAllocator& raw)
{
    if (nBytes > SIZE_MAX - kRawHead) return false;
    void* pRaw = raw.pAllocate(nBytes + kRawHead);
    if (pRaw == nullptr) return false;
    const uintptr_t nRaw = reinterpret_cast<uintptr_t>(pRaw), nStart = nRaw + kRawHead;
    if (!m_Regions.Append(nStart, nBytes)) {
        raw.pFree(pRaw);
        return false;
    }
    if (!m_Blocks.Append(nStart, nBytes)) {
        m_Regions.Remove(m_Regions.Last());
        raw.pFree(pRaw);
        return false;
    }
    ForbidBytes(nRaw, kRawHead + nBytes);
    return true;
}

uintptr_t PoolFamily::Allocate(size_t nBytes, size_t nAsked)
{
    PoolNode* pBlock = m_Blocks.FirstFit(nBytes);
    if (pBlock == nullptr) return 0;
    const bool bSplit = m_Blocks.Split(pBlock, nBytes);
    pBlock->bFree = 0;
    m_nUsed += pBlock->nSize;
    m_pCursor = bSplit ? pBlock->pNext : pBlock;
    AllowBytes(pBlock->nStart, nAsked);
    ScrambleBytes(pBlock->nStart, nAsked);
    return pBlock->nStart;
}

bool PoolFamily::Free(uintptr_t nStart, PoolNode* pFrom, const RawAllocator& raw)
{
    PoolNode* pBlock = m_Blocks.FindUsed(nStart, pFrom);
    if (pBlock == nullptr) return false;
    ForbidBytes(pBlock->nStart, pBlock->nSize);
    pBlock->bFree = 1;
    m_nUsed -= pBlock->nSize;
    m_pCursor = m_Blocks.Merge(pBlock);
    GiveBackFreeRegions(raw);
    return true;
}

// The cursor moves on as a region goes, in the order of the regions: the next region goes with it when it is wholly
// free too, which one that nobody has touched yet is.
void PoolFamily::GiveBackFreeRegions(const RawAllocator& raw)
{
    PoolNode* pNext = nullptr;
    for (PoolNode* pRegion = m_Regions.Head(); pRegion != m_Regions.End(); pRegion = pNext) {
        pNext = pRegion->pNext;
        PoolNode* pBlock = m_pCursor;
        if (!pBlock->bFree || pBlock->nStart != pRegion->nStart || pBlock->nSize != pRegion->nSize) continue;
        m_pCursor = pBlock->pNext;
        m_Blocks.Remove(pBlock);
        if (m_pCursor == m_Blocks.End()) RewindCursor();
        FreeRaw(pRegion, raw);
        m_Regions.Remove(pRegion);
    }
}

void PoolFamily::Forget()
{
    m_Regions.Clear();
    m_Blocks.Clear();
    RewindCursor();
    m_nUsed = 0;
}

void PoolFamily::Release(const RawAllocator& raw)
{
    for (PoolNode* pRegion = m_Regions.Head(); pRegion != m_Regions.End(); pRegion = pRegion->pNext) {
        FreeRaw(pRegion, raw);
    }
    Forget();
}

size_t PoolFamily::RegionBytes()
{
    size_t nBytes = 0;
    for (PoolNode* pRegion = m_Regions.Head(); pRegion != m_Regions.End(); pRegion = pRegion->pNext) {
        nBytes += pRegion->nSize;
    }
    return nBytes;
}

}  // namespace vkr
