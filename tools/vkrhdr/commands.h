#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vkr::tool {

// One file a subcommand: its options, how the command line fills them, and what it does with them. Run... throws
// UsageError and BurstError; all else is done when it returns.

struct CommonOptions {
    int nThreads = 0;  // 0: as the system has it
    std::string sSimd = "on";
    bool bVerbose = false;
};

struct FuseOptions {
    std::vector<std::string> vImages, vSets;
    std::string sOutput, sParams, sDumpFolder, sStageFolder, sRaw, sSize;
    int nReference = -1;  // in the order of brightness; below 0: the middle one
    int nQuality = 95;
    bool bTimings = false;
};

struct ParamsOptions {
    std::vector<std::string> vSets;
    bool bShipped = false;
};

struct DemoOptions {
    std::string sFolder = "demo", sSize = "960x640";
    int nExposures = 3;
};

struct BenchOptions {
    std::string sSize = "4000x3000";
    std::vector<std::string> vSets;
    int nExposures = 3, nRuns = 5;
};

CLI::App* DefineFuse(CLI::App& app, FuseOptions& options);
CLI::App* DefineParams(CLI::App& app, ParamsOptions& options);
CLI::App* DefineDemo(CLI::App& app, DemoOptions& options);
CLI::App* DefineBench(CLI::App& app, BenchOptions& options);

void RunFuse(const FuseOptions& options, const CommonOptions& common);
void RunParams(const ParamsOptions& options);
void RunDemo(const DemoOptions& options, const CommonOptions& common);
void RunBench(const BenchOptions& options, const CommonOptions& common);

struct Size {
    int nWidth, nHeight;
};

// "WxH", both even, 2 .. 16384. UsageError for anything else.
Size ParseSize(const std::string& sText);

// A short line about what was done, on standard error.
void Say(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vkr::tool
