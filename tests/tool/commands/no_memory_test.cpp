#include <gtest/gtest.h>

#include <cstdlib>

#include "run_tool.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

// From the n-th request on there is no memory, for n from nothing to all that the program asks for: it ends by itself,
// says why, and leaves no half of a file.
TEST(NoMemory, IsALineAndAnOrdinaryEnd)
{
#ifndef VKRHDR_FAILING_MEMORY
    GTEST_SKIP() << "the sanitizers have an allocator of their own";
#else
    const std::vector<Frame> vFrames = DrawnFrames(64, 48);
    const TestFolder folder, counts;
    Names vFuse = {"fuse"};
    for (size_t k = 0; k < vFrames.size(); ++k) {
        vFuse.push_back(std::to_string(k) + ".jpg");
        WriteWholeFile(folder.Path(vFuse.back()), WriteJpeg(vFrames[k], 95));
    }
    vFuse.insert(vFuse.end(), {"--threads", "2", "-o", "fused.png"});
    const auto run = [&](const Names& vArguments, long nGiven) {
        return RunTool(folder, vArguments,
                       "LD_PRELOAD=" VKRHDR_FAILING_MEMORY " OMP_WAIT_POLICY=passive VKRHDR_MEMORY_COUNT='" +
                           counts.Path("count") + "' VKRHDR_MEMORY_CALLS=" + std::to_string(nGiven));
    };
    for (const Names& vArguments : {vFuse, Names{"params", "--preset", "photo"}}) {
        WriteWholeFile(folder.Path("fused.png"), {});
        ASSERT_EQ(0, run(vArguments, 1000000000).nStatus);
        const long nAll = std::atol(ReadText(counts.Path("count")).c_str());
        ASSERT_GT(nAll, 100);
        const std::string sFused = folder.Path("fused.png"), sWhole = ReadText(sFused);
        std::filesystem::remove(sFused);
        const Names vBefore = folder.Names();
        const int nRuns = vArguments.size() > 4 ? 60 : 12;
        for (int i = 0; i < nRuns; ++i) {
            const ToolRun failed = run(vArguments, nAll * i / nRuns);
            SCOPED_TRACE(failed.sErr);
            EXPECT_EQ(1, failed.nStatus) << i;
            // OpenMP's runtime ends the process by itself where it can not make its team.
            const bool bTeam = failed.sErr.find("libgomp: Thread creation failed") != std::string::npos;
            EXPECT_TRUE(bTeam || failed.sErr.find("memory") != std::string::npos) << i;
            // Only the options' parser can not throw what it should.
            if (failed.sErr.find("not even to say more") != std::string::npos) {
                EXPECT_EQ(1, failed.ErrorLines());
            }
            if (std::filesystem::exists(sFused)) {
                EXPECT_EQ(sWhole, ReadText(sFused));
            }
            std::filesystem::remove(sFused);
            EXPECT_EQ(vBefore, folder.Names());
        }
    }
#endif
}

}  // namespace

}  // namespace vkr::tool
