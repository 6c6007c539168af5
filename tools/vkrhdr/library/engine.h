#pragma once

#include <vector>

#include "face/face_box.h"
#include "library/library_lines.h"
#include "library/tool_parameters.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// The library's one engine, through its C interface, for the life of this object. Every refusal is a BurstError with
// what the library said.
class Engine {
public:
    Engine(const ToolParameters& params, LibraryLines& lines);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void AddFrame(int nIndex, const Frame& frame);

    // result comes with the size and the chroma order of the frames. nFaceSource 0 may ask the network, see
    // ChooseFaces.
    void Render(int nExposures, int nReference, int nOrientation, const std::vector<FaceBox>& vFaces, int nFaceSource,
                Frame& result);

private:
    void Check(int nResult, const char* pCall);

    LibraryLines& m_lines;
};

}  // namespace vkr::tool
