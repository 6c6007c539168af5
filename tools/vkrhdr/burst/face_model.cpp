#include "burst/face_model.h"

#include <cstdlib>
#include <filesystem>
#include <vector>

#include "face/face_search.h"

namespace vkr::tool {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> ModelFolders()
{
    std::error_code error;
    std::vector<fs::path> vFolders = {fs::current_path(error)};
    const char* pShare = std::getenv("VKRHDR_SHARE");
    if (pShare != nullptr && *pShare != 0) vFolders.push_back(fs::absolute(pShare, error));
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (!error) vFolders.push_back(program.parent_path().parent_path() / "share/vkrhdr");
    return vFolders;
}

}  // namespace

std::string FindFaceModel()
{
    if (!CanFindFaces()) return "this program is built without TensorFlow Lite";
    for (const fs::path& folder : ModelFolders()) {
        std::error_code error;
        if (!fs::is_regular_file(folder / kFaceModelPath, error)) continue;
        SetFaceModelFolder(folder.string());
        return "";
    }
    return std::string("there is no ") + kFaceModelPath + "; tools/face_model/make makes it";
}

}  // namespace vkr::tool
