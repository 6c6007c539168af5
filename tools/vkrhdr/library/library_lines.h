#pragma once

#include <string>

#include "library/stage_times.h"
#include "pictures/remarks.h"

namespace vkr::tool {

// Keeps the library's lines off standard output, from the constructor to the destructor; one at a time in a process.
// Stage times and messages are kept for later.
class LibraryLines {
public:
    // pRemarks, unless null, gets every line as a verbose one; what the library leaves without a line end counts as the
    // beginning of the next, and at the end as a line.
    explicit LibraryLines(Remarks* pRemarks);
    ~LibraryLines();
    LibraryLines(const LibraryLines&) = delete;
    LibraryLines& operator=(const LibraryLines&) = delete;

    // The last line that is no stage time, which is where the library says why it refused a call; then it is forgotten.
    std::string TakeLastMessage();

    StageTimes& Times() { return m_times; }

private:
    void AddText(const char* pText);

    Remarks* m_pRemarks;
    std::string m_sUnfinished, m_sLastMessage;
    StageTimes m_times;
};

}  // namespace vkr::tool
