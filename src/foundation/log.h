#pragma once

#include <cstdint>

namespace vkr {

// Lines for the console. They go to standard output as printf would print them, with no line end added.
void HdrPrintf(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

// Formats into a buffer of the caller, cut at nSize bytes with its zero.
void HdrSprintf(char* pBuffer, int nSize, const char* pFormat, ...) __attribute__((format(printf, 3, 4)));

// Where HdrPrintf hands its text instead of standard output: for programs that link the library's code and keep their
// own output clean. Null goes back to standard output. The sink is called under a lock, from any thread. What it throws
// goes no further, and its text is lost.
using HdrPrintSink = void (*)(const char* pText);
void SetHdrPrintSink(HdrPrintSink pSink);

// Lines for the platform's log, priority 4 (info), tag "PaleLantern". Nothing is logged while g_bLogEnable is 0, which
// it is at load; nothing in the library sets it. Off Android the lines go to standard error.
extern uint8_t g_bLogEnable;
void HdrLog(const char* pFormat, ...) __attribute__((format(printf, 1, 2)));

}  // namespace vkr
