#include "pictures/own_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <random>

namespace vkr::tool {

namespace {

// What the handler finds: names in plain memory. A name stands here before its file is made and until it is gone.
struct Slot {
    std::atomic<int> nState{0};  // 0 free, 1 taken, 2 with a name
    char szPath[PATH_MAX];
};
Slot g_vSlots[4];
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler uses it");

int TakeSlot(const std::string& sPath)
{
    int nSlot = 0;
    for (Slot& slot : g_vSlots) {
        int nFree = 0;
        if (sPath.size() < sizeof(slot.szPath) && slot.nState.compare_exchange_strong(nFree, 1)) {
            std::memcpy(slot.szPath, sPath.c_str(), sPath.size() + 1);
            slot.nState = 2;
            return nSlot;
        }
        ++nSlot;
    }
    errno = ENAMETOOLONG;
    return -1;
}

void GiveBack(int& nSlot)
{
    if (nSlot >= 0) g_vSlots[nSlot].nState = 0;
    nSlot = -1;
}

void RemoveAndEnd(int nSignal)
{
    for (const Slot& slot : g_vSlots) {
        if (slot.nState == 2) unlink(slot.szPath);
    }
    std::signal(nSignal, SIG_DFL);
    std::raise(nSignal);
}

std::string NewName()
{
    std::random_device random;
    char szName[32];
    std::snprintf(szName, sizeof(szName), ".vkrhdr.%08x", random());
    return szName;
}

}  // namespace

OwnFile::OwnFile(const std::string& sFolder)
{
    do {
        GiveBack(m_nSlot);
        m_sPath = (sFolder.empty() ? "" : sFolder + "/") + NewName();
        m_nSlot = TakeSlot(m_sPath);
        if (m_nSlot < 0) return;
        m_nFile = open(m_sPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    } while (m_nFile < 0 && errno == EEXIST);
    if (m_nFile < 0) GiveBack(m_nSlot);
}

OwnFile::~OwnFile()
{
    Close();
    if (m_nSlot >= 0) unlink(m_sPath.c_str());
    GiveBack(m_nSlot);
}

bool OwnFile::Close()
{
    const int nFile = m_nFile;
    m_nFile = -1;
    return nFile < 0 || close(nFile) == 0;
}

bool OwnFile::MoveTo(const std::string& sPlace)
{
    if (!Close() || std::rename(m_sPath.c_str(), sPlace.c_str()) != 0) return false;
    GiveBack(m_nSlot);
    return true;
}

void RemoveOwnFilesOnSignals()
{
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(nSignal, &RemoveAndEnd) == SIG_IGN) std::signal(nSignal, SIG_IGN);
    }
}

}  // namespace vkr::tool
