#pragma once

#include <vector>

#include "burst/face_choice.h"
#include "burst/photo_burst.h"
#include "library/library_lines.h"
#include "library/parameter_choice.h"
#include "library/stage_listeners.h"
#include "library/stage_times.h"
#include "library/tool_parameters.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// The whole way of one burst, from frames in memory to a result, with all that is decided on it: every front end goes
// this way, so that the same pixels and wishes give the same bytes.
//
//     BurstFuser fuser(wishes, remarks);                    // refuses wrong wishes before a picture is read
//     PhotoBurst burst = ArrangeBurst(vPhotos, nReference); // or ReadBurst, of files
//     FusedBurst fused = std::move(fuser).Fuse(std::move(burst), {});

// What is wished beyond the frames and their reference.
struct BurstWishes {
    ParameterChoice parameters;
    FaceChoice faces;
    // The library's own debug files, into folders of the working folder that must be there; a single value of
    // parameters goes over it.
    bool bDebugFiles = false;
};

// The result and how it came about.
struct FusedBurst {
    Frame result;                     // size and chroma order of the frames, and the way they lie
    PhotoBurst burst;                 // as it was fused: frames moved, those left out gone; order, reference and faces
    ToolParameters params;            // that it was fused with; nRatio_K are the ratios
    std::vector<AlignedPair> vPairs;  // of neighbours in burst, darkest pair first; empty without alignment
    StageTimes times;                 // of the last render
    int nMs = 0;                      // from the first render to the end of the last
};

// Fuses one burst. The library's engine, its stage probe and its lines are one each in a process: so is this, from the
// constructor to the destructor, and no Engine, StageListeners or LibraryLines may live beside it. Any thread, but one.
class BurstFuser {
public:
    // UsageError, in one line, for a parameter file that does not load, an unknown parameter or a value out of its
    // range. remarks must live as long.
    BurstFuser(const BurstWishes& wishes, Remarks& remarks);

    // Fits the parameters to the pictures, finds out about faces, renders, and where neighbours could not be aligned
    // tries again with what the second attempt makes of them. Tells each decision. A fuser is used up by it.
    //
    //   burst       as ArrangeBurst gives it
    //   vListeners  who looks on between the stages, see RenderBurst: what the last render showed is what was fused
    //
    // BurstError with the library's words when it refuses, and for want of memory; what a listener throws.
    FusedBurst Fuse(PhotoBurst burst, const std::vector<StageListener*>& vListeners) &&;

private:
    BurstWishes m_wishes;
    Remarks& m_remarks;
    LibraryLines m_lines;
    ToolParameters m_params;
};

// A line for every pair that could not be aligned, with what became of it.
void SayFailedPairs(const FusedBurst& fused, Remarks& remarks);

}  // namespace vkr::tool
