#pragma once

#include <cstddef>
#include <cstdint>

#include "flow/multi_exposure_flow.h"

namespace vkr {

// A parameter file that is not readable: 4 bytes of magic, 32 that are not read, then the text of a parameter file, its
// whole blocks of eight bytes enciphered with the parameter file's key, the bytes behind them in the clear. Among its
// last 128 bytes may stand the configuration version, "cfg_version=1.2.3;".
constexpr size_t kEncipheredHead = 36;
constexpr uint8_t kEncipheredMagic[] = {1, 2, 3, 4};

// Whole files beyond this size are refused: a text has about ten thousand bytes, and a MiB takes some hundredths of a
// second to decipher.
constexpr size_t kEncipheredMost = size_t{16} << 20;

// Whether the first bytes of a file, nBytes of them, are the magic.
bool IsEnciphered(const uint8_t* pBytes, size_t nBytes);

enum class EncipheredLoad {
    kDone,
    kNotDeciphered,  // text shorter than one block, file too large, or no memory; the engine is as it was
    kNotParsed,      // the version and what was read before the fault stay in the engine
};

// Loads a whole file of that kind into engine. A version longer than its place is cut.
EncipheredLoad LoadEncipheredParameters(const uint8_t* pFile, size_t nBytes, CMultiExposureHDRProcessFlow& engine);

}  // namespace vkr
