#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "align/aligned_pair.h"
#include "flow/engine_burst.h"
#include "foundation/stage_probe.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/simd_targets.h"

// One hash per stage of a few small bursts, the same on every machine, for every instruction set, with one thread and
// with three: a difference names the stage that moved. After a change that is meant: VKRHDR_WRITE_GOLDEN=1 flow_tests
// --gtest_filter='*Golden.*', in a commit of its own that says why.

namespace vkr {
namespace {

const char* const kGoldenFile = VKRHDR_GOLDEN_FILE;

class StageHashes {
public:
    StageHashes() : m_probe{OnImage<CImage>, OnImage<CShortImage>, OnImage<CYuvImage>, this}, m_pairProbe{OnPair, this}
    {
        SetStageProbe(&m_probe);
        SetPairProbe(&m_pairProbe);
    }
    ~StageHashes()
    {
        SetPairProbe(nullptr);
        SetStageProbe(nullptr);
    }
    StageHashes(const StageHashes&) = delete;
    StageHashes& operator=(const StageHashes&) = delete;

    template <class Image>
    static std::string Hash(const Image& image)
    {
        std::ostringstream text;
        text << HashValues(Samples(image)) << " " << image.nWidth << "x" << image.nHeight;
        return text.str();
    }

    std::map<std::string, std::string> m_mHashes;

private:
    // FNV-1a over the little-endian bytes of integers.
    template <class T>
    static std::string HashValues(const std::vector<T>& vValues)
    {
        uint64_t nHash = 1469598103934665603ULL;
        for (const T value : vValues) {
            for (size_t i = 0; i < sizeof(T); ++i) {
                nHash = (nHash ^ (static_cast<uint64_t>(value) >> (8 * i) & 255)) * 1099511628211ULL;
            }
        }
        std::ostringstream text;
        text << std::hex << nHash;
        return text.str();
    }
    // Every bit of the homography.
    static void OnPair(void* pUser, const AlignedPair& pair)
    {
        std::vector<uint64_t> vBits(9);
        std::memcpy(vBits.data(), pair.vHomography, sizeof(pair.vHomography));
        static_cast<StageHashes*>(pUser)->m_mHashes["pair" + std::to_string(pair.nFirst)] =
            HashValues(vBits) + " " + (pair.bAligned ? "aligned" : "failed");
    }
    template <class Image>
    static void OnImage(void* pUser, const char* pName, const Image& image)
    {
        static_cast<StageHashes*>(pUser)->m_mHashes[pName] = Hash(image);
    }
    StageProbe m_probe;
    PairProbe m_pairProbe;
};

struct GoldenBurst {
    const char* pName;
    int w, h, nExposureNum, nReference;
    void (*pSettings)(CMultiExposureHDRProcessFlowOpt& engine);
    std::vector<FaceBox> vFaces = {};  // a burst with a face is a shaken one with a mover
};

void SeekFace(CMultiExposureHDRProcessFlowOpt& engine)
{
    engine.bAIMask = 1;
    engine.nAIFaceHeightWidthThres = 20;
    engine.nBrightDarkFaceThres = 1000;
}

const GoldenBurst kBursts[] = {
    {"defaults", 96, 64, 3, 1, [](CMultiExposureHDRProcessFlowOpt&) {}},
    {"odd-half-filtered-dithered", 102, 70, 3, 1,
     [](CMultiExposureHDRProcessFlowOpt& engine) {
         engine.bPyramidFilter = 1;
         engine.bUpScaleImageDither = engine.bDownScaleImageDither = 1;
         engine.bUpScaleOtherDither = engine.bDownScaleOtherDither = 1;
     }},
    {"two-frames-dithered", 90, 86, 2, 0,
     [](CMultiExposureHDRProcessFlowOpt& engine) { engine.bUpScaleImageDither = engine.nFusionWeightSelect = 1; }},
    {"five-frames-luma", 78, 54, 5, 2,
     [](CMultiExposureHDRProcessFlowOpt& engine) {
         engine.nFusionWeightSelect = 0;
         engine.bConstantBrightnessTargetEnable = 0;
     }},
    {"one-frame", 66, 50, 1, 0, [](CMultiExposureHDRProcessFlowOpt&) {}},
    {"shaken-mover-face", 230, 170, 3, 1, SeekFace, {{30, 40, 110, 130}}},
    {"shaken-mover-face-dithered",
     222,
     150,
     4,
     2,
     [](CMultiExposureHDRProcessFlowOpt& engine) {
         SeekFace(engine);
         engine.bPyramidFilter = engine.bUpScaleImageDither = engine.bDownScaleImageDither = 1;
         engine.bUpScaleOtherDither = engine.bDownScaleOtherDither = 1;
         engine.bHSVStretch = engine.bHSVTone = engine.bHSVToneFace = 1;
         engine.bContrastEnable = 0;
     },
     {{100, 20, 180, 120}, {4, 4, 20, 20}}},
};

std::map<std::string, std::string> ReadGolden()
{
    std::map<std::string, std::string> mWant;
    std::ifstream file(kGoldenFile);
    std::string sLine;
    while (std::getline(file, sLine)) {
        const size_t nSplit = sLine.find(' ');
        if (nSplit != std::string::npos && sLine[0] != '#') mWant[sLine.substr(0, nSplit)] = sLine.substr(nSplit + 1);
    }
    return mWant;
}

std::map<std::string, std::string> FuseAll()
{
    std::map<std::string, std::string> mGot;
    for (const GoldenBurst& burst : kBursts) {
        const auto Engine = burst.vFaces.empty() ? EngineWithBurst : EngineWithShakenBurst;
        const auto pEngine = Engine(burst.w, burst.h, burst.nExposureNum);
        burst.pSettings(*pEngine);
        const HostFaces faces{burst.vFaces.data(), static_cast<int>(burst.vFaces.size())};
        StageHashes hashes;
        TestYuvImage output;
        EXPECT_TRUE(pEngine->ProcessImage(burst.nExposureNum, burst.nReference, faces, 0, 1, output));
        hashes.m_mHashes["result"] = StageHashes::Hash(output);
        for (const auto& [sStage, sHash] : hashes.m_mHashes) mGot[std::string(burst.pName) + "/" + sStage] = sHash;
    }
    return mGot;
}

class Golden : public SimdTargetTest {};
INSTANTIATE_ON_ALL_TARGETS(Golden);

TEST_P(Golden, EveryStageHasItsBytes)
{
    LinesScope lines;
    for (const int nThreads : {1, 3}) {
        SCOPED_TRACE(nThreads);
        ThreadsScope threads(nThreads);
        const auto mGot = FuseAll();
        if (std::getenv("VKRHDR_WRITE_GOLDEN") != nullptr) {
            std::ofstream file(kGoldenFile);
            file << "# burst/stage hash size; written by flow_tests, see golden_test.cpp\n";
            for (const auto& [sStage, sHash] : mGot) file << sStage << " " << sHash << "\n";
            GTEST_SKIP() << "wrote " << mGot.size() << " hashes";
        }
        EXPECT_EQ(ReadGolden(), mGot);
    }
}

}  // namespace
}  // namespace vkr
