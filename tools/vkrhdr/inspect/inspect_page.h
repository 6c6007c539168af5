#pragma once

#include <string>
#include <vector>

#include "inspect/inspect_pictures.h"

namespace vkr::tool {

// One page for a browser: sections of pictures and tables. It needs no other file but the pictures beside it. All texts
// are plain and may hold anything, such as the names of files.

struct PagePicture {
    std::string sFile, sShown;  // the full picture, and what the page shows of it; both relative to the page
    std::string sCaption;
    int nWidth = 0, nHeight = 0;  // of what is shown
};

struct LegendEntry {
    Colour colour;
    std::string sName;
};

// Columns of text; the first row is the head. Nothing is shown for no rows.
using PageTable = std::vector<std::vector<std::string>>;

struct PageSection {
    std::string sTitle, sWords;  // words may be empty
    std::vector<LegendEntry> vLegend = {};
    std::vector<PagePicture> vPictures = {};
    PageTable vTable = {};
};

struct Page {
    std::string sTitle, sWords;
    std::vector<PageSection> vSections;
};

std::string PageHtml(const Page& page);

}  // namespace vkr::tool
