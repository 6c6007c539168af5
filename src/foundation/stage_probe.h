#pragma once

#include "foundation/image.h"

namespace vkr {

// A look between the stages, for finding where two runs part: hashes in the tests, pictures in the tool. Off unless a
// probe is set; a stage's picture is then handed over once it is complete, on the thread that made it. Callbacks may be
// null.
struct StageProbe {
    void (*pOnImage)(void* pUser, const char* pName, const CImage& image);
    void (*pOnShortImage)(void* pUser, const char* pName, const CShortImage& image);
    void (*pOnYuvImage)(void* pUser, const char* pName, const CYuvImage& image);
    void* pUser;
};

// Null takes the probe away. The probe must live until then. Not to be changed while a burst runs.
void SetStageProbe(const StageProbe* pProbe);

// nIndex, if not negative, is appended to the name. An empty picture is not shown.
void ProbeImage(const char* pName, const CImage& image, int nIndex = -1);
void ProbeImage(const char* pName, const CShortImage& image, int nIndex = -1);
void ProbeImage(const char* pName, const CYuvImage& image, int nIndex = -1);

// nCount pictures, numbered from 0.
template <class Image>
void ProbeImages(const char* pName, const Image* vImages, int nCount)
{
    for (int i = 0; i < nCount; ++i) ProbeImage(pName, vImages[i], i);
}

}  // namespace vkr
