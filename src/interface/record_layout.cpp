#include <cstddef>

#include "vkrHdr.h"

// The records are binary interface: the order of their words is fixed, and where a pointer is one word they are made of
// 32-bit words throughout.
static_assert(sizeof(void*) != 4 || (sizeof(vkrHdrInitParam) == 3 * 4 && sizeof(vkrHdrFrame) == 9 * 4 &&
                                     sizeof(vkrHdrVersion) == 7 * 4 && sizeof(vSystemFaces) == 3 * 4),
              "on a 32-bit target every word has 32 bits");
static_assert(sizeof(vkrHdrRect) == 16, "four 32-bit integers");
static_assert(offsetof(vkrHdrInitParam, pReserved) == sizeof(void*) &&
                  offsetof(vkrHdrInitParam, nMode) == 2 * sizeof(void*),
              "path, reserved, mode");
static_assert(offsetof(vkrHdrFrame, nWidth) == 4 && offsetof(vkrHdrFrame, nHeight) == 8 &&
                  offsetof(vkrHdrFrame, nPitch) == offsetof(vkrHdrFrame, pPlane) + 4 * sizeof(void*),
              "format, width, height, four planes, two pitches");
static_assert(offsetof(vkrHdrVersion, pVersion) == 16 && offsetof(vkrHdrVersion, pBuildStamp) == 16 + sizeof(void*),
              "four numbers, three texts");
static_assert(offsetof(vSystemFaces, pEnd) == sizeof(void*) && offsetof(vSystemFaces, pCapacity) == 2 * sizeof(void*),
              "begin, end, capacity");
