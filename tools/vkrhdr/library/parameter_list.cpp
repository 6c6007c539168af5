#include "library/parameter_list.h"

#include "library/nearest_name.h"
#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

ListedParameter FirstOf(const ParamEntry& entry)
{
    ListedParameter listed{};
    listed.sGroup = entry.pGroup;
    listed.sName = entry.sName;
    listed.nMin = entry.nMin;
    listed.nMax = entry.nMax;
    if (entry.pInfo == nullptr) return listed;
    listed.sName = entry.pInfo->pName;
    listed.nRows = entry.pInfo->nRows;
    listed.nColumns = entry.pInfo->nColumns;
    listed.sUnit = entry.pInfo->pUnit;
    listed.sMeaning = entry.pInfo->pMeaning;
    return listed;
}

bool IsMeant(const ListedParameter& parameter, const std::string& sName)
{
    const size_t nDot = sName.find('.');
    if (nDot != std::string::npos && sName.substr(0, nDot) != parameter.sSection) return false;
    const std::string sBare = nDot == std::string::npos ? sName : sName.substr(nDot + 1);
    if (sBare == parameter.sName) return true;
    for (size_t i = 0; i < parameter.vValues.size(); ++i) {
        if (parameter.sPrefix + sBare == parameter.ElementName(i)) return true;
    }
    return false;
}

}  // namespace

std::string ListedParameter::ElementName(size_t nElement) const
{
    std::string sElement = sPrefix + sName;
    if (nColumns == 0) return sElement;
    const auto nInRow = static_cast<size_t>(nColumns);
    if (nRows > 0) sElement += "_" + std::to_string(nElement / nInRow);
    return sElement + "_" + std::to_string(nElement % nInRow);
}

std::vector<ListedParameter> ListParameters(ToolParameters& params)
{
    std::vector<ListedParameter> vAll;
    for (CFilter* pFilter : AllFilters(params.Flow())) {
        const ParamInfo* pBefore = nullptr;
        for (const ParamEntry& entry : pFilter->Params()) {
            if (entry.pInfo == nullptr || entry.pInfo != pBefore) {
                vAll.push_back(FirstOf(entry));
                vAll.back().sSection = pFilter->Name();
                if (pFilter != &params.Flow()) vAll.back().sPrefix = vAll.back().sSection + ".";
            }
            pBefore = entry.pInfo;
            vAll.back().vDefaults.push_back(entry.nDefault);
            vAll.back().vValues.push_back(*entry.pValue);
        }
    }
    return vAll;
}

std::vector<ListedParameter> FindListed(const std::vector<ListedParameter>& vAll, const std::string& sName)
{
    const bool bSection = sName.find('.') != std::string::npos;
    std::vector<ListedParameter> vFound;
    std::vector<std::string> vNames;
    for (const ListedParameter& parameter : vAll) {
        if (IsMeant(parameter, sName)) vFound.push_back(parameter);
        vNames.push_back(bSection ? parameter.sSection + "." + parameter.sName : parameter.sName);
    }
    if (!vFound.empty()) return vFound;
    throw UsageError("there is no parameter '" + sName + "'; the nearest is " + NearestName(sName, vNames));
}

}  // namespace vkr::tool
