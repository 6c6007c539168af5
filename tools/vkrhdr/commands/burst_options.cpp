#include "commands/burst_options.h"

#include <CLI/CLI.hpp>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr size_t kMaxImages = 8;

}  // namespace

void DefineBurst(CLI::App& command, BurstOptions& options)
{
    command.add_option("IMG", options.vImages, "the frames, 1 to 8, in any order")
        ->required()
        ->check(CLI::ExistingFile);
    command
        .add_option("--reference", options.nReference,
                    "the normally exposed frame, 0 the darkest; else the (lower) middle one")
        ->check(CLI::Range(0, 7));
    command.add_option("--raw", options.sRaw, "frames are nv12 or nv21 bytes")->check(CLI::IsMember({"nv12", "nv21"}));
    command.add_option("--size", options.sSize, "WxH of raw frames");
}

BurstChoice ChosenBurst(const BurstOptions& options)
{
    if (options.vImages.size() > kMaxImages) {
        throw UsageError("a burst has at most 8 frames, not " + std::to_string(options.vImages.size()));
    }
    if (options.nReference >= static_cast<int>(options.vImages.size())) {
        throw UsageError("--reference is " + std::to_string(options.nReference) + ", the frames are 0 .. " +
                         std::to_string(options.vImages.size() - 1));
    }
    if (options.sRaw.empty() != options.sSize.empty()) throw UsageError("--raw and --size WxH go together");
    for (const std::string& sName : options.vImages) ProtectFile(sName);
    BurstChoice choice;
    choice.vImages = options.vImages;
    choice.nReference = options.nReference;
    if (!options.sSize.empty()) choice.rawSize = ParseSize(options.sSize);
    choice.bCrFirst = options.sRaw == "nv21";
    return choice;
}

}  // namespace vkr::tool
