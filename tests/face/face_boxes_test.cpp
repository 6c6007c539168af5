#include "face/face_boxes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "face/box_suppression.h"
#include "face/face_box_decode.h"
#include "support/quiet_lines.h"

namespace vkr {
namespace {

using Corners = std::array<double, 4>;

std::vector<double> Scores(const std::vector<FaceBoxRecord>& vBoxes)
{
    std::vector<double> vScores;
    for (const FaceBoxRecord& box : vBoxes) vScores.push_back(box.dScore);
    return vScores;
}

TEST(SuppressOverlaps, DropsWhatOverlapsMoreThanTheThreshold)
{
    // 10 x 10 and 10 x 10 shifted: 3 columns in common are 30 / 170, 5 are 50 / 150, 1 / 3.
    const FaceBoxRecord first{0.9, {0, 0, 9, 9}}, near{0.95, {5, 0, 14, 9}}, far{0.85, {7, 0, 16, 9}};
    EXPECT_EQ((std::vector<double>{0.95}), Scores(SuppressOverlaps({first, near, far}, 0.3f)));
    EXPECT_EQ((std::vector<double>{0.9, 0.85}), Scores(SuppressOverlaps({first, far}, 0.3f)));
    const FaceBoxRecord half{0.8, {0, 0, 9, 4}};  // 50 / 100
    EXPECT_EQ(2U, SuppressOverlaps({first, half}, 0.5f).size());
    EXPECT_EQ(1U, SuppressOverlaps({first, half}, 0.4999f).size());
}

// A box that was dropped drops none, and equal scores stay in their order.
TEST(SuppressOverlaps, ComparesWithKeptBoxesOnly)
{
    const std::vector<FaceBoxRecord> vChain{{0.7, {8, 0, 17, 9}}, {0.8, {4, 0, 13, 9}}, {0.8, {0, 0, 9, 9}}};
    EXPECT_EQ((std::vector<double>{0.8}), Scores(SuppressOverlaps(vChain, 0.3f)));
    EXPECT_EQ((Corners{4, 0, 13, 9}), SuppressOverlaps(vChain, 0.3f)[0].vCoord);
    const std::vector<FaceBoxRecord> vOther{vChain[2], vChain[1], vChain[0]};
    const std::vector<FaceBoxRecord> vKept = SuppressOverlaps(vOther, 0.3f);
    ASSERT_EQ(2U, vKept.size());
    EXPECT_EQ((Corners{0, 0, 9, 9}), vKept[0].vCoord);
    EXPECT_EQ((Corners{8, 0, 17, 9}), vKept[1].vCoord);
}

TensorRecord Floats(const std::vector<float>& vFloats, int32_t nBoxes)
{
    const int32_t nLast = nBoxes == 0 ? 0 : static_cast<int32_t>(vFloats.size()) / nBoxes;
    return {true, 3, {1, nBoxes, nLast}, vFloats.data(), vFloats.size() * sizeof(float)};
}

TEST(DecodeFaceBoxes, TakesScoresAboveTheThreshold)
{
    const float fThreshold = 0.8f, fAbove = std::nextafter(fThreshold, 1.0f);
    const std::vector<float> vBoxes{0, 0, 1, 1, 0.25f, -0.5f, 0.5f, 1.5f, 0, 0, 1, 1};
    const std::vector<float> vScores{1, fThreshold, 0, fAbove, 0, NAN};
    std::vector<FaceBoxRecord> vFaces;
    ASSERT_TRUE(DecodeFaceBoxes({Floats(vBoxes, 3), Floats(vScores, 3)}, 1000, 600, fThreshold, vFaces));
    ASSERT_EQ(1U, vFaces.size());
    EXPECT_EQ(fAbove, vFaces[0].dScore);
    EXPECT_EQ((Corners{250, -300, 500, 900}), vFaces[0].vCoord);
}

TEST(DecodeFaceBoxes, RefusesOutputsThatHoldLess)
{
    const std::vector<float> vBoxes(8, 0.5f), vScores(4, 0.9f);
    std::vector<FaceBoxRecord> vFaces;
    const auto Decode = [&](const std::vector<TensorRecord>& vTensors) {
        return DecodeFaceBoxes(vTensors, 100, 100, 0.5, vFaces);
    };
    LinesScope lines;
    EXPECT_TRUE(Decode({}));
    EXPECT_TRUE(Decode({Floats(vBoxes, 2), Floats({}, 0)}));
    EXPECT_EQ("", lines.Text());

    const TensorRecord boxes = Floats(vBoxes, 2), scores = Floats(vScores, 2);
    TensorRecord wrong[5] = {scores, scores, scores, boxes, boxes};
    wrong[0].vDims[1] = 3;
    wrong[1].vDims[1] = INT32_MAX;
    wrong[2].nDims = 1;
    wrong[3].pData = nullptr;
    wrong[4].bFloat = false;
    EXPECT_FALSE(Decode({boxes}));
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(Decode({boxes, wrong[i]})) << i;
    for (int i = 3; i < 5; ++i) EXPECT_FALSE(Decode({wrong[i], scores})) << i;
    EXPECT_TRUE(vFaces.empty());
    EXPECT_TRUE(lines.Contains("outputs are not boxes and scores"));
    EXPECT_TRUE(Decode({boxes, scores}));
    EXPECT_EQ(2U, vFaces.size());
}

TEST(MapToUnturned, KeepsItsOffsetsAndFractions)
{
    const FaceBoxRecord box{0.9, {10.75, 20.5, 110.25, 220.9}};
    EXPECT_EQ((Corners{10.75, 20.5, 110.25, 220.9}), MapToUnturned(box, 0, 400, 300).vCoord);
    EXPECT_EQ((Corners{20.5, 190, 220.9, 290}), MapToUnturned(box, 1, 400, 300).vCoord);
    EXPECT_EQ((Corners{400 - 110.25, 300 - 220.9, 389, 279}), MapToUnturned(box, 2, 400, 300).vCoord);
    EXPECT_EQ((Corners{180, 10.75, 380, 110.25}), MapToUnturned(box, 3, 400, 300).vCoord);
    EXPECT_EQ(301, MapToUnturned({0.9, {0, 0, -1.9, 0}}, 1, 400, 300).vCoord[1]);  // toward zero
}

TEST(TakeLarger, WantsOneSideAboveTheThresholdAndMoreThanBefore)
{
    const auto Taken = [](const std::vector<FaceBox>& vBoxes) {
        FaceBox face;
        for (const FaceBox& box : vBoxes) TakeLarger(box, 100, face);
        return std::vector<int32_t>{face.x1, face.y1, face.x2, face.y2};
    };
    using Box = std::vector<int32_t>;
    EXPECT_EQ((Box{0, 0, 0, 0}), Taken({{5, 5, 105, 105}}));
    EXPECT_EQ((Box{5, 5, 106, 20}), Taken({{5, 5, 106, 20}}));
    EXPECT_EQ((Box{5, 5, 20, 106}), Taken({{5, 5, 20, 106}}));
    EXPECT_EQ((Box{0, 0, 150, 150}), Taken({{0, 0, 150, 150}, {10, 10, 170, 150}}));  // equal sums: the first
    EXPECT_EQ((Box{0, 0, 151, 150}), Taken({{0, 0, 50, 50}, {0, 0, 150, 150}, {0, 0, 151, 150}}));
    EXPECT_EQ((Box{INT32_MIN, 0, INT32_MAX, 1}), Taken({{0, 0, 150, 150}, {INT32_MIN, 0, INT32_MAX, 1}}));
}

TEST(WholePixels, TruncatesWhatNoIntegerHolds)
{
    const double dInf = std::numeric_limits<double>::infinity();
    const FaceBox box = WholePixels({0.9, {-1.9, std::nan(""), dInf, -3e9}});
    EXPECT_EQ(-1, box.x1);
    EXPECT_EQ(0, box.y1);
    EXPECT_EQ(INT32_MAX, box.x2);
    EXPECT_EQ(INT32_MIN, box.y2);
}

}  // namespace
}  // namespace vkr
