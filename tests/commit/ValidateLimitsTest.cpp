#include <gtest/gtest.h>

#include "commit/CommitChanges.h"
#include "commit/GroupCommit.h"
#include "fakes/Builders.h"
#include "model/Columns.h"

namespace kd {
namespace {

/// The catalogue's column of the first fault in one variable; 0 for none.
std::int32_t Fault(const FieldBuilder& field) {
    LoadedDesk t;
    t.Put(anApplication().Field(field));
    t.Load();
    const auto fault = ValidateLimits(t.desk);
    return fault ? t.desk.Grid.ColData(fault->screenCol) : 0;
}

TEST(ValidateLimitsTest, EachFixedLimitMustNotBeAboveTheOneBefore) {
    struct Case {
        const char* label;
        FieldBuilder field;
        std::int32_t column;
    };
    const Case cases[] = {
        {"none fixed", aField(), 0},
        {"all in order", aField().Usl(70).Ucl(60).Uwl(50).Tgt(40).Lwl(30).Lcl(20).Lsl(10), 0},
        {"all equal, bounds too", aField().Max(5).Usl(5).Ucl(5).Uwl(5).Tgt(5).Lwl(5).Lcl(5).Lsl(5).Min(5), 0},
        {"USL above the maximum", aField().Max(10).Usl(10.5), cnUSL},
        {"UCL above USL", aField().Usl(5).Ucl(6), cnUCL},
        {"UWL above UCL", aField().Ucl(5).Uwl(6), cnUWL},
        {"TGT above UWL", aField().Uwl(5).Tgt(6), cnTGT},
        {"LWL above TGT", aField().Tgt(5).Lwl(6), cnLWL},
        {"LCL above LWL", aField().Lwl(5).Lcl(6), cnLCL},
        {"LSL above LCL", aField().Lcl(5).Lsl(6), cnLSL},
        {"minimum above the last limit", aField().Lsl(5).Min(6), cnMin},
        {"minimum above the maximum", aField().Max(5).Min(6), cnMin},
        {"minimum above a limit further up", aField().Usl(5).Min(6), cnMin},
        {"over limits that are not fixed",
         aField().Usl(5).Key("UCL", "B").Key("UWL", "C").Key("TGT", "x").Lwl(6), cnLWL},
        {"a calculated limit takes no part", aField().Max(5).Key("USL", "C9"), 0},
        {"the first of several", aField().Usl(5).Ucl(6).Uwl(7).Min(8), cnUCL},
        {"first fault above the maximum", aField().Max(1).Lsl(2), cnLSL},
        {"text variable", aField().Type("T").Usl(5).Ucl(6), 0},
        {"small letter is not numeric", aField().Type("n").Usl(5).Ucl(6), 0},
        {"empty type counts as numeric", aField().Type("").Usl(5).Ucl(6), cnUCL},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Fault(c.field), c.column) << c.label;
    }
}

TEST(ValidateLimitsTest, TheFirstFaultyRowIsTheOneFound) {
    LoadedDesk t;
    t.Put(anApplication()
              .Field(aField())
              .Field(aField().Type("T"))
              .Field(aField().Usl(1).Ucl(2))
              .Field(aField().Min(2000)));
    t.Load();
    EXPECT_EQ(ValidateLimits(t.desk), (GridCell{3, 10}));
}

TEST(ValidateLimitsTest, HiddenRowsCountToo) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField()).Field(aField().Usl(1).Ucl(2)));
    t.Load();
    t.desk.Grid.SetRowHidden(2, true);
    EXPECT_EQ(ValidateLimits(t.desk), (GridCell{2, 10}));
}

TEST(ValidateLimitsTest, TheVariableComesThroughTheRowsIntegerAndTheColumnThroughTheColumns) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField().Usl(1).Ucl(2)).Field(aField()));
    t.Load();
    t.desk.Grid.SetRowData(1, 2);
    t.desk.Grid.SetRowData(2, 1);
    t.desk.Grid.SetColData(cnUCL - 1, cnCalculation);
    t.desk.Grid.SetColData(cnCalculation - 1, cnUCL);
    EXPECT_EQ(ValidateLimits(t.desk), (GridCell{2, cnCalculation - 1}));
}

TEST(ValidateLimitsTest, AnEmptyGridIsInOrder) {
    LoadedDesk t;
    t.Load();
    EXPECT_EQ(ValidateLimits(t.desk), std::nullopt);
}

TEST(ItemExistsTest, TellsWhetherTheListHasTheKeyToTheLetter) {
    const std::set<Text> list{"/a/plant.kdt"};
    EXPECT_TRUE(ItemExists("/a/plant.kdt", list));
    EXPECT_FALSE(ItemExists("/a/PLANT.kdt", list));
    EXPECT_FALSE(ItemExists("", list));
}

}  // namespace
}  // namespace kd
