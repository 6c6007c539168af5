#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>
#include <vector>

#include "parameters/parameters.h"

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

    // What is added from here on stands under this heading, a static text.
    void Group(const char* pGroup) { m_pGroup = pGroup; }

    // Adds a member of a record that filter, this one, has as a base, and brings it back to the record's default.
    template <class Filter, class Record, class Value>
    void AddMember(Filter& filter, Value Record::*pMember, const ParamInfo& info)
    {
        static_assert(!std::is_base_of_v<CFilter, Record>, "parameters stand in records, which have their defaults");
        constexpr Record kDefaults{};
        Value& value = static_cast<Record&>(filter).*pMember;
        std::memcpy(&value, &(kDefaults.*pMember), sizeof(value));
        AddDescribed(m_Params, info, reinterpret_cast<int32_t*>(&value), m_pGroup);
    }

private:
    const char* m_pGroup = "";
};

// Inside RegisterParameters: the next parameter of the text is this member of the filter's records.
#define ADD_PARAM(member) AddMember(*this, &std::remove_reference_t<decltype(*this)>::member, member##Info)

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

// The filter and all below it, in the order of their sections.
std::vector<CFilter*> AllFilters(CFilter& filter);

// How values are written: 0 decimal, 1, 2 and other values hexadecimal of 2, 4 and 8 digits. 0 at load.
extern int32_t g_nParamPrintMode;

}  // namespace vkr
