#include "foundation/log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "foundation/fork_locks.h"

#ifdef __ANDROID__
#include <android/log.h>
#endif

namespace vkr {

uint8_t g_bLogEnable = 0;

namespace {

std::mutex g_LineMutex;  // keeps the lines of different threads apart; nothing else is locked under it
const FreeAfterFork g_LineAfterFork(g_LineMutex);
HdrPrintSink g_pSink = nullptr;

// One formatted text. Short ones stay on the stack; a long one that finds no memory is cut.
class FormattedText {
public:
    FormattedText(const char* pFormat, va_list args) __attribute__((format(printf, 2, 0)))
    {
        va_list again;
        va_copy(again, args);
        const int nLength = std::vsnprintf(m_szShort, sizeof(m_szShort), pFormat, args);
        if (nLength < 0) m_szShort[0] = '\0';
        if (nLength >= static_cast<int>(sizeof(m_szShort))) {
            const size_t nBytes = static_cast<size_t>(nLength) + 1;
            m_pLong = static_cast<char*>(std::malloc(nBytes));
            if (m_pLong != nullptr) std::vsnprintf(m_pLong, nBytes, pFormat, again);
        }
        va_end(again);
    }
    ~FormattedText() { std::free(m_pLong); }
    FormattedText(const FormattedText&) = delete;
    FormattedText& operator=(const FormattedText&) = delete;

    const char* Text() const { return m_pLong != nullptr ? m_pLong : m_szShort; }

private:
    char m_szShort[512];
    char* m_pLong = nullptr;
};

void WriteLogLine(const char* pText)
{
#ifdef __ANDROID__
    __android_log_print(ANDROID_LOG_INFO, "PaleLantern", "%s", pText);
#else
    // Some texts bring their line end, some do not; the platform's log takes both as one line.
    const size_t nLength = std::strlen(pText);
    const bool bEnded = nLength > 0 && pText[nLength - 1] == '\n';
    std::fprintf(stderr, bEnded ? "PaleLantern: %s" : "PaleLantern: %s\n", pText);
#endif
}

}  // namespace

void HdrPrintf(const char* pFormat, ...)
{
    va_list args;
    va_start(args, pFormat);
    const FormattedText text(pFormat, args);
    va_end(args);
    const std::lock_guard<std::mutex> lock(g_LineMutex);
    if (g_pSink != nullptr) {
        try {
            g_pSink(text.Text());
        } catch (...) {  // a line is lost; from inside a row loop the process would be
        }
    } else {
        std::fwrite(text.Text(), 1, std::strlen(text.Text()), stdout);
    }
}

void HdrSprintf(char* pBuffer, int nSize, const char* pFormat, ...)
{
    if (pBuffer == nullptr || nSize <= 0) return;
    va_list args;
    va_start(args, pFormat);
    const int nLength = std::vsnprintf(pBuffer, static_cast<size_t>(nSize), pFormat, args);
    va_end(args);
    if (nLength < 0) pBuffer[0] = '\0';
}

void SetHdrPrintSink(HdrPrintSink pSink)
{
    const std::lock_guard<std::mutex> lock(g_LineMutex);
    g_pSink = pSink;
}

void HdrLog(const char* pFormat, ...)
{
    if (g_bLogEnable == 0) return;
    va_list args;
    va_start(args, pFormat);
    const FormattedText text(pFormat, args);
    va_end(args);
    const std::lock_guard<std::mutex> lock(g_LineMutex);
    WriteLogLine(text.Text());
}

}  // namespace vkr
