#include "kernels/fenced_memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vkr {

namespace {

size_t PageBytes()
{
    static const size_t nBytes = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return nBytes;
}

}  // namespace

FencedBlock::FencedBlock(size_t nBytes) : m_nBytes((nBytes + PageBytes() - 1) / PageBytes() * PageBytes())
{
    const size_t nFence = PageBytes();
    void* const p = mmap(nullptr, m_nBytes + 2 * nFence, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) std::abort();
    m_pBegin = static_cast<uint8_t*>(p) + nFence;
    if (mprotect(m_pBegin, m_nBytes, PROT_READ | PROT_WRITE) != 0) std::abort();
}

FencedBlock::~FencedBlock()
{
    munmap(m_pBegin - PageBytes(), m_nBytes + 2 * PageBytes());
}

void* FencedRows::Take(size_t nBytes, bool bAtEnd, Use use)
{
    if (m_nTaken == m_vRows.size()) m_vRows.push_back({});
    Row& row = m_vRows[m_nTaken++];
    if (row.pBlock == nullptr || row.pBlock->Size() < nBytes + kGuard) {
        row.pBlock = std::make_unique<FencedBlock>(2 * nBytes + kGuard);
    }
    row.nBytes = nBytes;
    row.bAtEnd = bAtEnd;
    row.use = use;
    std::memset(bAtEnd ? row.Guard() : row.Begin(), kFill, nBytes + kGuard);
    return row.Begin();
}

bool FencedRows::Intact() const
{
    return std::all_of(m_vRows.begin(), m_vRows.begin() + static_cast<ptrdiff_t>(m_nTaken), [](const Row& row) {
        return std::all_of(row.Guard(), row.Guard() + kGuard, [](uint8_t n) { return n == kFill; });
    });
}

bool FencedRows::SameAs(const FencedRows& other) const
{
    if (m_nTaken != other.m_nTaken) return false;
    for (size_t i = 0; i < m_nTaken; ++i) {
        const Row &a = m_vRows[i], &b = other.m_vRows[i];
        if (a.use == Use::kCompared && !std::equal(a.Begin(), a.Begin() + a.nBytes, b.Begin(), b.Begin() + b.nBytes)) {
            return false;
        }
    }
    return true;
}

}  // namespace vkr
