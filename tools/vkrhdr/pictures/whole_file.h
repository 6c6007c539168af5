#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pictures/own_file.h"

namespace vkr::tool {

using Bytes = std::vector<uint8_t>;

// What a JPEG or PNG may have at most: far above any picture of 16384 x 16384 pixels that a camera writes.
constexpr size_t kMostPictureBytes = size_t{512} << 20;

// The file's bytes. BurstError when it can not be read, is no ordinary file (what may have no end is not even waited
// for) or has more than nMost bytes.
Bytes ReadWholeFile(const std::string& sPath, size_t nMost = kMostPictureBytes);

// A file that is there whole or not at all: written in the same folder under another name (see OwnFile), then renamed,
// so that a reader never meets half of it and a failure leaves what stood there before. BurstError when it can not be
// written; nothing is left behind then. A symbolic link is followed; one that leads nowhere, a place that is no
// ordinary file, and (UsageError) a protected file are refused.
void WriteWholeFile(const std::string& sPath, const Bytes& vBytes);

// From now on this file is not written over, by whatever name and link it is called: the inputs of a run.
void ProtectFile(const std::string& sPath);

// What WriteWholeFile would refuse about the place, before there is anything to write.
void CheckPlace(const std::string& sPath);

// The folder and those above it, if they are missing. BurstError when that fails.
void MakeFolder(const std::string& sPath);

// A closed file of ours in the system's folder for temporary files, with the life of an OwnFile. BurstError when there
// can be none.
class TemporaryFile {
public:
    TemporaryFile();

    const std::string& Path() const { return m_file.Path(); }

private:
    OwnFile m_file;
};

}  // namespace vkr::tool
