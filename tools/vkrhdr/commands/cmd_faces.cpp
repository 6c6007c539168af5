#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <vector>

#include "burst/face_model.h"
#include "commands/commands.h"
#include "face/face_search.h"
#include "foundation/image_scope.h"
#include "fusion/working_frames.h"
#include "library/library_lines.h"
#include "pictures/colour_convert.h"
#include "pictures/exif_io.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

struct FoundFace {
    double fScore;
    FaceBox box;  // frame pixels, not clipped
};

FaceBox FrameBox(const FaceBoxRecord& record)
{
    int vCorners[4];
    for (size_t i = 0; i < 4; ++i) vCorners[i] = static_cast<int>(std::lround(2 * record.vCoord[i]));
    return {vCorners[0], vCorners[1], vCorners[2], vCorners[3]};
}

// Looks where the flow looks: in the working picture, made the way the flow makes it.
std::vector<FoundFace> FindFaces(const Frame& frame, int nQuarterTurns)
{
    CYuvImage yuv = {};
    CImage vWork[kMaxExposures] = {};
    CShortImage vDetail[kMaxExposures] = {};
    const ImageScope scope(yuv);
    const ImageScope workScope(vWork);
    const ImageScope detailScope(vDetail);
    ReadyFlags flags;
    if (!yuv.Allocate(frame.nWidth, frame.nHeight)) throw std::bad_alloc();
    std::copy(frame.vY.begin(), frame.vY.end(), yuv.pY);
    std::copy(frame.vUV.begin(), frame.vUV.end(), yuv.pUV);
    if (!BinarizeFrames(&yuv, 1, frame.bCrFirst ? 1 : 0, flags, vWork, vDetail)) throw std::bad_alloc();

    std::vector<FaceBoxRecord> vBoxes;
    FindFacesByNetwork(vWork[0], nQuarterTurns, {}, vBoxes);
    std::vector<FoundFace> vFaces;
    for (const FaceBoxRecord& record : vBoxes) vFaces.push_back({record.dScore, FrameBox(record)});
    return vFaces;
}

void FillBox(Raster& picture, const FaceBox& box)
{
    constexpr uint8_t kGreen[3] = {0, 255, 0};
    for (int y = std::max(box.y1, 0); y <= std::min(box.y2, picture.nHeight - 1); ++y) {
        for (int x = std::max(box.x1, 0); x <= std::min(box.x2, picture.nWidth - 1); ++x) {
            std::copy_n(kGreen, 3, picture.Row(y) + 3 * x);
        }
    }
}

// A frame around the box, of it what lies in the picture.
void DrawBox(Raster& picture, const FaceBox& box)
{
    const int n = std::max(2, std::max(picture.nWidth, picture.nHeight) / 400) - 1;
    FillBox(picture, {box.x1, box.y1, box.x2, box.y1 + n});
    FillBox(picture, {box.x1, box.y2 - n, box.x2, box.y2});
    FillBox(picture, {box.x1, box.y1, box.x1 + n, box.y2});
    FillBox(picture, {box.x2 - n, box.y1, box.x2, box.y2});
}

void PrintFaces(const std::vector<FoundFace>& vFaces)
{
    for (const auto& [fScore, box] : vFaces) {
        std::printf("%.3f %d,%d,%d,%d\n", fScore, box.x1, box.y1, box.x2, box.y2);
    }
    if (std::fflush(stdout) != 0) throw BurstError("standard output can not be written");
}

std::string OutputOf(const FacesOptions& options)
{
    if (!options.sOutput.empty()) return options.sOutput;
    return std::filesystem::path(options.sImage).stem().string() + "_faces.png";
}

}  // namespace

CLI::App* DefineFaces(CLI::App& app, FacesOptions& options)
{
    CLI::App* pCommand = app.add_subcommand(
        "faces", "Finds faces: for each a line with its score and its box, as --face takes it, the best first.");
    pCommand->add_option("IMG", options.sImage, "a JPEG or PNG picture")->required()->check(CLI::ExistingFile);
    pCommand->add_option("-o,--output", options.sOutput,
                         "PNG of the picture, upright, with the boxes; without it the picture's name with _faces.png, "
                         "in the working folder");
    return pCommand;
}

void RunFaces(const FacesOptions& options, Remarks& remarks)
{
    const std::string sOutput = OutputOf(options);
    if (KindOfPath(sOutput) != PictureKind::kPng) throw UsageError("the output ends in .png, not '" + sOutput + "'");
    ProtectFile(options.sImage);
    CheckPlace(sOutput);
    const std::string sWhyNot = FindFaceModel();
    if (!sWhyNot.empty()) throw BurstError("no face can be found: " + sWhyNot);
    const Bytes vFile = ReadWholeFile(options.sImage);
    std::string sWarning;
    const Frame frame = ReadPicture(vFile, options.sImage, sWarning).frame;
    if (!sWarning.empty()) remarks.Say("%s", sWarning.c_str());
    const int nOrientation = ReadPhotoInfo(vFile).nOrientation;

    std::vector<FoundFace> vFaces;
    {
        const LibraryLines lines(&remarks);
        vFaces = FindFaces(frame, QuarterTurns(nOrientation));
    }
    Raster picture = RgbFromFrame(frame);
    for (const FoundFace& face : vFaces) DrawBox(picture, face.box);
    WriteWholeFile(sOutput, WritePng(TurnUpright(picture, nOrientation)));
    remarks.Say("%zu faces, drawn in %s", vFaces.size(), sOutput.c_str());
    PrintFaces(vFaces);
}

}  // namespace vkr::tool
