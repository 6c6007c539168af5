#include "burst/face_model.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "face/face_search.h"
#include "face/tfutils.h"

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

constexpr size_t kMostModelBytes = size_t{64} << 20;

// The library ends the process on a model that does not load, so another one tries it first: no thread of a team has a
// part in a load, hence a fork is enough.
bool Loads(const fs::path& model)
{
    const pid_t nChild = fork();
    if (nChild < 0) return true;
    if (nChild == 0) {
        const int nNowhere = open("/dev/null", O_WRONLY);
        dup2(nNowhere, STDOUT_FILENO);
        dup2(nNowhere, STDERR_FILENO);
        const CTfModel trial(model.c_str(), 0);
        _exit(0);
    }
    int nStatus = 0;
    while (waitpid(nChild, &nStatus, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0;
}

// Empty when the library may be asked for it.
std::string WhyUnusable(const fs::path& model)
{
    std::error_code error;
    const bool bSizeFits = fs::file_size(model, error) <= kMostModelBytes && !error;
    if (bSizeFits && Loads(model)) return "";
    return model.string() + " is damaged; tools/face_model/make makes it anew";
}

}  // namespace

std::string FindFaceModel()
{
    if (!CanFindFaces()) return "this program is built without TensorFlow Lite";
    for (const fs::path& folder : ModelFolders()) {
        std::error_code error;
        if (!fs::is_regular_file(folder / kFaceModelPath, error)) continue;
        SetFaceModelFolder(folder.string());
        return WhyUnusable(folder / kFaceModelPath);
    }
    return std::string("there is no ") + kFaceModelPath + "; tools/face_model/make makes it";
}

}  // namespace vkr::tool
