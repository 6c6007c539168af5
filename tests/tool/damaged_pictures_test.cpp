#include "damaged_pictures.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "pictures/tool_error.h"
#include "run_tool.h"

namespace vkr::tool {

namespace {

// What the reader makes of a file: the frame, or why not.
struct Verdict {
    Frame frame;
    std::string sRefusal, sWarning;
};

Verdict Judge(const Bytes& vBytes, const std::string& sName)
{
    Verdict verdict;
    try {
        verdict.frame = ReadPicture(vBytes, sName, verdict.sWarning).frame;
    } catch (const BurstError& error) {
        verdict.sRefusal = error.what();
    }
    return verdict;
}

bool operator==(const Frame& a, const Frame& b)
{
    return a.nWidth == b.nWidth && a.nHeight == b.nHeight && a.vY == b.vY && a.vUV == b.vUV;
}

Bytes With(Bytes vBytes, size_t nPlace, const Bytes& vMore)
{
    vBytes.insert(vBytes.begin() + static_cast<std::ptrdiff_t>(nPlace), vMore.begin(), vMore.end());
    return vBytes;
}

Bytes Cut(Bytes vBytes, size_t nSize)
{
    vBytes.resize(nSize);
    return vBytes;
}

}  // namespace

// sWords: of the refusal, or of the warning with which the whole picture is given.
TEST(DamagedJpeg, IsRefusedWherePictureIsMissingElseReadWhole)
{
    const Frame frame = DrawnFrames(96, 80)[1];
    const Bytes vPlain = EncodeJpeg(frame, JpegForm::kBaseline), vRestarts = EncodeJpeg(frame, JpegForm::kRestarts);
    const Bytes vScans = EncodeJpeg(frame, JpegForm::kSeparateScans);
    const Bytes vSteps = EncodeJpeg(frame, JpegForm::kProgressive), vJunk = {1, 2, 3}, vFew(12, 0x55), vMuch(40, 0x55);
    const size_t nEnd = vPlain.size() - 2, nHead = MarkerPlace(vPlain, 0xDB), nLate = vPlain.size() * 3 / 4;
    const size_t nMark = MarkerPlace(vRestarts, 0xD1);
    Bytes vWrongMark = vRestarts;
    vWrongMark[nMark + 1] = 0xD5;
    Bytes vEarlyEnd = vSteps;
    vEarlyEnd[MarkerPlace(vSteps, 0xDA, 5) + 1] = 0xD9;
    const struct {
        const char* pCase;
        const Bytes &vWhole, vBytes;
        bool bWhole;
        const char* pWords;
    } vCases[] = {
        {"junk in the header", vPlain, With(vPlain, nHead, vJunk), true, "3 extraneous bytes"},
        {"junk in the header, cut", vPlain, Cut(With(vPlain, nHead, vJunk), nLate), false, "x.jpg: is cut short"},
        {"no end mark", vPlain, Cut(vPlain, nEnd), true, "Premature end"},
        {"the last byte of the picture", vPlain, Cut(vPlain, nEnd - 3), false, "x.jpg: is cut short"},
        {"a few bytes before the end", vPlain, With(vPlain, nEnd, vFew), true, "extraneous bytes before marker 0xd9"},
        {"much before the end", vPlain, With(vPlain, nEnd, vMuch), false, "x.jpg: is damaged"},
        {"left over before a restart", vRestarts, With(vRestarts, nMark, vJunk), false, "x.jpg: is damaged"},
        {"a wrong restart", vRestarts, vWrongMark, false, "x.jpg: is damaged"},
        {"cut before a channel", vScans, Cut(vScans, MarkerPlace(vScans, 0xDA, 2)), false, "scans of its picture"},
        {"cut before a scan", vSteps, Cut(vSteps, MarkerPlace(vSteps, 0xDA, 9)), false, "scans of its picture"},
        {"an end mark for a scan", vSteps, vEarlyEnd, false, "scans of its picture"},
        {"all scans, no end mark", vSteps, Cut(vSteps, vSteps.size() - 2), true, "Premature end"},
        {"cut in the header", vPlain, Cut(vPlain, MarkerPlace(vPlain, 0xC4) + 9), false, "cut short, in its header"},
        {"cut before the first scan", vSteps, Cut(vSteps, MarkerPlace(vSteps, 0xDA)), false,
         "cut short, in its header"},
    };
    for (const auto& c : vCases) {
        SCOPED_TRACE(c.pCase);
        const Verdict verdict = Judge(c.vBytes, "x.jpg");
        EXPECT_EQ(c.bWhole, verdict.sRefusal.empty()) << verdict.sRefusal;
        EXPECT_NE(std::string::npos, (c.bWhole ? verdict.sWarning : verdict.sRefusal).find(c.pWords))
            << verdict.sRefusal << verdict.sWarning;
        EXPECT_TRUE(!c.bWhole || verdict.frame == Judge(c.vWhole, "").frame);
    }
}

// A cut file gives what the whole one gives, or nothing. A wrong bit may give another picture, where the format has no
// way to tell. The program decides as its reader does and leaves no result behind. VKRHDR_DAMAGED_PICTURES=500 tries as
// many, each through the program.
TEST(DamagedPicture, IsFusedWholeOrRefusedByName)
{
    const char* pCases = std::getenv("VKRHDR_DAMAGED_PICTURES");
    const unsigned nCases = pCases != nullptr ? static_cast<unsigned>(std::atoi(pCases)) : 60;
    const unsigned nProgramStep = pCases != nullptr ? 1 : 12;
    const Frame frame = DrawnFrames(64, 48)[1];
    const TestFolder folder;
    WriteWholeFile(folder.Path("good.jpg"), WriteJpeg(DrawnFrames(64, 48)[2], 90));
    int nRefused = 0, nSame = 0, nOther = 0;
    for (unsigned i = 0; i < nCases; ++i) {
        const DamagedPicture picture = MakeDamagedPicture(frame, i);
        SCOPED_TRACE(picture.sName);
        const Verdict verdict = Judge(picture.vDamaged, picture.sName);
        const bool bRefused = !verdict.sRefusal.empty();
        const bool bSame = !bRefused && verdict.frame == Judge(picture.vWhole, "").frame;
        ++(bRefused ? nRefused : bSame ? nSame : nOther);
        EXPECT_TRUE(bRefused || bSame || !picture.bCut);
        EXPECT_TRUE(!bRefused || verdict.sRefusal.find(picture.sName) == 0) << verdict.sRefusal;
        if (i % nProgramStep != 0) continue;
        WriteWholeFile(folder.Path(picture.sName), picture.vDamaged);
        const ToolRun run = RunTool(folder, {"fuse", picture.sName, "good.jpg", "-o", "out.jpg"});
        const bool bFits = verdict.frame.nWidth == 64 && verdict.frame.nHeight == 48;
        EXPECT_EQ(bFits ? 0 : 1, run.nStatus) << run.sErr;
        EXPECT_NE(std::string::npos, run.sErr.find(picture.sName)) << run.sErr;
        EXPECT_EQ(bFits, std::filesystem::remove(folder.Path("out.jpg")));
    }
    EXPECT_GT(nRefused, static_cast<int>(nCases) / 2);
    std::printf("%u damaged pictures: %d refused, %d whole, %d with bits that nobody can know to be wrong\n", nCases,
                nRefused, nSame, nOther);
}

}  // namespace vkr::tool
