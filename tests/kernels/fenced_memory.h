#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace vkr {

enum class Use { kRead, kCompared, kScratch };

// Memory between two pages that nobody may touch.
class FencedBlock {
public:
    explicit FencedBlock(size_t nBytes);
    ~FencedBlock();
    FencedBlock(const FencedBlock&) = delete;
    FencedBlock& operator=(const FencedBlock&) = delete;
    uint8_t* Begin() const { return m_pBegin; }
    size_t Size() const { return m_nBytes; }

private:
    uint8_t* m_pBegin;
    size_t m_nBytes;  // whole pages
};

// The rows of one call of a kernel, each in a block of its own that the next call takes again: at the very end of the
// block or at its start, so that a step beyond that side is a fault; on the other side stand known bytes.
class FencedRows {
public:
    void Rewind() { m_nTaken = 0; }
    void* Take(size_t nBytes, bool bAtEnd, Use use);
    bool Intact() const;
    // Whether both calls left the same bytes in all rows that are compared.
    bool SameAs(const FencedRows& other) const;

private:
    struct Row {
        std::unique_ptr<FencedBlock> pBlock;
        size_t nBytes;
        bool bAtEnd;
        Use use;
        uint8_t* Begin() const { return pBlock->Begin() + (bAtEnd ? pBlock->Size() - nBytes : 0); }
        uint8_t* Guard() const { return bAtEnd ? Begin() - kGuard : Begin() + nBytes; }
    };
    static constexpr size_t kGuard = 128;
    static constexpr uint8_t kFill = 0xA5;
    std::vector<Row> m_vRows;
    size_t m_nTaken = 0;
};

}  // namespace vkr
