#include "parameters/parameters.h"

#include <gtest/gtest.h>

#include "parameters/test_filters.h"

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
    EXPECT_EQ(list[5].nDefault, 9);
    EXPECT_EQ(list[5].pInfo, nullptr);
}

// clang-format off
struct SomeParams {
    PARAM(nOne, -3, 3, -2, "Q7", "one value");
    PARAM_LIST(nList, 3, 0, 9, "grey value", "a list", 7, 8, 9);
    PARAM_TABLE_8(nTable, 2, 0, 9, "pixels", "a table", 5, 6);
};
// clang-format on

class CSome : public CFilter, public SomeParams {
public:
    void SetFilterName() override { StoreName("CSome"); }
    void RegisterParameters() override
    {
        ADD_PARAM(nTable);
        Group("Others");
        ADD_PARAM(nList);
        ADD_PARAM(nOne);
    }
};

TEST(Parameters, ARecordTellsAllAboutItsOwn)
{
    CSome some;
    some.Initialize();
    const ParamList& list = some.Params();
    ASSERT_EQ(list.size(), 16U + 3 + 1);
    const auto Expect = [&](size_t n, const char* pName, const int32_t* pValue, const ParamInfo& info, int nDefault) {
        EXPECT_EQ(list[n].sName, pName);
        EXPECT_EQ(list[n].pValue, pValue);
        EXPECT_EQ(list[n].pInfo, &info);
        EXPECT_EQ(list[n].nDefault, nDefault);
        EXPECT_EQ(list[n].nMax, info.nMax);
        EXPECT_STREQ(list[n].pGroup, n < 16 ? "" : "Others");
    };
    Expect(3, "nTable_1_1", &some.nTable[1][1], SomeParams::nTableInfo, 6);
    Expect(14, "nTable_7_0", &some.nTable[7][0], SomeParams::nTableInfo, 5);
    Expect(17, "nList_1", &some.nList[1], SomeParams::nListInfo, 8);
    Expect(19, "nOne", &some.nOne, SomeParams::nOneInfo, -2);
    EXPECT_STREQ(SomeParams::nTableInfo.pName, "nTable");
    EXPECT_STREQ(SomeParams::nOneInfo.pUnit, "Q7");
}

TEST(Parameters, RegisteringBringsTheDefaultsBack)
{
    CSome some;
    EXPECT_EQ(some.nTable[7][1], 6) << "a new record has them";
    for (int32_t* pValue : {&some.nOne, &some.nList[2], &some.nTable[7][1]}) *pValue = 1;
    some.RegisterParameters();
    EXPECT_EQ(some.nOne, -2);
    EXPECT_EQ(some.nList[2], 9);
    EXPECT_EQ(some.nTable[7][1], 6);
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
