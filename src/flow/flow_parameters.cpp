#include "flow/multi_exposure_flow.h"

namespace vkr {

void CMultiExposureHDRProcessFlow::SetFilterName()
{
    StoreName("CMultiExposureHDRProcessFlow");
}

// The order is the order in the parameter file. Lists of 8 go by exposure, by node of a curve or by
// pyramid level: the meaning beside each says which.
// clang-format off
void CMultiExposureHDRProcessFlow::RegisterParameters()
{
    //    member                           min    max  default  meaning, unit
    // Flags and selectors.
    PARAM(bDebugDumpEnable,                  0,     1,     0);  // debug pictures as BMP; the folders must exist
    PARAM(bLogoEnable,                       0,     1,     1);  // blend the logo into the result
    PARAM(bBGRProcessEnable,                 0,     1,     0);  // kept with the parameters
    PARAM(nGlobalAlignEnable,                0,     1,     1);  // align the exposures
    PARAM(bCheckSatuEnable,                  0,     1,     1);  // find what is blown out in every exposure
    PARAM(bGhostProcessEnable,               0,     1,     1);  // find what moved
    PARAM(bGhostRelinearizeEnable,           0,     1,     1);  // make the exposures agree where something moved
    PARAM(bContrastEnable,                   0,     1,     1);  // local curves
    // Brightness of a pixel: 0 luma, 1 largest, 2 smallest of B, G, R.
    PARAM(nFusionWeightSelect,               0,     2,     1);
    PARAM(bConstantBrightnessTargetEnable,   0,     1,     1);  // weights aim at 128 in every exposure
    PARAM(bEV0HighLightWeightSuppress,       0,     1,     0);  // kept with the parameters
    PARAM(nEV0HighLightWeightSuppressThre,   0,   255,   200);  // kept with the parameters

    // Brightness and weights.
    // Grey value that weights aim at, by exposure.
    PARAM_ARRAY(nGoodBrightnessTarget,            0, 255,  176, 128, 80, 128, 128, 128, 128, 128);
    // Replaces that list once alignment dropped frames.
    PARAM_ARRAY(nGoodBrightnessTargetDropFailure, 0, 255,  200, 50, 128, 128, 128, 128, 128, 128);
    PARAM_ARRAY(nFaceIntensityRefRange,           0, 255,  20, 5);  // grey values below and above the face's brightness
    PARAM(bRefDifferentWeightEnable,         0,     1,     1);  // the reference exposure has its own curve
    // Nodes: squared difference to the target.
    PARAM_ARRAY(pBrightnessDiffList,              0, 65535,  256, 1024, 2304, 4096, 6400, 9216, 12544, 16384);
    PARAM_ARRAY(pBrightnessWList,                 0, 128,  128, 80, 64, 32, 16, 8, 4, 1);  // ... to weight, Q7
    // The same for the reference exposure.
    PARAM_ARRAY(pBrightnessDiffListRef,           0, 65535,  256, 1024, 2304, 4096, 6400, 9216, 12544, 16384);
    PARAM_ARRAY(pBrightnessWListRef,              0, 128,  128, 128, 128, 128, 96, 80, 32, 1);  // Q7
    PARAM(bMax2ExpWeightEnable,              0,     1,     1);  // at most two exposures take part in a pixel
    PARAM(bNormalizeWeightEnable,            0,     1,     1);  // weights of a pixel sum to 128
    PARAM(nDominateWTh,                      0,   255,    80);  // Q7: above it one exposure takes the whole pixel
    PARAM(nTopLevel,                         0,    10,     1);  // pyramids end at a side of 1 << nTopLevel pixels

    // Ghost handling.
    PARAM(nMinDeghostLevel,                  0,    16,     0);  // finest level of weights that ghosts rewrite
    PARAM(nMaxDeghostLevel,                  0,    16,     4);  // coarsest
    PARAM(nStartDeghostLevel,                0,    16,     3);  // level on which the regions are found
    PARAM(nMaxGhostRegionNum,                0,   128,    32);  // most regions
    PARAM(nGhostBinaryThresh,                0,   255,    64);  // ghost value above which a pixel counts
    PARAM(nMinConnectAreaPer,                0, 16384,    50);  // 1/16384 of the picture: smallest region
    PARAM(nGhostLimitPerTh,                  0, 16384,  5000);  // 1/16384 of the picture: largest area of all regions
    // A pixel is blown out by its largest (1) or smallest (0) sample.
    PARAM(bSaturationMethod,                 0,     1,     0);
    PARAM(nSatuValueTh,                      0,   255,   240);  // grey value of that
    PARAM(nRegionEdgeWeightW,                0,    16,     0);  // 1/16: share of a region's edge in its mean weight
    PARAM(bMaxMeanWeightFill,                0,     1,     1);  // start from the exposure of the largest mean weight
    PARAM(nMaxDecrease,                      0,    10,     1);  // how many exposures darker the choice may go
    PARAM(nGhostRegionSaturatePerTh,         0, 16384,  5700);  // 1/16384: blown-out share that a region tolerates
    PARAM(nGhostEdgeSaturatePerTh,           0, 16384,  3200);  // 1/16384: and its edge
    PARAM(DeGhostStrength,                   0,   256,   256);  // 1/256: share of the new weights

    // Faces and HSV tone.
    PARAM(bAIMask,                           0,     1,     0);  // look for a face
    // Spread of a face's levels above which its tone is left alone.
    PARAM(nBrightDarkFaceThres,              0,  1000,   150);
    PARAM(bUVOrder,                          0,     1,     0);  // first chroma byte of all frames: 0 Cb, 1 Cr
    PARAM(nAIFaceHeightWidthThres,           0,  4000,   100);  // a face is wider or higher than this, half-size pixels
    PARAM(bHSVStretch,                       0,     1,     0);  // one HSV stretch makes tone and colour, not the curve
    PARAM(bHSVTone,                          0,     1,     0);  // hue and saturation follow the reference exposure
    PARAM(bHSP2PTone,                        0,     1,     1);  // HSV stretch: colours follow pixel by pixel, 0 by skin
    // 1/256: how far, by the reference's value, 16 levels apart.
    PARAM_ARRAY(nHSP2PToneWeight, 0, 256,  0, 0, 64, 192, 256, 256, 256, 256, 256, 256, 256, 256, 256, 192, 64, 0, 0);
    PARAM(bHSVToneFace,                      0,     1,     0);  // in the face box alone; HSV stretch: on skin alone
    PARAM(bHSVToneSeparate,                  0,     1,     0);  // measure the face box and the picture apart
    PARAM(nHSVHLowThres,                     0,   255,     5);  // skin: hue from
    PARAM(nHSVHHighThres,                    0,   255,    20);  // to
    PARAM(nHSVHTransit,                      0,   255,     2);  // fading over
    PARAM(nHSVSLowThres,                     0,   255,    19);  // skin: saturation from
    PARAM(nHSVSHighThres,                    0,   255,   155);  // to
    PARAM(nHSVSTransit,                      0,   255,    10);  // fading over
    PARAM(nHSVVLowThres,                     0,   255,   120);  // skin: value from
    PARAM(nHSVVHighThres,                    0,   255,   252);  // to
    PARAM(nHSVVTransit,                      0,   255,     5);  // fading over
    PARAM(bHSVSmooth,                        0,     1,     1);  // one part of the skin's correction for all colours
    PARAM(nHSVSmoothSize,                    0,    10,     4);  // which part: n / 2^(n - 2), so 4 is all of it, 0 grey
    PARAM(nFaceHighCombineWeight,            0,   256,    85);  // 1/256: a face's top level, from middle to greatest
    // Most that a face may have, grey values: blue, green, red.
    PARAM_ARRAY(nFaceHighThres,                   0, 255,  220, 200, 200);
    PARAM_ARRAY(nFaceLowThres,                    0, 255,  120, 100, 100);  // and least
    PARAM(nHSVHueChangeThres,                0,     5,     2);  // most change of hue, steps of 256 a circle
    PARAM(nFaceHistDropHighLightRate,        0,   100,    10);  // percent of a face's pixels left out at the bright end
    PARAM(nFaceHistDropLowLightRate,         0,   100,    10);  // percent at the dark end

    // Stretch and detail.
    PARAM(bKeepHighLightDetailEnable,        0,     1,     1);  // the white level follows the picture, else 255
    PARAM(bKeepDarkDetailEnable,             0,     1,     1);  // the black level follows the picture, else 0
    PARAM(bAddHighFrequency,                 0,     1,     1);  // face curve: detail goes through it, else behind it
    PARAM(nMaxHighLevel,                     0,   512,   287);  // limits of the white level
    PARAM(nMinHighLevel,                     0,   512,   224);
    PARAM(nMinLowLevel,                   -255,   255,   -32);  // limits of the black level
    PARAM(nMaxLowLevel,                   -255,   255,    32);
    PARAM(nHLPercetage,                      0, 65536,   256);  // 1/65536 of the pixels beyond the white level
    PARAM(nDarkPercetage,                    0, 65536,   256);  // 1/65536 of the pixels beyond the black level
    PARAM(bBrightnessPRSV,                   0,     1,     1);  // a gamma brings the mean brightness back
    PARAM(nOutGammaYThres,                   0,   255,   150);  // HSV stretch: no gamma from this mean on
    PARAM(nMaxGamma,                       100,   200,   150);  // 1/100
    // Brightness: 0 largest, 1 smallest, 2 mean, 3 luma, 4 green.
    PARAM(nHistStatType,                     0,     4,     0);
    PARAM(nLowLevelStep,                     0,    16,    16);  // Q4: how far one burst moves the black level
    PARAM(nHighLevelStep,                    0,    16,    16);  // Q4: and the white level
    PARAM(nSaturatePsThre,                   1,   128,    16);  // Q7: share of the blown-out area that sets its ceiling
    PARAM(nSaturateThre,                     0,    16,     8);  // lowest degree that counts as blown out
    PARAM(bShadowDetailEnhanceEnable,        0,     1,     1);  // boost detail in the shadows
    PARAM_ARRAY(nSharpenYThList,                  0, 255,  16, 32, 48, 64, 80, 96, 112, 128);  // nodes: luma ...
    PARAM_ARRAY(nSharpenYWList,                   0, 128,  32, 29, 26, 24, 21, 18, 16, 16);  // ... to gain, Q4
    PARAM_ARRAY(nLevelSharpen,                    0, 16,  16, 16, 12, 8, 4, 2, 0, 0);  // Q4: strength by pyramid level
    PARAM(bExtendHL,                         0,     1,     1);  // highlight gain of a single exposure
    // Grey value by pyramid level.
    PARAM_ARRAY(nExtendHLSatuThre,                0, 255,  224, 224, 224, 224, 224, 224, 224, 224);
    PARAM_ARRAY(nExtendHLSlope,                   0, 1024,  64, 64, 64, 64, 64, 64, 64, 64);  // by pyramid level
    // Q4: exposure ratio of neighbouring frames.
    PARAM_ARRAY(nRatio,                           16, 256,  32, 32, 32, 32, 32, 32, 32, 32);
    PARAM(bEdgeCompensateEnable,             0,     1,     1);  // restore contrast at the edges of ghost regions
    PARAM(nMaxCompensateGain,              128,   160,   160);  // Q7
    PARAM(nGhostSmoothIter,                  0,    16,     2);  // rounds of smoothing of region borders
    PARAM(bUseDilatedGhost,                  0,     1,     1);  // the smoothed map does not shrink the regions

    // Pyramids.
    PARAM(bPyramidFilter,                    0,     1,     0);  // 1 filtered (5-tap), 0 plain halving and doubling
    PARAM(bUpScaleImageDither,               0,     1,     0);  // carry roundings: doublings of pictures
    PARAM(bDownScaleImageDither,             0,     1,     0);  // halvings of pictures
    PARAM(bDownScaleOtherDither,             0,     1,     0);  // halvings of weights and ghost maps
    PARAM(bUpScaleOtherDither,               0,     1,     0);  // doublings of weights and ghost maps

    // Set here, reached by no file.
    m_nMinFusionWeight = 1;
    m_nMaxFusionWeight = kWeightOne;
    m_bBrightDarkFace = 0;
    m_nOutMinValue = 0;
    m_nOutMaxValue = 255;
    m_nLowLevel = 0;
    m_nHighLevel = 255;
    RegisterDisplayCurve();
}
// clang-format on

// One curve, twice: nodes 0, 4, 8, 16, 24 ... 248 and a last one, on the 8-bit and the 10-bit scale.
void CMultiExposureHDRProcessFlow::RegisterDisplayCurve()
{
    constexpr int32_t vCurve10[kNodes] = {0,   64,  128, 224, 304, 372, 424, 472, 516,  556, 600, 632,
                                          664, 696, 724, 752, 771, 790, 809, 828, 843,  858, 873, 888,
                                          902, 916, 930, 944, 957, 971, 984, 998, 1011, 1023};
    for (int i = 0; i < kNodes; ++i) {
        m_LinearX[i] = i < 2 ? 4 * i : 8 * (i - 1);
        m_LinearX10[i] = m_LinearX[i];
        m_LinearY10[i] = vCurve10[i];
        m_LinearY[i] = vCurve10[i] >> 2;
    }
    m_LinearX[kNodes - 1] = 255;
    m_LinearX10[kNodes - 1] = 1023;
    m_LinearY[kNodes - 1] = 255;
}

}  // namespace vkr
