#include "library/library_lines.h"

#include <utility>

#include "foundation/log.h"

namespace vkr::tool {

namespace {

LibraryLines* g_pLines = nullptr;  // the sink is a plain function

}  // namespace

LibraryLines::LibraryLines(Remarks* pRemarks) : m_pRemarks(pRemarks)
{
    g_pLines = this;
    SetHdrPrintSink([](const char* pText) { g_pLines->AddText(pText); });
}

LibraryLines::~LibraryLines()
{
    SetHdrPrintSink(nullptr);
    if (m_pRemarks != nullptr && !m_sUnfinished.empty()) m_pRemarks->Add(RemarkLevel::kVerbose, m_sUnfinished);
    g_pLines = nullptr;
}

std::string LibraryLines::TakeLastMessage()
{
    return std::exchange(m_sLastMessage, std::string());
}

// Under the lock of the sink, from any thread of the library. A call need not bring whole lines.
void LibraryLines::AddText(const char* pText)
{
    m_sUnfinished += pText;
    size_t nEnd = m_sUnfinished.find('\n');
    for (; nEnd != std::string::npos; nEnd = m_sUnfinished.find('\n')) {
        const std::string sLine = m_sUnfinished.substr(0, nEnd);
        m_sUnfinished.erase(0, nEnd + 1);
        if (m_pRemarks != nullptr) m_pRemarks->Add(RemarkLevel::kVerbose, sLine);
        if (!m_times.AddLine(sLine) && !sLine.empty()) m_sLastMessage = sLine;
    }
}

}  // namespace vkr::tool
