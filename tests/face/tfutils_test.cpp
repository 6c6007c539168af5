#include "face/tfutils.h"

#include <gtest/gtest.h>

#include "face/container_bytes.h"
#include "face/tflite_api.h"
#include "support/quiet_lines.h"
#include "support/tiny_model.h"
#include "support/work_folder.h"

namespace vkr {
namespace {

using testing::ExitedWithCode;

// Every failure ends the process, so each runs in one of its own. The lines of standard output come over on standard
// error.
class CTfModelTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    static void ExpectExit(const char* pPath, bool bCiphered, const char* pLine)
    {
        EXPECT_EXIT(
            {
                SetHdrPrintSink([](const char* pText) { std::fputs(pText, stderr); });
                const CTfModel model(pPath, bCiphered);
            },
            ExitedWithCode(1), pLine);
    }
    WorkFolder m_Folder;
};

std::string Cut(const std::string& sBytes)
{
    return sBytes.substr(0, sBytes.size() / 2);
}

TEST_F(CTfModelTest, AMissingModelEndsTheProcess)
{
    ExpectExit("models/none.tflite", false, "Error at tfutils.cpp:87\n$");
    ExpectExit("models/none.tflite", true, "^Model load from Buffer failed$");
}

TEST_F(CTfModelTest, DamagedFilesEndTheProcess)
{
    const std::string sModel = ConstantFaces({{0.9f, {0, 0, 1, 1}}}).Bytes(), sFile = ContainerBytes(sModel);
    WorkFolder::Write("cut", Cut(sModel));
    ExpectExit("cut", false, "Error at tfutils.cpp:87\n$");
    WorkFolder::Write("cut_inside", ContainerBytes(Cut(sModel)));
    ExpectExit("cut_inside", true, "Error at tfutils.cpp:122\n$");
    WorkFolder::Write("cut", Cut(sFile));
    ExpectExit("cut", true, "^Model load from Buffer failed$");
    WorkFolder::Write("two_entries", WithTableWord(sFile, 0, 2));
    ExpectExit("two_entries", true, "^Model load from Buffer failed$");
    WorkFolder::Write("no_block", WithTableWord(sFile, 6, 7));
    ExpectExit("no_block", true, "^Decypt parameter file error\nModel load from Buffer failed$");
}

#if VKRHDR_WITH_TFLITE
TEST_F(CTfModelTest, ModelsThatCanNotRunEndTheProcess)
{
    TinyModel model = ConstantFaces({{0.9f, {0, 0, 1, 1}}});
    model.vOperations = {{TinyModel::kUnknown, {1}, {2}}};
    WorkFolder::Write("unknown", model.Bytes());
    ExpectExit("unknown", false, "Error at tfutils.cpp:91\n$");
    WorkFolder::Write("unknown_inside", ContainerBytes(model.Bytes()));
    ExpectExit("unknown_inside", true, "Error at tfutils.cpp:126\n$");

    model.vTensors.push_back({TinyModel::kFloat, {1}, {}});
    model.vOperations = {{TinyModel::kAdd, {0, 1}, {3}}};  // shapes that do not match
    WorkFolder::Write("misshapen", model.Bytes());
    ExpectExit("misshapen", false, "Error at tfutils.cpp:93\n$");
    WorkFolder::Write("misshapen_inside", ContainerBytes(model.Bytes()));
    ExpectExit("misshapen_inside", true, "Error at tfutils.cpp:129\n$");
}

TEST_F(CTfModelTest, ARunThatFailsEndsTheProcess)
{
    WorkFolder::Write("failing", FailingRun(TinyModel{}).Bytes());
    EXPECT_EXIT(CTfModel("failing", 0).RunModel(nullptr), ExitedWithCode(1), "Error at tfutils.cpp:137\n$");
}

TinyModel OneInput(TinyModel::Type type, std::vector<int32_t> vShape)
{
    TinyModel model;
    model.vTensors = {{type, std::move(vShape), {}}};
    model.vInputs = model.vOutputs = {0};
    return model;
}

// The input of a model out of a container, after a run on the pixels.
template <class T>
std::vector<T> InputAfterRun(const TinyModel& tiny, const std::vector<uint8_t>& vPixels)
{
    WorkFolder::Write("model", ContainerBytes(tiny.Bytes()));
    CTfModel model("model", 1);
    EXPECT_EQ(1, model.RunModel(vPixels.data()));
    const TfLiteTensor* pTensor = TfLiteInterpreterGetInputTensor(model.m_pInterpreter, 0);
    const T* const pData = static_cast<const T*>(TfLiteTensorData(pTensor));
    return std::vector<T>(pData, pData + TfLiteTensorByteSize(pTensor) / sizeof(T));
}

TEST_F(CTfModelTest, FillsTheInputByItsType)
{
    const std::vector<uint8_t> vPixels{0, 0, 0, 255, 255, 255, 51, 128, 129, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    const std::vector<float> vFloats = InputAfterRun<float>(OneInput(TinyModel::kFloat, {1, 3, 2, 3}), vPixels);
    ASSERT_EQ(18U, vFloats.size());
    const float vWant[] = {0, -128 / 255.0f, -128 / 255.0f, 1, 127 / 255.0f, 127 / 255.0f, 0.2f, 0, 1 / 255.0f};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(vWant[i], vFloats[i]) << i;
    EXPECT_EQ(vPixels, InputAfterRun<uint8_t>(OneInput(TinyModel::kByte, {1, 3, 2, 3}), vPixels));

    LinesScope lines;
    InputAfterRun<int32_t>(OneInput(TinyModel::kInt, {1, 3, 2, 3}), vPixels);
    EXPECT_EQ("default error ", lines.Text());
    // Three floats a pixel would not fit one channel; under the sanitizers this writes nothing beyond.
    InputAfterRun<float>(OneInput(TinyModel::kFloat, {1, 3, 2, 1}), vPixels);
    InputAfterRun<float>(OneInput(TinyModel::kFloat, {6}), vPixels);
}
#endif

}  // namespace
}  // namespace vkr
