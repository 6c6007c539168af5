// Our alignment beside what OpenCV offers, on the same drawn hand-held bursts, turn by turn, with the corner errors
// against the true motion:
//   align_opencv_bench [--size WxH] [--runs N] [--seeds N] [--preset photo|default] [--params FILE] [--threads N]
//                      [--features N]
// All take semi-planar 4:2:0 frames and leave aligned ones; the reference stays as it is. Ours is AlignImages on all
// frames, masks included. OpenCV's first way is ORB on every luma plane, once for the reference, matches with cross
// check, findHomography with RANSAC at 3 pixels, and warpPerspective, bilinear, of the luma and of the chroma plane: no
// conversion to B, G, R is asked of it. The second is AlignMTB, which only shifts, on the same planes.
#include <omp.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "foundation/mem_pool.h"
#include "library/library_lines.h"
#include "library/tool_parameters.h"
#include "pictures/picture_size.h"
#include "pictures/tool_error.h"
#include "truth/error_table.h"

#include <opencv2/calib3d.hpp>
#include <opencv2/core.hpp>
#include <opencv2/features2d.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/photo.hpp>

namespace {

using vkr::tool::ToolParameters;
using vkr::tool::UsageError;
using namespace vkr::truth;

constexpr int kExposures = TruthBurst::kExposures, kReference = TruthBurst::kReference;

struct Options {
    vkr::tool::Size size{4000, 3000};
    int nRuns = 3, nSeeds = 3, nThreads = 2, nFeatures = 2000;
    std::string sPreset = "photo", sParams;
};

Options ParseOptions(int argc, char** argv)
{
    Options options;
    const auto number = [](const char* pText) {
        const int n = std::atoi(pText);
        if (n <= 0) throw UsageError(std::string("a number from 1 on, not '") + pText + "'");
        return n;
    };
    for (int i = 1; i < argc; i += 2) {
        const std::string sName = argv[i];
        if (i + 1 == argc) throw UsageError(sName + " wants a value");
        if (sName == "--size") {
            options.size = vkr::tool::ParseSize(argv[i + 1]);
        } else if (sName == "--runs") {
            options.nRuns = number(argv[i + 1]);
        } else if (sName == "--seeds") {
            options.nSeeds = number(argv[i + 1]);
        } else if (sName == "--threads") {
            options.nThreads = number(argv[i + 1]);
        } else if (sName == "--features") {
            options.nFeatures = number(argv[i + 1]);
        } else if (sName == "--preset") {
            options.sPreset = argv[i + 1];
        } else if (sName == "--params") {
            options.sParams = argv[i + 1];
        } else {
            throw UsageError("there is no option " + sName);
        }
    }
    if (options.sPreset != "photo" && options.sPreset != "default") throw UsageError("--preset takes photo or default");
    return options;
}

// The planes of a frame, as OpenCV sees them; the samples stay where they are.
struct Planes {
    cv::Mat luma, chroma;
};

Planes PlanesOf(const vkr::CYuvImage& frame)
{
    return {cv::Mat(frame.nHeight, frame.nWidth, CV_8UC1, frame.pY),
            cv::Mat(frame.nHeight / 2, frame.nWidth / 2, CV_8UC2, frame.pUV)};
}

struct Corners {
    std::vector<cv::KeyPoint> vPoints;
    cv::Mat descriptors;
};

// Empty when there are too few matches.
cv::Mat EstimateByOrb(const Corners& reference, const Corners& other)
{
    std::vector<cv::DMatch> vMatches;
    cv::BFMatcher(cv::NORM_HAMMING, true).match(other.descriptors, reference.descriptors, vMatches);
    if (vMatches.size() < 4) return {};
    std::vector<cv::Point2f> vFrom, vTo;
    for (const cv::DMatch& match : vMatches) {
        vFrom.push_back(other.vPoints[static_cast<size_t>(match.queryIdx)].pt);
        vTo.push_back(reference.vPoints[static_cast<size_t>(match.trainIdx)].pt);
    }
    return cv::findHomography(vFrom, vTo, cv::RANSAC, 3.0);
}

// Chroma places are luma places halved, their centres by a quarter pixel aside.
cv::Mat ForChroma(const cv::Mat& homography)
{
    const cv::Mat toLuma = (cv::Mat_<double>(3, 3) << 2, 0, 0.5, 0, 2, 0.5, 0, 0, 1);
    return toLuma.inv() * homography * toLuma;
}

void AlignByOrb(const TruthBurst& burst, int nFeatures, Homography* vToReference)
{
    const cv::Ptr<cv::ORB> orb = cv::ORB::create(nFeatures);
    Corners vCorners[kExposures];
    for (int k = 0; k < kExposures; ++k) {
        orb->detectAndCompute(PlanesOf(burst.Frame(k)).luma, cv::noArray(), vCorners[k].vPoints,
                              vCorners[k].descriptors);
    }
    for (int k = 0; k < kExposures; ++k) {
        vToReference[k] = {};
        if (k == kReference) continue;
        const cv::Mat homography = EstimateByOrb(vCorners[kReference], vCorners[k]);
        if (homography.empty()) continue;
        const Planes planes = PlanesOf(burst.Frame(k));
        Planes aligned;
        cv::warpPerspective(planes.luma, aligned.luma, homography, planes.luma.size(), cv::INTER_LINEAR,
                            cv::BORDER_REFLECT);
        cv::warpPerspective(planes.chroma, aligned.chroma, ForChroma(homography), planes.chroma.size(),
                            cv::INTER_LINEAR, cv::BORDER_REFLECT);
        for (int i = 0; i < 9; ++i) vToReference[k].v[i] = homography.at<double>(i / 3, i % 3);
    }
}

void AlignByMtb(const TruthBurst& burst, Homography* vToReference)
{
    const cv::Ptr<cv::AlignMTB> mtb = cv::createAlignMTB();
    const Planes reference = PlanesOf(burst.Frame(kReference));
    for (int k = 0; k < kExposures; ++k) {
        vToReference[k] = {};
        if (k == kReference) continue;
        const Planes planes = PlanesOf(burst.Frame(k));
        const cv::Point shift = mtb->calculateShift(reference.luma, planes.luma);
        Planes aligned;
        mtb->shiftMat(planes.luma, aligned.luma, shift);
        mtb->shiftMat(planes.chroma, aligned.chroma, {shift.x / 2, shift.y / 2});
        vToReference[k] = Translation(shift.x, shift.y);
    }
}

// One way to align, and what it took and gave.
struct Way {
    const char* pName;
    std::function<void(const TruthBurst&, Homography*)> align;
    std::vector<double> vMs, vErrors;  // one a run, one a burst

    void Run(const TruthBurst& burst)
    {
        Homography vToReference[kExposures];
        const auto start = std::chrono::steady_clock::now();
        align(burst, vToReference);
        vMs.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
        vErrors.push_back(burst.WorstCornerError(vToReference));
    }
};

void Compare(const Options& options, ToolParameters& params)
{
    AlignRun run;
    const auto alignOurs = [&](const TruthBurst& burst, Homography* vToReference) {
        AlignResult result;
        if (!run.Align(params.AlignFilter(), burst, result)) throw vkr::tool::BurstError("no memory to align");
        std::copy_n(result.vToReference, kExposures, vToReference);
    };
    Way vWays[] = {
        {"ours", alignOurs, {}, {}},
        {"ORB, findHomography, warpPerspective",
         [&](const TruthBurst& burst, Homography* v) { AlignByOrb(burst, options.nFeatures, v); },
         {},
         {}},
        {"AlignMTB, shifts only", AlignByMtb, {}, {}},
    };
    TruthBurst burst;
    for (int nSeed = 0; nSeed < options.nSeeds; ++nSeed) {
        BurstParams burstParams;
        burstParams.nWidth = options.size.nWidth;
        burstParams.nHeight = options.size.nHeight;
        burstParams.nSeed = static_cast<uint32_t>(nSeed);
        if (!burst.Draw(burstParams)) throw vkr::tool::BurstError("no memory for a burst");
        for (int i = 0; i < options.nRuns; ++i) {
            for (Way& way : vWays) way.Run(burst);
        }
    }
    std::printf("%dx%d, %d exposures, %d bursts, %d runs each, %d threads; %d ORB features\n\n", options.size.nWidth,
                options.size.nHeight, kExposures, options.nSeeds, options.nRuns, options.nThreads, options.nFeatures);
    std::printf("| | median ms | times ours | median corner error px | worst px |\n|---|--:|--:|--:|--:|\n");
    for (const Way& way : vWays) {
        std::printf("| %s | %.0f | %.2f | %.2f | %.2f |\n", way.pName, Quantile(way.vMs, 0.5),
                    Quantile(way.vMs, 0.5) / Quantile(vWays[0].vMs, 0.5), Quantile(way.vErrors, 0.5),
                    Quantile(way.vErrors, 1));
    }
}

void Run(const Options& options)
{
    omp_set_num_threads(options.nThreads);
    cv::setNumThreads(options.nThreads);
    vkr::tool::LibraryLines lines(nullptr);
    ToolParameters params(ToolParameters::Base::kShipped);
    std::string sWarning;
    if (options.sPreset == "photo") params.SetPhotoValues(options.size);
    if (!options.sParams.empty()) params.Load(options.sParams, lines, sWarning);
    params.AlignFilter().bDumpDebug = 0;
    vkr::PoolInit(0);
    Compare(options, params);
    vkr::PoolRelease();
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        Run(ParseOptions(argc, argv));
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "align_opencv_bench: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "align_opencv_bench: %s\n", error.what());
        return 1;
    }
}
