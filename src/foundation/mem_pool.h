#pragma once

#include <cstddef>

namespace vkr {

// Where every picture buffer comes from. All five are safe from any thread.

// Opens the pool, nBytes foreseen in all. Calls nest; each has its PoolRelease. True.
bool PoolInit(size_t nBytes);

// A block of at least nBytes, 64-byte aligned, contents undefined; null when there is no memory.
void* PoolAlloc(size_t nBytes);

// Gives a block back; null does nothing.
void PoolFree(void* pBlock);

// Undoes one PoolInit. True.
bool PoolRelease();

// Adds nBytes to the running statistic of frame buffers since load.
void PoolNoteUse(size_t nBytes);

}  // namespace vkr
