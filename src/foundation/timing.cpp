#include "foundation/timing.h"

#include <sys/time.h>

#include <cstdlib>
#include <exception>
#include <mutex>

#include "foundation/log.h"

namespace vkr {

uint8_t g_bProfileEnable = 1;

namespace {

// Start times, the latest last. Without memory the stack still counts its entries, so that brackets stay paired; an
// entry without a place reports 0 ms.
class TimerStack {
public:
    constexpr TimerStack() = default;
    ~TimerStack()
    {
        std::free(m_pTimes);
        m_pTimes = nullptr;
        m_nPlaces = 0;
    }
    TimerStack(const TimerStack&) = delete;
    TimerStack& operator=(const TimerStack&) = delete;

    void Push(int64_t nTime)
    {
        if (m_nDepth == m_nPlaces) Resize(m_nPlaces + kBlock);
        if (m_nDepth < m_nPlaces) m_pTimes[m_nDepth] = nTime;
        ++m_nDepth;
    }
    // Time since the top entry, which goes; 0 from an empty stack.
    int64_t PopElapsed(int64_t nNow)
    {
        if (m_nDepth == 0) return 0;
        const int64_t nElapsed = m_nDepth <= m_nPlaces ? nNow - m_pTimes[m_nDepth - 1] : 0;
        --m_nDepth;
        while (m_nPlaces > m_nDepth + kSpare && Resize(m_nPlaces - kBlock)) {
        }
        return nElapsed;
    }

private:
    static constexpr size_t kBlock = 512, kSpare = 1024;  // entries; a few stay, so that bursts do not allocate

    bool Resize(size_t nPlaces)
    {
        void* const pTimes = std::realloc(m_pTimes, nPlaces * sizeof(int64_t));
        if (pTimes == nullptr) return false;
        m_pTimes = static_cast<int64_t*>(pTimes);
        m_nPlaces = nPlaces;
        return true;
    }

    int64_t* m_pTimes = nullptr;
    size_t m_nPlaces = 0, m_nDepth = 0;
};

TimerStack g_Timers;
std::mutex g_TimerMutex;

void CloseSilently()
{
    if (g_bProfileEnable == 0) return;
    const std::lock_guard<std::mutex> lock(g_TimerMutex);
    g_Timers.PopElapsed(0);
}

}  // namespace

void Tic()
{
    if (g_bProfileEnable == 0) return;
    const std::lock_guard<std::mutex> lock(g_TimerMutex);
    g_Timers.Push(NowMs());
}

void Toc(const char* pText)
{
    if (g_bProfileEnable == 0) return;
    int nElapsed = 0;
    {
        const std::lock_guard<std::mutex> lock(g_TimerMutex);
        nElapsed = static_cast<int>(g_Timers.PopElapsed(NowMs()));
    }
    const char* const pShown = pText != nullptr ? pText : "";
    HdrPrintf("%-56s %6d ms\n", pShown, nElapsed);
    HdrLog("%-56s %6d ms", pShown, nElapsed);
}

StageTimer::StageTimer(const char* pText) : m_pText(pText), m_nExceptions(std::uncaught_exceptions())
{
    Tic();
}

StageTimer::~StageTimer()
{
    if (std::uncaught_exceptions() == m_nExceptions) {
        Toc(m_pText);
    } else {
        CloseSilently();
    }
}

GoalTimer::GoalTimer(const char* pText) : m_pText(pText)
{
    Tic();
}

GoalTimer::~GoalTimer()
{
    if (m_pText != nullptr) CloseSilently();
}

void GoalTimer::Reached()
{
    Toc(m_pText);
    m_pText = nullptr;
}

int64_t NowMs()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    // The product of the seconds is one of signed 32 bits that wraps: formed without a sign, then read with one.
    const uint32_t nWrapped = static_cast<uint32_t>(now.tv_sec) * 1000U;
    const int64_t nSecondsMs = nWrapped < 0x80000000U ? int64_t{nWrapped} : int64_t{nWrapped} - 0x100000000;
    return static_cast<int64_t>(static_cast<double>(nSecondsMs) + static_cast<double>(now.tv_usec) / 1000.0);
}

}  // namespace vkr
