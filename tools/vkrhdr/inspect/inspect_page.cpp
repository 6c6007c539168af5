#include "inspect/inspect_page.h"

namespace vkr::tool {

namespace {

const char* const kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<style>
body { margin: 1.5em; background: #202224; color: #e4e4e4; font: 15px/1.4 sans-serif; }
a { color: #9cc4ff; }
nav a { margin-right: 1em; }
h2 { margin-top: 2em; border-bottom: 1px solid #555; }
figure { display: inline-block; margin: 0 1em 1em 0; vertical-align: top; }
figure img { display: block; max-width: 94vw; height: auto; background: #000; }
figcaption { padding-top: .3em; }
table { border-collapse: collapse; margin-bottom: 1em; }
th, td { padding: .15em 1em .15em 0; text-align: left; vertical-align: top; white-space: pre; }
th { border-bottom: 1px solid #777; }
.key { display: inline-block; width: 1em; height: 1em; margin: 0 .4em 0 1.2em; vertical-align: -.15em; }
</style>
)";

// As text and inside quotes alike.
std::string Escaped(const std::string& sText)
{
    std::string sHtml;
    for (const char c : sText) {
        switch (c) {
            case '&':
                sHtml += "&amp;";
                break;
            case '<':
                sHtml += "&lt;";
                break;
            case '>':
                sHtml += "&gt;";
                break;
            case '"':
                sHtml += "&quot;";
                break;
            case '\'':
                sHtml += "&#39;";
                break;
            default:
                sHtml += c;
        }
    }
    return sHtml;
}

std::string Element(const char* pTag, const std::string& sText)
{
    return sText.empty() ? std::string() : std::string("<") + pTag + ">" + Escaped(sText) + "</" + pTag + ">\n";
}

std::string LegendHtml(const std::vector<LegendEntry>& vLegend)
{
    std::string sHtml;
    for (const LegendEntry& entry : vLegend) {
        const Colour& colour = entry.colour;
        sHtml += "<span class=\"key\" style=\"background: rgb(" + std::to_string(colour.nRed) + "," +
                 std::to_string(colour.nGreen) + "," + std::to_string(colour.nBlue) + ")\"></span>" +
                 Escaped(entry.sName) + "\n";
    }
    return sHtml.empty() ? sHtml : "<p>\n" + sHtml + "</p>\n";
}

// Pictures are fetched as they come into view.
std::string PictureHtml(const PagePicture& picture)
{
    return "<figure><a href=\"" + Escaped(picture.sFile) + "\"><img loading=\"lazy\" src=\"" + Escaped(picture.sShown) +
           "\" width=\"" + std::to_string(picture.nWidth) + "\" height=\"" + std::to_string(picture.nHeight) +
           "\" alt=\"" + Escaped(picture.sCaption) + "\"></a><figcaption>" + Escaped(picture.sCaption) +
           "</figcaption></figure>\n";
}

std::string TableHtml(const PageTable& vTable)
{
    std::string sHtml;
    for (const std::vector<std::string>& vRow : vTable) {
        const char* pTag = sHtml.empty() ? "th" : "td";
        sHtml += "<tr>";
        for (const std::string& sCell : vRow) {
            sHtml += std::string("<") + pTag + ">" + Escaped(sCell) + "</" + pTag + ">";
        }
        sHtml += "</tr>\n";
    }
    return sHtml.empty() ? sHtml : "<table>\n" + sHtml + "</table>\n";
}

std::string SectionHtml(const PageSection& section, size_t nSection)
{
    std::string sHtml = "<h2 id=\"s" + std::to_string(nSection) + "\">" + Escaped(section.sTitle) + "</h2>\n";
    sHtml += Element("p", section.sWords) + LegendHtml(section.vLegend);
    for (const PagePicture& picture : section.vPictures) sHtml += PictureHtml(picture);
    return sHtml + TableHtml(section.vTable);
}

}  // namespace

std::string PageHtml(const Page& page)
{
    std::string sLinks, sSections;
    for (size_t i = 0; i < page.vSections.size(); ++i) {
        sLinks += "<a href=\"#s" + std::to_string(i) + "\">" + Escaped(page.vSections[i].sTitle) + "</a>\n";
        sSections += SectionHtml(page.vSections[i], i);
    }
    return kHead + Element("title", page.sTitle) + "</head>\n<body>\n" + Element("h1", page.sTitle) +
           Element("p", page.sWords) + "<nav>\n" + sLinks + "</nav>\n" + sSections + "</body>\n</html>\n";
}

}  // namespace vkr::tool
