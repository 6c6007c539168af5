#include "run_tool.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "foundation/image_scope.h"
#include "foundation/mem_pool.h"
#include "pictures/library_pictures.h"
#include "scene/demo_scene.h"
#include "support/quiet_lines.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

std::string Quoted(const std::string& sText)
{
    std::string sQuoted = "'";
    for (const char c : sText) sQuoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return sQuoted + "'";
}

}  // namespace

TestFolder::TestFolder()
{
    std::string sName = (fs::temp_directory_path() / "vkrhdr_test.XXXXXX").string();
    if (mkdtemp(sName.data()) == nullptr) throw std::runtime_error("no folder for the test");
    m_path = sName;
}

TestFolder::~TestFolder()
{
    std::error_code error;
    fs::remove_all(m_path, error);
}

std::vector<std::string> TestFolder::Names() const
{
    std::vector<std::string> vNames;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
        vNames.push_back(entry.path().filename().string() + (entry.is_directory() ? "/" : ""));
    }
    std::sort(vNames.begin(), vNames.end());
    return vNames;
}

int ToolRun::ErrorLines() const
{
    return static_cast<int>(std::count(sErr.begin(), sErr.end(), '\n'));
}

ToolRun RunTool(const TestFolder& folder, const std::vector<std::string>& vArguments, const std::string& sEnvironment)
{
    const TestFolder streams;
    std::string sCommand = "cd " + Quoted(folder.Root()) + " && VKRHDR_SHARE=\"$VKRHDR_TEST_SHARE\" " + sEnvironment +
                           " " + Quoted(VKRHDR_TOOL);
    for (const std::string& sArgument : vArguments) sCommand += " " + Quoted(sArgument);
    sCommand += " >" + Quoted(streams.Path("out")) + " 2>" + Quoted(streams.Path("err"));
    const int nStatus = std::system(sCommand.c_str());
    ToolRun run;
    run.nStatus = WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
    run.sOut = ReadText(streams.Path("out"));
    run.sErr = ReadText(streams.Path("err"));
    return run;
}

std::vector<Frame> DrawnFrames(int w, int h)
{
    const LinesScope quiet;
    PoolInit(size_t{1} << 20);
    std::vector<Frame> vFrames(3);
    {
        CYuvImage vImages[3] = {};
        const ImageScope<CYuvImage[3]> scope(vImages);
        SceneParams scene;
        scene.nWidth = w;
        scene.nHeight = h;
        if (!DrawDemoBurst(scene, vImages)) throw std::runtime_error("no scene");
        for (size_t k = 0; k < 3; ++k) vFrames[k] = FrameOf(vImages[k]);
    }
    PoolRelease();
    return vFrames;
}

std::string ReadText(const std::string& sPath)
{
    const Bytes vBytes = ReadWholeFile(sPath);
    return std::string(vBytes.begin(), vBytes.end());
}

}  // namespace vkr::tool
