#include "foundation/stage_probe.h"

#include <gtest/gtest.h>

#include <string>

#include "support/random_image.h"

namespace vkr {
namespace {

TEST(StageProbe, NamesThePictureAndSkipsEmptyOnes)
{
    std::string sSeen;
    StageProbe probe{};
    probe.pOnImage = [](void* pUser, const char* pName, const CImage& image) {
        *static_cast<std::string*>(pUser) += std::string(pName) + ":" + std::to_string(image.nWidth) + " ";
    };
    probe.pUser = &sSeen;
    TestImage image, empty;
    TestShortImage levels;
    ASSERT_TRUE(image.Allocate(4, 2) && levels.AllocateDim(4, 2, 3));
    ProbeImage("early", image);
    SetStageProbe(&probe);
    ProbeImage("frame", image, 0);
    ProbeImage("tone", image);
    ProbeImage("empty", empty);
    ProbeImage("levels", levels);  // no callback for these
    ProbeImage(std::string(100, 'n').c_str(), image);
    SetStageProbe(nullptr);
    ProbeImage("late", image);
    EXPECT_EQ(sSeen, "frame0:4 tone:4 " + std::string(63, 'n') + ":4 ");
}

}  // namespace
}  // namespace vkr
