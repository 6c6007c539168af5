#include "library/align_report.h"

#include <cstdio>

namespace vkr::tool {

namespace {

// Nine digits show a thousandth of a pixel even in the perspective terms of the largest pictures.
std::string Number(double fValue)
{
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.9g", fValue);
    return szText;
}

}  // namespace

std::string PairLine(const AlignedPair& pair, int nFirst)
{
    std::string sLine = std::to_string(pair.nFirst + nFirst) + " " + std::to_string(pair.nSecond + nFirst) +
                        ": features " + std::to_string(pair.nFeatures[0]) + " " + std::to_string(pair.nFeatures[1]) +
                        ", initial matches " + std::to_string(pair.nInitMatches) + ", refined matches " +
                        std::to_string(pair.nRefinedMatches) + ", inliers " + std::to_string(pair.nInliers);
    if (!pair.bAligned) return sLine + ", could not be aligned";
    sLine += ", homography";
    for (const double fValue : pair.vHomography) sLine += " " + Number(fValue);
    return sLine;
}

std::string FailureLine(const AlignedPair& pair, const std::vector<std::string>& vNames, int nReference, bool bDropped)
{
    const std::string& sFirst = vNames.at(static_cast<size_t>(pair.nFirst));
    const std::string& sSecond = vNames.at(static_cast<size_t>(pair.nSecond));
    const std::string sLine = "vkrhdr: " + sFirst + " and " + sSecond + " could not be aligned; ";
    if (!bDropped) return sLine + "taken as they lie";
    return nReference <= pair.nFirst ? sLine + sSecond + " and what is brighter is left out"
                                     : sLine + sFirst + " and what is darker is left out";
}

}  // namespace vkr::tool
