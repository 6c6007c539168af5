#include <gtest/gtest.h>

#include "run_tool.h"

namespace vkr::tool {

TEST(EncipherCommand, ComesBackAndLoads)
{
    const TestFolder folder;
    const std::string sPlain = VKRHDR_PARAMS_FOLDER "default.txt";
    const std::string sSecret = folder.Path("secret.bin"), sBack = folder.Path("back.txt");
    EXPECT_EQ(0, RunTool(folder, {"encipher", sPlain, "-o", sSecret}).nStatus);
    EXPECT_EQ(std::string::npos, ReadText(sSecret).find("nTopLevel"));
    EXPECT_EQ(0, RunTool(folder, {"decipher", sSecret, "-o", sBack}).nStatus);
    EXPECT_EQ(ReadText(sPlain), ReadText(sBack));

    const std::vector<std::string> vDemo = {"demo", "--size", "64x48", "-o", folder.Path("demo"), "--params"};
    std::vector<std::string> vPlainDemo = vDemo, vSecretDemo = vDemo;
    vPlainDemo.push_back(sPlain);
    vSecretDemo.push_back(sSecret);
    EXPECT_EQ(0, RunTool(folder, vPlainDemo).nStatus);
    const std::string sResult = ReadText(folder.Path("demo/result.jpg"));
    EXPECT_EQ(0, RunTool(folder, {"encipher", sPlain, "-o", sSecret, "--cfg-version", "1.2.3.4"}).nStatus);
    EXPECT_EQ(0, RunTool(folder, vSecretDemo).nStatus);
    EXPECT_EQ(sResult, ReadText(folder.Path("demo/result.jpg")));
}

TEST(EncipherCommand, RefusesWhatIsOfTheOtherKind)
{
    const TestFolder folder;
    const std::string sPlain = VKRHDR_PARAMS_FOLDER "default.txt", sSecret = folder.Path("secret.bin");
    const std::string sOut = folder.Path("out");
    WriteWholeFile(folder.Path("note.txt"), Bytes(100, 'x'));
    ASSERT_EQ(0, RunTool(folder, {"encipher", sPlain, "-o", sSecret}).nStatus);
    EXPECT_EQ(1, RunTool(folder, {"encipher", sSecret, "-o", sOut}).nStatus);
    EXPECT_EQ(2, RunTool(folder, {"encipher", folder.Path("note.txt"), "-o", sOut}).nStatus);
    EXPECT_EQ(2, RunTool(folder, {"encipher", sPlain, "-o", sOut, "--cfg-version", "1;2;3;4;"}).nStatus);
    ASSERT_EQ(0, RunTool(folder, {"encipher", sPlain, "-o", sSecret, "--cfg-version", "1.2.3.4"}).nStatus);
    ASSERT_EQ(0, RunTool(folder, {"decipher", sSecret, "-o", folder.Path("own.txt")}).nStatus);
    const ToolRun twice = RunTool(folder, {"encipher", folder.Path("own.txt"), "-o", sOut, "--cfg-version", "5.6.7.8"});
    EXPECT_EQ(2, twice.nStatus);
    EXPECT_NE(std::string::npos, twice.sErr.find("cfg_version of its own"));
    const ToolRun run = RunTool(folder, {"decipher", sPlain, "-o", sOut});
    EXPECT_EQ(1, run.nStatus);
    EXPECT_NE(std::string::npos, run.sErr.find("is no enciphered parameter file"));
}

}  // namespace vkr::tool
