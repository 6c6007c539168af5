#include "fusion/edge_layers.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "fusion/blend_weighted.h"
#include "support/for_threads.h"
#include "support/pyramid_with.h"
#include "support/random_image.h"

namespace vkr {

namespace {

struct Layers {
    Layers(int w, int h, int n, int nSeed)
    {
        std::mt19937 rng(nSeed);
        FillRandom(rng, weights, w, h, n, 0, 128);
        for (int k = 0; k < n; ++k) FillRandom(rng, vLayers[k], 2 * w, 2 * h, 1, -255, 255);
    }
    ~Layers()
    {
        for (CShortImage& layer : vLayers) layer.Release();
    }
    TestImage weights;
    CShortImage vLayers[kMaxExposures] = {};
};

std::vector<int16_t> SlowEdge(const Layers& layers, const PyramidParams& pyramid)
{
    TestImage doubled;
    EXPECT_TRUE(DoubleImage(layers.weights, doubled, pyramid.bPyramidFilter, pyramid.bUpScaleOtherDither));
    const int n = doubled.nDim;
    std::vector<int16_t> vEdge;
    for (size_t i = 0; i < doubled.Samples() / n; ++i) {
        int16_t vPixel[kMaxExposures];
        for (int k = 0; k < n; ++k) vPixel[k] = layers.vLayers[k].pData[i];
        vEdge.push_back(BlendWeightedPixel(vPixel, doubled.pData + i * n, n));
    }
    return vEdge;
}

}  // namespace

TEST(FuseEdgeLayers, BlendsByTheDoubledWeightsFromAnyTeam)
{
    const int vSizes[][2] = {{1, 1}, {1, 3}, {3, 2}, {35, 21}, {300, 4}};
    for (const auto& size : vSizes) {
        for (int n = 1; n <= kMaxExposures; ++n) {
            const Layers layers(size[0], size[1], n, 14);
            for (int nForm = 0; nForm < 4; ++nForm) {
                const PyramidParams pyramid = PyramidWith(1, nForm & 1, nForm >> 1);
                const auto vWant = SlowEdge(layers, pyramid);
                ForThreads([&](int nThreads) {
                    SCOPED_TRACE(testing::Message() << size[0] << " x " << size[1] << ", " << n << " exposures, form "
                                                    << nForm << ", threads " << nThreads);
                    TestShortImage edge;
                    ASSERT_TRUE(FuseEdgeLayers(layers.weights, layers.vLayers, n, pyramid, edge));
                    EXPECT_EQ(1, edge.nDim);
                    EXPECT_EQ(2 * size[0], edge.nWidth);
                    ASSERT_EQ(vWant, Samples(edge));
                });
            }
        }
    }
}

TEST(FuseEdgeLayers, LeavesNothingWhereTheLayersDoNotFit)
{
    TestShortImage edge;
    Layers layers(10, 8, 3, 15);
    ASSERT_TRUE(FuseEdgeLayers(layers.weights, layers.vLayers, 3, PyramidWith(1), edge));
    EXPECT_FALSE(FuseEdgeLayers(layers.weights, layers.vLayers, 2, PyramidWith(1), edge));
    EXPECT_TRUE(edge.Empty());
    ASSERT_TRUE(layers.vLayers[1].AllocateDim(20, 15, 1));
    EXPECT_FALSE(FuseEdgeLayers(layers.weights, layers.vLayers, 3, PyramidWith(1), edge));
    layers.vLayers[1].Release();
    EXPECT_FALSE(FuseEdgeLayers(layers.weights, layers.vLayers, 3, PyramidWith(1), edge));
    layers.weights.Release();
    EXPECT_FALSE(FuseEdgeLayers(layers.weights, layers.vLayers, 3, PyramidWith(1), edge));
    EXPECT_TRUE(edge.Empty());
}

}  // namespace vkr
