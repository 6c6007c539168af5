#pragma once

#include <cstdint>
#include <cstdio>
#include <vector>

#include "foundation/parameters.h"

namespace vkr {

// A named stage with registered integer parameters. The text form of a filter is its name on a line of its own, then
// one line NAME=VALUE per parameter in order of registration. The lists point into the object: it is neither copied nor
// moved. Not thread-safe; parameters change only while the engine is made.
class CFilter {
public:
    CFilter() = default;
    virtual ~CFilter() = default;
    CFilter(const CFilter&) = delete;
    CFilter& operator=(const CFilter&) = delete;

    virtual void UpdateParameter() {}     // after a load from a stream: derives members from parameters
    virtual void RegisterParameters() {}  // adds the parameters and stores their defaults
    virtual void SetFilterName() = 0;     // writes the class's name into m_szName
    virtual void Initialize();            // SetFilterName, RegisterParameters

    // Stream form: one line per registered parameter, in any order; a value out of range is clamped with a message, an
    // unknown name or a line without a value ends the load. False on failure; what was read so far stays stored.
    virtual bool LoadParameterStream(std::FILE* pFile);
    virtual bool SaveParameterStream(std::FILE* pFile) const;

    // The same from and to a path; the first word of the file must be the filter's name.
    virtual bool LoadParameterFile(const char* pPath);
    virtual bool SaveParameterFile(const char* pPath) const;

    // Buffer form, from a zero-terminated text: a section may be shorter than the list and ends at a blank line; a
    // value out of range or an unknown name refuses the whole load. *pConsumed, if not null, receives the characters
    // taken. UpdateParameter is not called.
    virtual bool LoadParameterBuffer(const char* pText, int* pConsumed);

    const char* Name() const { return m_szName; }
    ParamList& Params() { return m_Params; }

    char m_szName[256] = {};
    ParamList m_Params;

protected:
    // The parameter lines alone, without the sections of sub-filters.
    bool ReadStreamLines(std::FILE* pFile);
    bool WriteSection(std::FILE* pFile) const;
    bool ReadBufferSection(const char* pText, int* pConsumed);

    void StoreName(const char* pName);
};

// Sub-filters in the order of their sections. They are members of their owner; the list does not own them.
using FilterList = std::vector<CFilter*>;

// Appends a filter; a suffix, if not null, is first appended to its name.
void AddFilter(FilterList& list, CFilter& filter, const char* pSuffix);

// A filter with sub-filters: its text is its own section, then theirs, recursively. The stream form takes the sections
// of the sub-filters in any order, the buffer form in the order of the list.
class CMultiFilterProcessFlow : public CFilter {
public:
    virtual void RegisterFilters() = 0;  // appends the sub-filters
    void Initialize() override;          // SetFilterName, RegisterFilters, RegisterParameters
    bool LoadParameterStream(std::FILE* pFile) override;
    bool SaveParameterStream(std::FILE* pFile) const override;
    bool LoadParameterBuffer(const char* pText, int* pConsumed) override;

    FilterList& Filters() { return m_Filters; }

    FilterList m_Filters;
};

// How values are written: 0 decimal, 1, 2 and other values hexadecimal of 2, 4 and 8 digits. 0 at load.
extern int32_t g_nParamPrintMode;

}  // namespace vkr
