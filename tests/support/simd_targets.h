#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <string>

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

#define INSTANTIATE_ON_ALL_TARGETS(Suite)                                       \
    INSTANTIATE_TEST_SUITE_P(                                                   \
        Targets, Suite, testing::ValuesIn(hwy::SupportedAndGeneratedTargets()), \
        [](const testing::TestParamInfo<int64_t>& set) { return std::string(hwy::TargetName(set.param)); })

}  // namespace vkr
