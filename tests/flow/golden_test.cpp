#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "flow/engine_burst.h"
#include "foundation/stage_probe.h"
#include "support/for_threads.h"
#include "support/quiet_lines.h"

// One hash per stage of a few small bursts, on one thread, so that a difference names the stage that moved. After a
// change that is meant: VKRHDR_WRITE_GOLDEN=1 flow_tests --gtest_filter='Golden.*', in a commit of its own that says
// why.

namespace vkr {
namespace {

const char* const kGoldenFile = VKRHDR_GOLDEN_FILE;

class StageHashes {
public:
    StageHashes() : m_probe{OnImage<CImage>, OnImage<CShortImage>, OnImage<CYuvImage>, this}
    {
        SetStageProbe(&m_probe);
    }
    ~StageHashes() { SetStageProbe(nullptr); }
    StageHashes(const StageHashes&) = delete;
    StageHashes& operator=(const StageHashes&) = delete;

    template <class Image>
    static std::string Hash(const Image& image)
    {
        uint64_t nHash = 1469598103934665603ULL;  // FNV-1a over little-endian samples
        auto mix = [&nHash](unsigned nByte) { nHash = (nHash ^ (nByte & 255)) * 1099511628211ULL; };
        for (const auto sample : Samples(image)) {
            for (size_t i = 0; i < sizeof(sample); ++i) mix(static_cast<unsigned>(sample) >> (8 * i));
        }
        std::ostringstream text;
        text << std::hex << nHash << std::dec << " " << image.nWidth << "x" << image.nHeight;
        return text.str();
    }

    std::map<std::string, std::string> m_mHashes;

private:
    template <class Image>
    static void OnImage(void* pUser, const char* pName, const Image& image)
    {
        static_cast<StageHashes*>(pUser)->m_mHashes[pName] = Hash(image);
    }
    StageProbe m_probe;
};

struct GoldenBurst {
    const char* pName;
    int w, h, nExposureNum, nReference;
    void (*pSettings)(CMultiExposureHDRProcessFlowOpt& engine);
};

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

TEST(Golden, EveryStageHasItsBytes)
{
    LinesScope lines;
    ThreadsScope threads(1);
    std::map<std::string, std::string> mGot;
    for (const GoldenBurst& burst : kBursts) {
        auto pEngine = EngineWithBurst(burst.w, burst.h, burst.nExposureNum);
        burst.pSettings(*pEngine);
        StageHashes hashes;
        TestYuvImage output;
        ASSERT_TRUE(pEngine->ProcessImage(burst.nExposureNum, burst.nReference, HostFaces{}, 0, 1, output));
        hashes.m_mHashes["result"] = StageHashes::Hash(output);
        for (const auto& [sStage, sHash] : hashes.m_mHashes) mGot[std::string(burst.pName) + "/" + sStage] = sHash;
    }
    if (std::getenv("VKRHDR_WRITE_GOLDEN") != nullptr) {
        std::ofstream file(kGoldenFile);
        file << "# burst/stage hash size; written by flow_tests, see golden_test.cpp\n";
        for (const auto& [sStage, sHash] : mGot) file << sStage << " " << sHash << "\n";
        GTEST_SKIP() << "wrote " << mGot.size() << " hashes";
    }
    EXPECT_EQ(ReadGolden(), mGot);
}

}  // namespace
}  // namespace vkr
