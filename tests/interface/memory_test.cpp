#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>

#include "foundation/mem_pool.h"
#include "local_curve/local_curve_rows.h"
#include "support/parameter_file.h"
#include "support/quiet_lines.h"
#include "support/raw_memory.h"
#include "support/test_burst.h"
#include "vkrHdr.h"

// Scratch of one size is refused; the sanitizers have an allocator of their own.
#if defined(__GLIBC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define VKR_HEAP_CAN_REFUSE
static size_t g_nRefusedBytes = 0;
void* aligned_alloc(size_t nAlignment, size_t nBytes) noexcept
{
    return nBytes == g_nRefusedBytes ? nullptr : memalign(nAlignment, nBytes);
}
#endif

namespace vkr {
namespace {

// Bursts through the C interface over counted raw memory. The pool is held open around the engine, so that what the
// engine leaves behind is seen.
class MemoryTest : public testing::Test {
protected:
    void SetUp() override { PoolInit(0); }
    void TearDown() override
    {
        EXPECT_EQ(0U, ReadPoolUse().nUsedBytes);
        PoolRelease();
        EXPECT_EQ(0U, m_raw.Live());
    }

    void InitEngine() { InitEngine(m_file); }
    static void InitEngine(const ParameterFile& file) { ASSERT_EQ(0, vkrHdrInit({file.Path(), nullptr, 0})); }

    // 0, or -1 and nothing written; never a byte between the rows of the host's planes or behind them.
    static int Burst(int w, int h, int nExposureNum)
    {
        for (int k = 0; k < nExposureNum; ++k) {
            HostPicture picture = DrawExposure(w, h, k, nExposureNum, 3);
            const int nAdded = vkrHdrAddFrame(static_cast<uint32_t>(k), picture.Frame());
            if (nAdded == 0) continue;
            EXPECT_EQ(-1, nAdded);
            return -1;
        }
        HostPicture out(w, h, 3);
        const int nRendered = vkrHdrRender(nExposureNum, nExposureNum / 2, 0, 1, nullptr, out.Frame());
        EXPECT_TRUE(out.PaddingIntact());
        if (nRendered != 0) {
            EXPECT_EQ(-1, nRendered);
            EXPECT_TRUE(out.Untouched());
        }
        return nRendered;
    }

    static std::vector<uint8_t> BurstPixels(int w, int h, int nExposureNum)
    {
        HostPicture out(w, h);
        for (int k = 0; k < nExposureNum; ++k) {
            vkrHdrAddFrame(static_cast<uint32_t>(k), DrawExposure(w, h, k, nExposureNum).Frame());
        }
        EXPECT_EQ(0, vkrHdrRender(nExposureNum, nExposureNum / 2, 0, 1, nullptr, out.Frame()));
        return out.Pixels();
    }

    LinesScope m_lines;
    ParameterFile m_file;
    RawMemory m_raw;
};

// A pool of nBytes that can not grow, for one scope; a block of it keeps its region from going back.
class NarrowPool {
public:
    NarrowPool(RawMemory& raw, size_t nBytes) : m_Raw(raw)
    {
        PoolInit(nBytes + 64);
        m_pKept = PoolAlloc(64);
        m_Raw.Refuse(0, SIZE_MAX);
    }
    ~NarrowPool()
    {
        PoolFree(m_pKept);
        PoolRelease();
    }
    NarrowPool(const NarrowPool&) = delete;
    NarrowPool& operator=(const NarrowPool&) = delete;

    void Widen() { m_Raw.Refuse(0, 0); }

private:
    RawMemory& m_Raw;
    void* m_pKept;
};

// Bursts whose sides alignment has to pad, but for the first: nLevel is its coarsest level, nStep the bytes by which a
// pool grows that is too small for them.
struct Case {
    int w, h, nExposureNum, nLevel;
    size_t nStep;
};
constexpr Case kCases[] = {{48, 40, 3, 3, 2048}, {50, 42, 2, 3, 2048}, {70, 54, 3, 8, 8192}, {50, 42, 4, 3, 4096},
                           {70, 54, 5, 3, 8192}, {50, 42, 5, 8, 8192}, {70, 54, 6, 3, 8192}, {50, 42, 7, 8, 8192},
                           {70, 54, 8, 3, 8192}, {70, 54, 8, 8, 8192}};

class MemoryOfBursts : public MemoryTest, public testing::WithParamInterface<Case> {
protected:
    int Burst() const { return MemoryTest::Burst(GetParam().w, GetParam().h, GetParam().nExposureNum); }
    const ParameterFile m_levels{{"CMultipleImagesAlignFilter.nFeatureMatchLevel", GetParam().nLevel},
                                 {"CMultipleImagesAlignFilter.nMinFeatureNum", 8}};
};
INSTANTIATE_TEST_SUITE_P(Sizes, MemoryOfBursts, testing::ValuesIn(kCases));

TEST_P(MemoryOfBursts, EveryRefusedRegionEndsInAnAnswer)
{
    for (const size_t nCount : {size_t{1}, SIZE_MAX / 2}) {
        size_t nCalls = 0, nRefused = 0;
        do {
            SCOPED_TRACE(nRefused);
            const size_t nBefore = m_raw.Calls();
            m_raw.Refuse(nRefused, nCount);
            InitEngine(m_levels);
            Burst();
            nCalls = m_raw.Calls() - nBefore;
            m_raw.Refuse(0, 0);
            EXPECT_EQ(0, Burst());
            EXPECT_EQ(0, vkrHdrUninit());
            EXPECT_EQ(0U, ReadPoolUse().nUsedBytes);
        } while (nRefused++ < nCalls);
    }
}

// More and more is there until it is enough: each of the burst's blocks is the one that fails, at one size or another.
TEST_P(MemoryOfBursts, EveryBlockThatFailsEndsInAnAnswer)
{
    int nTooSmall = 0;
    for (size_t nBytes = 0, nRefused = 1; nRefused != 0; nBytes += GetParam().nStep) {
        SCOPED_TRACE(nBytes);
        NarrowPool pool(m_raw, nBytes);
        InitEngine(m_levels);
        const size_t nBefore = m_raw.Calls();
        const int nResult = Burst();
        nRefused = m_raw.Calls() - nBefore;
        nTooSmall += nRefused != 0;
        EXPECT_TRUE(nRefused != 0 || nResult == 0);
        pool.Widen();
        EXPECT_EQ(0, Burst());
        EXPECT_EQ(0, vkrHdrUninit());
    }
    EXPECT_GT(nTooSmall, 10);
}

#ifdef VKR_HEAP_CAN_REFUSE
// Without memory for the tables of its curves a burst ends as one without local contrast.
TEST_F(MemoryTest, LocalCurvesThatFailLeaveThePicture)
{
    for (const int nExposureNum : {1, 3}) {
        const auto burst = [&](int bContrast, size_t nRefused) {
            const ParameterFile file({{"bContrastEnable", bContrast}});
            InitEngine(file);
            g_nRefusedBytes = nRefused;
            const std::vector<uint8_t> vPixels = BurstPixels(64, 48, nExposureNum);
            g_nRefusedBytes = 0;
            EXPECT_EQ(0, vkrHdrUninit());
            return vPixels;
        };
        const std::vector<uint8_t> vPlain = burst(0, 0);
        EXPECT_NE(vPlain, burst(1, 0));
        EXPECT_EQ(vPlain, burst(1, (8 * 8 * sizeof(BlockTable) + 63) / 64 * 64));
        EXPECT_TRUE(m_lines.Contains("no memory for the local curves"));
        m_lines.Text().clear();
    }
}
#endif

TEST_F(MemoryTest, LaterBurstsLeaveTheHeapAlone)
{
    InitEngine();
    ASSERT_EQ(0, Burst(64, 48, 3));
    ASSERT_EQ(0, Burst(120, 88, 5));
    const PoolUse before = ReadPoolUse();
    const size_t nCalls = m_raw.Calls();
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(0, Burst(64, 48, 3));
        ASSERT_EQ(0, Burst(120, 88, 5));
    }
    const PoolUse after = ReadPoolUse();
    EXPECT_EQ(before.nRegionBytes, after.nRegionBytes);
    EXPECT_EQ(before.nUsedBytes, after.nUsedBytes);
    EXPECT_EQ(before.nBlocks, after.nBlocks);
    EXPECT_EQ(nCalls, m_raw.Calls());
    vkrHdrUninit();
}

}  // namespace
}  // namespace vkr
