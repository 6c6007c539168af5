#include <gtest/gtest.h>
#include <omp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "foundation/stage_probe.h"
#include "support/parameter_file.h"
#include "support/quiet_lines.h"
#include "support/test_burst.h"
#include "vkrHdr.h"

#if defined(__SANITIZE_THREAD__)
#define VKR_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VKR_TSAN 1
#endif
#endif

namespace vkr {
namespace {

constexpr int kW = 96, kH = 64, kExposures = 3;

// Empty when the burst fails.
std::vector<uint8_t> Burst()
{
    for (uint32_t k = 0; k < kExposures; ++k) {
        if (vkrHdrAddFrame(k, DrawExposure(kW, kH, static_cast<int>(k), kExposures).Frame()) != 0) return {};
    }
    HostPicture out(kW, kH);
    if (vkrHdrRender(kExposures, 1, 0, 1, nullptr, out.Frame()) != 0) return {};
    return out.Pixels();
}

// True when fn returns true in a forked process, within half a minute.
template <class Fn>
bool HoldsInChild(const Fn& fn)
{
    const pid_t nChild = fork();
    if (nChild == 0) {
        alarm(30);
        _exit(fn() ? 0 : 1);
    }
    int nStatus = -1;
    EXPECT_EQ(nChild, waitpid(nChild, &nStatus, 0));
    EXPECT_FALSE(WIFSIGNALED(nStatus)) << "signal " << WTERMSIG(nStatus);
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

class ForkTest : public testing::Test {
protected:
    void SetUp() override
    {
#ifdef VKR_TSAN
        GTEST_SKIP() << "the thread sanitizer does not follow a fork";
#endif
        m_nTeam = omp_get_max_threads();
        omp_set_num_threads(3);
        ASSERT_EQ(0, vkrHdrInit({m_file.Path(), nullptr, 0}));
    }
    void TearDown() override
    {
        vkrHdrUninit();
        omp_set_num_threads(m_nTeam);
    }

    int m_nTeam = 1;
    LinesScope m_lines;
    ParameterFile m_file;
};

// The team of the thread that forks does not live in the child: a row loop that waited for it would never end.
TEST_F(ForkTest, TheChildOfABurstFusesOn)
{
    const std::vector<uint8_t> vFirst = Burst(), vSecond = Burst();
    ASSERT_FALSE(vFirst.empty());
    EXPECT_TRUE(HoldsInChild([&] {
        const bool bGoesOn = !Burst().empty() && Burst().size() == vSecond.size();
        const bool bAnew = vkrHdrUninit() == 0 && vkrHdrInit({m_file.Path(), nullptr, 0}) == 0 && Burst() == vFirst;
        return bGoesOn && bAnew && HoldsInChild([&] { return !Burst().empty(); });
    }));
    EXPECT_FALSE(Burst().empty());
}

// Here the fork finds another thread inside a call: what that call holds is lost to the child, which is told so.
TEST_F(ForkTest, TheChildOfARunningCallIsRefused)
{
    static std::atomic<bool> bInside, bGoOn;
    bInside = bGoOn = false;
    StageProbe probe{};
    probe.pOnYuvImage = [](void*, const char*, const CYuvImage&) {
        bInside = true;
        while (!bGoOn) std::this_thread::yield();
    };
    SetStageProbe(&probe);
    std::vector<uint8_t> vPixels;
    std::thread renderer([&] { vPixels = Burst(); });
    while (!bInside) std::this_thread::yield();
    EXPECT_TRUE(HoldsInChild([&] {
        m_lines.Text().clear();
        const bool bRefused = vkrHdrAddFrame(0, DrawExposure(kW, kH, 0, 1).Frame()) == -1 &&
                              m_lines.Contains("vkrHdrAddFrame: this process was forked while");
        return bRefused && vkrHdrInit({m_file.Path(), nullptr, 0}) == -1 && vkrHdrGetVersion() != nullptr &&
               vkrHdrUninit() == 0;
    }));
    bGoOn = true;
    renderer.join();
    SetStageProbe(nullptr);
    EXPECT_FALSE(vPixels.empty());
}

}  // namespace
}  // namespace vkr
