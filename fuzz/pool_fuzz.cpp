#include <fuzzer/FuzzedDataProvider.h>

#include <vector>

#include "foundation/log.h"
#include "fuzz_check.h"
#include "reserved_memory.h"
#include "support/pool_model.h"
#include "support/raw_memory.h"

// A sequence of opens, requests, releases and refusals of raw memory, against the model: the same places, the same raw
// memory, the same counts, aligned blocks that keep what their holder wrote.

namespace vkr {
namespace {

// A region for every step, each as large as the largest that a request brings, twice 1 GiB; what no case touches takes
// no memory.
constexpr int kSteps = 400;
using Reserved = ReservedMemory<kSteps, (size_t{2} << 30) + 4096>;

struct Held {
    uint8_t* pBytes;
    size_t nBytes;
    PoolModel::Block block;
    uint8_t nTag;
};

class PoolSteps {
public:
    explicit PoolSteps(FuzzedDataProvider& data) : m_Data(data), m_Raw({Reserved::Take, Reserved::Give}), m_Model(m_Raw)
    {
    }
    ~PoolSteps()
    {
        while (m_nUsers-- > 0) PoolRelease();
    }

    void Run()
    {
        for (int i = 0; i < kSteps && m_Data.remaining_bytes() > 0; ++i) {
            Step();
            FUZZ_CHECK(m_Raw.TakeEvents() == m_Model.TakeEvents());
            const PoolUse use = ReadPoolUse(), model = m_Model.Use();
            FUZZ_CHECK(use.nRegions == model.nRegions && use.nRegionBytes == model.nRegionBytes);
            FUZZ_CHECK(use.nBlocks == model.nBlocks && use.nUsedBytes == model.nUsedBytes);
        }
    }

private:
    size_t RandomRequest()
    {
        switch (m_Data.ConsumeIntegralInRange(0, 4)) {
            case 0:
                return m_Data.ConsumeIntegral<uint8_t>();
            case 1:
                return m_Data.ConsumeIntegral<uint16_t>();
            case 2:
                return (6U << 20) - 64 + m_Data.ConsumeIntegral<uint8_t>();
            case 3:
                return m_Data.ConsumeIntegral<uint32_t>() % (9U << 20);
            default:
                return m_Data.ConsumeIntegral<size_t>();
        }
    }
    void Step()
    {
        const int nChoice = m_Data.ConsumeIntegralInRange(0, 31);
        if (nChoice == 0) {
            Open();
        } else if (nChoice == 1) {
            Close();
        } else if (nChoice == 2) {
            m_Raw.Refuse(m_Data.ConsumeIntegralInRange(0, 2), m_Data.ConsumeIntegralInRange(1, 2));
        } else if (nChoice < 18) {
            Take();
        } else if (!m_vHeld.empty()) {
            GiveBack(m_Data.ConsumeIntegralInRange<size_t>(0, m_vHeld.size() - 1));
        }
    }
    void Open()
    {
        const bool bBig = m_Data.ConsumeIntegralInRange(0, 31) == 0;
        const size_t nBytes = m_Data.ConsumeIntegral<uint32_t>() % (bBig ? 70U << 20 : 1U << 20);
        m_Model.Init(nBytes);
        PoolInit(nBytes);
        if (++m_nUsers == 1) m_vHeld.clear();  // forgotten, at least in part
    }
    void Close()
    {
        if (m_nUsers <= 1) m_vHeld.clear();
        m_nUsers = std::max(m_nUsers - 1, 0);
        m_Model.Release();
        PoolRelease();
    }
    void Take()
    {
        Held held{nullptr, RandomRequest(), {}, m_Data.ConsumeIntegral<uint8_t>()};
        held.block = m_Model.Allocate(held.nBytes);
        held.pBytes = static_cast<uint8_t*>(PoolAlloc(held.nBytes));
        FUZZ_CHECK(held.block.Null() == (held.pBytes == nullptr));
        if (held.pBytes == nullptr) return;
        FUZZ_CHECK(held.pBytes == m_Raw.Base(held.block.nCall) + 128 + held.block.nOffset);
        FUZZ_CHECK(reinterpret_cast<uintptr_t>(held.pBytes) % 64 == 0);
        if (held.nBytes > 0) held.pBytes[0] = held.pBytes[held.nBytes - 1] = held.nTag;
        m_vHeld.push_back(held);
    }
    void GiveBack(size_t i)
    {
        const Held held = m_vHeld[i];
        if (held.nBytes > 0) {
            FUZZ_CHECK(held.pBytes[0] == held.nTag && held.pBytes[held.nBytes - 1] == held.nTag);
        }
        m_vHeld.erase(m_vHeld.begin() + static_cast<std::ptrdiff_t>(i));
        m_Model.Free(held.block);
        PoolFree(held.pBytes);
        PoolFree(held.pBytes);  // no block in use any more
    }

    FuzzedDataProvider& m_Data;
    RawMemory m_Raw;
    PoolModel m_Model;
    std::vector<Held> m_vHeld;
    int m_nUsers = 0;
};

}  // namespace
}  // namespace vkr

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    vkr::SetHdrPrintSink([](const char*) {});
    FuzzedDataProvider data(pData, nBytes);
    vkr::PoolSteps(data).Run();
    return 0;
}
