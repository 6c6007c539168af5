#include "tone/hsv_tone.h"

#include <gtest/gtest.h>

#include "support/for_threads.h"
#include "support/quiet_lines.h"
#include "support/random_image.h"
#include "tone/slow_hsv.h"

namespace vkr {
namespace {

FaceToneParams Params(int bSmooth, int nSize)
{
    FaceToneParams params;
    params.bHSVSmooth = bSmooth;
    params.nHSVSmoothSize = nSize;
    return params;
}

// Warm colours, many of them skin, some blown out.
void FillFace(std::mt19937& rng, CImage& image, int w, int h)
{
    FillRandom(rng, image, w, h, 3, 30, 140);
    const auto vRed = RandomRow<uint8_t>(rng, image.Samples(), 140, 255);
    for (size_t i = 2; i < image.Samples(); i += 3) image.pData[i] = vRed[i] > 245 ? 255 : vRed[i];
}

std::array<int, 3> HsvAt(const CImage& bgr, size_t n)
{
    return SlowBgrToHsv(bgr.pData[3 * n], bgr.pData[3 * n + 1], bgr.pData[3 * n + 2]);
}

struct SlowFix {
    int64_t nHue, nGain;
};

// Average differences; vPixels may name a pixel several times.
SlowFix SlowAverage(const CImage& ref, const CImage& out, const std::vector<size_t>& vPixels, bool bSkin)
{
    int64_t nHue = 0, nRef = 0, nOut = 0, nCount = 0;
    for (const size_t n : vPixels) {
        const auto r = HsvAt(ref, n), o = HsvAt(out, n);
        if (bSkin && !(r[2] >= 50 && r[1] >= 48 && r[0] < 15)) continue;
        int d = r[0] - o[0];
        if (d < -128) {
            d += 255;
        } else if (!bSkin && d > 128) {
            d -= 255;
        }
        nHue += d;
        nRef += r[1];
        nOut += o[1];
        ++nCount;
    }
    if (nCount == 0) return {0, 1};
    return {int16_t(nHue * 256 / nCount), nOut == 0 ? 0 : int16_t(nRef * 512 / nOut)};
}

std::array<uint8_t, 3> SlowCorrect(const std::array<int, 3>& hsv, const SlowFix& fix, const FaceToneParams& params)
{
    const int64_t n = params.nHSVSmoothSize;
    int64_t d = fix.nHue >> 8, s = (fix.nGain * hsv[1]) >> 9;
    if (params.bHSVSmooth) {
        d = (fix.nHue * 1050 * n / 525) >> (n + 7);
        s = (fix.nGain * 1050 * n * hsv[1] / 525) >> (n + 8);
    }
    d = std::clamp<int64_t>(d, -params.nHSVHueChangeThres, params.nHSVHueChangeThres);
    return SlowHsvToBgr(static_cast<int>((hsv[0] + d) & 255), static_cast<int>(std::clamp<int64_t>(s, 0, 255)), hsv[2]);
}

std::vector<size_t> BoxPixels(const FaceBox& box, int w, int h, bool bOwnPlace)
{
    std::vector<size_t> vPixels;
    for (int y = box.y1; y <= box.y2; ++y) {
        for (int x = box.x1; x <= box.x2; ++x) {
            if (bOwnPlace && (x < 0 || x >= w || y < 0 || y >= h)) continue;
            const int n = std::clamp(y, 0, h - 1) * w + x;
            if (n >= 0 && n < w * h) vPixels.push_back(static_cast<size_t>(n));
        }
    }
    return vPixels;
}

void Store(const std::array<uint8_t, 3>& bgr, size_t n, std::vector<uint8_t>& vOut)
{
    std::copy(bgr.begin(), bgr.end(), vOut.begin() + static_cast<std::ptrdiff_t>(3 * n));
}

std::vector<uint8_t> SlowTone(const FaceBox& box, const CImage& ref, const CImage& in, const FaceToneParams& params)
{
    const std::vector<size_t> vAll = BoxPixels({0, 0, in.nWidth - 1, in.nHeight - 1}, in.nWidth, in.nHeight, true);
    const SlowFix back = SlowAverage(ref, in, vAll, false);
    const SlowFix face = SlowAverage(ref, in, BoxPixels(box, in.nWidth, in.nHeight, !params.bHSVToneSeparate), true);
    std::vector<uint8_t> vOut = Samples(in);
    for (const size_t n : vAll) {
        if (*std::max_element(ref.pData + 3 * n, ref.pData + 3 * n + 3) == 255) continue;
        const auto hsv = HsvAt(in, n);
        const bool bSkin = hsv[0] >= 1 && hsv[0] <= 13 && hsv[1] > 48 && hsv[2] > 50;
        Store(SlowCorrect(hsv, bSkin && !params.bHSVSmooth ? back : face, params), n, vOut);
    }
    return vOut;
}

TEST(HSVTone, EqualsTheSlowWritingFromAnyTeamAndLeavesBlownPixels)
{
    LinesScope lines;
    std::mt19937 rng(95);
    for (const int w : {1, 37, 300}) {
        TestImage ref, in, out;
        FillFace(rng, ref, w, 8);
        FillFace(rng, in, w, 8);
        for (int i = 0; i < 12; ++i) {
            FaceToneParams params = Params(i % 2, i);
            params.bHSVToneSeparate = i % 3 == 0;
            const FaceBox box =
                i < 9 ? FaceBox{-3, -2, w / 2 + 3, 10} : FaceBox{w, 0, w + 2, 3};  // with and without skin
            const std::vector<uint8_t> vWant = SlowTone(box, ref, in, params);
            ForThreads([&](int) {
                ASSERT_TRUE(out.CopyFrom(in) && HSVTone(box, ref, params, 0, out));
                EXPECT_EQ(Samples(out), vWant) << w << " " << i;
            });
        }
    }
    EXPECT_TRUE(
        lines.Contains("Fusioned Image nWidth = 300, nHeight = 8\nReference Image nWidth = 300, nHeight = 8\n"));
    EXPECT_TRUE(lines.Contains("Face In HSV Skin Color Number = 0\nFace       AVG Fix HSV = [0, 1]\n"));
}

// Beyond the picture the edge rows count, and are corrected, again and again.
TEST(HSVToneFace, CorrectsABoxAsOftenAsItCounts)
{
    LinesScope lines;
    std::mt19937 rng(96);
    TestImage ref, in, out;
    FillFace(rng, ref, 21, 9);
    FillFace(rng, in, 21, 9);
    for (const FaceBox& box : {FaceBox{3, 2, 17, 7}, FaceBox{-4, -300, 23, 250}, FaceBox{5, 8, 30, 2000}}) {
        for (const int bSmooth : {0, 1}) {
            FaceToneParams params = Params(bSmooth, 1);
            const std::vector<size_t> vPixels = BoxPixels(box, 21, 9, false);
            const SlowFix face = SlowAverage(ref, in, vPixels, true);
            std::vector<uint8_t> vWant = Samples(in);
            for (const size_t n : vPixels) {
                const uint8_t* p = vWant.data() + 3 * n;
                Store(SlowCorrect(SlowBgrToHsv(p[0], p[1], p[2]), face, params), n, vWant);
            }
            ASSERT_TRUE(out.CopyFrom(in) && HSVToneFace(box, ref, params, 0, out));
            EXPECT_EQ(Samples(out), vWant) << box.y2 << " " << bSmooth;
        }
    }
    const int32_t nFar = INT32_MAX;
    EXPECT_TRUE(HSVToneFace({-nFar, -nFar, nFar, nFar}, ref, Params(1, 4), 0, out));
}

TEST(HsvDifference, WrapsOnACircleOf255)
{
    LinesScope lines;
    TestImage ref, fus;
    const auto Hue = [&](int nRef, int nFus, HSVFix& face, HSVFix& back, int nSaturation = 60, int nValue = 60) {
        const uint8_t vRef[3] = {static_cast<uint8_t>(nRef), static_cast<uint8_t>(nSaturation),
                                 static_cast<uint8_t>(nValue)};
        const uint8_t vFus[3] = {static_cast<uint8_t>(nFus), 120, 60};
        FillConstant(ref, 1, 1, 3, 0);
        FillConstant(fus, 1, 1, 3, 0);
        std::copy_n(vRef, 3, ref.pData);
        std::copy_n(vFus, 3, fus.pData);
        GetFaceAndBackgroundDiffHSV({0, 0, 0, 0}, ref, fus, back, face);
    };
    HSVFix face, back;
    Hue(10, 138, face, back);
    EXPECT_EQ(face.nHueFix, -128 * 256);
    EXPECT_EQ(back.nHueFix, -128 * 256);
    EXPECT_EQ(face.nSatGain, 256);
    Hue(10, 139, face, back);
    EXPECT_EQ(face.nHueFix, 126 * 256);
    Hue(139, 10, face, back);
    EXPECT_EQ(back.nHueFix, -126 * 256);
    EXPECT_EQ(face.nSatGain, 1);  // no skin
    const int vSkin[][4] = {{14, 48, 50, 204}, {15, 48, 50, 1}, {14, 47, 50, 1}, {14, 48, 49, 1}};
    for (const auto& [h, s, v, nGain] : vSkin) {
        Hue(h, h, face, back, s, v);
        EXPECT_EQ(face.nSatGain, nGain) << h << " " << s << " " << v;
    }
}

}  // namespace
}  // namespace vkr
