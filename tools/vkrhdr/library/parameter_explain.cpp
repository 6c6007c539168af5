#include "library/parameter_list.h"
#include "library/photo_preset.h"

namespace vkr::tool {

namespace {

constexpr size_t kTextWidth = 96;
const std::string kIndent(14, ' ');

std::string Line(const char* pTitle, const std::string& sText)
{
    std::string sLine = std::string("    ") + pTitle;
    sLine.resize(kIndent.size(), ' ');
    return sLine + sText + "\n";
}

// A table row by row, the rows below each other.
std::string Values(const ListedParameter& parameter, const std::vector<int>& vValues)
{
    std::string sText;
    for (size_t i = 0; i < vValues.size(); ++i) {
        const bool bNewRow = parameter.nRows > 0 && i % static_cast<size_t>(parameter.nColumns) == 0;
        if (i > 0) sText += bNewRow ? "\n" + kIndent : ", ";
        sText += std::to_string(vValues[i]);
    }
    return sText;
}

std::string Wrapped(const std::string& sText)
{
    std::string sLines, sWord;
    size_t nColumn = 0;
    for (size_t nAt = 0; nAt < sText.size(); nAt += sWord.size() + 1) {
        sWord = sText.substr(nAt, sText.find(' ', nAt) - nAt);
        const bool bBreak = nColumn > 0 && nColumn + 1 + sWord.size() > kTextWidth;
        if (nAt > 0) sLines += bBreak ? "\n" + kIndent : " ";
        nColumn = bBreak || nAt == 0 ? sWord.size() : nColumn + 1 + sWord.size();
        sLines += sWord;
    }
    return sLines;
}

// Why the photo preset sets any of its elements; empty when it sets none.
std::string PhotoReason(const ListedParameter& parameter)
{
    const char* pWhy = "";
    for (const PhotoValue& value : PhotoValues()) {
        if (value.pWhy != nullptr) pWhy = value.pWhy;
        for (size_t i = 0; i < parameter.vValues.size(); ++i) {
            if (parameter.ElementName(i) == value.pName) return pWhy;
        }
    }
    return "";
}

}  // namespace

std::string ExplainParameter(const ListedParameter& parameter, const std::string& sPreset)
{
    const size_t nLast = parameter.vValues.size() - 1;
    std::string sText = parameter.sName + "\n" + Line("meaning", Wrapped(parameter.sMeaning));
    if (!parameter.sUnit.empty()) sText += Line("unit", parameter.sUnit);
    sText += Line("range", std::to_string(parameter.nMin) + " .. " + std::to_string(parameter.nMax));
    sText += Line("default", Values(parameter, parameter.vDefaults));
    sText += Line("value", Values(parameter, parameter.vValues) + " (" + sPreset + ")");
    const std::string sReason = PhotoReason(parameter);
    if (!sReason.empty()) sText += Line("photo", Wrapped(sReason));
    sText += Line("section", parameter.sSection + (parameter.sGroup.empty() ? "" : ", " + parameter.sGroup));
    sText += Line("set by", "--set " + parameter.ElementName(0) + "=V");
    if (nLast > 0) sText += Line("", "to " + parameter.ElementName(nLast));
    return sText;
}

}  // namespace vkr::tool
