#include "library/photo_preset.h"

#include <algorithm>

namespace vkr::tool {

namespace {

constexpr std::array<int, kPhotoClasses> All(int nValue)
{
    return {nValue, nValue, nValue};
}

// clang-format off
const std::vector<PhotoValue> kPhotoValues = {
    {"bLogoEnable", All(0),
     "No logo: a photo is left unmarked."},
    {"CMultipleImagesAlignFilter.nFeatureMatchLevel", {2, 3, 4},
     "The match level. The first search compares places where they lie, before anything has moved: movement must "
     "be small there, and corners many. With 3 at 12 megapixels 1 burst in 10 fails; with 3 at 640 x 480 a quarter "
     "of the corners is left and the median error rises from 0.36 to 0.61 pixels."},
    {"CMultipleImagesAlignFilter.nMaxSearchX", All(8),
     "The window of the first search, pixels of the match level. At 20 look-alikes take two pairs in five, and 80 "
     "bursts in 100 end below one pixel."},
    {"CMultipleImagesAlignFilter.nMaxSearchY", All(8), nullptr},
    {"CMultipleImagesAlignFilter.nInitMatchThreX", All(8),
     "What that search accepts, pixels of the match level: 8 is 128 pixels of a 12-megapixel frame. At 2 only what "
     "hardly moved is paired: 1 burst in 10 fails, 60 in 100 end below one pixel."},
    {"CMultipleImagesAlignFilter.nInitMatchThreY", All(8), nullptr},
    {"CMultipleImagesAlignFilter.nMatchLevel", All(8),
     "Pairs are followed down from this level: 8 takes all there are. At 3 a point of a 12-megapixel frame is "
     "followed over 14 pixels only, and 3 bursts in 10 fail."},
    {"CMultipleImagesAlignFilter.nRefineMatchThreX", {12, 16, 24},
     "How far a followed point may end from its partner's corner, pixels. At 4 a quarter of the pairs is lost and "
     "75 bursts in 100 end below one pixel; much wider lets wrong pairs in."},
    {"CMultipleImagesAlignFilter.nRefineMatchThreY", {12, 16, 24}, nullptr},
    {"CMultipleImagesAlignFilter.nMinFeatureNum", All(12),
     "The least number of pairs: dark and blown-out frames have few. At 128, 3 bursts in 10 fail, 2 in 3 at 640 x "
     "480. At 8, a real burst with next to nothing in common passed."},
    {"CMultipleImagesAlignFilter.nRANSACThre_0", {6, 12, 8},
     "Which pairs a homography is fitted to, by their distance from the sample's own, pixels: wide, since one "
     "through four whole-pixel corners goes astray at the others. At 4, 80 bursts in 100 end below one pixel."},
    {"CMultipleImagesAlignFilter.nRANSACThre_1", All(1),
     "A pair counts for a homography only within one pixel, so that the count tells a good one from a fair one. At "
     "4, the first fair one ends the search and 70 bursts in 100 end below one pixel."},
    {"CMultipleImagesAlignFilter.nRANSACPsThre_0", All(40),
     "The share of pairs that must agree: one pixel is strict and things move in front of the camera. At 90, 2 "
     "bursts in 10 fail, half of them at 640 x 480. Real bursts that align have 53 % and more, those that can not "
     "31 % and less."},
    {"CGhostProcessFilter.nGhostPyramidStartLevel", {1, 1, 2},
     "The levels on which movement is looked for, coarsest and finest; level 0 is a quarter of the frame. What is "
     "smaller than 9 x 9 pixels of the finest one is a speck: 36 pixels of a frame of up to 6 megapixels, 72 of a "
     "larger one, half of that where the contrast is strong. With the defaults (4, 2) a disc of 50 to 130 pixels "
     "that crosses a frame of 640 x 480 is seen 1 time in 20; from level 4 down to 0 it is, but 18 % of the still "
     "picture with it."},
    {"CGhostProcessFilter.nMinGhostLevel", {0, 0, 1}, nullptr},
    {"CGhostProcessFilter.bErodeDiffEnable", All(0),
     "Differences keep their rim. With 1 a quarter of what moved at 640 x 480 is left out, a tenth at 1920 x 1080, "
     "and a thing of weak contrast altogether."},
    {"CGhostProcessFilter.nEdgeTh_0", All(24),
     "Differences of structure count where they are strong; weak ones are noise, or edges a fraction of a pixel "
     "apart. At 4 three times as much of the still picture is marked, and half of a real night scene over nine "
     "stops, which is then no longer fused. Coarser levels than these are not looked at."},
    {"CGhostProcessFilter.nEdgeTh_1", All(24), nullptr},
    {"CGhostProcessFilter.nEdgeTh_2", All(24), nullptr},
    {"CGhostProcessFilter.nGhostThre_0_0", All(16),
     "Differences of brightness count from where they show. At 32, 64, 96 a twentieth of what moved is left out at "
     "640 x 480."},
    {"CGhostProcessFilter.nGhostThre_0_1", All(32), nullptr},
    {"CGhostProcessFilter.nGhostThre_0_2", All(64), nullptr},
    {"CGhostProcessFilter.nGhostThre_1_0", All(16), nullptr},
    {"CGhostProcessFilter.nGhostThre_1_1", All(32), nullptr},
    {"CGhostProcessFilter.nGhostThre_1_2", All(64), nullptr},
    {"CGhostProcessFilter.nGhostThre_2_0", All(16), nullptr},
    {"CGhostProcessFilter.nGhostThre_2_1", All(32), nullptr},
    {"CGhostProcessFilter.nGhostThre_2_2", All(64), nullptr},
    {"CGhostProcessFilter.nGrayCloseItAtGhostStartLevel", All(4),
     "Holes are closed and neighbours joined over 16 pixels of a level. Two rounds on the finer level leave holes "
     "in weak discs; many on the coarsest join what has nothing in common, on small pictures everything."},
    {"CGhostProcessFilter.nGrayCloseItAtGhostOtherLevel", All(4), nullptr},
    {"CGhostProcessFilter.nGhostCloseIter", All(4),
     "The same before the borders are fitted. At 16 nothing more is covered, and twice as much of the still "
     "picture is marked where a thing goes further than its own size."},
    {"nAIFaceHeightWidthThres", {16, 36, 100},
     "A face counts from a fifteenth of the picture's height, whatever the size."},
    {"nBrightDarkFaceThres", All(1000),
     "Every face counts. Those in hard light or before a window have the widest spread, 193 to 416 in real bursts, "
     "and need it most: at 150 the tone follows none of them."},
    {"nHSP2PToneWeight_0", All(256),
     "With --face-look hsv dark parts too take their colour from the reference. Where the fused picture is black "
     "it has none: at 0 dark clothes come out in grey patches."},
    {"nHSP2PToneWeight_1", All(256), nullptr},
    {"nHSP2PToneWeight_2", All(256), nullptr},
    {"nHSP2PToneWeight_3", All(256), nullptr},
};

// The second attempt's. What lies near is found on a finer level, which has more corners; more samples are drawn; and two
// pixels are near enough, since nothing fits better where the camera was not only turned but moved.
const std::vector<PhotoValue> kTolerantValues = {
    {"CMultipleImagesAlignFilter.nFeatureMatchLevel", {1, 2, 3}, nullptr},
    {"CMultipleImagesAlignFilter.nRANSACMaxIt", All(1000), nullptr},
    {"CMultipleImagesAlignFilter.nRANSACThre_1", All(2), nullptr},
};
// clang-format on

size_t SizeClass(Size size)
{
    const double fMegapixels = static_cast<double>(size.nWidth) * size.nHeight / 1e6;
    const auto pBound = std::lower_bound(kPhotoClassBounds.begin(), kPhotoClassBounds.end(), fMegapixels);
    return static_cast<size_t>(pBound - kPhotoClassBounds.begin());
}

std::vector<std::string> AssignmentsOf(const std::vector<PhotoValue>& vValues, Size size)
{
    const size_t nClass = SizeClass(size);
    std::vector<std::string> vAssignments;
    for (const PhotoValue& value : vValues) {
        vAssignments.push_back(std::string(value.pName) + "=" + std::to_string(value.vValues[nClass]));
    }
    return vAssignments;
}

}  // namespace

const std::vector<PhotoValue>& PhotoValues()
{
    return kPhotoValues;
}

std::vector<std::string> PhotoAssignments(Size size)
{
    return AssignmentsOf(kPhotoValues, size);
}

std::vector<std::string> TolerantAssignments(Size size)
{
    return AssignmentsOf(kTolerantValues, size);
}

}  // namespace vkr::tool
