#include <gtest/gtest.h>
#include <sys/stat.h>

#include "pictures/colour_convert.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

using Names = std::vector<std::string>;

class WrongUse : public testing::Test {
protected:
    WrongUse()
    {
        const std::vector<Frame> vFrames = DrawnFrames(64, 48);
        WriteWholeFile(m_folder.Path("a.jpg"), WriteJpeg(vFrames[0], 90));
        WriteWholeFile(m_folder.Path("b.jpg"), WriteJpeg(vFrames[1], 90));
        WriteWholeFile(m_folder.Path("large.jpg"), WriteJpeg(DrawnFrames(80, 48)[1], 90));
        WriteWholeFile(m_folder.Path("text.txt"), {'w', 'o', 'r', 'd', 's'});
        m_vBefore = m_folder.Names();
    }

    // One line with these words, nothing on standard output, nothing left behind. A failed burst may have told what it
    // did before.
    void ExpectRefused(const Names& vArguments, int nStatus, const std::string& sWords)
    {
        SCOPED_TRACE(testing::PrintToString(vArguments));
        const ToolRun run = RunTool(m_folder, vArguments);
        EXPECT_EQ(nStatus, run.nStatus);
        EXPECT_EQ("", run.sOut);
        EXPECT_NE(std::string::npos, run.sErr.find(sWords)) << run.sErr;
        const std::string sLast = run.sErr.substr(run.sErr.rfind('\n', run.sErr.size() - 2) + 1);
        EXPECT_EQ(0u, sLast.find("vkrhdr: ")) << run.sErr;
        if (nStatus == 2) {
            EXPECT_EQ(1, run.ErrorLines()) << run.sErr;
        }
        EXPECT_EQ(m_vBefore, m_folder.Names());
    }

    TestFolder m_folder;
    Names m_vBefore;
};

}  // namespace

TEST_F(WrongUse, OfTheCommandLineEndsWithStatus2)
{
    ExpectRefused({}, 2, "--help");
    ExpectRefused({"melt"}, 2, "there is no command 'melt'; see vkrhdr --help");
    ExpectRefused({"fuze", "a.jpg", "-o", "out.jpg"}, 2, "there is no command 'fuze'; did you mean fuse?");
    ExpectRefused({"help", "fuze"}, 2, "did you mean fuse?");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--qualtiy", "90"}, 2, "'--qualtiy'; did you mean --quality?");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--verbos"}, 2, "did you mean --verbose?");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--colour=warm"}, 2, "'--colour'; see vkrhdr --help");
    ExpectRefused({"fuse"}, 2, "required");
    ExpectRefused({"fuse", "a.jpg", "b.jpg"}, 2, "--output is required");
    ExpectRefused({"fuse", "a.jpg", "missing.jpg", "-o", "out.jpg"}, 2, "missing.jpg");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.gif"}, 2, ".png");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--quality", "101"}, 2, "100");
    ExpectRefused({"fuse", "a.jpg", "b.jpg", "-o", "out.jpg", "--reference", "2"}, 2, "0 .. 1");
    ExpectRefused({"fuse", "a.jpg", "-o", "missing/out.jpg"}, 2, "no folder");
    ExpectRefused({"fuse", "a.jpg", "-o", "a.jpg/out.jpg"}, 2, "no folder");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.raw", "--raw", "nv12"}, 2, "--size");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.raw", "--raw", "nv12", "--size", "63x48"}, 2, "even");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.raw", "--raw", "yv12", "--size", "64x48"}, 2, "nv21");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--threads", "0"}, 2, "--threads");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--simd", "maybe"}, 2, "--simd");
    ExpectRefused({"align", "a.jpg", "b.jpg"}, 2, "--output is required");
    ExpectRefused({"align", "a.jpg", "-o", "out", "--raw", "nv12"}, 2, "--size");
    ExpectRefused({"align", "a.jpg", "-o", "out", "--reference", "1"}, 2, "0 .. 0");
    ExpectRefused({"bench", "--size", "100"}, 2, "WxH");
    ExpectRefused({"demo", "--exposures", "9", "-o", "none"}, 2, "--exposures");
    ExpectRefused(
        {"fuse", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "a.jpg", "-o", "o.jpg"}, 2,
        "at most 8");
}

TEST_F(WrongUse, OfParametersTellsTheRange)
{
    ExpectRefused({"params", "--set", "nMaxGamma=99"}, 2, "100 .. 200");
    ExpectRefused({"params", "--set", "nMaxGamma=201"}, 2, "100 .. 200");
    ExpectRefused({"params", "--set", "nMinLowLevel=-256"}, 2, "-255 .. 255");
    ExpectRefused({"params", "--set", "nMaxGamma=110x"}, 2, "100 .. 200");
    ExpectRefused({"params", "--set", "nMaxGamma="}, 2, "100 .. 200");
    ExpectRefused({"params", "--set", "nMaxGamma=99999999999"}, 2, "100 .. 200");
    ExpectRefused({"params", "--set", "nMaxGamma"}, 2, "NAME=VALUE");
    ExpectRefused({"params", "--set", "nNothing=1"}, 2, "vkrhdr params lists");
    ExpectRefused({"params", "--set", "CGhostProcessFilter.nedgeth7=1"}, 2, "nearest is CGhostProcessFilter.nEdgeTh_7");
    ExpectRefused({"params", "nGosthThre"}, 2, "nearest is nGhostThre");
    ExpectRefused({"params", "--json", "CGhostFilter.nEdgeTh"}, 2, "nearest is CGhostProcessFilter.nEdgeTh");
    ExpectRefused({"params", "--set", "nRatio=16"}, 2, "nRatio_0");
    ExpectRefused({"params", "--set", "nEdgeTh_0=4"}, 2, "CGhostProcessFilter.nEdgeTh_0");
    ExpectRefused({"params", "--set", "CNothing.nRatio_0=16"}, 2, "CGhostProcessFilter");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--set", "CGhostProcessFilter.nEdgeTh_0=256"}, 2, "0 .. 255");
    ExpectRefused({"align", "a.jpg", "-o", "out", "--set", "nMaxGamma=99"}, 2, "100 .. 200");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--params", "text.txt"}, 2, "text.txt");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--preset", "film"}, 2, "photo");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--preset", "photo", "--params", "text.txt"}, 2, "excludes");
    ExpectRefused({"params", "--for", "641x480"}, 2, "--for takes WxH");
    ExpectRefused({"params", "--for", "640x480", "--preset", "default"}, 2, "--for is of the photo preset");
    ExpectRefused({"params", "--for", "640x480", "--shipped"}, 2, "excludes");
}

TEST_F(WrongUse, OfAFullDiskForWhatIsPrinted)
{
    for (const char* pArguments :
         {"--help", "help fuse", "params --help", "-V", "params", "params --json", "params nRatio"}) {
        SCOPED_TRACE(pArguments);
        const std::string sCommand = std::string(VKRHDR_TOOL) + " " + pArguments;
        const std::string sErr = m_folder.Path("said");
        const int nStatus = std::system((sCommand + " >/dev/full 2>" + sErr).c_str());
        EXPECT_EQ(1, WEXITSTATUS(nStatus));
        EXPECT_EQ("vkrhdr: standard output can not be written\n", ReadText(sErr));
        EXPECT_EQ(0, std::system((sCommand + " >/dev/null").c_str()));
    }
}

TEST_F(WrongUse, OfPicturesEndsWithStatus1)
{
    ExpectRefused({"fuse", "a.jpg", "large.jpg", "-o", "out.jpg"}, 1, "one size: a.jpg is 64x48, large.jpg is 80x48");
    ExpectRefused({"align", "a.jpg", "b.jpg", "-o", "text.txt"}, 1, "text.txt");
    ExpectRefused({"fuse", "a.jpg", "text.txt", "-o", "out.jpg"}, 1, "text.txt: is neither a JPEG nor a PNG");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.raw", "--raw", "nv12", "--size", "64x48"}, 1, "bytes");
    std::filesystem::create_directory(m_folder.Path("taken.jpg"));
    WriteWholeFile(m_folder.Path("huge"), {});
    std::filesystem::resize_file(m_folder.Path("huge"), size_t{1} << 30);
    ASSERT_EQ(0, mkfifo(m_folder.Path("pipe").c_str(), 0600));
    m_vBefore = m_folder.Names();
    ExpectRefused({"fuse", "a.jpg", "pipe", "-o", "out.jpg"}, 1, "pipe: is a pipe");
    ExpectRefused({"fuse", "a.jpg", "/dev/zero", "-o", "out.jpg"}, 1, "/dev/zero: is a device");
    ExpectRefused({"fuse", "huge", "-o", "out.jpg"}, 1, "huge: has 1073741824 bytes");
    ExpectRefused({"fuse", "huge", "-o", "o.raw", "--raw", "nv12", "--size", "64x48"}, 1, "more than the 4608");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--params", "pipe"}, 1, "pipe: is a pipe");
    ExpectRefused({"fuse", "a.jpg", "-o", "out.jpg", "--params", "huge"}, 1, "more than the 16777216");
    ExpectRefused({"encipher", "/dev/zero", "-o", "out.bin"}, 1, "/dev/zero: is a device");
    ExpectRefused({"fuse", "a.jpg", "b.jpg", "-o", "taken.jpg"}, 1, "no ordinary file");
}

TEST_F(WrongUse, OfAnInputAsTheOutputIsRefusedBeforeAndBehindTheWork)
{
    WriteWholeFile(m_folder.Path("aligned_0.png"), WritePng(RgbFromFrame(DrawnFrames(64, 48)[0])));
    const ToolRun params = RunTool(m_folder, {"params"});
    WriteWholeFile(m_folder.Path("params.png"), Bytes(params.sOut.begin(), params.sOut.end()));
    std::filesystem::create_symlink("a.jpg", m_folder.Path("soft.jpg"));
    std::filesystem::create_hard_link(m_folder.Path("a.jpg"), m_folder.Path("hard.jpg"));
    m_vBefore = m_folder.Names();
    for (const char* pOutput : {"a.jpg", "./a.jpg", "soft.jpg", "hard.jpg"}) {
        ExpectRefused({"fuse", "a.jpg", "b.jpg", "-o", pOutput}, 2, "is the input a.jpg");
    }
    ExpectRefused({"fuse", "a.jpg", "-o", "params.png", "--params", "params.png"}, 2, "is the input params.png");
    ExpectRefused({"encipher", "params.png", "-o", "params.png"}, 2, "is the input params.png");
    ExpectRefused({"faces", "aligned_0.png", "-o", "aligned_0.png"}, 2, "is the input aligned_0.png");
    const Bytes vBefore = ReadWholeFile(m_folder.Path("aligned_0.png"));
    EXPECT_EQ(2, RunTool(m_folder, {"align", "aligned_0.png", "b.jpg", "-o", "."}).nStatus);
    EXPECT_EQ(vBefore, ReadWholeFile(m_folder.Path("aligned_0.png")));
}

TEST_F(WrongUse, IsNotAskingForHelp)
{
    for (const Names& vArguments : {Names{"--help"}, Names{"fuse", "--help"}, Names{"--version"}}) {
        const ToolRun run = RunTool(m_folder, vArguments);
        EXPECT_EQ(0, run.nStatus);
        EXPECT_NE("", run.sOut);
        EXPECT_EQ("", run.sErr);
    }
}

}  // namespace vkr::tool
