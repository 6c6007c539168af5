#include <omp.h>
#include <sys/resource.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <fstream>

#include "burst/burst_order.h"
#include "burst/drawn_burst.h"
#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "foundation/mem_pool.h"
#include "library/engine.h"

namespace vkr::tool {

namespace {

double NowInMs()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(now).count();
}

// A figure of this process in KiB by its name in /proc/self/status; 0 where there is none.
long StatusKib(const std::string& sName)
{
    std::ifstream status("/proc/self/status");
    for (std::string sLine; std::getline(status, sLine);) {
        if (sLine.rfind(sName + ":", 0) == 0) return std::atol(sLine.c_str() + sName.size() + 1);
    }
    return 0;
}

// Lets the peak start anew, where the system can.
void ForgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

long PeakKib()
{
    const long nPeak = StatusKib("VmHWM");
    if (nPeak > 0) return nPeak;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

struct Totals {
    std::vector<int> vAddUs, vRenderUs, vTotalUs;
    std::vector<int> vRawCalls;  // how often the pool asked the system for memory
};

void RunOnce(Engine& engine, const std::vector<Frame>& vFrames, Frame& result, Totals& totals)
{
    const int nFrames = static_cast<int>(vFrames.size());
    const size_t nRawCalls = ReadPoolUse().nRawCalls;
    const double fStart = NowInMs();
    for (int k = 0; k < nFrames; ++k) engine.AddFrame(k, vFrames[static_cast<size_t>(k)]);
    const double fAdded = NowInMs();
    engine.Render(nFrames, MiddleFrame(nFrames), 0, {}, 1, result);
    const double fEnd = NowInMs();
    totals.vAddUs.push_back(static_cast<int>((fAdded - fStart) * 1000));
    totals.vRenderUs.push_back(static_cast<int>((fEnd - fAdded) * 1000));
    totals.vTotalUs.push_back(static_cast<int>((fEnd - fStart) * 1000));
    totals.vRawCalls.push_back(static_cast<int>(ReadPoolUse().nRawCalls - nRawCalls));
}

void PrintTotal(const char* pName, const std::vector<int>& vUs)
{
    std::printf("%-48s %8.1f\n", pName, Median(vUs) / 1000.0);
}

}  // namespace

CLI::App* DefineBench(CLI::App& app, BenchOptions& options)
{
    CLI::App* pCommand = app.add_subcommand("bench", "Measures time per stage and peak memory on a drawn burst.");
    pCommand->add_option("--size", options.sSize, "WxH of the frames")->capture_default_str();
    pCommand->add_option("--exposures", options.nExposures, "number of frames, 1 to 8")
        ->check(CLI::Range(1, 8))
        ->capture_default_str();
    pCommand->add_option("--runs", options.nRuns, "bursts; the table shows medians")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    DefineParameters(*pCommand, options.parameters);
    return pCommand;
}

void RunBench(const BenchOptions& options, Remarks& remarks)
{
    SceneParams scene;
    const Size size = ParseSize(options.sSize);
    scene.nWidth = size.nWidth;
    scene.nHeight = size.nHeight;
    scene.nExposures = options.nExposures;
    LibraryLines lines(&remarks);
    ToolParameters params = LoadParameters(options.parameters, lines, remarks);
    const std::vector<Frame> vFrames = DrawBurst(scene);
    FitParameters(options.parameters, RatioFramesOf(vFrames), remarks, params);
    Frame result;
    result.Resize(size.nWidth, size.nHeight);

    ForgetPeak();
    const long nBefore = StatusKib("VmRSS");
    Totals totals;
    {
        Engine engine(params, lines);
        for (int i = 0; i < options.nRuns; ++i) {
            RunOnce(engine, vFrames, result, totals);
            lines.Times().EndRun();
        }
    }
    const long nPeak = PeakKib();
    std::printf("%dx%d, %d exposures, %d threads, medians of %d runs, %s\n", size.nWidth, size.nHeight,
                options.nExposures, omp_get_max_threads(), options.nRuns, NameOf(options.parameters).c_str());
    lines.Times().Print(stdout);
    PrintTotal("adding the frames", totals.vAddUs);
    PrintTotal("rendering", totals.vRenderUs);
    PrintTotal("total", totals.vTotalUs);
    std::printf("%-48s %8d\n", "regions the pool asked the system for, last burst", totals.vRawCalls.back());
    std::printf("%-48s %8ld\n", "peak memory, MiB", nPeak / 1024);
    std::printf("%-48s %8ld\n", "  of it the library's, MiB", (nPeak - nBefore) / 1024);
}

}  // namespace vkr::tool
