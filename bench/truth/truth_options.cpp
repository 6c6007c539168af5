#include "truth/truth_options.h"

#include <omp.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "foundation/mem_pool.h"
#include "pictures/tool_error.h"

namespace vkr::truth {

namespace {

using tool::ToolParameters;

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
    if (sText.empty() || *pEnd != 0 || n < nLeast || n > 1000000) throw tool::UsageError("no number: '" + sText + "'");
    return static_cast<int>(n);
}

float Factor(const std::string& sText, float fMost)
{
    char* pEnd = nullptr;
    const float f = std::strtof(sText.c_str(), &pEnd);
    if (sText.empty() || *pEnd != 0 || !(f >= 0) || f > fMost) throw tool::UsageError("no factor: '" + sText + "'");
    return f;
}

void Load(const std::string& sPath, ToolParameters& params, tool::LibraryLines& lines)
{
    std::string sWarning;
    params.Load(sPath, lines, sWarning);
    if (!sWarning.empty()) std::fprintf(stderr, "%s\n", sWarning.c_str());
}

// Changes one value, or takes a preset.
class Changes {
public:
    Changes(tool::Size size, const std::string& sFilter, const std::vector<std::string>& vAlways)
        : m_size(size), m_sFilter(sFilter), m_vAlways(vAlways)
    {
    }

    void Apply(const std::string& sChange, std::unique_ptr<ToolParameters>& params) const
    {
        if (sChange == "default" || sChange == "photo") {
            params = std::make_unique<ToolParameters>(ToolParameters::Base::kShipped);
            if (sChange == "photo") params->SetPhotoValues(m_size);
            return SetAlways(*params);
        }
        const bool bFull = m_sFilter.empty() || sChange.substr(0, sChange.find('=')).find('.') != std::string::npos;
        params->Set(bFull ? sChange : m_sFilter + "." + sChange);
    }

    void SetAlways(ToolParameters& params) const
    {
        for (const std::string& sAlways : m_vAlways) params.Set(sAlways);
    }

private:
    tool::Size m_size;
    const std::string& m_sFilter;
    const std::vector<std::string>& m_vAlways;
};

}  // namespace

TruthOptions TruthOptions::Parse(int argc, char** argv)
{
    TruthOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string sName = argv[i];
        if (sName == "--list") {
            options.bList = true;
            continue;
        }
        if (i + 1 == argc) throw tool::UsageError("what is " + sName + "?");
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
        } else if (sName == "--step") {
            options.fStep = Factor(sValue, 20);
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
            throw tool::UsageError("there is no option " + sName);
        }
    }
    if (options.sPreset != "default" && options.sPreset != "photo")
        throw tool::UsageError("--preset takes default or photo");
    if (options.vVariants.empty()) options.vVariants.emplace_back();
    return options;
}

std::unique_ptr<ToolParameters> MakeParameters(const TruthOptions& options, tool::Size size,
                                               const std::string& sChanges, const std::string& sFilter,
                                               const std::vector<std::string>& vAlways, tool::LibraryLines& lines)
{
    const Changes changes(size, sFilter, vAlways);
    std::unique_ptr<ToolParameters> params;
    changes.Apply(options.sPreset, params);
    if (!options.sParams.empty()) {
        Load(options.sParams, *params, lines);
        changes.SetAlways(*params);
    }
    for (const std::string& sSet : options.vSets) changes.Apply(sSet, params);
    for (const std::string& sChange : Split(sChanges)) changes.Apply(sChange, params);
    return params;
}

int RunSizes(const char* pProgram, int argc, char** argv,
             const std::function<void(const TruthOptions&, const std::string& sSize, tool::LibraryLines&)>& measure)
{
    try {
        const TruthOptions options = TruthOptions::Parse(argc, argv);
        if (options.nThreads > 0) omp_set_num_threads(options.nThreads);
        tool::LibraryLines lines(nullptr);
        PoolInit(0);
        for (const std::string& sSize : options.vSizes) measure(options, sSize, lines);
        PoolRelease();
        return 0;
    } catch (const tool::UsageError& error) {
        std::fprintf(stderr, "%s: %s\n", pProgram, error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", pProgram, error.what());
        return 1;
    }
}

}  // namespace vkr::truth
