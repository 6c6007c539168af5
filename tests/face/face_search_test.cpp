#include "face/face_search.h"

#include <gtest/gtest.h>

#include <random>

#include "face/ai_processing.h"
#include "face/tflite_api.h"
#include "foundation/bmp.h"
#include "foundation/log.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "support/tiny_model.h"
#include "support/work_folder.h"

namespace vkr {
namespace {

std::vector<int32_t> Corners(const FaceBox& box)
{
    return {box.x1, box.y1, box.x2, box.y2};
}

FaceParams MinSide(int nPixels)
{
    FaceParams params;
    params.nAIFaceHeightWidthThres = nPixels;
    return params;
}

class FaceSearchTest : public testing::Test {
protected:
    void SetUp() override
    {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        std::mt19937 rng(9);
        FillRandom(rng, m_Reference, 400, 300, 3, 0, 255);
    }
    std::vector<int32_t> Search(int nOrientation, int nMinSide = 40)
    {
        return Corners(SearchFace(m_Reference, nOrientation, 0, {}, MinSide(nMinSide), {}));
    }
    WorkFolder m_Folder;
    LinesScope m_Lines;
    TestImage m_Reference;
};

TEST_F(FaceSearchTest, HostFacesAreHalvedTowardZero)
{
    const auto Host = [&](const std::vector<FaceBox>& vFaces) {
        return Corners(SearchFace(m_Reference, 7, 1, {vFaces.data(), static_cast<int>(vFaces.size())}, MinSide(40), 1));
    };
    EXPECT_EQ((std::vector<int32_t>{0, 0, 0, 0}), Host({}));
    EXPECT_EQ((std::vector<int32_t>{0, 0, 0, 0}), Host({{10, 10, 91, 91}}));
    EXPECT_EQ((std::vector<int32_t>{-1, 5, 50, 105}), Host({{0, 0, 60, 60}, {-3, 11, 101, 211}, {10, 10, 110, 110}}));
}

TEST_F(FaceSearchTest, AMissingModelEndsTheProcess)
{
    EXPECT_EXIT(Search(0), testing::ExitedWithCode(1), "Error at tfutils.cpp:87\n$");
}

#if VKRHDR_WITH_TFLITE
TEST_F(FaceSearchTest, FindsTheLargestFaceInEveryOrientation)
{
    // Three faces, the second over the best one; the third is the largest. Below 0.8 there is none.
    const TinyModel model = ConstantFaces({{0.95f, {0.125f, 0.25f, 0.25f, 0.5f}},
                                           {0.9f, {0.125f, 0.25f, 0.3125f, 0.5f}},
                                           {0.85f, {0.25f, 0.5f, 0.5f, 0.75f}},
                                           {0.8f, {0, 0, 1, 1}}});
    WorkFolder::Write(kFaceModelPath, model.Bytes());
    EXPECT_EQ((std::vector<int32_t>{100, 150, 200, 225}), Search(0));
    EXPECT_EQ((std::vector<int32_t>{200, 150, 300, 225}), Search(1));
    EXPECT_EQ((std::vector<int32_t>{200, 75, 300, 150}), Search(2));
    EXPECT_EQ((std::vector<int32_t>{100, 75, 200, 150}), Search(3));
    EXPECT_EQ((std::vector<int32_t>{0, 0, 0, 0}), Search(5));
    EXPECT_EQ((std::vector<int32_t>{0, 0, 0, 0}), Search(0, 100));

    std::vector<FaceBoxRecord> vBoxes;
    FindFacesByNetwork(m_Reference, 0, {}, vBoxes);
    ASSERT_EQ(2U, vBoxes.size());
    EXPECT_EQ(0.95f, vBoxes[0].dScore);
    EXPECT_EQ(0.85f, vBoxes[1].dScore);
}

TEST_F(FaceSearchTest, DumpsWhatItSaw)
{
    WorkFolder::Write(kFaceModelPath, ConstantFaces({{0.9f, {0.25f, 0.5f, 0.5f, 0.75f}}}).Bytes());
    std::filesystem::create_directory("AISeg");
    for (const int nOrientation : {0, 1}) SearchFace(m_Reference, nOrientation, 0, {}, MinSide(40), 1);
    const auto Size = [](const char* pName) { return std::filesystem::file_size(std::string("AISeg/") + pName); };
    EXPECT_EQ(400U * 300 * 3 + 54, Size("Input_Level0.bmp"));
    EXPECT_EQ(200U * 150 * 3 + 54, Size("Input_Level1.bmp"));
    EXPECT_EQ(100U * 75 * 3 + 54, Size("Input_Level2.bmp"));
    EXPECT_EQ(300U * 400 * 3 + 54, Size("RotatedImage.bmp"));
    EXPECT_TRUE(
        m_Lines.Contains("bounding box x1 100\nbounding box y1 150\nbounding box x2 200\nbounding box y2 225\n"));
}

TEST_F(FaceSearchTest, ModelsOfAnotherKindFindNoFace)
{
    const TinyModel good = ConstantFaces({{0.9f, {0.25f, 0.5f, 0.5f, 0.75f}}});
    const auto Finds = [&](const TinyModel& model) {
        WorkFolder::Write(kFaceModelPath, model.Bytes());
        LinesScope::Text().clear();
        return Search(0)[2] != 0;
    };
    EXPECT_TRUE(Finds(good));
    TinyModel model = good;
    model.vTensors[0].type = TinyModel::kByte;
    EXPECT_FALSE(Finds(model));
    EXPECT_TRUE(m_Lines.Contains("face model: its input is not 240 x 320 x 3 floats\n"));
    model.vTensors[0] = {TinyModel::kFloat, {1, 240, 319, 3}, {}};
    EXPECT_FALSE(Finds(model));
    EXPECT_TRUE(m_Lines.Contains("face model: its input is not"));
    model.vInputs.clear();
    EXPECT_FALSE(Finds(model));

    model = good;
    model.vOutputs.clear();
    EXPECT_FALSE(Finds(model));
    EXPECT_FALSE(m_Lines.Contains("face model"));
    model.vOutputs = {1};
    EXPECT_FALSE(Finds(model));
    EXPECT_TRUE(m_Lines.Contains("face model: its outputs are not boxes and scores\n"));
    EXPECT_FALSE(Finds(ConstantFaces({})));

    // A score that is too low leaves no word in the system's log, a face that is too small does.
    for (const float fScore : {0.5f, 0.9f}) {
        g_bLogEnable = 1;
        testing::internal::CaptureStderr();
        EXPECT_FALSE(Finds(ConstantFaces({{fScore, {0.25f, 0.5f, 0.26f, 0.51f}}})));
        g_bLogEnable = 0;
        const std::string sLog = testing::internal::GetCapturedStderr();
        EXPECT_EQ(fScore > 0.8f, sLog.find("VKR AI Face Detection Coordinate") != std::string::npos) << sLog;
    }
}

TEST_F(FaceSearchTest, AFailingRunEndsTheProcess)
{
    WorkFolder::Write(kFaceModelPath, FailingRun(ConstantFaces({{0.9f, {0, 0, 1, 1}}})).Bytes());
    EXPECT_EXIT(Search(0), testing::ExitedWithCode(1), "Error at ai_processing.cpp:189\n$");
}

// The output is the input.
TEST_F(FaceSearchTest, TheNetworkSeesRedFirst)
{
    TinyModel model;
    model.vTensors = {{TinyModel::kFloat, {1, 240, 320, 3}, {}}};
    model.vInputs = model.vOutputs = {0};
    WorkFolder::Write("mirror", model.Bytes());
    AIClass detector("mirror");
    TestImage image;
    std::mt19937 rng(10);
    FillRandom(rng, image, 320, 240, 3, 0, 255);
    TestImage resized;
    detector.ResizeToModelInput(image, resized, 320, 240);
    ASSERT_EQ(Samples(image), Samples(resized));
    std::vector<TensorRecord> vTensors;
    ASSERT_EQ(1, AIClass::RunFaceModel(detector.m_Model.m_pInterpreter, resized, vTensors));
    ASSERT_EQ(1U, vTensors.size());
    const float* pInput = static_cast<const float*>(vTensors[0].pData);
    for (size_t i = 0; i < image.Samples(); ++i) {
        const size_t nMirrored = i / 3 * 3 + 2 - i % 3;
        ASSERT_EQ((static_cast<float>(image.pData[nMirrored]) - 127) / 128, pInput[i]) << i;
    }
}
#endif

}  // namespace
}  // namespace vkr
