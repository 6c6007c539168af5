#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "library/library_lines.h"
#include "library/tool_parameters.h"
#include "pictures/picture_size.h"

namespace vkr::truth {

// What the programs of this folder take on their command lines.
struct TruthOptions {
    std::vector<std::string> vSizes{"640x480", "1920x1080", "4000x3000"};
    int nSeeds = 50, nFirstSeed = 0, nThreads = 0;  // 0 threads: as many as there are
    std::string sPreset = "default", sParams;
    std::vector<std::string> vSets, vVariants;  // one variant, "", if none is named
    float fStops = 2, fNoise = 1, fStep = 0;    // fStep: of ghost_truth alone
    bool bList = false;

    // UsageError for what is no option or no value of one.
    static TruthOptions Parse(int argc, char** argv);
};

// One set of parameters: what --preset, --params and --set give, in this order, and the changes of a variant on top,
// NAME=VALUE with commas between. Among the changes the words default and photo stand for the presets, which undo all
// before them. A name without a filter is one of sFilter ("" for the flow). vAlways is set on every preset and file.
// UsageError for what is refused.
std::unique_ptr<tool::ToolParameters> MakeParameters(const TruthOptions& options, tool::Size size,
                                                     const std::string& sChanges, const std::string& sFilter,
                                                     const std::vector<std::string>& vAlways,
                                                     tool::LibraryLines& lines);

// A program: reads its options, calls measure for every size, with the library's memory and lines set up, and tells
// what that threw. The exit code.
int RunSizes(const char* pProgram, int argc, char** argv,
             const std::function<void(const TruthOptions&, const std::string& sSize, tool::LibraryLines&)>& measure);

}  // namespace vkr::truth
