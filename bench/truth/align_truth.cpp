// How far alignment is from the truth, over drawn bursts whose motion is known:
//   align_truth [--sizes WxH,...] [--seeds N] [--first-seed N] [--preset default|photo] [--params FILE]
//               [--set NAME=VALUE]... [--variant NAME=VALUE,...]... [--stops F] [--noise F] [--threads N] [--list]
// One table a size, one row a variant, in Markdown. A variant is a set of changes to what --preset, --params and --set
// give, in this order; among them the words default and photo stand for the presets, which undo all before them. ""
// changes nothing and is the only variant if none is named. A name without a filter is alignment's own. Every burst is
// drawn once for all variants. --list tells about every burst. --stops (2 from one exposure to the next) and --noise
// (1) show what an error comes from: 0 takes it away.
#include <omp.h>

#include <memory>
#include <string>
#include <vector>

#include "pictures/tool_error.h"
#include "truth/error_table.h"
#include "truth/truth_options.h"

namespace {

using vkr::tool::BurstError;
using vkr::tool::LibraryLines;
using vkr::tool::Size;
using namespace vkr::truth;

// One set of parameters and what it did.
class Variant {
public:
    Variant(const TruthOptions& options, Size size, const std::string& sChanges, LibraryLines& lines)
        : m_sName(sChanges.empty() ? "as given" : sChanges),
          m_params(MakeParameters(options, size, sChanges, "CMultipleImagesAlignFilter", {}, lines))
    {
        m_params->AlignFilter().bDumpDebug = 0;
    }

    const std::string& Name() const { return m_sName; }
    vkr::CMultipleImagesAlignFilterOpt& Filter() { return m_params->AlignFilter(); }
    ErrorRow& Row() { return m_row; }

private:
    std::string m_sName;
    std::unique_ptr<vkr::tool::ToolParameters> m_params;
    ErrorRow m_row;
};

void PrintTable(const TruthOptions& options, const std::string& sSize, std::vector<Variant>& vVariants)
{
    std::printf("\n%s, %d bursts of %d exposures, %d threads\n\n", sSize.c_str(), options.nSeeds,
                TruthBurst::kExposures, omp_get_max_threads());
    ErrorRow::PrintHead(stdout);
    for (Variant& variant : vVariants) variant.Row().Print(stdout, variant.Name());
    std::fflush(stdout);
}

void MeasureSize(const TruthOptions& options, const std::string& sSize, LibraryLines& lines)
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

}  // namespace

int main(int argc, char** argv)
{
    return RunSizes("align_truth", argc, argv, MeasureSize);
}
