#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <string>
#include <vector>

namespace vkr {

// A test that runs once per instruction set of this machine: dispatch goes to the set of the parameter.
class SimdTargetTest : public testing::TestWithParam<int64_t> {
protected:
    void SetUp() override { DispatchTo(GetParam()); }
    void TearDown() override { DispatchTo(0); }  // back to the best one

private:
    static void DispatchTo(int64_t nTargets)
    {
        hwy::SetSupportedTargetsForTest(nTargets);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};

// Never empty: Highway's library for 32-bit ARM knows of no NEON, with which ours is compiled there.
inline std::vector<int64_t> TargetsToTest()
{
    std::vector<int64_t> vTargets = hwy::SupportedAndGeneratedTargets();
    if (vTargets.empty()) vTargets.push_back(HWY_STATIC_TARGET);
    return vTargets;
}

#define INSTANTIATE_ON_ALL_TARGETS(Suite)                          \
    INSTANTIATE_TEST_SUITE_P(                                      \
        Targets, Suite, testing::ValuesIn(::vkr::TargetsToTest()), \
        [](const testing::TestParamInfo<int64_t>& set) { return std::string(hwy::TargetName(set.param)); })

}  // namespace vkr
