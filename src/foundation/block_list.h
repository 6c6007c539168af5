#pragma once

#include <cstddef>
#include <cstdint>

namespace vkr {

// A region of raw memory, or a block of one. Heap records of the list that holds them.
struct PoolNode {
    PoolNode* pPrev;
    PoolNode* pNext;
    uintptr_t nStart;  // first usable byte, 64-byte aligned
    size_t nSize;      // bytes; of blocks in use a multiple of 64
    uint8_t bFree;     // 1 free, 0 in use; a region's is always 1
};

// Doubly linked through a sentinel, End(), which is also the head of an empty list and never matches a search. Blocks
// of one region stand in address order, one region after the other. Not locked. Has no destructor: it lives as long as
// the process, and Clear gives the nodes back.
class BlockList {
public:
    constexpr BlockList() : m_End{&m_End, &m_End, 0, 0, 0} {}
    BlockList(const BlockList&) = delete;
    BlockList& operator=(const BlockList&) = delete;

    PoolNode* Head() { return m_End.pNext; }
    PoolNode* Last() { return m_End.pPrev; }
    constexpr PoolNode* End() { return &m_End; }
    size_t Count() const { return m_nCount; }

    // A free node at the end. False when there is no memory for it.
    bool Append(uintptr_t nStart, size_t nSize);

    // The first free block of at least nBytes, from the head on; null when there is none.
    PoolNode* FirstFit(size_t nBytes);

    // The block in use that starts at nStart, searched once round from pFrom (a block or End) on; null when there is
    // none.
    PoolNode* FindUsed(uintptr_t nStart, PoolNode* pFrom);

    // Cuts a block to nBytes, at most its size; what is left becomes a free block right behind it. True when the block
    // was cut: one of exactly nBytes stays whole, and so does one for whose rest there is no node.
    bool Split(PoolNode* pBlock, size_t nBytes);

    // Joins a free block with its free neighbours, as far as they touch; returns the block that holds all of it.
    PoolNode* Merge(PoolNode* pBlock);

    void Remove(PoolNode* pNode);

    // Deletes every node. The memory that they tell of is not touched.
    void Clear();

private:
    PoolNode* InsertBehind(PoolNode* pPrev, uintptr_t nStart, size_t nSize);

    PoolNode m_End;
    size_t m_nCount = 0;
};

}  // namespace vkr
