#include "kernels/kernel_harness.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "support/for_threads.h"

namespace vkr {

namespace {

struct Kernel {
    std::string sName;
    KernelSizes sizes;
    KernelBody pBody;
};

std::vector<Kernel>& Kernels()
{
    static std::vector<Kernel> vKernels;
    return vKernels;
}

// 0 is the best instruction set of the machine.
void DispatchTo(int64_t nTargets)
{
    hwy::SetSupportedTargetsForTest(nTargets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

// All tails of three vectors of 64 bytes, then the ends of strips and runs.
std::vector<int> Counts(const Kernel& kernel)
{
    std::vector<int> vCounts;
    for (int n = 0; n <= (kernel.sizes.vDims.size() > 2 ? 100 : 200); ++n) vCounts.push_back(n);
    vCounts.insert(vCounts.end(), {255, 256, 257, 511, 512, 513, 1100});
    const auto bUnfit = [&](int n) {
        return n < kernel.sizes.nFewest || n > kernel.sizes.nMost || n % kernel.sizes.nMultiple != 0;
    };
    vCounts.erase(std::remove_if(vCounts.begin(), vCounts.end(), bUnfit), vCounts.end());
    return vCounts;
}

class KernelTest : public testing::Test {
public:
    explicit KernelTest(const Kernel& kernel) : m_kernel(kernel) {}

    void TestBody() override
    {
        for (const int64_t nTarget : hwy::SupportedAndGeneratedTargets()) {
            DispatchTo(nTarget);
            SCOPED_TRACE(hwy::TargetName(nTarget));
            if (m_kernel.sizes.bTeams) {
                ForThreads([&](int nThreads) {
                    SCOPED_TRACE(testing::Message() << nThreads << " threads");
                    ExpectEqual();
                });
            } else {
                ExpectEqual();
            }
            if (HasFailure()) break;
        }
        DispatchTo(0);
    }

private:
    void ExpectEqual()
    {
        uint32_t nSeed = 0;
        for (const int nCount : Counts(m_kernel)) {
            for (const int nDim : m_kernel.sizes.vDims) {
                for (int i = 0; i < m_kernel.sizes.nRounds; ++i)
                    ASSERT_NO_FATAL_FAILURE(ExpectEqual(nCount, nDim, nSeed++));
            }
        }
    }
    void ExpectEqual(int nCount, int nDim, uint32_t nSeed)
    {
        for (FencedRows* pRows : {&m_plain, &m_fast}) {
            pRows->Rewind();
            KernelRun run(pRows == &m_plain ? Form::kPlain : Form::kFast, nCount, nDim, nSeed, *pRows);
            m_kernel.pBody(run);
            ASSERT_TRUE(pRows->Intact()) << nCount << " pixels of " << nDim << ", seed " << nSeed;
        }
        ASSERT_TRUE(m_fast.SameAs(m_plain)) << nCount << " pixels of " << nDim << ", seed " << nSeed;
    }

    const Kernel& m_kernel;
    FencedRows m_plain, m_fast;
};

// Nanoseconds of both forms on the longest row that the kernel takes, up to nLongest pixels.
void PrintTimes(double fMilliseconds)
{
    constexpr int nLongest = 4096;
    std::printf("%-28s %8s %12s %12s %8s\n", "kernel", "samples", "plain ns", "fast ns", "gain");
    for (const Kernel& kernel : Kernels()) {
        const int nCount = std::min(kernel.sizes.nMost, nLongest);
        const auto& vDims = kernel.sizes.vDims;
        const int nDim = std::count(vDims.begin(), vDims.end(), 3) != 0 ? 3 : vDims.front();
        const auto Nanoseconds = [&](Form form) {
            FencedRows rows;
            KernelRun run(form, nCount, nDim, 2, rows);
            run.TimeFor(fMilliseconds);
            kernel.pBody(run);
            return run.Nanoseconds();
        };
        const double fPlain = Nanoseconds(Form::kPlain), fFast = Nanoseconds(Form::kFast);
        std::printf("%-28s %8d %12.0f %12.0f %8.2f\n", kernel.sName.c_str(), nCount * nDim, fPlain, fFast,
                    fPlain / fFast);
    }
}

}  // namespace

bool RegisterKernel(const char* pName, const KernelSizes& sizes, KernelBody pBody)
{
    Kernels().push_back({pName, sizes, pBody});
    return true;
}

}  // namespace vkr

// With --bench[=milliseconds for each form] a table of times instead of the tests.
int main(int argc, char** argv)
{
    const std::string sOption = argc > 1 ? argv[1] : "";
    if (sOption.rfind("--bench", 0) == 0) {
        vkr::PrintTimes(sOption.size() > 8 ? std::atof(sOption.c_str() + 8) : 50);
        return 0;
    }
    auto& vKernels = vkr::Kernels();
    std::sort(vKernels.begin(), vKernels.end(), [](const auto& a, const auto& b) { return a.sName < b.sName; });
    for (const auto& kernel : vKernels) {
        testing::RegisterTest("Kernel", kernel.sName.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [&kernel]() -> testing::Test* { return new vkr::KernelTest(kernel); });
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
