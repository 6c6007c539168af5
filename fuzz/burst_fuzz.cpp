#include <fuzzer/FuzzedDataProvider.h>
#include <omp.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "flow/enciphered_parameters.h"
#include "foundation/cipher.h"
#include "foundation/log.h"
#include "foundation/mem_pool.h"
#include "fuzz_check.h"
#include "interface/engine_lifecycle.h"
#include "reserved_memory.h"
#include "vkrHdr.h"

// Whole bursts through the C interface: sizes, pitches, counts, references, faces, parameters inside their ranges and
// pixels as the input says. A call answers 0 or -1, a refused burst leaves the result's planes alone, the bytes between
// rows stay the host's, and what the engine took is back after vkrHdrUninit.

namespace vkr {
namespace {

// The pool for one case: a region of nBytes, and as many small ones on demand as are allowed. The large ones that
// vkrHdrInit opens are never there. A block of its own keeps the first region from going back between bursts.
class CasePool {
public:
    CasePool(size_t nBytes, int nMoreRegions)
    {
        s_nAllowed = 1 + nMoreRegions;
        InstallRawAllocator([](size_t n) { return s_nAllowed > 0 && n <= kLargest ? TakeOne(n) : nullptr; },
                            Reserved::Give);
        PoolInit(nBytes);
        m_pKept = PoolAlloc(1);
    }
    ~CasePool()
    {
        FUZZ_CHECK(ReadPoolUse().nUsedBytes == 64);  // what the engine took is back
        PoolFree(m_pKept);
        PoolRelease();
    }
    CasePool(const CasePool&) = delete;
    CasePool& operator=(const CasePool&) = delete;

private:
    static constexpr size_t kLargest = (size_t{20} << 20) + 128;  // a small region, and what the pool has before it
    using Reserved = ReservedMemory<4, kLargest>;

    static void* TakeOne(size_t nBytes)
    {
        --s_nAllowed;
        return Reserved::Take(nBytes);
    }

    static inline int s_nAllowed = 0;
    void* m_pKept;
};

constexpr uint8_t kUnwritten = 0x5A;

// Planes of exactly the bytes that a frame of this size and pitch has, so that an overrun meets the sanitizer.
struct Picture {
    Picture(int w, int h, int nPad)
        : vLuma(Bytes(w, h, w + nPad), kUnwritten), vChroma(Bytes(w, h / 2, w + nPad), kUnwritten)
    {
        frame.nWidth = w;
        frame.nHeight = h;
        frame.pPlane[0] = vLuma.data();
        frame.pPlane[1] = vChroma.data();
        frame.nPitch[0] = frame.nPitch[1] = w + nPad;
    }
    static size_t Bytes(int w, int nRows, int nPitch) { return static_cast<size_t>(nRows - 1) * nPitch + w; }
    bool Untouched() const
    {
        const auto All = [](const std::vector<uint8_t>& v) {
            for (const uint8_t n : v) {
                if (n != kUnwritten) return false;
            }
            return true;
        };
        return All(vLuma) && All(vChroma);
    }
    bool PaddingIntact() const
    {
        for (const std::vector<uint8_t>* pPlane : {&vLuma, &vChroma}) {
            for (size_t i = 0; i < pPlane->size(); ++i) {
                const bool bPadding = static_cast<int>(i % frame.nPitch[0]) >= frame.nWidth;
                if (bPadding && (*pPlane)[i] != kUnwritten) return false;
            }
        }
        return true;
    }

    std::vector<uint8_t> vLuma, vChroma;
    vkrHdrFrame frame{};
};

// Mostly a few rows and columns; 128 are more than any vector has lanes.
int RandomSide(FuzzedDataProvider& data)
{
    const int nHalf = data.ConsumeIntegralInRange(1, 24);
    return 2 * (nHalf == 24 ? data.ConsumeIntegralInRange(1, 64) : nHalf);
}

// Flat, noise, or blocks that move and brighten from frame to frame.
void Paint(Picture& picture, int nKind, uint32_t nSeed, int nFrame)
{
    std::mt19937 rng(nSeed);
    const int w = picture.frame.nWidth, nPitch = picture.frame.nPitch[0];
    const auto PaintPlane = [&](std::vector<uint8_t>& vPlane, int nBase) {
        for (size_t i = 0; i < vPlane.size(); ++i) {
            const int x = static_cast<int>(i % nPitch), y = static_cast<int>(i / nPitch);
            if (x >= w) continue;
            const uint32_t nBlock = ((x + 3 * nFrame) / 7 * 31 + (y + nFrame) / 5 * 17 + nSeed) * 2654435761U;
            vPlane[i] = static_cast<uint8_t>(nKind == 0   ? nBase
                                             : nKind == 1 ? rng()
                                                          : ((nBlock >> 24) << nFrame) / 8 + (nBase & 31));
        }
    };
    PaintPlane(picture.vLuma, static_cast<int>(nSeed & 255));
    PaintPlane(picture.vChroma, 128);
}

// Every parameter keeps its default or takes a value of its range; the debug pictures are all on or all off.
void Turn(CFilter& filter, bool bDump, FuzzedDataProvider& data)
{
    for (CFilter* pFilter : AllFilters(filter)) {
        for (ParamEntry& entry : pFilter->Params()) {
            if (entry.sName.find("Dump") != std::string::npos) {
                *entry.pValue = bDump ? entry.nMax : 0;
            } else if (data.remaining_bytes() > 0 && data.ConsumeIntegralInRange(0, 7) == 0) {
                const bool bRounds = entry.sName.find("CloseIter") != std::string::npos;  // a hundred take a second
                *entry.pValue = data.ConsumeIntegralInRange(entry.nMin, bRounds ? entry.nMin + 8 : entry.nMax);
            }
        }
    }
}

void RunBurst(FuzzedDataProvider& data, bool bAmple)
{
    const int w = RandomSide(data), h = RandomSide(data), nPad = data.ConsumeIntegralInRange(0, 70);
    const int nFrames = data.ConsumeIntegralInRange(1, 8), nKind = data.ConsumeIntegralInRange(0, 2);
    const uint32_t nSeed = data.ConsumeIntegral<uint32_t>();
    for (int k = 0; k < nFrames; ++k) {
        Picture picture(w, h, nPad);
        Paint(picture, nKind, nSeed, k);
        const int nAdded = vkrHdrAddFrame(static_cast<uint32_t>(k), &picture.frame);
        FUZZ_CHECK(nAdded == 0 || (nAdded == -1 && !bAmple));
    }
    std::vector<vkrHdrRect> vRects(data.ConsumeIntegralInRange<size_t>(0, 3));
    for (vkrHdrRect& rect : vRects) {
        const bool bWild = data.ConsumeIntegralInRange(0, 7) == 0;
        for (int32_t* p : {&rect.x1, &rect.y1, &rect.x2, &rect.y2}) {
            *p = bWild ? data.ConsumeIntegral<int32_t>() : data.ConsumeIntegralInRange(-20, 700);
        }
    }
    vSystemFaces faces{vRects.data(), vRects.data() + vRects.size(), vRects.data() + vRects.size()};
    Picture out(w, h, data.ConsumeIntegralInRange(0, 9));
    const int nCount = nFrames + (data.ConsumeIntegralInRange(0, 15) == 0),
              nReference = data.ConsumeIntegralInRange(-1, 8);
    const int nResult = vkrHdrRender(nCount, nReference, data.ConsumeIntegralInRange(-1, 4),
                                     data.ConsumeIntegralInRange(1, 3), &faces, &out.frame);
    FUZZ_CHECK(nResult == 0 || (nResult == -1 && out.Untouched()));
    FUZZ_CHECK(out.PaddingIntact());
}

// A working folder of its own for debug files, for one scope. Not created: the folders that the library writes to; what
// it writes beside them is gone at the end.
class ScratchFolder {
public:
    explicit ScratchFolder(bool bEnter) : m_bEnter(bEnter), m_before(std::filesystem::current_path())
    {
        if (!m_bEnter) return;
        std::filesystem::create_directory(Path());
        std::filesystem::current_path(Path());
    }
    ~ScratchFolder()
    {
        if (!m_bEnter) return;
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(Path());
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

private:
    static std::string Path() { return "/tmp/vkr_fuzz_" + std::to_string(getpid()); }

    bool m_bEnter;
    std::filesystem::path m_before;
};

// A parameter file that leaves every default as it is: sections without a line, in the form that allows it.
const char* NoParametersPath()
{
    static const std::string sPath = [] {
        std::string sText;
        CMultiExposureHDRProcessFlowOpt engine;
        const auto Add = [&](const auto& Self, CFilter& filter) -> void {
            sText += filter.Name() + std::string("\n\n");
            if (auto* pFlow = dynamic_cast<CMultiFilterProcessFlow*>(&filter)) {
                for (CFilter* pSub : pFlow->Filters()) Self(Self, *pSub);
            }
        };
        Add(Add, engine);
        std::string sFile(kEncipheredHead, '\0');
        sFile.replace(0, sizeof(kEncipheredMagic), reinterpret_cast<const char*>(kEncipheredMagic),
                      sizeof(kEncipheredMagic));
        sFile += sText;
        uint8_t* pText = reinterpret_cast<uint8_t*>(&sFile[kEncipheredHead]);
        DecipherBuffer(pText, pText, static_cast<int>(sText.size()), kParameterFileKey, 0);
        std::string s = "/tmp/vkr_fuzz_" + std::to_string(getpid()) + ".bin";
        std::ofstream(s, std::ios::binary) << sFile;
        std::atexit([] { std::remove(NoParametersPath()); });
        return s;
    }();
    return sPath.c_str();
}

}  // namespace
}  // namespace vkr

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nBytes)
{
    using namespace vkr;
    SetHdrPrintSink([](const char*) {});
    NoParametersPath();
    FuzzedDataProvider data(pData, nBytes);
    const int nMode = data.ConsumeIntegralInRange(0, 255);
    const bool bDump = nMode == 255, bAmple = nMode % 4 != 3;
    omp_set_num_threads(1);
    const ScratchFolder scratch(bDump);
    const size_t nPool = bAmple ? 8U << 20 : data.ConsumeIntegralInRange<size_t>(128, 2U << 20);
    const CasePool pool(nPool, bAmple ? 3 : 0);
    FUZZ_CHECK(vkrHdrInit({NoParametersPath(), nullptr, 0}) == 0);
    Turn(*gVKRAlgoPool.load(), bDump, data);
    for (int nBursts = data.ConsumeIntegralInRange(1, 2); nBursts > 0; --nBursts) RunBurst(data, bAmple);
    FUZZ_CHECK(vkrHdrUninit() == 0);
    return 0;
}
