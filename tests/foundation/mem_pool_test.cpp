#include "foundation/mem_pool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <thread>
#include <vector>

#include "support/pool_model.h"
#include "support/raw_memory.h"

#ifdef VKRHDR_POOL_CHECK
#include <sanitizer/asan_interface.h>
#endif

namespace vkr {

static void PrintTo(const RawMemory::Event& event, std::ostream* pOut)
{
    *pOut << (event.bAllocate ? "allocate #" : "free #") << event.nCall << " " << event.nBytes;
}

namespace {

using Events = std::vector<RawMemory::Event>;
constexpr size_t kMiB = 1U << 20;

TEST(MemPool, OpensWithTheRegionsOfItsSize)
{
    RawMemory raw;
    PoolInit(314572800);
    EXPECT_EQ(raw.TakeEvents(), (Events{{true, 0, 192937984 + 128}, {true, 1, 121634816 + 128}}));
    PoolRelease();
    PoolInit(60 * kMiB);
    PoolRelease();
    EXPECT_EQ(raw.TakeEvents(), (Events{{false, 1, 0}, {false, 0, 0}, {true, 2, 60 * kMiB + 128}, {false, 2, 0}}));
    EXPECT_EQ(raw.Live(), 0U);
}

TEST(MemPool, RequestsBringTheRegionOfTheirFamily)
{
    RawMemory raw;
    void* vBlocks[] = {PoolAlloc(0), PoolAlloc(1), PoolAlloc(6 * kMiB), PoolAlloc(6 * kMiB + 1), PoolAlloc(36 * kMiB)};
    EXPECT_EQ(raw.TakeEvents(),
              (Events{{true, 0, 20 * kMiB + 128}, {true, 1, 40 * kMiB + 128}, {true, 2, 72 * kMiB + 128}}));
    EXPECT_EQ(ReadPoolUse().nUsedBytes, 64 + 64 + 6 * kMiB + 6 * kMiB + 64 + 36 * kMiB);
    for (void* pBlock : vBlocks) PoolFree(pBlock);
    EXPECT_EQ(raw.Live(), 0U);
    EXPECT_EQ(ReadPoolUse().nUsedBytes, 0U);
    // A request too large for any region: the least one is taken in vain, and stays.
    EXPECT_EQ(PoolAlloc(1024 * kMiB), nullptr);
    EXPECT_EQ(raw.TakeEvents().back(), (RawMemory::Event{true, 3, 40 * kMiB + 128}));
    EXPECT_EQ(PoolAlloc(SIZE_MAX), nullptr);
    EXPECT_EQ(PoolAlloc(SIZE_MAX - 62), nullptr);
    EXPECT_EQ(raw.Calls(), 4U);
}

TEST(MemPool, ARefusedRegionIsANullBlockAndNoMore)
{
    RawMemory raw;
    raw.Refuse(0, 3);
    PoolInit(100 * kMiB);
    EXPECT_EQ(PoolAlloc(100), nullptr);
    EXPECT_EQ(ReadPoolUse().nRegions, 0U);
    EXPECT_NE(PoolAlloc(100), nullptr);
}

TEST(MemPool, AfterTheLastReleaseNothingIsLeft)
{
    RawMemory raw;
    PoolInit(kMiB);
    PoolInit(kMiB);
    void* pBlock = PoolAlloc(1000);
    PoolRelease();
    EXPECT_EQ(raw.Live(), 2U);
    PoolRelease();
    PoolRelease();
    PoolFree(pBlock);
    EXPECT_EQ(raw.Live(), 0U);
    const PoolUse use = ReadPoolUse();
    EXPECT_EQ(use.nBlocks + use.nRegions + use.nUsedBytes, 0U);
}

// Every step of a random sequence against the model: the same addresses, the same raw memory, the same counts, and each
// block keeps what its holder wrote to both its ends.
class RandomPoolSteps {
public:
    explicit RandomPoolSteps(uint32_t nSeed) : m_Rng(nSeed), m_Model(m_Raw) {}
    ~RandomPoolSteps()
    {
        while (m_nUsers-- > 0) PoolRelease();
    }

    void Run(int nSteps)
    {
        for (int i = 0; i < nSteps && !testing::Test::HasFailure(); ++i) {
            SCOPED_TRACE(i);
            Step();
            EXPECT_EQ(m_Raw.TakeEvents(), m_Model.TakeEvents());
            const PoolUse use = ReadPoolUse(), model = m_Model.Use();
            EXPECT_EQ(use.nRegions, model.nRegions);
            EXPECT_EQ(use.nRegionBytes, model.nRegionBytes);
            EXPECT_EQ(use.nBlocks, model.nBlocks);
            EXPECT_EQ(use.nUsedBytes, model.nUsedBytes);
        }
    }

private:
    struct Held {
        uint8_t* pBytes;
        size_t nBytes;
        PoolModel::Block block;
        uint8_t nTag;
    };

    size_t Below(size_t n) { return m_Rng() % n; }
    size_t RandomRequest()
    {
        switch (Below(12)) {
            case 0:
                return Below(3);
            case 1:
                return 6 * kMiB - 64 + Below(129);
            case 2:
                return 6 * kMiB + Below(30 * kMiB);
            case 3:
                return Below(100) == 0 ? (1024 + Below(2048)) * kMiB : 128;
            case 4:
                return Below(6 * kMiB);
            default:
                return Below(300000);
        }
    }
    void Step()
    {
        const size_t nChoice = Below(100);
        if (nChoice < 1) {
            const size_t vSizes[] = {0, 1000003, 60 * kMiB, 60 * kMiB + 1, 64 * kMiB + 9, 100 * kMiB};
            const size_t nBytes = vSizes[Below(6)];
            m_Model.Init(nBytes);
            PoolInit(nBytes);
            if (++m_nUsers == 1) m_vHeld.clear();  // forgotten, at least in part
        } else if (nChoice < 2) {
            if (m_nUsers <= 1) m_vHeld.clear();
            m_nUsers = std::max(m_nUsers - 1, 0);
            m_Model.Release();
            PoolRelease();
        } else if (nChoice < 4) {
            m_Raw.Refuse(Below(3), 1 + Below(2));
        } else if (nChoice < (m_bFilling ? 70U : 30U)) {
            Take();
        } else if (!m_vHeld.empty()) {
            GiveBack(Below(m_vHeld.size()));
        }
        if (m_vHeld.size() > 40) m_bFilling = false;
        if (m_vHeld.empty()) m_bFilling = true;
    }
    void Take()
    {
        Held held{nullptr, RandomRequest(), {}, static_cast<uint8_t>(m_Rng())};
        held.block = m_Model.Allocate(held.nBytes);
        held.pBytes = static_cast<uint8_t*>(PoolAlloc(held.nBytes));
        if (held.block.Null()) {
            EXPECT_EQ(held.pBytes, nullptr);
            return;
        }
        ASSERT_EQ(held.pBytes, m_Raw.Base(held.block.nCall) + 128 + held.block.nOffset);
        ASSERT_EQ(reinterpret_cast<uintptr_t>(held.pBytes) % 64, 0U);
        if (held.nBytes > 0) held.pBytes[0] = held.pBytes[held.nBytes - 1] = held.nTag;
        m_vHeld.push_back(held);
    }
    void GiveBack(size_t i)
    {
        const Held held = m_vHeld[i];
        const uint8_t* pLast = held.pBytes + held.nBytes - 1;
        EXPECT_TRUE(held.nBytes == 0 || (held.pBytes[0] == held.nTag && *pLast == held.nTag));
        m_vHeld.erase(m_vHeld.begin() + static_cast<std::ptrdiff_t>(i));
        m_Model.Free(held.block);
        PoolFree(held.pBytes);
        PoolFree(held.pBytes);  // no block in use any more
    }

    std::mt19937 m_Rng;
    RawMemory m_Raw;
    PoolModel m_Model;
    std::vector<Held> m_vHeld;
    int m_nUsers = 0;
    bool m_bFilling = true;
};

TEST(MemPool, RandomSequencesDoAsTheModel)
{
    for (uint32_t nSeed = 1; nSeed <= 6; ++nSeed) {
        SCOPED_TRACE(nSeed);
        RandomPoolSteps(nSeed).Run(600);
    }
}

TEST(MemPool, ThreadsNeverShareABlock)
{
    RawMemory raw;
    PoolInit(kMiB);
    std::vector<std::thread> vThreads;
    for (int t = 1; t <= 4; ++t) {
        vThreads.emplace_back([t] {
            std::mt19937 rng(static_cast<uint32_t>(t));
            uint8_t* vBlocks[8] = {};
            size_t vBytes[8] = {};
            for (int i = 0; i < 400; ++i) {
                const size_t k = rng() % 8;
                if (vBlocks[k] != nullptr) {
                    for (size_t j = 0; j < vBytes[k]; j += 97) ASSERT_EQ(vBlocks[k][j], t);
                }
                PoolFree(vBlocks[k]);
                vBytes[k] = i < 392 ? rng() % 60000 + (i % 50 == 0 ? 7 * kMiB : 0) : 0;
                vBlocks[k] = static_cast<uint8_t*>(PoolAlloc(vBytes[k]));
                if (vBytes[k] > 0) std::memset(vBlocks[k], t, std::min<size_t>(vBytes[k], 60000));
                vBytes[k] = std::min<size_t>(vBytes[k], 60000);
            }
            for (uint8_t* pBlock : vBlocks) PoolFree(pBlock);
        });
    }
    for (std::thread& thread : vThreads) thread.join();
    EXPECT_EQ(ReadPoolUse().nUsedBytes, 0U);
    EXPECT_EQ(raw.Live(), 0U);
}

TEST(MemPool, CountsTheUseItIsTold)
{
    const PoolUse before = ReadPoolUse();
    PoolNoteUse(1000);
    g_bPoolStatEnable = 0;
    PoolNoteUse(5);
    g_bPoolStatEnable = 1;
    EXPECT_EQ(ReadPoolUse().nRunningUse, before.nRunningUse + 1000);
    EXPECT_EQ(ReadPoolUse().nPeakUse, ReadPoolUse().nRunningUse);
}

#ifdef VKRHDR_POOL_CHECK
TEST(MemPool, OnlyTheBytesAskedForMayBeTouched)
{
    uint8_t* pBlock = static_cast<uint8_t*>(PoolAlloc(100));
    uint8_t* pNext = static_cast<uint8_t*>(PoolAlloc(256));
    EXPECT_TRUE(__asan_address_is_poisoned(pBlock - 1));
    EXPECT_FALSE(__asan_address_is_poisoned(pBlock + 99));
    EXPECT_TRUE(__asan_address_is_poisoned(pBlock + 100));
    EXPECT_TRUE(__asan_address_is_poisoned(pBlock + 127));
    PoolFree(pNext);
    EXPECT_NE(__asan_region_is_poisoned(pNext, 256), nullptr);
    EXPECT_TRUE(__asan_address_is_poisoned(pNext + 255));
    EXPECT_FALSE(__asan_address_is_poisoned(pBlock));
    PoolFree(pBlock);
}
#endif

}  // namespace
}  // namespace vkr
