#pragma once

#include <string>

namespace vkr::tool {

// A new file of ours in a folder, under a short hidden name, open for writing. It is gone at scope end on every way
// out, unless it was moved to its place, and when a signal ends the program. A handful may be there at a time.
class OwnFile {
public:
    // An empty folder is the working one. When the file can not be made, Descriptor() is below 0 and errno says why.
    explicit OwnFile(const std::string& sFolder);
    ~OwnFile();
    OwnFile(const OwnFile&) = delete;
    OwnFile& operator=(const OwnFile&) = delete;

    int Descriptor() const { return m_nFile; }
    const std::string& Path() const { return m_sPath; }

    // False, with errno, when it failed.
    bool Close();

    // Closes it and gives it its place, where a file may stand already. False, with errno, when it failed.
    bool MoveTo(const std::string& sPlace);

private:
    std::string m_sPath;
    int m_nFile = -1, m_nSlot = -1;
};

// From here on SIGINT, SIGTERM and SIGHUP remove the files that are there, then end the program as they would have
// done. One that is ignored stays so.
void RemoveOwnFilesOnSignals();

}  // namespace vkr::tool
