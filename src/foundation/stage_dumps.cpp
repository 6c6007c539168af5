#include "foundation/stage_dumps.h"

#include <cstdarg>
#include <cstdio>

#include "foundation/bmp.h"
#include "foundation/colour.h"
#include "foundation/image_scope.h"
#include "foundation/yuv_convert.h"

namespace vkr {

namespace {

struct DumpPath {
    char szText[128];
    __attribute__((format(printf, 2, 0))) DumpPath(const char* pFormat, va_list args)
    {
        std::vsnprintf(szText, sizeof(szText), pFormat, args);
    }
};

}  // namespace

void StageDumps::Save(const CImage& image, const char* pFormat, ...) const
{
    if (!m_bEnable) return;
    va_list args;
    va_start(args, pFormat);
    const DumpPath path(pFormat, args);
    va_end(args);
    if (image.nDim == 1) {
        SaveBmpGray(image, path.szText);
    } else {
        SaveBmp(image, path.szText, true);
    }
}

void StageDumps::Save(const CYuvImage& frame, const char* pFormat, ...) const
{
    if (!m_bEnable) return;
    va_list args;
    va_start(args, pFormat);
    const DumpPath path(pFormat, args);
    va_end(args);
    CImage bgr{};
    const ImageScope scope(bgr);
    if (!ConvertYuvToImage(frame, bgr, 0)) return;
    YCbCrToBGR(bgr, m_bUVOrder);
    SaveBmp(bgr, path.szText, true);
}

}  // namespace vkr
