#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/heap_buffer.h"

namespace vkr {

// A run of bytes that somebody else owns.
struct ByteRun {
    const uint8_t* pData;
    size_t nSize;
};

// The two sections of a ciphered model file that are read: the network's graph, and one whose use is left open.
struct ModelContainer {
    ByteRun model, second;
};

// Finds the sections of a whole file; they point into it. The file is a header of 68 bytes, not read, and a body that
// opens with a table of little-endian signed 32-bit words: the count of entries (above 2), then offset and size of each
// entry, the offsets from the start of the body. Entry 0 is the model, entry 2 the second section.
//
// False when the file ends within the table, the count is 2 or less, or one of the two sections is negative, reaches
// beyond the file or lies over the table or the other section. Reads nothing outside the nSize bytes.
bool ParseModelContainer(const uint8_t* pFile, size_t nSize, ModelContainer& container);

// The plain bytes of a section: the first 20000 are ciphered, of a shorter one all whole blocks of 8; what such a
// section has behind them is 0. False when there is no memory or the section has no whole block.
bool DecipherSection(const ByteRun& section, HeapBuffer<uint8_t>& plain);

}  // namespace vkr
