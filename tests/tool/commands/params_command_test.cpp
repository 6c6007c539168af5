#include <gtest/gtest.h>

#include "flow/multi_exposure_flow.h"
#include "library/parameter_list.h"
#include "library/photo_preset.h"
#include "run_tool.h"
#include "support/quiet_lines.h"

namespace vkr::tool {

namespace {

Bytes BytesOf(const std::string& sText)
{
    return Bytes(sText.begin(), sText.end());
}

std::string Printed(const TestFolder& folder, const std::vector<std::string>& vArguments)
{
    const ToolRun run = RunTool(folder, vArguments);
    EXPECT_EQ(0, run.nStatus);
    EXPECT_EQ("", run.sErr);
    return run.sOut;
}

}  // namespace

TEST(ParamsCommand, PrintsWhatLoadsAndComesOutTheSame)
{
    const TestFolder folder;
    const LinesScope lines;
    const std::string sText =
        Printed(folder, {"params", "--set", "nMaxGamma=120", "--set", "CGhostProcessFilter.nMinGhostLevel=3"});
    EXPECT_NE(std::string::npos, sText.find("nMaxGamma=120;"));
    EXPECT_NE(std::string::npos, sText.find("nMinGhostLevel=3;"));
    WriteWholeFile(folder.Path("params.txt"), BytesOf(sText));
    CMultiExposureHDRProcessFlowOpt flow;
    ASSERT_TRUE(flow.LoadParameterFile(folder.Path("params.txt").c_str()));
    ASSERT_TRUE(flow.SaveParameterFile(folder.Path("again.txt").c_str()));
    EXPECT_EQ(sText, ReadText(folder.Path("again.txt")));
    EXPECT_EQ("", lines.Text());
}

// That they are the shipped files is checked by tools/scripts/parameter_tables.py.
TEST(ParamsCommand, PrintsPresetsWithoutDebugFiles)
{
    const TestFolder folder;
    const std::string sDefault = Printed(folder, {"params", "--shipped"});
    EXPECT_EQ(sDefault, Printed(folder, {"params", "--preset", "default"}));
    EXPECT_NE(std::string::npos, sDefault.find("bLogoEnable=1"));
    const std::string sPhoto = Printed(folder, {"params", "--preset", "photo"});
    EXPECT_EQ(sPhoto, Printed(folder, {"params", "--for", "4000x3000"}));
    for (const std::string& sText : {sDefault, sPhoto}) {
        EXPECT_EQ(std::string::npos, sText.find("bDumpDebug=1"));
        EXPECT_EQ(std::string::npos, sText.find("bDumpDebugFile=1"));
    }
}

// Every name and value of the preset is one that the library has, and comes out as it is.
TEST(ParamsCommand, PrintsThePhotoPresetOfASize)
{
    const TestFolder folder;
    for (const Size size : {Size{640, 480}, Size{1920, 1080}, Size{6000, 4000}}) {
        const std::string sSize = std::to_string(size.nWidth) + "x" + std::to_string(size.nHeight);
        const std::string sText = Printed(folder, {"params", "--for", sSize});
        for (const std::string& sSet : PhotoAssignments(size)) {
            const std::string sLine = "\n" + sSet.substr(sSet.find('.') + 1) + ";";
            EXPECT_NE(std::string::npos, sText.find(sLine)) << sSize << sLine;
        }
    }
    EXPECT_NE(std::string::npos,
              Printed(folder, {"params", "--for", "64x48", "--set", "bLogoEnable=1"}).find("bLogoEnable=1;"));
}

TEST(ParamsCommand, PrintsTheRegisteredDefaultsOtherwise)
{
    const TestFolder folder;
    CMultiExposureHDRProcessFlowOpt flow;
    ASSERT_TRUE(flow.SaveParameterFile(folder.Path("own.txt").c_str()));
    EXPECT_EQ(ReadText(folder.Path("own.txt")), Printed(folder, {"params"}));
}

TEST(ParamsCommand, ExplainsWhatANameMeans)
{
    const TestFolder folder;
    const std::string sList = Printed(folder, {"params", "CGhostProcessFilter.nEdgeTh_7", "--for", "640x480"});
    for (const char* pLine :
         {"nEdgeTh\n", "unit      grey value\n", "range     0 .. 255\n", "default   4, 4, 4, 4, 4, 4, 4, 4\n",
          "value     24, 24, 24, 4, 4, 4, 4, 4 (photo, 640x480)\n",
          "photo     Differences of structure count where they are strong; weak ones are noise, or "
          "edges a fraction\n              of a pixel apart.",
          "section   CGhostProcessFilter\n",
          "CGhostProcessFilter.nEdgeTh_0=V\n              to CGhostProcessFilter.nEdgeTh_7\n"}) {
        EXPECT_NE(std::string::npos, sList.find(pLine)) << pLine << "\n" << sList;
    }
    const std::string sTable = Printed(folder, {"params", "nGhostThre", "--preset", "default"});
    EXPECT_NE(std::string::npos, sTable.find("default   32, 64, 96\n              32, 64, 96\n")) << sTable;
    const std::string sValue = Printed(folder, {"params", "nMinLowLevel", "nRatio", "--set", "nMinLowLevel=-7"});
    EXPECT_EQ(0u, sValue.find("nMinLowLevel\n    meaning   least that the black level may be\n")) << sValue;
    EXPECT_NE(std::string::npos, sValue.find("default   -32\n    value     -7 (photo, 4000x3000)\n")) << sValue;
    EXPECT_NE(std::string::npos, sValue.find("--set CFeaturePointDetection.nRatio=V\n")) << "both that have the name";
}

TEST(ParamsCommand, TellsProgramsTheSame)
{
    const TestFolder folder;
    const std::vector<std::string> vJson = {"params",       "--json", "nGhostThre", "nCheckThre",
                                            "nLocalWeight", "--for",  "64x48"};
    EXPECT_EQ(0u, Printed(folder, vJson)
                      .find("{\"preset\": \"photo, 64x48\",\n\"parameters\": [\n"
                            "{\"section\":\"CGhostProcessFilter\",\"group\":\"\",\"name\":\"nGhostThre\",\"min\":0,"
                            "\"max\":255,\"default\":[[32,64,96],[32,64,96],[32,64,96],[32,64,96],[32,64,96],"
                            "[32,64,96],[32,64,96],[32,64,96]],\"value\":[[16,32,64],[16,32,64],[16,32,64],"
                            "[32,64,96],[32,64,96],[32,64,96],[32,64,96],[32,64,96]],\"unit\":\"difference value\","
                            "\"meaning\":\"by pyramid level: points of the soft threshold\"},\n"
                            "{\"section\":\"CGhostProcessFilter\",\"group\":\"\",\"name\":\"nCheckThre\",\"min\":0,"
                            "\"max\":255,\"default\":[32,120],\"value\":[32,120],"))
        << Printed(folder, vJson);
}

// Every parameter of the text is told of, with a meaning and a unit that stand by themselves.
TEST(ParamsCommand, KnowsAMeaningOfEveryParameter)
{
    ToolParameters params(ToolParameters::Base::kRegistered);
    size_t nEntries = 0, nListed = 0;
    for (CFilter* pFilter : AllFilters(params.Flow())) nEntries += pFilter->Params().size();
    for (const ListedParameter& parameter : ListParameters(params)) {
        EXPECT_GE(parameter.sMeaning.size(), 10u) << parameter.sName;
        EXPECT_FALSE(parameter.sUnit.empty()) << parameter.sName;
        for (size_t i = 0; i < parameter.vValues.size(); ++i, ++nListed) {
            EXPECT_EQ(parameter.vValues[i], params.Get(parameter.ElementName(i))) << parameter.ElementName(i);
        }
    }
    EXPECT_EQ(nEntries, nListed);
}

}  // namespace vkr::tool
