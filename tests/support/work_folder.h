#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace vkr {

// A folder of its own as the working directory, for one scope; removed at its end.
class WorkFolder {
public:
    WorkFolder() : m_before(std::filesystem::current_path())
    {
        std::string sTemplate = (std::filesystem::temp_directory_path() / "vkrhdr_XXXXXX").string();
        if (mkdtemp(sTemplate.data()) == nullptr) throw std::runtime_error("no temporary folder");
        m_path = sTemplate;
        std::filesystem::current_path(m_path);
    }
    ~WorkFolder()
    {
        std::filesystem::current_path(m_before);
        std::filesystem::remove_all(m_path);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    static void Write(const std::string& sName, const std::string& sBytes)
    {
        const std::filesystem::path path(sName);
        if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << sBytes;
    }

private:
    std::filesystem::path m_before, m_path;
};

}  // namespace vkr
