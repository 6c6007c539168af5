#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// Where every picture buffer comes from: large regions of raw memory, taken once, that blocks are carved from, so that
// a burst rarely meets the system's allocator. One pool for the process, counted by its users. A region that becomes
// wholly free goes back at once; requests that no free block can hold bring another one. All of these are safe from any
// thread, under one mutex that is taken last: no other lock is taken under it.

// Opens the pool with regions for nBytes in all; a region that finds no memory is left out. Calls nest, each has its
// PoolRelease; an inner one adds its regions to those that are there. Blocks taken before the first call are not known
// to the pool any more and stay allocated. True.
bool PoolInit(size_t nBytes);

// A block of at least nBytes, 64-byte aligned, contents undefined; null when there is no memory, and for 1 GiB and more
// unless a free block is that large. Overruns are not detected, except by AddressSanitizer under VKRHDR_POOL_CHECK,
// which knows nBytes.
void* PoolAlloc(size_t nBytes);

// Gives a block back; null, and an address that is no block in use, do nothing.
void PoolFree(void* pBlock);

// Undoes one PoolInit. The last one gives all memory back, blocks in use or not. True.
bool PoolRelease();

// Adds nBytes to the running statistic of frame buffers since load, while g_bPoolStatEnable (1 at load) is set.
extern uint8_t g_bPoolStatEnable;
void PoolNoteUse(size_t nBytes);

// What the pool holds now, and the statistic of PoolNoteUse.
struct PoolUse {
    size_t nRegions, nRegionBytes;
    size_t nBlocks, nUsedBytes;  // blocks, free ones too; bytes in use, rounded up as they are taken
    size_t nRunningUse, nPeakUse;
    size_t nRawCalls;  // how often raw memory was asked for since load
};
PoolUse ReadPoolUse();

// For tests: the raw memory comes from this pair, called under the pool's mutex, instead of the heap. What it gives
// must be 64-byte aligned. Null in either goes back to the heap. Only while the pool holds no region.
void InstallRawAllocator(void* (*pAllocate)(size_t nBytes), void (*pFree)(void* pRaw));

}  // namespace vkr
