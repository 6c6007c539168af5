#pragma once

#include <string>

#include "inspect/inspect_page.h"

namespace vkr::tool {

// A folder of PNG pictures for a page, all turned upright alike. A large one has a small one beside it for the page to
// show.
class PictureFolder {
public:
    // BurstError when the folder can not be made.
    PictureFolder(const std::string& sFolder, int nExifOrientation);

    // NAME.png, and NAME_small.png where the page needs it.
    PagePicture Add(const std::string& sName, const std::string& sCaption, const Raster& picture);

    int Count() const { return m_nCount; }

private:
    std::string m_sFolder;
    int m_nOrientation, m_nCount = 0;
};

}  // namespace vkr::tool
