// How far alignment is from the truth, over drawn bursts whose motion is known:
//   align_truth [--sizes WxH,...] [--seeds N] [--first-seed N] [--preset default|photo] [--params FILE]
//               [--set NAME=VALUE]... [--variant NAME=VALUE,...]... [--stops F] [--noise F] [--threads N] [--list]
// One table a size, one row a variant, in Markdown. A variant is a set of changes to what --preset, --params and --set
// give, in this order; among them the words default and photo stand for the presets, which undo all before them. ""
// changes nothing and is the only variant if none is named. A name without a filter is alignment's own. Every burst is
// drawn once for all variants. --list tells about every burst. --stops (2 from one exposure to the next) and --noise
// (1) show what an error comes from: 0 takes it away.
#include <omp.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/mem_pool.h"
#include "library_lines.h"
#include "picture_size.h"
#include "tool_error.h"
#include "tool_parameters.h"
#include "truth/error_table.h"

namespace {

using vkr::tool::BurstError;
using vkr::tool::Size;
using vkr::tool::ToolParameters;
using vkr::tool::UsageError;
using namespace vkr::truth;

struct Options {
    std::vector<std::string> vSizes{"640x480", "1920x1080", "4000x3000"};
    int nSeeds = 50, nFirstSeed = 0, nThreads = 0;
    std::string sPreset = "default", sParams;
    std::vector<std::string> vSets, vVariants;
    float fStops = 2, fNoise = 1;
    bool bList = false;
};

std::vector<std::string> Split(const std::string& sText)
{
    std::vector<std::string> vParts;
    std::istringstream stream(sText);
    for (std::string sPart; std::getline(stream, sPart, ',');) vParts.push_back(sPart);
    return vParts;
}

int Number(const std::string& sText, int nLeast)
{
    char* pEnd = nullptr;
    const long n = std::strtol(sText.c_str(), &pEnd, 10);
    if (sText.empty() || *pEnd != 0 || n < nLeast || n > 1000000) throw UsageError("no number: '" + sText + "'");
    return static_cast<int>(n);
}

float Factor(const std::string& sText, float fMost)
{
    char* pEnd = nullptr;
    const float f = std::strtof(sText.c_str(), &pEnd);
    if (sText.empty() || *pEnd != 0 || !(f >= 0) || f > fMost) throw UsageError("no factor: '" + sText + "'");
    return f;
}

Options ParseOptions(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string sName = argv[i];
        if (sName == "--list") {
            options.bList = true;
            continue;
        }
        if (i + 1 == argc) throw UsageError("what is " + sName + "?");
        const std::string sValue = argv[++i];
        if (sName == "--sizes") {
            options.vSizes = Split(sValue);
        } else if (sName == "--seeds") {
            options.nSeeds = Number(sValue, 1);
        } else if (sName == "--first-seed") {
            options.nFirstSeed = Number(sValue, 0);
        } else if (sName == "--stops") {
            options.fStops = Factor(sValue, 4);
        } else if (sName == "--noise") {
            options.fNoise = Factor(sValue, 100);
        } else if (sName == "--threads") {
            options.nThreads = Number(sValue, 1);
        } else if (sName == "--preset") {
            options.sPreset = sValue;
        } else if (sName == "--params") {
            options.sParams = sValue;
        } else if (sName == "--set") {
            options.vSets.push_back(sValue);
        } else if (sName == "--variant") {
            options.vVariants.push_back(sValue);
        } else {
            throw UsageError("there is no option " + sName);
        }
    }
    if (options.sPreset != "default" && options.sPreset != "photo") throw UsageError("--preset takes default or photo");
    if (options.vVariants.empty()) options.vVariants.emplace_back();
    return options;
}

// One set of parameters and what it did.
class Variant {
public:
    Variant(const Options& options, Size size, const std::string& sChanges, vkr::tool::LibraryLines& lines)
        : m_sName(sChanges.empty() ? "as given" : sChanges), m_size(size)
    {
        Change(options.sPreset);
        if (!options.sParams.empty()) Load(options.sParams, lines);
        for (const std::string& sSet : options.vSets) Change(sSet);
        for (const std::string& sChange : Split(sChanges)) Change(sChange);
        m_params->AlignFilter().bDumpDebug = 0;
    }

    const std::string& Name() const { return m_sName; }
    vkr::CMultipleImagesAlignFilterOpt& Filter() { return m_params->AlignFilter(); }
    ErrorRow& Row() { return m_row; }

private:
    void Load(const std::string& sPath, vkr::tool::LibraryLines& lines)
    {
        std::string sWarning;
        m_params->Load(sPath, lines, sWarning);
        if (!sWarning.empty()) std::fprintf(stderr, "align_truth: %s\n", sWarning.c_str());
    }

    void Change(const std::string& sChange)
    {
        const bool bFull = sChange.substr(0, sChange.find('=')).find('.') != std::string::npos;
        if (sChange == "default" || sChange == "photo") {
            m_params = std::make_unique<ToolParameters>(ToolParameters::Base::kShipped);
            if (sChange == "photo") m_params->SetPhotoValues(m_size);
        } else {
            m_params->Set(bFull ? sChange : "CMultipleImagesAlignFilter." + sChange);
        }
    }

    std::string m_sName;
    Size m_size;
    std::unique_ptr<ToolParameters> m_params;
    ErrorRow m_row;
};

void PrintTable(const Options& options, const std::string& sSize, std::vector<Variant>& vVariants)
{
    std::printf("\n%s, %d bursts of %d exposures, %d threads\n\n", sSize.c_str(), options.nSeeds,
                TruthBurst::kExposures, omp_get_max_threads());
    ErrorRow::PrintHead(stdout);
    for (Variant& variant : vVariants) variant.Row().Print(stdout, variant.Name());
    std::fflush(stdout);
}

void MeasureSize(const Options& options, const std::string& sSize, vkr::tool::LibraryLines& lines)
{
    const Size size = vkr::tool::ParseSize(sSize, "--sizes");
    std::vector<Variant> vVariants;
    for (const std::string& sChanges : options.vVariants) vVariants.emplace_back(options, size, sChanges, lines);
    TruthBurst burst;
    AlignRun run;
    AlignResult result;
    BurstParams burstParams{size.nWidth, size.nHeight, 0, options.fStops, options.fNoise};
    for (int nSeed = options.nFirstSeed; nSeed < options.nFirstSeed + options.nSeeds; ++nSeed) {
        burstParams.nSeed = static_cast<uint32_t>(nSeed);
        if (!burst.Draw(burstParams)) throw BurstError("no memory for a burst of " + sSize);
        for (Variant& variant : vVariants) {
            if (!run.Align(variant.Filter(), burst, result)) throw BurstError("no memory to align " + sSize);
            variant.Row().Add(burst, result);
            if (options.bList) variant.Row().PrintLast(stdout, variant.Name(), burstParams.nSeed);
            std::fflush(stdout);
        }
    }
    PrintTable(options, sSize, vVariants);
}

void Measure(const Options& options)
{
    if (options.nThreads > 0) omp_set_num_threads(options.nThreads);
    vkr::tool::LibraryLines lines(false);
    vkr::PoolInit(0);
    for (const std::string& sSize : options.vSizes) MeasureSize(options, sSize, lines);
    vkr::PoolRelease();
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        Measure(ParseOptions(argc, argv));
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "align_truth: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "align_truth: %s\n", error.what());
        return 1;
    }
}
