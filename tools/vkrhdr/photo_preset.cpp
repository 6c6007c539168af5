#include "photo_preset.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vkr::tool {

namespace {

// Size classes by megapixels, each bound within its class; the last class is all above.
constexpr double kUpToMegapixels[] = {0.6, 6};
constexpr int kSizeClasses = 3;
static_assert(std::size(kUpToMegapixels) == kSizeClasses - 1, "one bound between two classes");

using ValueBySize = std::array<int, kSizeClasses>;

constexpr ValueBySize All(int nValue)
{
    return {nValue, nValue, nValue};
}

struct PhotoValue {
    const char* pName;
    ValueBySize vValues;  // smallest pictures first
};

// docs/parameters.md comes from this table. The comment above an entry is what it says there about it, and about the
// entries without a comment below: what the value does and what it was measured to do.
// clang-format off
const PhotoValue kPhotoValues[] = {
    // No logo: a photo is left unmarked.
    {"bLogoEnable",                                  All(0)},
    // The match level. The first search compares places where they lie, so what moved must be near and corners few: one
    // level finer, a 12-megapixel burst keeps three times the wrong pairs; one coarser, too few corners are left.
    {"CMultipleImagesAlignFilter.nFeatureMatchLevel", {2, 3, 4}},
    // The window of the first search, pixels of the match level, and what it accepts: 8 reaches 128 pixels of a
    // 12-megapixel frame. With a window of 20 a third of the pairs is lost to look-alikes, with 6 and below the corners of
    // a picture turned by 2 degrees are out of reach and 1 burst in 6 fails.
    {"CMultipleImagesAlignFilter.nMaxSearchX",        All(8)},
    {"CMultipleImagesAlignFilter.nMaxSearchY",        All(8)},
    {"CMultipleImagesAlignFilter.nInitMatchThreX",    All(8)},
    {"CMultipleImagesAlignFilter.nInitMatchThreY",    All(8)},
    // Every pair is followed from the match level down: 8 takes all levels there are.
    {"CMultipleImagesAlignFilter.nMatchLevel",        All(8)},
    // How far a followed point may end from its partner's corner. Half of it loses a tenth of the good pairs, at the
    // default of 4 only a third of the drawn 12-megapixel pairs is left; twice as much lets wrong pairs in.
    {"CMultipleImagesAlignFilter.nRefineMatchThreX",  {12, 16, 24}},
    {"CMultipleImagesAlignFilter.nRefineMatchThreY",  {12, 16, 24}},
    // The least number of pairs: dark and blown-out frames have few. With 8, a burst with nothing in common once passed.
    {"CMultipleImagesAlignFilter.nMinFeatureNum",     All(12)},
    // Which pairs a homography is fitted to, pixels from the sample's own: wide, since four whole-pixel corners turn far
    // out of true. At 4, 1 drawn burst in 6 of 12 megapixels ends above one pixel; at 16 wrong pairs pull.
    {"CMultipleImagesAlignFilter.nRANSACThre_0",      {6, 12, 8}},
    // A pair counts for a homography only within one pixel, so that the count tells a good one from a fair one: at 2 the
    // bursts below one pixel fall from 98 to 66 in 100 (1920 x 1080).
    {"CMultipleImagesAlignFilter.nRANSACThre_1",      All(1)},
    // The share of pairs that must agree: one pixel is strict and things move in front of the camera. Real bursts that
    // align have 53 % and more, those that can not 36 % and less.
    {"CMultipleImagesAlignFilter.nRANSACPsThre_0",    All(40)},
};
// clang-format on

size_t SizeClass(Size size)
{
    const double fMegapixels = static_cast<double>(size.nWidth) * size.nHeight / 1e6;
    const auto* pBound = std::lower_bound(std::begin(kUpToMegapixels), std::end(kUpToMegapixels), fMegapixels);
    return static_cast<size_t>(pBound - std::begin(kUpToMegapixels));
}

}  // namespace

std::vector<std::string> PhotoAssignments(Size size)
{
    const size_t nClass = SizeClass(size);
    std::vector<std::string> vAssignments;
    for (const PhotoValue& value : kPhotoValues) {
        vAssignments.push_back(std::string(value.pName) + "=" + std::to_string(value.vValues[nClass]));
    }
    return vAssignments;
}

}  // namespace vkr::tool
