#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "pictures/picture_io.h"

namespace vkr::tool {

// A folder for one test, with all in it removed at the end.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string Path(const std::string& sName) const { return (m_path / sName).string(); }
    std::string Root() const { return m_path.string(); }

    // Names of what lies in it, sorted; sub-folders with a slash behind.
    std::vector<std::string> Names() const;

private:
    std::filesystem::path m_path;
};

struct ToolRun {
    int nStatus = -1;
    std::string sOut, sErr;

    // Lines on standard error.
    int ErrorLines() const;
};

// Runs the built program with that folder as its working folder. sEnvironment: variables for it, as a shell takes them.
ToolRun RunTool(const TestFolder& folder, const std::vector<std::string>& vArguments,
                const std::string& sEnvironment = {});

// The drawn scene, three exposures of w x h.
std::vector<Frame> DrawnFrames(int w = 160, int h = 120);

std::string ReadText(const std::string& sPath);

}  // namespace vkr::tool
