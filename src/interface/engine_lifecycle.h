#pragma once

#include <atomic>
#include <mutex>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// The one engine of the process; null while there is none. Made by vkrHdrInit, ended by vkrHdrUninit.
extern std::atomic<CMultiExposureHDRProcessFlowOpt*> gVKRAlgoPool;

// Held by every call that makes, changes, uses or ends the engine, from its first to its last step; vkrHdrGetVersion
// does not take it.
extern std::mutex g_EngineMutex;

// What a fork made of this process. In a child the threads of the OpenMP team that the forking thread had do not live:
// its next row loop would wait for them for ever, a new thread gets a team of its own. A child of a moment at which
// another thread was inside a call has what that call left, half done and locked.
enum class ForkState { kNone, kChild, kChildOfCall };
ForkState ReadForkState();

// Opens the pool, makes the engine and loads the parameter file. A file that can not be opened, and no memory, leave no
// engine; a file that does not parse leaves the engine with what was read so far. Under g_EngineMutex.
bool MakeEngine(const char* pParamFilePath);

// Copies the engine's configuration version; false when there is no engine. From any thread, also while one renders.
bool ReadConfigVersion(char (&szVersion)[65]);

// Ends the engine, if there is one, and closes the pool once. Under g_EngineMutex.
void EndEngine();

}  // namespace vkr
