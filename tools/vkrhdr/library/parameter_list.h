#pragma once

#include <string>
#include <vector>

#include "library/tool_parameters.h"

namespace vkr::tool {

// All there is to know of one parameter: a single value, or a list or a table with all its elements.
struct ListedParameter {
    std::string sSection, sGroup, sName;  // sName without indices; sGroup may be empty
    std::string sPrefix;                  // what --set wants in front of it: empty, or the section and a point
    int nRows, nColumns;                  // 0, 0 a single value; 0, n a list; m, n a table
    int nMin, nMax;                       // of every element
    std::vector<int> vDefaults, vValues;  // row by row; the defaults are those that the filter registers
    std::string sUnit, sMeaning;

    // As --set takes it; without indices it is sPrefix and sName.
    std::string ElementName(size_t nElement) const;
};

// In the order of the parameter file.
std::vector<ListedParameter> ListParameters(ToolParameters& params);

// Those of vAll that a user means: by a name with or without the section in front, of the parameter or of one of its
// elements; a name that more than one section has names them all. UsageError, with the nearest name, when there is
// none.
std::vector<ListedParameter> FindListed(const std::vector<ListedParameter>& vAll, const std::string& sName);

// Several lines for a person, the last with a line feed. sPreset says whose value it is.
std::string ExplainParameter(const ListedParameter& parameter, const std::string& sPreset);

// For programs: an object with the preset's name, the list "parameters" of objects section, group, name, min, max,
// default, value, unit, meaning (default and value a number, a list, or a list of rows), and what "photo_preset" sets
// for which sizes and why.
std::string ParametersAsJson(const std::vector<ListedParameter>& vParameters, const std::string& sPreset);

}  // namespace vkr::tool
