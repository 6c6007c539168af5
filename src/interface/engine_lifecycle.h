#pragma once

#include <atomic>
#include <mutex>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// The one engine of the process; null while there is none. Made by vkrHdrInit, ended by vkrHdrUninit.
extern std::atomic<CMultiExposureHDRProcessFlowOpt*> gVKRAlgoPool;

// Serialises vkrHdrRender against vkrHdrUninit.
extern std::mutex g_EngineMutex;

// Opens the pool, makes the engine and loads the parameter file. A file that can not be opened, and no memory, leave no
// engine; a file that does not parse leaves the engine with what was read so far.
bool MakeEngine(const char* pParamFilePath);

// Copies the engine's configuration version; false when there is no engine. From any thread, also while one renders.
bool ReadConfigVersion(char (&szVersion)[65]);

// Ends the engine, if there is one, and closes the pool once. Takes g_EngineMutex.
void EndEngine();

}  // namespace vkr
