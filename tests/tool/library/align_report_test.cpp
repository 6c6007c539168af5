#include "library/align_report.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "foundation/image_scope.h"
#include "foundation/mem_pool.h"

namespace vkr::tool {

namespace {

const AlignedPair kAligned = {1,   2,   {812, 790}, 402,
                              377, 300, true,       {1, -0.0012345678901, 3.5, 0, 1.25, -2, 1e-7, 0, 1}};
const AlignedPair kFailed = {0, 1, {12, 9}, 3, 0, 0, false, {1, 0, 0, 0, 1, 0, 0, 0, 1}};

class Thrower : public StageListener {
public:
    void OnPair(const AlignedPair& pair) override { throw std::runtime_error(std::to_string(pair.nFirst)); }
};

class Names : public StageListener {
public:
    void OnImage(const std::string& sName, const CImage& /*image*/) override { sAll += sName + " "; }
    std::string sAll;
};

}  // namespace

TEST(PairLine, TellsAllOfAPair)
{
    EXPECT_EQ(
        "1 2: features 812 790, initial matches 402, refined matches 377, inliers 300, "
        "homography 1 -0.00123456789 3.5 0 1.25 -2 1e-07 0 1",
        PairLine(kAligned));
    EXPECT_EQ("0 1: features 12 9, initial matches 3, refined matches 0, inliers 0, could not be aligned",
              PairLine(kFailed));
}

TEST(FailureLine, NamesBothPicturesAndWhatBecomesOfThem)
{
    const std::vector<std::string> vNames = {"a.jpg", "b.jpg", "c.jpg"};
    EXPECT_EQ("vkrhdr: a.jpg and b.jpg could not be aligned; taken as they lie",
              FailureLine(kFailed, vNames, 1, false));
    EXPECT_EQ("vkrhdr: a.jpg and b.jpg could not be aligned; a.jpg and what is darker is left out",
              FailureLine(kFailed, vNames, 1, true));
    EXPECT_EQ("vkrhdr: a.jpg and b.jpg could not be aligned; b.jpg and what is brighter is left out",
              FailureLine(kFailed, vNames, 0, true));
}

TEST(StageListeners, TellEveryoneAndKeepTheFirstError)
{
    PoolInit(size_t{1} << 20);
    {
        Thrower thrower;
        PairReports reports;
        Names names;
        CImage image{};
        const ImageScope scope(image);
        ASSERT_TRUE(image.AllocateGray(4, 4));
        {
            const StageListeners listeners({&thrower, &reports, &names});
            ProbeImage("mask", image, 1);
            EXPECT_NO_THROW(listeners.Check());
            ProbePair(kAligned);
            ProbePair(kFailed);
            try {
                listeners.Check();
                ADD_FAILURE() << "nothing thrown";
            } catch (const std::runtime_error& error) {
                EXPECT_STREQ("1", error.what());
            }
        }
        ProbePair(kFailed);
        ProbeImage("mask", image, 2);
        ASSERT_EQ(2u, reports.Pairs().size());
        EXPECT_EQ(1, reports.Pairs()[0].nFirst);
        EXPECT_EQ("mask1 ", names.sAll);
    }
    PoolRelease();
}

}  // namespace vkr::tool
