#include "pictures/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "pictures/tool_error.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {
using Names = std::vector<std::string>;
}  // namespace

TEST(WriteWholeFile, ReplacesAndLeavesNothingElse)
{
    const TestFolder folder;
    WriteWholeFile(folder.Path("a"), {1, 2, 3});
    const Bytes vLarge(3000000, 7);
    WriteWholeFile(folder.Path("a"), vLarge);
    EXPECT_EQ(vLarge, ReadWholeFile(folder.Path("a")));
    WriteWholeFile(folder.Path("a"), {});
    EXPECT_TRUE(ReadWholeFile(folder.Path("a")).empty());
    EXPECT_EQ(Names{"a"}, folder.Names());
}

TEST(WriteWholeFile, FollowsTheUsersMaskAndLinks)
{
    const TestFolder folder;
    const mode_t nBefore = umask(027);
    WriteWholeFile(folder.Path("a"), {1});
    umask(nBefore);
    struct stat info {};
    ASSERT_EQ(0, stat(folder.Path("a").c_str(), &info));
    EXPECT_EQ(0640u, info.st_mode & 0777u);
    std::filesystem::create_symlink("a", folder.Path("link"));
    WriteWholeFile(folder.Path("link"), {2});
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link")));
    EXPECT_EQ(Bytes{2}, ReadWholeFile(folder.Path("a")));
}

TEST(WriteWholeFile, LeavesAllAsItWasOnFailure)
{
    const TestFolder folder;
    std::filesystem::create_directory(folder.Path("taken"));
    EXPECT_THROW(WriteWholeFile(folder.Path("taken"), {1}), BurstError);
    EXPECT_THROW(WriteWholeFile(folder.Path("missing/a"), {1}), BurstError);
    EXPECT_EQ(Names{"taken/"}, folder.Names());
}

TEST(ReadWholeFile, RefusesFoldersAndWhatIsMissing)
{
    const TestFolder folder;
    EXPECT_THROW(ReadWholeFile(folder.Root()), BurstError);
    EXPECT_THROW(ReadWholeFile(folder.Path("missing")), BurstError);
}

TEST(TemporaryFile, IsGoneAtScopeEnd)
{
    std::string sPath;
    {
        const TemporaryFile file;
        sPath = file.Path();
        EXPECT_TRUE(std::filesystem::exists(sPath));
    }
    EXPECT_FALSE(std::filesystem::exists(sPath));
}

}  // namespace vkr::tool
