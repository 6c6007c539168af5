#include "foundation/block_list.h"

#include <new>

namespace vkr {

namespace {

// True when both are free and the second starts where the first ends. The sentinel is never free.
bool Touch(const PoolNode* pFirst, const PoolNode* pSecond)
{
    return pFirst->bFree && pSecond->bFree && pFirst->nStart + pFirst->nSize == pSecond->nStart;
}

}  // namespace

bool BlockList::Append(uintptr_t nStart, size_t nSize)
{
    return InsertBehind(Last(), nStart, nSize) != nullptr;
}

PoolNode* BlockList::FirstFit(size_t nBytes)
{
    for (PoolNode* pBlock = Head(); pBlock != End(); pBlock = pBlock->pNext) {
        if (pBlock->bFree && pBlock->nSize >= nBytes) return pBlock;
    }
    return nullptr;
}

PoolNode* BlockList::FindUsed(uintptr_t nStart, PoolNode* pFrom)
{
    PoolNode* pBlock = pFrom;
    do {
        if (pBlock != End() && !pBlock->bFree && pBlock->nStart == nStart) return pBlock;
        pBlock = pBlock->pNext;
    } while (pBlock != pFrom);
    return nullptr;
}

bool BlockList::Split(PoolNode* pBlock, size_t nBytes)
{
    if (pBlock->nSize <= nBytes) return false;
    if (InsertBehind(pBlock, pBlock->nStart + nBytes, pBlock->nSize - nBytes) == nullptr) return false;
    pBlock->nSize = nBytes;
    return true;
}

PoolNode* BlockList::Merge(PoolNode* pBlock)
{
    if (Touch(pBlock, pBlock->pNext)) {
        pBlock->nSize += pBlock->pNext->nSize;
        Remove(pBlock->pNext);
    }
    PoolNode* pPrev = pBlock->pPrev;
    if (!Touch(pPrev, pBlock)) return pBlock;
    pPrev->nSize += pBlock->nSize;
    Remove(pBlock);
    return pPrev;
}

void BlockList::Remove(PoolNode* pNode)
{
    pNode->pPrev->pNext = pNode->pNext;
    pNode->pNext->pPrev = pNode->pPrev;
    delete pNode;
    --m_nCount;
}

void BlockList::Clear()
{
    while (Head() != End()) Remove(Head());
}

PoolNode* BlockList::InsertBehind(PoolNode* pPrev, uintptr_t nStart, size_t nSize)
{
    PoolNode* pNode = new (std::nothrow) PoolNode{pPrev, pPrev->pNext, nStart, nSize, 1};
    if (pNode == nullptr) return nullptr;
    pPrev->pNext->pPrev = pNode;
    pPrev->pNext = pNode;
    ++m_nCount;
    return pNode;
}

}  // namespace vkr
