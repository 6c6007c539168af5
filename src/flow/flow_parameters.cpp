#include "flow/multi_exposure_flow.h"

namespace vkr {

void CMultiExposureHDRProcessFlow::SetFilterName()
{
    StoreName("CMultiExposureHDRProcessFlow");
}

// The order is the order in the parameter file. What a parameter means stands in its record.
void CMultiExposureHDRProcessFlow::RegisterParameters()
{
    Group("Flags and selectors");
    ADD_PARAM(bDebugDumpEnable);
    ADD_PARAM(bLogoEnable);
    ADD_PARAM(bBGRProcessEnable);
    ADD_PARAM(nGlobalAlignEnable);
    ADD_PARAM(bCheckSatuEnable);
    ADD_PARAM(bGhostProcessEnable);
    ADD_PARAM(bGhostRelinearizeEnable);
    ADD_PARAM(bContrastEnable);
    ADD_PARAM(nFusionWeightSelect);
    ADD_PARAM(bConstantBrightnessTargetEnable);
    ADD_PARAM(bEV0HighLightWeightSuppress);
    ADD_PARAM(nEV0HighLightWeightSuppressThre);

    Group("Brightness and weights");
    ADD_PARAM(nGoodBrightnessTarget);
    ADD_PARAM(nGoodBrightnessTargetDropFailure);
    ADD_PARAM(nFaceIntensityRefRange);
    ADD_PARAM(bRefDifferentWeightEnable);
    ADD_PARAM(pBrightnessDiffList);
    ADD_PARAM(pBrightnessWList);
    ADD_PARAM(pBrightnessDiffListRef);
    ADD_PARAM(pBrightnessWListRef);
    ADD_PARAM(bMax2ExpWeightEnable);
    ADD_PARAM(bNormalizeWeightEnable);
    ADD_PARAM(nDominateWTh);
    ADD_PARAM(nTopLevel);

    Group("Ghost handling");
    ADD_PARAM(nMinDeghostLevel);
    ADD_PARAM(nMaxDeghostLevel);
    ADD_PARAM(nStartDeghostLevel);
    ADD_PARAM(nMaxGhostRegionNum);
    ADD_PARAM(nGhostBinaryThresh);
    ADD_PARAM(nMinConnectAreaPer);
    ADD_PARAM(nGhostLimitPerTh);
    ADD_PARAM(bSaturationMethod);
    ADD_PARAM(nSatuValueTh);
    ADD_PARAM(nRegionEdgeWeightW);
    ADD_PARAM(bMaxMeanWeightFill);
    ADD_PARAM(nMaxDecrease);
    ADD_PARAM(nGhostRegionSaturatePerTh);
    ADD_PARAM(nGhostEdgeSaturatePerTh);
    ADD_PARAM(DeGhostStrength);

    Group("Faces and HSV tone");
    ADD_PARAM(bAIMask);
    ADD_PARAM(nBrightDarkFaceThres);
    ADD_PARAM(bUVOrder);
    ADD_PARAM(nAIFaceHeightWidthThres);
    ADD_PARAM(bHSVStretch);
    ADD_PARAM(bHSVTone);
    ADD_PARAM(bHSP2PTone);
    ADD_PARAM(nHSP2PToneWeight);
    ADD_PARAM(bHSVToneFace);
    ADD_PARAM(bHSVToneSeparate);
    ADD_PARAM(nHSVHLowThres);
    ADD_PARAM(nHSVHHighThres);
    ADD_PARAM(nHSVHTransit);
    ADD_PARAM(nHSVSLowThres);
    ADD_PARAM(nHSVSHighThres);
    ADD_PARAM(nHSVSTransit);
    ADD_PARAM(nHSVVLowThres);
    ADD_PARAM(nHSVVHighThres);
    ADD_PARAM(nHSVVTransit);
    ADD_PARAM(bHSVSmooth);
    ADD_PARAM(nHSVSmoothSize);
    ADD_PARAM(nFaceHighCombineWeight);
    ADD_PARAM(nFaceHighThres);
    ADD_PARAM(nFaceLowThres);
    ADD_PARAM(nHSVHueChangeThres);
    ADD_PARAM(nFaceHistDropHighLightRate);
    ADD_PARAM(nFaceHistDropLowLightRate);

    Group("Stretch and detail");
    ADD_PARAM(bKeepHighLightDetailEnable);
    ADD_PARAM(bKeepDarkDetailEnable);
    ADD_PARAM(bAddHighFrequency);
    ADD_PARAM(nMaxHighLevel);
    ADD_PARAM(nMinHighLevel);
    ADD_PARAM(nMinLowLevel);
    ADD_PARAM(nMaxLowLevel);
    ADD_PARAM(nHLPercetage);
    ADD_PARAM(nDarkPercetage);
    ADD_PARAM(bBrightnessPRSV);
    ADD_PARAM(nOutGammaYThres);
    ADD_PARAM(nMaxGamma);
    ADD_PARAM(nHistStatType);
    ADD_PARAM(nLowLevelStep);
    ADD_PARAM(nHighLevelStep);
    ADD_PARAM(nSaturatePsThre);
    ADD_PARAM(nSaturateThre);
    ADD_PARAM(bShadowDetailEnhanceEnable);
    ADD_PARAM(nSharpenYThList);
    ADD_PARAM(nSharpenYWList);
    ADD_PARAM(nLevelSharpen);
    ADD_PARAM(bExtendHL);
    ADD_PARAM(nExtendHLSatuThre);
    ADD_PARAM(nExtendHLSlope);
    ADD_PARAM(nRatio);
    ADD_PARAM(bEdgeCompensateEnable);
    ADD_PARAM(nMaxCompensateGain);
    ADD_PARAM(nGhostSmoothIter);
    ADD_PARAM(bUseDilatedGhost);

    Group("Pyramids");
    ADD_PARAM(bPyramidFilter);
    ADD_PARAM(bUpScaleImageDither);
    ADD_PARAM(bDownScaleImageDither);
    ADD_PARAM(bDownScaleOtherDither);
    ADD_PARAM(bUpScaleOtherDither);

    // Reached by no file.
    m_nMinFusionWeight = WeightParams().m_nMinFusionWeight;
    m_nMaxFusionWeight = WeightParams().m_nMaxFusionWeight;
    m_nOutMinValue = ToneParams().m_nOutMinValue;
    m_nOutMaxValue = ToneParams().m_nOutMaxValue;
    m_bBrightDarkFace = 0;
    static_cast<StretchLevels&>(*this) = {};
    static_cast<DisplayCurve&>(*this) = {};
}

}  // namespace vkr
