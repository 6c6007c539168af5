#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vkr::tool {

using Bytes = std::vector<uint8_t>;

// What a JPEG or PNG may have at most: far above any picture of 16384 x 16384 pixels that a camera writes.
constexpr size_t kMostPictureBytes = size_t{512} << 20;

// The file's bytes. BurstError when it can not be read, is no ordinary file (what may have no end is not even waited
// for) or has more than nMost bytes.
Bytes ReadWholeFile(const std::string& sPath, size_t nMost = kMostPictureBytes);

// A file that is there whole or not at all: written beside its place under another name, then renamed, so that a reader
// never meets half of it and a failure leaves what stood there before. BurstError when it can not be written; nothing
// is left behind then. A symbolic link is followed; a place that is no ordinary file is refused.
void WriteWholeFile(const std::string& sPath, const Bytes& vBytes);

// The folder and those above it, if they are missing. BurstError when that fails.
void MakeFolder(const std::string& sPath);

// A file of our own in the system's folder for temporary files, removed at scope end on every way out.
class TemporaryFile {
public:
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& Path() const { return m_sPath; }

private:
    std::string m_sPath;
};

}  // namespace vkr::tool
