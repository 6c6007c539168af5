#pragma once

#include <string>

#include "library/stage_times.h"

namespace vkr::tool {

// Keeps the library's lines off our output, from the constructor to the destructor; one at a time. With bVerbose they
// go to standard error. Stage times and messages are kept for later.
class LibraryLines {
public:
    explicit LibraryLines(bool bVerbose);
    ~LibraryLines();
    LibraryLines(const LibraryLines&) = delete;
    LibraryLines& operator=(const LibraryLines&) = delete;

    // The last line that is no stage time, which is where the library says why it refused a call; then it is forgotten.
    std::string TakeLastMessage();

    StageTimes& Times() { return m_times; }

private:
    void AddText(const char* pText);

    bool m_bVerbose;
    std::string m_sUnfinished, m_sLastMessage;
    StageTimes m_times;
};

}  // namespace vkr::tool
