#include "face/face_marks.h"

#include <gtest/gtest.h>

#include <string>

#include "support/random_image.h"

namespace vkr {
namespace {

// Marks on an 8 x 5 picture, one character a pixel.
class Marks {
public:
    Marks() { FillConstant(m_image, 8, 5, 3, 9); }
    Marks& Draw(const FaceBox& box, int nFaceSource = 2, std::vector<FaceBox> vHost = {}, int bDebugDump = 0)
    {
        DrawFaceBoxes(m_image, box, {vHost.data(), static_cast<int>(vHost.size())}, nFaceSource, bDebugDump);
        return *this;
    }
    std::string Text() const
    {
        std::string sText;
        for (size_t i = 0; i < 40; ++i) {
            const uint8_t* p = m_image.pData + 3 * i;
            const bool bGreen = p[0] == 0 && p[1] == 255 && p[2] == 0;
            const bool bOld = p[0] == 9 && p[1] == 9 && p[2] == 9;
            sText += bGreen ? '#' : (bOld ? '.' : '?');
            if (i % 8 == 7) sText += '\n';
        }
        return sText;
    }

private:
    TestImage m_image;
};

const char* const kNothing = "........\n........\n........\n........\n........\n";
const char* const kBox = "........\n..####..\n..#..#..\n..####..\n........\n";

TEST(DrawFaceBoxes, DrawsOnePixelWide)
{
    EXPECT_EQ(Marks().Draw({2, 1, 5, 3}).Text(), kBox);
}

TEST(DrawFaceBoxes, ClampsRows)
{
    EXPECT_EQ(Marks().Draw({1, -4, 3, 2}).Text(), ".###....\n.#.#....\n.###....\n........\n........\n");
    EXPECT_EQ(Marks().Draw({1, 3, 3, 99}).Text(), "........\n........\n........\n.###....\n.###....\n");
}

TEST(DrawFaceBoxes, RunsOnBeyondTheRightEdge)
{
    // Rows 1 and 3 run into the next ones; the right side lies at column 9, pixel 1 of the row below.
    EXPECT_EQ(Marks().Draw({6, 1, 9, 3}).Text(), "........\n......##\n##....#.\n.#....##\n##......\n");
    EXPECT_EQ(Marks().Draw({6, 3, 99, 4}).Text(), "........\n........\n........\n......##\n########\n");
    // A left side at column -3 lies in the row above; rows beyond the last fall on it.
    const char* const pLeft = "##...#..\n.#...#..\n.#...#..\n.#...###\n##......\n";
    EXPECT_EQ(Marks().Draw({-3, 0, 1, 4}).Text(), pLeft);
    EXPECT_EQ(Marks().Draw({-3, 0, 1, 0x7FFFFFFF}).Text(), pLeft);
}

TEST(DrawFaceBoxes, StopsAtBothEndsOfThePicture)
{
    EXPECT_EQ(Marks().Draw({-3, 0, 1, 1}).Text(), "##...###\n##......\n........\n........\n........\n");
    const int32_t nFar = 0x7FFFFFFF;
    EXPECT_EQ(Marks().Draw({-nFar - 1, -nFar - 1, nFar, nFar}).Text(),
              "########\n########\n########\n########\n########\n");
    EXPECT_EQ(Marks().Draw({nFar, 1, -nFar, 3}).Text(), kNothing);
}

TEST(DrawFaceBoxes, DrawsTopAndBottomOfLowBoxes)
{
    EXPECT_EQ(Marks().Draw({2, 2, 4, 2}).Text(), "........\n........\n..###...\n........\n........\n");
    EXPECT_EQ(Marks().Draw({2, 2, 4, 3}).Text(), "........\n........\n..###...\n..###...\n........\n");
}

TEST(DrawFaceBoxes, ChoosesTheBoxesByTheirSource)
{
    const FaceBox box = {2, 1, 5, 3};
    const FaceBox one = {0, 0, 3, 3};
    EXPECT_EQ(Marks().Draw({3, 2, 0, 0}).Text(), kNothing);  // no face
    EXPECT_EQ(Marks().Draw(box, 1).Text(), kNothing);
    EXPECT_EQ(Marks().Draw(box, 0).Text(), kNothing);
    EXPECT_EQ(Marks().Draw(box, 0, {}, 1).Text(), kBox);
    EXPECT_EQ(Marks().Draw(box, 3).Text(), kNothing);
    EXPECT_EQ(Marks().Draw(box, 3, {one}).Text(), kBox);
    // Two host faces in frame pixels, halved toward zero: (-1 .. 2, 0 .. 1) as (0 .. 1, 0 .. 0), and (5, 2) .. (6, 4).
    EXPECT_EQ(Marks().Draw(box, 3, {{-1, 0, 2, 1}, {11, 4, 13, 9}}).Text(),
              "##......\n........\n.....##.\n.....##.\n.....##.\n");
}

}  // namespace
}  // namespace vkr
