#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/block_list.h"

namespace vkr {

// Where regions come from: memory aligned to 64 bytes, null when there is none; and back.
struct RawAllocator {
    void* (*pAllocate)(size_t nBytes);
    void (*pFree)(void* pRaw);
};

// The regions for requests of one class of sizes, and the blocks carved from them. First fit from the head keeps the
// low addresses busy and large free blocks at the end. Not locked: the pool's mutex is held around every call.
class PoolFamily {
public:
    constexpr PoolFamily() : m_pCursor(m_Blocks.End()) {}
    PoolFamily(const PoolFamily&) = delete;
    PoolFamily& operator=(const PoolFamily&) = delete;

    // A region of nBytes, one free block at the end of the list. False when there is no memory.
    bool AddRegion(size_t nBytes, const RawAllocator& raw);

    // A block of nBytes (a multiple of 64), of which the holder asked nAsked; 0 when no free block is large enough.
    uintptr_t Allocate(size_t nBytes, size_t nAsked);

    // Gives back the block in use at nStart, and with it every region that this leaves wholly free. Looked for from the
    // head on, or from the cursor on: the small family's blocks are many, and what is released often stands close
    // together. False when there is no such block.
    bool FreeFromHead(uintptr_t nStart, const RawAllocator& raw) { return Free(nStart, m_Blocks.Head(), raw); }
    bool FreeFromCursor(uintptr_t nStart, const RawAllocator& raw) { return Free(nStart, m_pCursor, raw); }

    // Empties both lists; the regions stay with whoever still holds blocks of them.
    void Forget();

    // Gives back every region, blocks in use or not.
    void Release(const RawAllocator& raw);

    void RewindCursor() { m_pCursor = m_Blocks.Head(); }

    size_t Regions() const { return m_Regions.Count(); }
    size_t Blocks() const { return m_Blocks.Count(); }
    size_t RegionBytes();
    size_t UsedBytes() const { return m_nUsed; }

private:
    bool Free(uintptr_t nStart, PoolNode* pFrom, const RawAllocator& raw);
    void GiveBackFreeRegions(const RawAllocator& raw);

    BlockList m_Regions;
    BlockList m_Blocks;
    PoolNode* m_pCursor;  // the block last touched
    size_t m_nUsed = 0;
};

}  // namespace vkr
