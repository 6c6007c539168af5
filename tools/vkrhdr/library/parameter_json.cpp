#include <nlohmann/json.hpp>

#include "library/parameter_list.h"
#include "library/photo_preset.h"

namespace vkr::tool {

namespace {

using Json = nlohmann::ordered_json;

Json ValuesOf(const ListedParameter& parameter, const std::vector<int>& vValues)
{
    if (parameter.nColumns == 0) return vValues[0];
    if (parameter.nRows == 0) return vValues;
    Json rows = Json::array();
    for (size_t i = 0; i < vValues.size(); i += static_cast<size_t>(parameter.nColumns)) {
        rows.push_back(std::vector<int>(vValues.begin() + static_cast<std::ptrdiff_t>(i),
                                        vValues.begin() + static_cast<std::ptrdiff_t>(i) + parameter.nColumns));
    }
    return rows;
}

Json ParameterOf(const ListedParameter& parameter)
{
    return {{"section", parameter.sSection},
            {"group", parameter.sGroup},
            {"name", parameter.sName},
            {"min", parameter.nMin},
            {"max", parameter.nMax},
            {"default", ValuesOf(parameter, parameter.vDefaults)},
            {"value", ValuesOf(parameter, parameter.vValues)},
            {"unit", parameter.sUnit},
            {"meaning", parameter.sMeaning}};
}

// Values that have one reason stand together.
Json PhotoPreset()
{
    Json groups = Json::array();
    for (const PhotoValue& value : PhotoValues()) {
        if (value.pWhy != nullptr || groups.empty()) {
            groups.push_back({{"why", value.pWhy != nullptr ? value.pWhy : ""}, {"values", Json::object()}});
        }
        groups.back()["values"][value.pName] = value.vValues;
    }
    return {{"up_to_megapixels", kPhotoClassBounds}, {"groups", groups}};
}

}  // namespace

// One parameter a line, so that people and diff can read it too.
std::string ParametersAsJson(const std::vector<ListedParameter>& vParameters, const std::string& sPreset)
{
    std::string sText = "{\"preset\": " + Json(sPreset).dump() + ",\n\"parameters\": [";
    const char* pBetween = "\n";
    for (const ListedParameter& parameter : vParameters) {
        sText += pBetween + ParameterOf(parameter).dump();
        pBetween = ",\n";
    }
    return sText + "\n],\n\"photo_preset\": " + PhotoPreset().dump(1) + "}\n";
}

}  // namespace vkr::tool
