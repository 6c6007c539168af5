#include "pictures/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

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

// A name of our own next to a file, open for writing; closed and removed unless it was moved to its place.
class Draft {
public:
    explicit Draft(const std::string& sPlace) : m_sPlace(sPlace), m_sPath(sPlace + ".XXXXXX")
    {
        m_nFile = mkstemp(m_sPath.data());
        if (m_nFile < 0) Fail(sPlace, "can not be written");
    }
    ~Draft()
    {
        if (m_nFile >= 0) close(m_nFile);
        if (!m_bMoved) unlink(m_sPath.c_str());
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    void Write(const Bytes& vBytes)
    {
        size_t nDone = 0;
        while (nDone < vBytes.size()) {
            const ssize_t n = write(m_nFile, vBytes.data() + nDone, vBytes.size() - nDone);
            if (n < 0 && errno == EINTR) continue;
            if (n <= 0) Fail(m_sPlace, "can not be written");
            nDone += static_cast<size_t>(n);
        }
    }

    // mkstemp makes files for the owner alone; a picture gets what the user's mask leaves.
    void MoveToPlace()
    {
        const mode_t nMask = umask(0);
        umask(nMask);
        fchmod(m_nFile, 0666 & ~nMask);
        const int nClosed = close(m_nFile);
        m_nFile = -1;
        if (nClosed != 0 || std::rename(m_sPath.c_str(), m_sPlace.c_str()) != 0) Fail(m_sPlace, "can not be written");
        m_bMoved = true;
    }

private:
    std::string m_sPlace, m_sPath;
    int m_nFile = -1;
    bool m_bMoved = false;
};

// Where the bytes go in the end: through symbolic links, onto an ordinary file or none.
std::string RealPlace(const std::string& sPath)
{
    std::error_code error;
    if (!fs::exists(sPath, error)) return sPath;
    if (!fs::is_regular_file(sPath, error)) throw BurstError(sPath + ": is there already and no ordinary file");
    const fs::path place = fs::canonical(sPath, error);
    return error ? sPath : place.string();
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

void WriteWholeFile(const std::string& sPath, const Bytes& vBytes)
{
    Draft draft(RealPlace(sPath));
    draft.Write(vBytes);
    draft.MoveToPlace();
}

void MakeFolder(const std::string& sPath)
{
    std::error_code error;
    fs::create_directories(sPath, error);
    if (error || !fs::is_directory(sPath)) throw BurstError(sPath + ": the folder can not be made");
}

TemporaryFile::TemporaryFile()
{
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    m_sPath = ((error ? fs::path("/tmp") : folder) / "vkrhdr.XXXXXX").string();
    const int nFile = mkstemp(m_sPath.data());
    if (nFile < 0) Fail(m_sPath, "can not be written");
    close(nFile);
}

TemporaryFile::~TemporaryFile()
{
    unlink(m_sPath.c_str());
}

}  // namespace vkr::tool
