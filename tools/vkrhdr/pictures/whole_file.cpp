#include "pictures/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "pictures/own_file.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& sPath, const char* pWhat)
{
    throw BurstError(sPath + ": " + pWhat + ": " + std::strerror(errno));
}

// An ordinary file, open for reading. Of a pipe the opening would wait for a writer, were it not told not to.
class InputFile {
public:
    explicit InputFile(const std::string& sPath) : m_sPath(sPath)
    {
        m_nFile = open(sPath.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        struct stat info {};
        if (m_nFile < 0 ? stat(sPath.c_str(), &info) != 0 : fstat(m_nFile, &info) != 0) Refuse();
        if (!S_ISREG(info.st_mode)) {
            if (m_nFile >= 0) close(m_nFile);
            throw BurstError(sPath + ": is " + KindName(info.st_mode) + ", no ordinary file");
        }
        if (m_nFile < 0) Refuse();
        m_nSize = static_cast<size_t>(info.st_size);
    }
    ~InputFile() { close(m_nFile); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    size_t Size() const { return m_nSize; }

    // As many bytes as there were when it was opened; of a file that shrinks meanwhile, those that are left.
    void Read(Bytes& vBytes) const
    {
        size_t nDone = 0;
        while (nDone < vBytes.size()) {
            const ssize_t n = read(m_nFile, vBytes.data() + nDone, vBytes.size() - nDone);
            if (n < 0 && errno == EINTR) continue;
            if (n < 0) Fail(m_sPath, "can not be read");
            if (n == 0) vBytes.resize(nDone);
            nDone += static_cast<size_t>(n);
        }
    }

private:
    [[noreturn]] void Refuse() const { Fail(m_sPath, "can not be read"); }

    static const char* KindName(mode_t nMode)
    {
        if (S_ISDIR(nMode)) return "a folder";
        if (S_ISFIFO(nMode)) return "a pipe";
        return S_ISSOCK(nMode) ? "a socket" : "a device";
    }

    const std::string& m_sPath;
    int m_nFile = -1;
    size_t m_nSize = 0;
};

void WriteAll(const OwnFile& file, const Bytes& vBytes, const std::string& sPlace)
{
    size_t nDone = 0;
    while (nDone < vBytes.size()) {
        const ssize_t n = write(file.Descriptor(), vBytes.data() + nDone, vBytes.size() - nDone);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) Fail(sPlace, "can not be written");
        nDone += static_cast<size_t>(n);
    }
}

// A file of ours is for the owner alone; a picture gets what the user's mask leaves.
void ObeyMask(const OwnFile& file)
{
    const mode_t nMask = umask(0);
    umask(nMask);
    fchmod(file.Descriptor(), 0666 & ~nMask);
}

// A file that must stay as it is, by what it is on the disk: links of both kinds lead to the same.
struct ProtectedFile {
    dev_t nDevice;
    ino_t nNode;
    std::string sName;
};

std::vector<ProtectedFile>& ProtectedFiles()
{
    static std::vector<ProtectedFile> s_vFiles;
    return s_vFiles;
}

// Where the bytes go in the end: through symbolic links, onto an ordinary file or none.
std::string RealPlace(const std::string& sPath)
{
    struct stat info {};
    if (stat(sPath.c_str(), &info) != 0) {
        std::error_code error;
        if (fs::is_symlink(fs::symlink_status(sPath, error)))
            throw BurstError(sPath + ": is a link that leads nowhere");
        return sPath;
    }
    if (!S_ISREG(info.st_mode)) throw BurstError(sPath + ": is there already and no ordinary file");
    for (const ProtectedFile& file : ProtectedFiles()) {
        if (file.nDevice != info.st_dev || file.nNode != info.st_ino) continue;
        throw UsageError(sPath + ": is the input " + file.sName + ", which is not written over");
    }
    std::error_code error;
    const fs::path place = fs::canonical(sPath, error);
    return error ? sPath : place.string();
}

std::string TemporaryFolder()
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    return error ? "/tmp" : folder.string();
}

}  // namespace

Bytes ReadWholeFile(const std::string& sPath, size_t nMost)
{
    const InputFile file(sPath);
    const size_t nSize = file.Size();
    if (nSize > nMost) {
        throw BurstError(sPath + ": has " + std::to_string(nSize) + " bytes, more than the " + std::to_string(nMost) +
                         " that are taken here");
    }
    Bytes vBytes(nSize);
    file.Read(vBytes);
    return vBytes;
}

void ProtectFile(const std::string& sPath)
{
    struct stat info {};
    if (stat(sPath.c_str(), &info) == 0) ProtectedFiles().push_back({info.st_dev, info.st_ino, sPath});
}

void CheckPlace(const std::string& sPath)
{
    RealPlace(sPath);
}

void WriteWholeFile(const std::string& sPath, const Bytes& vBytes)
{
    const std::string sPlace = RealPlace(sPath);
    OwnFile draft(fs::path(sPlace).parent_path().string());
    if (draft.Descriptor() < 0) Fail(sPath, "can not be written");
    WriteAll(draft, vBytes, sPath);
    ObeyMask(draft);
    if (!draft.MoveTo(sPlace)) Fail(sPath, "can not be written");
}

void MakeFolder(const std::string& sPath)
{
    std::error_code error;
    fs::create_directories(sPath, error);
    if (error || !fs::is_directory(sPath)) throw BurstError(sPath + ": the folder can not be made");
}

TemporaryFile::TemporaryFile() : m_file(TemporaryFolder())
{
    if (m_file.Descriptor() < 0 || !m_file.Close()) Fail(m_file.Path(), "can not be written");
}

}  // namespace vkr::tool
