#pragma once

#include <vector>

#include "face/face_box.h"
#include "library/library_lines.h"
#include "library/tool_parameters.h"
#include "pictures/picture_io.h"

namespace vkr::tool {

// The library's one engine, through its C interface, for the life of this object: one at a time in a process, on any
// thread. Every refusal is a BurstError with what the library said; after the constructor's there is no engine. params
// is read by the constructor alone; lines must be what holds the library's lines at present, and live as long.
class Engine {
public:
    Engine(const ToolParameters& params, LibraryLines& lines);
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    // Copies the frame. nIndex 0 .. 7, the darkest 0; all of one size and chroma order.
    void AddFrame(int nIndex, const Frame& frame);

    // Of frames 0 .. nExposures - 1, all added before. The engine follows a series of bursts: a new one knows none.
    //
    //   nOrientation  quarter turns, see QuarterTurns
    //   vFaces        frame pixels; read where nFaceSource is 1
    //   nFaceSource   0 may ask the network, see ChooseFaces
    //   result        comes with the size and the chroma order of the frames; all of it is written
    void Render(int nExposures, int nReference, int nOrientation, const std::vector<FaceBox>& vFaces, int nFaceSource,
                Frame& result);

private:
    void Check(int nResult, const char* pCall);

    LibraryLines& m_lines;
};

}  // namespace vkr::tool
