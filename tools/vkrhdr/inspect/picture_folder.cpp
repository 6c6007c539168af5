#include "inspect/picture_folder.h"

#include "pictures/colour_convert.h"

namespace vkr::tool {

PictureFolder::PictureFolder(const std::string& sFolder, int nExifOrientation)
    : m_sFolder(sFolder), m_nOrientation(nExifOrientation)
{
    MakeFolder(sFolder);
}

PagePicture PictureFolder::Add(const std::string& sName, const std::string& sCaption, const Raster& picture)
{
    const Raster upright = TurnUpright(picture, m_nOrientation), small = Thumbnail(upright);
    PagePicture entry{sName + ".png", sName + ".png", sCaption, small.nWidth, small.nHeight};
    WriteWholeFile(m_sFolder + "/" + entry.sFile, WritePng(upright, true));
    if (small.nWidth < upright.nWidth) {
        entry.sShown = sName + "_small.png";
        WriteWholeFile(m_sFolder + "/" + entry.sShown, WritePng(small, true));
    }
    ++m_nCount;
    return entry;
}

}  // namespace vkr::tool
