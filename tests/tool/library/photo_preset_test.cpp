#include "library/photo_preset.h"

#include <gtest/gtest.h>

#include <set>

namespace vkr::tool {

TEST(PhotoPreset, GoesByTheNumberOfPixels)
{
    const auto vSmall = PhotoAssignments({640, 480}), vFullHd = PhotoAssignments({1920, 1080}),
               vTwelve = PhotoAssignments({4000, 3000});
    EXPECT_NE(vSmall, vFullHd);
    EXPECT_NE(vFullHd, vTwelve);
    EXPECT_EQ(vFullHd, PhotoAssignments({1080, 1920}));
    EXPECT_EQ(vSmall, PhotoAssignments({1000, 600}));  // a bound belongs to the class below it
    EXPECT_EQ(vFullHd, PhotoAssignments({1002, 600}));
    EXPECT_EQ(vFullHd, PhotoAssignments({3000, 2000}));
    EXPECT_EQ(vTwelve, PhotoAssignments({3002, 2000}));
    EXPECT_EQ(vTwelve, PhotoAssignments({16384, 16384}));
    EXPECT_EQ(vSmall, PhotoAssignments({2, 2}));
}

// A set for one size goes over a set for another without leaving anything of it.
TEST(PhotoPreset, HasTheSameNamesForEverySize)
{
    std::set<std::set<std::string>> vAllNames;
    for (const Size size : {Size{640, 480}, Size{1920, 1080}, Size{4000, 3000}, Size{6000, 4000}}) {
        std::set<std::string> vNames;
        for (const std::string& sSet : PhotoAssignments(size)) {
            EXPECT_TRUE(vNames.insert(sSet.substr(0, sSet.find('='))).second) << sSet;
        }
        vAllNames.insert(vNames);
    }
    EXPECT_EQ(1u, vAllNames.size());
}

}  // namespace vkr::tool
