#include "foundation/parameters.h"

#include <gtest/gtest.h>

#include "foundation/test_filters.h"

namespace vkr {
namespace {

TEST(Parameters, ArraysRegisterOneEntryPerElement)
{
    int32_t vRow[3] = {7, 8, 9}, nSingle = 1;
    ParamList list;
    AddParameter(list, "nSingle", &nSingle, 0, 5);
    AddParameterArray(list, "nNone", vRow, 0, 0, 1);
    AddParameterArray(list, "nRatio", vRow, 2, -1, 12);
    AddParameterArray2D(list, "nTable", vRow, 4, 3, 0, 9);
    ASSERT_EQ(list.size(), 6U);
    EXPECT_EQ(list[2].sName, "nRatio_1");
    EXPECT_EQ(list[2].pValue, vRow + 1);
    EXPECT_EQ(list[5].sName, "nTable_4_2");
    EXPECT_EQ(list[5].pValue, vRow + 2);
    EXPECT_EQ(list[5].nMax, 9);
    EXPECT_EQ(vRow[2], 9) << "registration leaves values alone";
}

TEST(Parameters, FindComparesWholeNames)
{
    CRoot root;
    ParamList& list = root.middle.inner.Params();
    EXPECT_EQ(FindParameter(list, "nNodes"), nullptr);
    EXPECT_EQ(FindParameter(list, "nNodes_"), nullptr);
    EXPECT_EQ(FindParameter(list, "nNodes_10"), nullptr);
    EXPECT_EQ(FindParameter(list, ""), nullptr);
    ASSERT_NE(FindParameter(list, "nNodes_1"), nullptr);
    EXPECT_EQ(FindParameter(list, "nNodes_1")->pValue, &root.middle.inner.nNodes[1]);
}

TEST(Parameters, ANameIsCutAt63Characters)
{
    int32_t nValue = 0;
    ParamList list;
    AddParameter(list, std::string(64, 'n').c_str(), &nValue, 0, 1);
    EXPECT_EQ(list[0].sName, std::string(63, 'n'));
}

TEST(Filter, ASuffixIsAppendedToTheName)
{
    CBare bare;
    bare.Initialize();
    FilterList list;
    AddFilter(list, bare, "_2");
    EXPECT_STREQ(bare.Name(), "CBare_2");
    AddFilter(list, bare, std::string(400, 'x').c_str());
    EXPECT_EQ(std::string(bare.Name()), "CBare_2" + std::string(248, 'x'));
    EXPECT_EQ(list, (FilterList{&bare, &bare}));
}

}  // namespace
}  // namespace vkr
