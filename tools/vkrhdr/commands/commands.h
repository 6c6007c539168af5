#pragma once

#include <string>
#include <vector>

#include "commands/burst_options.h"
#include "commands/face_options.h"
#include "library/parameter_choice.h"
#include "pictures/remarks.h"

namespace CLI {
class App;
}

namespace vkr::tool {

// One file a subcommand: its options, how the command line fills them, and what it does with them. Run... throws
// UsageError and BurstError; all else is done when it returns. What there is to say about it goes to remarks, results
// in words to standard output.

struct CommonOptions {
    int nThreads = 0;  // 0: as the system has it
    std::string sSimd = "on";
    bool bVerbose = false;
};

struct FuseOptions {
    BurstOptions burst;
    ParameterChoice parameters;
    FaceOptions faces;
    std::string sOutput, sDumpFolder, sStageFolder;
    int nQuality = 95;
    bool bTimings = false;
};

struct AlignOptions {
    BurstOptions burst;
    ParameterChoice parameters;
    std::string sFolder;
};

struct InspectOptions {
    BurstOptions burst;
    ParameterChoice parameters;
    FaceOptions faces;
    std::string sFolder;
};

struct FacesOptions {
    std::string sImage, sOutput;  // output empty: by the name of the picture
};

struct ParamsOptions {
    std::vector<std::string> vSets, vNames;
    std::string sPreset, sForSize;  // empty: not asked for
    bool bShipped = false, bJson = false;
};

struct EncipherOptions {
    std::string sInput, sOutput;
    std::string sConfigVersion;  // empty: none
};

struct DemoOptions {
    ParameterChoice parameters;
    std::string sFolder = "demo", sSize = "960x640";
    int nExposures = 3;
};

struct BenchOptions {
    ParameterChoice parameters;
    std::string sSize = "4000x3000";
    int nExposures = 3, nRuns = 5;
};

CLI::App* DefineFuse(CLI::App& app, FuseOptions& options);
CLI::App* DefineAlign(CLI::App& app, AlignOptions& options);
CLI::App* DefineInspect(CLI::App& app, InspectOptions& options);
CLI::App* DefineFaces(CLI::App& app, FacesOptions& options);
CLI::App* DefineParams(CLI::App& app, ParamsOptions& options);
CLI::App* DefineEncipher(CLI::App& app, EncipherOptions& options);
CLI::App* DefineDecipher(CLI::App& app, EncipherOptions& options);
CLI::App* DefineDemo(CLI::App& app, DemoOptions& options);
CLI::App* DefineBench(CLI::App& app, BenchOptions& options);

void RunFuse(const FuseOptions& options, Remarks& remarks);
void RunAlign(const AlignOptions& options, Remarks& remarks);
void RunInspect(const InspectOptions& options, Remarks& remarks);
void RunFaces(const FacesOptions& options, Remarks& remarks);
void RunParams(const ParamsOptions& options);
void RunEncipher(const EncipherOptions& options, Remarks& remarks);
void RunDecipher(const EncipherOptions& options);
void RunDemo(const DemoOptions& options, Remarks& remarks);
void RunBench(const BenchOptions& options, Remarks& remarks);

}  // namespace vkr::tool
