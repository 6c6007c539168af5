#include "library/tool_parameters.h"

#include <algorithm>
#include <charconv>

#include "flow/enciphered_parameters.h"
#include "library/nearest_name.h"
#include "library/photo_preset.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

std::string RangeOf(const ParamEntry& entry)
{
    return std::to_string(entry.nMin) + " .. " + std::to_string(entry.nMax);
}

CFilter& FindFilter(CFilter& flow, const std::string& sName)
{
    std::string sNames;
    for (CFilter* pFilter : AllFilters(flow)) {
        if (sName == pFilter->Name()) return *pFilter;
        sNames += (sNames.empty() ? "" : ", ") + std::string(pFilter->Name());
    }
    throw UsageError("there is no filter '" + sName + "'; there are " + sNames);
}

// Where else the name is known: a filter's parameter without the filter's name, or an array without an index.
std::string Advice(CFilter& flow, const std::string& sName)
{
    std::vector<std::string> vNames;
    for (CFilter* pFilter : AllFilters(flow)) {
        const std::string sPrefix = pFilter == &flow ? "" : std::string(pFilter->Name()) + ".";
        const std::string sFull = sPrefix + sName;
        if (FindParameter(pFilter->Params(), sName.c_str()) != nullptr) return "did you mean " + sFull + "?";
        for (const ParamEntry& entry : pFilter->Params()) vNames.push_back(sPrefix + entry.sName);
        const std::string sFirst = sName + "_0";
        if (FindParameter(pFilter->Params(), sFirst.c_str()) != nullptr) {
            return "it is a list: " + sFull + "_0 and so on";
        }
    }
    return "vkrhdr params lists them all, the nearest is " + NearestName(sName, vNames);
}

int ParseValue(const std::string& sText, const ParamEntry& entry)
{
    int nValue = 0;
    const char* pEnd = sText.data() + sText.size();
    const auto [pStop, error] = std::from_chars(sText.data(), pEnd, nValue);
    if (error != std::errc() || pStop != pEnd || nValue < entry.nMin || nValue > entry.nMax) {
        throw UsageError(entry.sName + "=" + sText + " is refused; the range is " + RangeOf(entry));
    }
    return nValue;
}

[[noreturn]] void RefuseFile(const std::string& sPath, const std::string& sWhy)
{
    throw UsageError(
        sPath + " is no parameter file that loads: " + (sWhy.empty() ? "vkrhdr params prints one that does" : sWhy));
}

}  // namespace

ToolParameters::ToolParameters(Base base) : m_pFlow(std::make_unique<CMultiExposureHDRProcessFlowOpt>())
{
    if (base == Base::kRegistered) return;
    for (CFilter* pFilter : AllFilters(*m_pFlow)) SwitchFilterDumps(*pFilter, 0);
    if (base == Base::kTool) m_pFlow->bLogoEnable = 0;
}

void ToolParameters::Load(const std::string& sPath, LibraryLines& lines, std::string& sWarning)
{
    const Bytes vFile = ReadWholeFile(sPath, kEncipheredMost);
    if (IsEnciphered(vFile.data(), vFile.size())) return LoadEnciphered(sPath, vFile, lines);
    lines.TakeLastMessage();
    const bool bLoaded = m_pFlow->LoadParameterFile(sPath.c_str());
    sWarning = lines.TakeLastMessage();
    if (!bLoaded) RefuseFile(sPath, sWarning);
}

void ToolParameters::LoadEnciphered(const std::string& sPath, const Bytes& vFile, LibraryLines& lines)
{
    lines.TakeLastMessage();
    const EncipheredLoad load = LoadEncipheredParameters(vFile.data(), vFile.size(), *m_pFlow);
    if (load != EncipheredLoad::kDone) RefuseFile(sPath, lines.TakeLastMessage());
}

ParamEntry& ToolParameters::FindEntry(const std::string& sFullName) const
{
    const size_t nDot = sFullName.find('.');
    CFilter& filter = nDot == std::string::npos ? *m_pFlow : FindFilter(*m_pFlow, sFullName.substr(0, nDot));
    const std::string sName = nDot == std::string::npos ? sFullName : sFullName.substr(nDot + 1);
    ParamEntry* pEntry = FindParameter(filter.Params(), sName.c_str());
    if (pEntry != nullptr) return *pEntry;
    throw UsageError(std::string(filter.Name()) + " has no parameter '" + sName + "'; " + Advice(*m_pFlow, sName));
}

void ToolParameters::Set(const std::string& sAssignment)
{
    const size_t nEquals = sAssignment.find('=');
    if (nEquals == std::string::npos) throw UsageError("--set takes NAME=VALUE, not '" + sAssignment + "'");
    ParamEntry& entry = FindEntry(sAssignment.substr(0, nEquals));
    *entry.pValue = ParseValue(sAssignment.substr(nEquals + 1), entry);
}

void ToolParameters::SetNearest(const std::string& sFullName, int nValue)
{
    const ParamEntry& entry = FindEntry(sFullName);
    *entry.pValue = std::clamp(nValue, entry.nMin, entry.nMax);
}

int ToolParameters::Get(const std::string& sFullName) const
{
    return *FindEntry(sFullName).pValue;
}

std::vector<ChangedParameter> ToolParameters::Changed() const
{
    const ToolParameters defaults(Base::kShipped);
    std::vector<ChangedParameter> vChanged;
    for (CFilter* pFilter : AllFilters(*m_pFlow)) {
        const std::string sPrefix = pFilter == m_pFlow.get() ? "" : std::string(pFilter->Name()) + ".";
        for (const ParamEntry& entry : pFilter->Params()) {
            const std::string sFullName = sPrefix + entry.sName;
            const int nDefault = defaults.Get(sFullName);
            if (*entry.pValue != nDefault) vChanged.push_back({sFullName, *entry.pValue, nDefault});
        }
    }
    return vChanged;
}

void ToolParameters::SetPhotoValues(Size size)
{
    for (const std::string& sAssignment : PhotoAssignments(size)) Set(sAssignment);
}

void ToolParameters::SwitchDumpsOn()
{
    m_pFlow->bDebugDumpEnable = 1;
    for (CFilter* pFilter : AllFilters(*m_pFlow)) SwitchFilterDumps(*pFilter, 1);
}

void ToolParameters::SetChromaOrder(bool bCrFirst)
{
    m_pFlow->bUVOrder = bCrFirst ? 1 : 0;
}

void ToolParameters::Save(const std::string& sPath) const
{
    if (!m_pFlow->SaveParameterFile(sPath.c_str())) throw BurstError(sPath + ": the parameters can not be written");
}

bool ToolParameters::Print(std::FILE* pFile) const
{
    return m_pFlow->SaveParameterStream(pFile) && std::fflush(pFile) == 0;
}

// The filters name their switches alike: bDumpDebug, bDumpDebugFile, nDumpDebugFile.
void ToolParameters::SwitchFilterDumps(CFilter& filter, int nValue)
{
    for (ParamEntry& entry : filter.Params()) {
        if (entry.sName.find("DumpDebug") != std::string::npos) *entry.pValue = nValue;
    }
}

}  // namespace vkr::tool
