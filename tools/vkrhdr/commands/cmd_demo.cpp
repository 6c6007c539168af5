#include <CLI/CLI.hpp>
#include <algorithm>

#include "burst/burst_order.h"
#include "burst/drawn_burst.h"
#include "commands/commands.h"
#include "commands/parameter_options.h"
#include "library/engine.h"
#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

constexpr int kQuality = 95;
constexpr int kGap = 8;  // pixels between the pictures of the sheet

Frame FuseDrawn(const std::vector<Frame>& vFrames, const ToolParameters& params, LibraryLines& lines)
{
    Engine engine(params, lines);
    const int nFrames = static_cast<int>(vFrames.size());
    for (int k = 0; k < nFrames; ++k) engine.AddFrame(k, vFrames[static_cast<size_t>(k)]);
    Frame result;
    result.Resize(vFrames[0].nWidth, vFrames[0].nHeight);
    engine.Render(nFrames, MiddleFrame(nFrames), 0, {}, 1, result);
    return result;
}

void Paste(const Raster& picture, int nX, int nY, int nRows, Raster& sheet)
{
    for (int y = 0; y < nRows; ++y) {
        std::copy_n(picture.Row(y), picture.nWidth * 3, sheet.Row(nY + y) + static_cast<size_t>(nX) * 3);
    }
}

// The frames, small, one below the other, and the result beside them at full size, on white. The gaps between the
// frames are cut off their last rows, so that both columns are of one height.
Raster SideBySide(const std::vector<Frame>& vFrames, const Frame& result)
{
    const int nFrames = static_cast<int>(vFrames.size());
    const int nStripWidth = result.nWidth / nFrames;
    Raster sheet;
    sheet.Resize(nStripWidth + kGap + result.nWidth, result.nHeight, 3);
    std::fill(sheet.vSamples.begin(), sheet.vSamples.end(), uint8_t{255});
    for (int k = 0; k < nFrames; ++k) {
        const Raster small = ScaleDown(RgbFromFrame(vFrames[static_cast<size_t>(k)]), nFrames);
        const int nRows = k + 1 < nFrames ? std::max(small.nHeight - kGap, 0) : small.nHeight;
        Paste(small, 0, k * result.nHeight / nFrames, nRows, sheet);
    }
    Paste(RgbFromFrame(result), nStripWidth + kGap, 0, result.nHeight, sheet);
    return sheet;
}

}  // namespace

CLI::App* DefineDemo(CLI::App& app, DemoOptions& options)
{
    CLI::App* pCommand = app.add_subcommand("demo", "Draws a burst of a room with a bright window and fuses it.");
    pCommand->add_option("-o,--output", options.sFolder, "folder for the frames, the result and a sheet of all")
        ->capture_default_str();
    pCommand->add_option("--size", options.sSize, "WxH of the frames")->capture_default_str();
    pCommand->add_option("--exposures", options.nExposures, "number of frames, 1 to 8")
        ->check(CLI::Range(1, 8))
        ->capture_default_str();
    DefineParameters(*pCommand, options.parameters);
    return pCommand;
}

void RunDemo(const DemoOptions& options, Remarks& remarks)
{
    SceneParams scene;
    const Size size = ParseSize(options.sSize);
    scene.nWidth = size.nWidth;
    scene.nHeight = size.nHeight;
    scene.nExposures = options.nExposures;
    LibraryLines lines(&remarks);
    ToolParameters params = LoadParameters(options.parameters, lines, remarks);
    MakeFolder(options.sFolder);
    const std::vector<Frame> vFrames = DrawBurst(scene);
    FitParameters(options.parameters, RatioFramesOf(vFrames), remarks, params);
    const Frame result = FuseDrawn(vFrames, params, lines);
    for (size_t k = 0; k < vFrames.size(); ++k) {
        WriteWholeFile(options.sFolder + "/frame" + std::to_string(k) + ".jpg", WriteJpeg(vFrames[k], kQuality));
    }
    WriteWholeFile(options.sFolder + "/result.jpg", WriteJpeg(result, kQuality));
    WriteWholeFile(options.sFolder + "/side_by_side.png", WritePng(SideBySide(vFrames, result)));
    remarks.Say("fused %zu drawn frames of %dx%d; %s holds them, result.jpg and side_by_side.png", vFrames.size(),
                size.nWidth, size.nHeight, options.sFolder.c_str());
}

}  // namespace vkr::tool
