/* A host without OpenMP of its own that loads and closes the library again and again, with a burst in between: what the
 * library leaves running must not lose its code. It stays where it is.  unload_host LIBRARY PARAMETERS */
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vkrHdr.h>

enum { kRounds = 30, kWidth = 320, kHeight = 240, kFrames = 3 };

static uint8_t g_vLuma[kWidth * kHeight], g_vChroma[kWidth * kHeight / 2];

/* A slope with some texture, brighter from frame to frame. */
static void Draw(int nFrame)
{
    memset(g_vChroma, 128, sizeof(g_vChroma));
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int nGrey = (x / 4 + (x * 7 ^ y * 13) % 32) * (nFrame + 1);
            g_vLuma[y * kWidth + x] = (uint8_t)(nGrey > 255 ? 255 : nGrey);
        }
    }
}

static int Burst(void* pLibrary, const char* pParameters)
{
    int32_t (*pInit)(vkrHdrInitParam);
    int32_t (*pAddFrame)(uint32_t, const vkrHdrFrame*);
    int32_t (*pRender)(int32_t, int32_t, int32_t, int32_t, const vSystemFaces*, vkrHdrFrame*);
    int32_t (*pUninit)(void);
    *(void**)&pInit = dlsym(pLibrary, "vkrHdrInit");
    *(void**)&pAddFrame = dlsym(pLibrary, "vkrHdrAddFrame");
    *(void**)&pRender = dlsym(pLibrary, "vkrHdrRender");
    *(void**)&pUninit = dlsym(pLibrary, "vkrHdrUninit");
    if (!pInit || !pAddFrame || !pRender || !pUninit) return 1;

    const vkrHdrInitParam param = {pParameters, NULL, 0};
    vkrHdrFrame frame = {0, kWidth, kHeight, {g_vLuma, g_vChroma, NULL, NULL}, {kWidth, kWidth}};
    if (pInit(param) != 0) return 1;
    for (uint32_t i = 0; i < kFrames; ++i) {
        Draw((int)i);
        if (pAddFrame(i, &frame) != 0) return 1;
    }
    return pRender(kFrames, 1, 0, 1, NULL, &frame) != 0 || pUninit() != 0;
}

int main(int nArguments, char** ppArguments)
{
    if (nArguments != 3) return 2;
    setenv("OMP_NUM_THREADS", "4", 1); /* a team, also on one core */
    if (!freopen("/dev/null", "w", stdout)) return 2;
    for (int nRound = 0; nRound < kRounds; ++nRound) {
        void* pLibrary = dlopen(ppArguments[1], RTLD_NOW | RTLD_LOCAL);
        if (!pLibrary || Burst(pLibrary, ppArguments[2]) != 0 || dlclose(pLibrary) != 0) {
            fprintf(stderr, "round %d fails\n", nRound);
            return 1;
        }
    }
    if (!dlopen(ppArguments[1], RTLD_NOW | RTLD_NOLOAD)) {
        fprintf(stderr, "the library was unloaded\n");
        return 1;
    }
    return 0;
}
