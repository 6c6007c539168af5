#include "pictures/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

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

TEST(WriteWholeFile, TakesTheLongestNames)
{
    const TestFolder folder;
    const std::string sName(255, 'n');
    WriteWholeFile(folder.Path(sName), {1});
    EXPECT_EQ(Names{sName}, folder.Names());
}

TEST(WriteWholeFile, LeavesAllAsItWasOnFailure)
{
    const TestFolder folder;
    std::filesystem::create_directory(folder.Path("taken"));
    std::filesystem::create_symlink("missing", folder.Path("dangling"));
    for (const char* pName : {"taken", "missing/a", "dangling"}) {
        EXPECT_THROW(WriteWholeFile(folder.Path(pName), {1}), BurstError) << pName;
    }
    EXPECT_EQ((Names{"dangling", "taken/"}), folder.Names());
}

TEST(WriteWholeFile, KeepsAProtectedFileUnderAllItsNames)
{
    const TestFolder folder;
    WriteWholeFile(folder.Path("a"), {1});
    std::filesystem::create_symlink("a", folder.Path("soft"));
    std::filesystem::create_hard_link(folder.Path("a"), folder.Path("hard"));
    ProtectFile(folder.Path("soft"));
    for (const char* pName : {"a", "soft", "hard"}) {
        EXPECT_THROW(WriteWholeFile(folder.Path(pName), {2}), UsageError) << pName;
        EXPECT_THROW(CheckPlace(folder.Path(pName)), UsageError) << pName;
    }
    EXPECT_EQ(Bytes{1}, ReadWholeFile(folder.Path("a")));
}

// Also what would keep a reader waiting or reading for ever; none of it is even opened for long.
TEST(ReadWholeFile, RefusesWhatIsNoFileOrTooLarge)
{
    const TestFolder folder;
    ASSERT_EQ(0, mkfifo(folder.Path("pipe").c_str(), 0600));
    WriteWholeFile(folder.Path("ten"), Bytes(10));
    WriteWholeFile(folder.Path("huge"), {});
    std::filesystem::resize_file(folder.Path("huge"), size_t{1} << 30);
    EXPECT_EQ(10u, ReadWholeFile(folder.Path("ten"), 10).size());
    const struct {
        std::string sPath, sWords;
        size_t nMost;
    } vCases[] = {
        {folder.Root(), "is a folder", 10},         {folder.Path("missing"), "can not be read", 10},
        {folder.Path("pipe"), "is a pipe", 10},     {"/dev/zero", "is a device", 10},
        {folder.Path("ten"), "more than the 9", 9}, {folder.Path("huge"), "1073741824 bytes", kMostPictureBytes}};
    for (const auto& c : vCases) {
        try {
            ReadWholeFile(c.sPath, c.nMost);
            ADD_FAILURE() << c.sPath;
        } catch (const BurstError& error) {
            EXPECT_NE(std::string::npos, std::string(error.what()).find(c.sWords)) << error.what();
        }
    }
}

TEST(OwnFileDeathTest, IsGoneAfterASignal)
{
    const TestFolder folder;
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        const auto fnDie = [&] {
            RemoveOwnFilesOnSignals();
            const OwnFile first(folder.Root()), second(folder.Root());
            if (folder.Names().size() == 2) raise(nSignal);
        };
        EXPECT_EXIT(fnDie(), testing::KilledBySignal(nSignal), "");
        EXPECT_EQ(Names{}, folder.Names());
    }
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
