#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "flow/multi_exposure_flow.h"
#include "library/library_lines.h"
#include "pictures/picture_size.h"
#include "pictures/whole_file.h"

namespace vkr::tool {

struct ChangedParameter {
    std::string sFullName;
    int nValue, nDefault;
};

// A set of the library's parameters to be changed and handed over as a file. Names, ranges and defaults all come from
// what the filters register. Each set is its own: it needs no engine and disturbs none. Movable; one that was moved
// from may only be destroyed.
class ToolParameters {
public:
    enum class Base {
        kRegistered,  // the defaults as they are
        kShipped,     // no debug files, so that nobody finds some in a working folder
        kTool,        // and no logo
    };

    explicit ToolParameters(Base base);

    // Takes everything from a file in the library's text form, readable or enciphered. UsageError when it does not
    // load. lines must be what holds the library's lines at present; sWarning receives what the library had to say
    // though it loaded.
    void Load(const std::string& sPath, LibraryLines& lines, std::string& sWarning);

    // The same from the bytes of an enciphered file; sPath is for the words.
    void LoadEnciphered(const std::string& sPath, const Bytes& vFile, LibraryLines& lines);

    // "NAME=VALUE" for the flow's own, "Filter.NAME=VALUE" for those of its filters. UsageError, in one line, for an
    // unknown name or a value out of its range.
    void Set(const std::string& sAssignment);

    // By the same names, brought to the nearer bound when out of range.
    void SetNearest(const std::string& sFullName, int nValue);

    // By the same names. UsageError for an unknown one.
    int Get(const std::string& sFullName) const;

    // What differs from the registered defaults, in the order of the parameter file, but for the switches of debug
    // files.
    std::vector<ChangedParameter> Changed() const;

    // The photo preset for pictures of this size.
    void SetPhotoValues(Size size);

    void SwitchDumpsOn();
    void SetChromaOrder(bool bCrFirst);

    void Save(const std::string& sPath) const;  // BurstError when it can not be written
    bool Print(std::FILE* pFile) const;

    // What re-linearisation takes for light; no parameter.
    const DisplayCurve& Curve() const { return *m_pFlow; }

    // Alignment with these parameters, for who runs it without the rest.
    CMultipleImagesAlignFilterOpt& AlignFilter() { return m_pFlow->m_AlignFilter; }
    // The engine itself, for who looks between its stages.
    CMultiExposureHDRProcessFlowOpt& Flow() { return *m_pFlow; }

private:
    ParamEntry& FindEntry(const std::string& sFullName) const;
    void SwitchFilterDumps(CFilter& filter, int nValue);

    std::unique_ptr<CMultiExposureHDRProcessFlowOpt> m_pFlow;
};

}  // namespace vkr::tool
