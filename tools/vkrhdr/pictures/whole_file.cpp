#include "pictures/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& sPath, const char* pWhat)
{
    throw BurstError(sPath + ": " + pWhat + ": " + std::strerror(errno));
}

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

Bytes ReadWholeFile(const std::string& sPath)
{
    std::error_code error;
    if (fs::is_directory(sPath, error)) throw BurstError(sPath + ": is a folder, not a picture");
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(sPath.c_str(), "rb"), &std::fclose);
    if (!file) Fail(sPath, "can not be read");
    Bytes vBytes;
    constexpr size_t nPiece = 1 << 20;
    size_t nRead = nPiece;
    while (nRead == nPiece) {
        const size_t nHave = vBytes.size();
        vBytes.resize(nHave + nPiece);
        nRead = std::fread(vBytes.data() + nHave, 1, nPiece, file.get());
        vBytes.resize(nHave + nRead);
    }
    if (std::ferror(file.get())) Fail(sPath, "can not be read");
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
