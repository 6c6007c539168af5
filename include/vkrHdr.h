/*
 * libVKRExposureFusion: a burst of differently exposed 4:2:0 frames in, one high-dynamic-range picture of the same
 * size out. The whole interface is the six functions below; it compiles as C11 and as C++17.
 *
 * Life cycle
 *   vkrHdrInit once, then for every burst vkrHdrAddFrame for each exposure and one vkrHdrRender, and vkrHdrUninit at
 *   the end. There is one engine a process. What a burst changes in the engine stays until vkrHdrUninit: the stretch
 *   levels and the local curves (followed over a series of bursts), and the brightness targets once frames had to be
 *   dropped.
 *
 * Threads
 *   vkrHdrInit, vkrHdrAddFrame and vkrHdrRender belong to one host thread. vkrHdrUninit and vkrHdrGetVersion may come
 *   from another one: vkrHdrUninit waits for a running call. The heavy loops run on the OpenMP team (OMP_NUM_THREADS),
 *   and each burst starts two more threads that have ended when vkrHdrRender returns. The bytes of a result depend on
 *   no number of threads.
 *
 * Processes
 *   dlclose leaves the library in its place (it is linked with -z nodelete): threads of the OpenMP team outlive
 *   vkrHdrUninit. After a fork between calls, parent and child both go on with the engine as it was. A child of a fork
 *   that another thread made while a call was running can not use the library until it calls exec: every call but
 *   vkrHdrUninit, which does nothing, and vkrHdrGetVersion is refused.
 *
 * Pictures
 *   Semi-planar 4:2:0: a luma plane of nHeight rows, and a plane of nHeight / 2 rows of interleaved chroma pairs, one
 *   pair per 2 x 2 pixels, both nWidth bytes a row and nPitch bytes from row to row. Width and height are even,
 *   2 .. 16384. Which chroma byte comes first is the parameter bUVOrder (0: Cb first, NV12; 1: Cr first, NV21).
 *   All buffers are the host's; frames are copied in, the result is copied out, bytes between the rows are neither
 *   read nor written.
 *
 * Errors
 *   0 is success, -1 failure. A refused call prints one line on standard output that names the argument and leaves the
 *   engine as it was. No function throws.
 *
 * Output
 *   The library prints stage times and messages on standard output by design.
 */
#ifndef VKR_HDR_H_
#define VKR_HDR_H_

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define VKR_HDR_API __attribute__((visibility("default")))
#else
#define VKR_HDR_API
#endif

/* Passed to vkrHdrInit by value. */
typedef struct {
    const char* pParamFilePath; /* parameter file: a text, as `vkrhdr params` prints it, or enciphered */
    void* pReserved;            /* never read */
    int32_t nMode;              /* must be 0 */
} vkrHdrInitParam;

/* One picture of the host, in or out. */
typedef struct {
    int32_t nFormat;    /* 0 or 1, treated alike; the chroma order is the parameter bUVOrder */
    int32_t nWidth;     /* pixels, even, 2 .. 16384 */
    int32_t nHeight;    /* pixels, even, 2 .. 16384 */
    uint8_t* pPlane[4]; /* [0] luma, [1] interleaved chroma; the others are never read */
    int32_t nPitch[2];  /* bytes from row to row of luma and of chroma, each at least nWidth */
} vkrHdrFrame;

/* What vkrHdrGetVersion returns; owned by the library. */
typedef struct {
    int32_t nVersion[4];        /* the four numbers of pVersion */
    const char* pVersion;       /* "a.b.c.d" */
    const char* pBuildStamp;    /* date and time of the build */
    const char* pConfigVersion; /* of an enciphered parameter file, else "0.0.0.0"; null while there is no engine */
} vkrHdrVersion;

/* A face found by the host, in frame pixels. */
typedef struct {
    int32_t x1, y1, x2, y2;
} vkrHdrRect;

/* The host's faces, in the layout of a std::vector<vkrHdrRect>; pBegin == pEnd means no face. Read only. */
typedef struct {
    vkrHdrRect *pBegin, *pEnd, *pCapacity;
} vSystemFaces;

/*
 * Makes the engine and loads the parameter file.
 *   0    ready
 *   -1   nMode is not 0, no path, no memory, or the file can not be opened: no engine
 *   -1   an enciphered file that can not be deciphered or does not parse: no engine
 *   -1   a text that does not parse: the engine lives with the parameters read so far; call vkrHdrUninit
 * Call vkrHdrUninit before a second vkrHdrInit: otherwise the engine before stays allocated and its pool with it.
 */
VKR_HDR_API int32_t vkrHdrInit(vkrHdrInitParam param);

/*
 * Copies one exposure into slot nIndex (0 .. 7). Frames of a burst fill slots 0 .. nExposureNum - 1, the darkest first,
 * all of one size; slots keep their frames, so an unchanged one needs no second call.
 *   -1   no engine, an index above 7, a null frame or plane, nFormat above 1, a bad size or pitch, no memory
 */
VKR_HDR_API int32_t vkrHdrAddFrame(uint32_t nIndex, const vkrHdrFrame* pFrame);

/*
 * Fuses the frames of slots 0 .. nExposureNum - 1 and writes the result into pOut, which has their size.
 *   nExposureNum         1 .. 8
 *   nReferenceExposure   0 .. nExposureNum - 1, the normally exposed frame: the others are aligned to it
 *   nOrientation         how the frames lie, for the search by the network: 0 upright, 1 and 3 a quarter turn to either
 *                        side, 2 upside down; any other value finds no face
 *   nFaceSource          below 1: faces are searched by the network; from 1 up: pFaces is taken; 2 and 3 also draw
 *                        the boxes into the picture
 *   pFaces               may be null: no face
 * Faces count only while the parameter bAIMask is 1. A burst without a face, or without one that is large enough,
 * clears it in the engine: no later burst has a face until the next vkrHdrInit. The network is the file
 * models/faceDetect_rgb_320x240.tflite under the working directory, loaded for every search: if it is missing or
 * damaged, the process ends with status 1 and a line on standard error.
 *   -1   an argument out of its range, a slot never filled or of another size, no memory, or a burst too small to be
 *        fused (a few pixels); pOut is untouched then
 */
VKR_HDR_API int32_t vkrHdrRender(int32_t nExposureNum, int32_t nReferenceExposure, int32_t nOrientation,
                                 int32_t nFaceSource, const vSystemFaces* pFaces, vkrHdrFrame* pOut);

/* Ends the engine and gives all memory back. Always 0, also without an engine. */
VKR_HDR_API int32_t vkrHdrUninit(void);

/* Version of the library, at any time. Never null; the same record at every call. */
VKR_HDR_API const vkrHdrVersion* vkrHdrGetVersion(void);

/* Reserved. Does nothing and returns 0. */
VKR_HDR_API int32_t vkrHdrAdvancedFeature(void);

#ifdef __cplusplus
}
#endif

#endif /* VKR_HDR_H_ */
