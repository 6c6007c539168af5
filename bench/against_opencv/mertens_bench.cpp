// The library beside OpenCV's exposure fusion (cv::MergeMertens) on the same drawn burst, turn by turn:
//   mertens_bench [--size WxH] [--runs N] [--threads N]
// Ours is vkrHdrAddFrame for every frame and vkrHdrRender, from and to 4:2:0, alignment included, ghosts off. OpenCV's
// is process() from and to B, G, R, neither the conversion from and to 4:2:0 nor an alignment counted.
#include <omp.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "flow/multi_exposure_flow.h"
#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "scene/demo_scene.h"
#include "vkrHdr.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/photo.hpp>

namespace {

constexpr int kExposures = 3;

struct Options {
    int nWidth = 4000, nHeight = 3000, nRuns = 5, nThreads = 2;
};

// False for what is not understood.
bool ParseOptions(int argc, char** argv, Options& options)
{
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string sName = argv[i];
        if (sName == "--size") {
            if (std::sscanf(argv[i + 1], "%5dx%5d", &options.nWidth, &options.nHeight) != 2) return false;
        } else if (sName == "--runs") {
            options.nRuns = std::atoi(argv[i + 1]);
        } else if (sName == "--threads") {
            options.nThreads = std::atoi(argv[i + 1]);
        } else {
            return false;
        }
    }
    return argc % 2 == 1 && options.nRuns > 0 && options.nThreads > 0;
}

double Median(std::vector<double> vMs)
{
    std::sort(vMs.begin(), vMs.end());
    return vMs[vMs.size() / 2];
}

template <class Fn>
double MsOf(const Fn& fn)
{
    const auto start = std::chrono::steady_clock::now();
    fn();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

vkrHdrFrame HostFrame(std::vector<uint8_t>& vBytes, const Options& options)
{
    vkrHdrFrame frame{};
    frame.nWidth = options.nWidth;
    frame.nHeight = options.nHeight;
    frame.pPlane[0] = vBytes.data();
    frame.pPlane[1] = vBytes.data() + static_cast<size_t>(options.nWidth) * options.nHeight;
    frame.nPitch[0] = frame.nPitch[1] = options.nWidth;
    return frame;
}

bool DrawFrames(const Options& options, std::vector<std::vector<uint8_t>>& vFrames)
{
    vkr::SceneParams scene;
    scene.nWidth = options.nWidth;
    scene.nHeight = options.nHeight;
    scene.nExposures = kExposures;
    const size_t nBytes = static_cast<size_t>(options.nWidth) * options.nHeight / 2 * 3;
    vkr::PoolInit(kExposures * nBytes);
    vkr::CYuvImage vDrawn[kExposures] = {};
    const bool bDrawn = vkr::DrawDemoBurst(scene, vDrawn);
    for (vkr::CYuvImage& frame : vDrawn) {
        if (bDrawn) vFrames.emplace_back(frame.pBuffer, frame.pBuffer + nBytes);
        frame.Release();
    }
    vkr::PoolRelease();
    return bDrawn;
}

// No ghosts, no logo, no debug files.
bool StartLibrary()
{
    vkr::CMultiExposureHDRProcessFlowOpt flow;
    flow.bGhostProcessEnable = 0;
    flow.bLogoEnable = 0;
    for (vkr::CFilter* pFilter : flow.Filters()) {
        for (vkr::ParamEntry& entry : pFilter->Params()) {
            if (entry.sName.find("DumpDebug") != std::string::npos) *entry.pValue = 0;
        }
    }
    std::string sPath = (std::filesystem::temp_directory_path() / "mertens_bench.XXXXXX").string();
    const int nFile = mkstemp(sPath.data());
    if (nFile < 0) return false;
    close(nFile);
    vkrHdrInitParam param{};
    param.pParamFilePath = sPath.c_str();
    const bool bStarted = flow.SaveParameterFile(sPath.c_str()) && vkrHdrInit(param) == 0;
    std::remove(sPath.c_str());
    return bStarted;
}

bool FuseOurs(std::vector<std::vector<uint8_t>>& vFrames, const Options& options, std::vector<uint8_t>& vResult)
{
    for (int k = 0; k < kExposures; ++k) {
        const vkrHdrFrame frame = HostFrame(vFrames[static_cast<size_t>(k)], options);
        if (vkrHdrAddFrame(static_cast<uint32_t>(k), &frame) != 0) return false;
    }
    vkrHdrFrame out = HostFrame(vResult, options);
    return vkrHdrRender(kExposures, kExposures / 2, 0, 0, nullptr, &out) == 0;
}

std::vector<cv::Mat> ToBgr(std::vector<std::vector<uint8_t>>& vFrames, const Options& options)
{
    std::vector<cv::Mat> vBgr;
    for (std::vector<uint8_t>& vFrame : vFrames) {
        const cv::Mat yuv(options.nHeight * 3 / 2, options.nWidth, CV_8UC1, vFrame.data());
        cv::Mat bgr;
        cv::cvtColor(yuv, bgr, cv::COLOR_YUV2BGR_NV12);
        vBgr.push_back(bgr);
    }
    return vBgr;
}

int Compare(const Options& options)
{
    omp_set_num_threads(options.nThreads);
    cv::setNumThreads(options.nThreads);
    vkr::SetHdrPrintSink([](const char*) {});
    std::vector<std::vector<uint8_t>> vFrames;
    if (!DrawFrames(options, vFrames) || !StartLibrary()) {
        std::fprintf(stderr, "mertens_bench: no memory, or a size that is not even\n");
        return 1;
    }
    const std::vector<cv::Mat> vBgr = ToBgr(vFrames, options);
    std::vector<uint8_t> vResult(vFrames[0].size());
    const cv::Ptr<cv::MergeMertens> mertens = cv::createMergeMertens();
    std::vector<double> vOurs, vTheirs;
    bool bFused = true;
    for (int i = 0; i < options.nRuns; ++i) {
        vOurs.push_back(MsOf([&] { bFused = FuseOurs(vFrames, options, vResult) && bFused; }));
        cv::Mat fused;
        vTheirs.push_back(MsOf([&] { mertens->process(vBgr, fused); }));
    }
    vkrHdrUninit();
    if (!bFused) {
        std::fprintf(stderr, "mertens_bench: the burst could not be fused\n");
        return 1;
    }
    std::printf("%dx%d, %d exposures, %d threads, medians of %d runs\n", options.nWidth, options.nHeight, kExposures,
                options.nThreads, options.nRuns);
    std::printf("%-24s %9.1f ms\n%-24s %9.1f ms\n%-24s %9.2f\n", "ours", Median(vOurs), "cv::MergeMertens",
                Median(vTheirs), "OpenCV's / ours", Median(vTheirs) / Median(vOurs));
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    Options options;
    if (ParseOptions(argc, argv, options)) return Compare(options);
    std::fprintf(stderr, "usage: mertens_bench [--size WxH] [--runs N] [--threads N]\n");
    return 2;
}
