#include "edit/Fill.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit/FillDesk.h"
#include "grid/CellGate.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct FillCalculationTest : testing::Test, FillDesk {
    void Run() { Fill(desk, memory); }
    /// A row with this USL and TGT.
    std::int32_t AddPair(double usl, double tgt) {
        return AddRow([=](cField& field) {
            field.SetUSLflag("F");
            field.SetUSL(usl);
            field.SetTGTflag("F");
            field.SetTGT(tgt);
        });
    }
};

TEST_F(FillCalculationTest, FourWaysFromAnotherLimit) {
    struct Case {
        const char* label;
        PlusMinus how;
        double base;
        const char* value;
        const char* shown;
    };
    const Case cases[] = {{"plus", pmPlus, 10, "5", "15.000"},
                          {"minus", pmMinus, 10, "5", "5.000"},
                          {"plus percent", pmPlusPercent, 10, "5", "10.500"},
                          {"minus percent", pmMinusPercent, 10, "5", "9.500"},
                          {"plus percent of a negative one goes down", pmPlusPercent, -10, "5", "-10.500"},
                          {"minus percent of a negative one goes up", pmMinusPercent, -10, "5", "-9.500"},
                          {"nothing added", pmPlus, 12.5, "0", "12.500"},
                          {"negative value", pmPlus, 10, "-2.5", "7.500"},
                          {"result below one", pmMinus, 1, "0.5", ".500"},
                          {"blanks around the value", pmPlus, 10, " 5 ", "15.000"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const std::int32_t row = AddPair(1, c.base);
        Select(row, cnUSL, row, cnUSL);
        ExpectCalculation(cnTGT, c.how, c.value);
        Run();
        EXPECT_EQ(Cell(row, cnUSL), c.shown);
        EXPECT_EQ(g.gFields->Ref(row).USLflag(), "F");
    }
}

TEST_F(FillCalculationTest, EachRowHasItsOwnBase) {
    AddPair(0, 10);
    AddPair(0, 20);
    AddPair(0, 30);
    Hide({2});
    Select(1, cnUSL, 3, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "1");
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000", "0.000", "31.000"));
    EXPECT_EQ(memory.LastFillText, "");
}

TEST_F(FillCalculationTest, LimitMayBeCalculatedFromItself) {
    AddPair(10, 0);
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnUSL, pmPlusPercent, "10");
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000"));
}

TEST_F(FillCalculationTest, SourceColumnMayBeHidden) {
    AddPair(0, 10);
    SetShown(cnTGT, false);
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "1");
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000"));
}

TEST_F(FillCalculationTest, SourceIsTheShownText) {
    AddPair(0, 1.23456);  // shown as 1.235
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "0");
    Run();
    EXPECT_EQ(g.gFields->Ref(1).USL(), 1.235);
}

TEST_F(FillCalculationTest, BlankOrCalcSourceOfOneRowRefusesTheWholeFill) {
    for (const char* flag : {"C", "B"}) {
        const std::int32_t first = AddPair(1, 10);
        AddPair(2, 20);
        SetCellValue(desk, first + 1, Position(cnTGT), flag);
        g.gFiles->Ref(1).SetChangesMade(false);
        Select(first, cnUSL, first + 1, cnUSL);
        ExpectCalculation(cnTGT, pmPlus, "1");
        toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
        ExpectCancel();
        Run();
        EXPECT_EQ(Cell(first, cnUSL), "1.000") << flag;
        EXPECT_EQ(Cell(first + 1, cnUSL), "2.000") << flag;
        EXPECT_FALSE(ChangesMade());
    }
}

TEST_F(FillCalculationTest, EmptySourceIsRefused) {
    AddRow([](cField& field) { field.SetFieldType("T"); });  // shows no limits
    desk.Grid.SetRowHidden(1, false);
    EXPECT_EQ(Cell(1, cnTGT), "");
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "1");
    toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
    ExpectCancel();
    Run();
}

TEST_F(FillCalculationTest, SourceThatIsNoNumberIsRefused) {
    AddPair(1, 10);
    for (const char* text : {"x", "c", "1.5,5"}) {
        desk.Grid.SetTextMatrix(1, Position(cnTGT), text);
        Select(1, cnUSL, 1, cnUSL);
        ExpectCalculation(cnTGT, pmPlus, "1");
        toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
        ExpectCancel();
        Run();
    }
}

TEST_F(FillCalculationTest, AnotherChoiceAfterARefusalFills) {
    AddPair(1, 10);
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnLSL, pmPlus, "1");  // LSL is "C"
    toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
    Expect([](frmFill& form) {
        EXPECT_TRUE(form.optFillLimit.Value());
        EXPECT_EQ(form.txtLimitValue.Value(), "1");
        form.optLimits.UserSelect(cnTGT - cnUSL);
        form.cmdOk.UserClick();
    });
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000"));
}

TEST_F(FillCalculationTest, AConstantAfterARefusalFillsAndBothTextsStayedInTheDialog) {
    AddPair(1, 10);
    Select(1, cnUSL, 1, cnUSL);
    Expect([](frmFill& form) {
        form.txtConstant.UserType("7");
        form.txtLimitValue.UserFocus();
        form.txtLimitValue.UserType("2");
        form.optLimits.UserSelect(cnLSL - cnUSL);  // LSL is "C"
        form.cmdOk.UserClick();
    });
    toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "7");
        EXPECT_EQ(form.txtLimitValue.Value(), "2");
        EXPECT_EQ(form.optLimits.Selected(), cnLSL - cnUSL);
        form.txtConstant.UserFocus();
        form.cmdOk.UserClick();
    });
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("7.000"));
    EXPECT_EQ(memory.LastFillText, "7");
}

TEST_F(FillCalculationTest, ClosingByTheFrameAfterAnOkGoesOnWithTheLastChoices) {
    AddPair(1, 10);
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnLSL, pmPlus, "1");
    toolkit.ExpectBox(BlankOrCalcBox, BoxIcon::Exclamation);
    Expect([&](frmFill& form) {
        desk.Grid.SetTextMatrix(1, Position(cnLSL), "4");
        form.UserClose();
    });
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("5.000"));
}

TEST_F(FillCalculationTest, BothSeparatorsServeInEitherLocale) {
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        for (const Text value : {"0.5", "0,5"}) {
            const std::int32_t row = AddPair(0, 0.25);
            Select(row, cnUSL, row, cnUSL);
            ExpectCalculation(cnTGT, pmPlus, value);
            Run();
            EXPECT_EQ(Cell(row, cnUSL), separator == '.' ? ".750" : ",750");
        }
    }
}

TEST_F(FillCalculationTest, ResultHasUpToFifteenDigitsAndADigitBeforeThePoint) {
    AddPair(0, 0.1);
    g.gFields->Ref(1).SetDecimals(2);
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "0.2");  // 0.30000000000000004 in binary
    Run();
    EXPECT_EQ(g.gFields->Ref(1).USL(), 0.3);
    EXPECT_TRUE(Marked(1, cnUSL));
}

TEST_F(FillCalculationTest, ResultIsMarkedWhereItsTextDiffersFromTheBaseline) {
    AddPair(11, 10);  // shown as 11.000; the result is given as 11
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "1");
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000"));
    EXPECT_TRUE(Marked(1, cnUSL));
}

TEST_F(FillCalculationTest, ResultIsGivenWithADigitBeforeThePoint) {
    // The cell shows ".5", so that the given "0.5" differs from the baseline.
    AddRow([](cField& field) {
        field.SetDecimals(0);
        field.SetUSLflag("F");
        field.SetUSL(0.5);
    });
    ASSERT_EQ(Cell(1, cnUSL), ".5");
    Select(1, cnUSL, 1, cnUSL);
    ExpectCalculation(cnUSL, pmPlus, "0");
    Run();
    EXPECT_EQ(Cell(1, cnUSL), ".5");
    EXPECT_TRUE(Marked(1, cnUSL));
}

TEST_F(FillCalculationTest, ResultIsGivenWithTheLocalesSeparator) {
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        const std::int32_t row = AddRow([](cField& field) {
            field.SetDecimals(0);
            field.SetUSLflag("F");
            field.SetUSL(10.5);
        });
        ASSERT_EQ(Cell(row, cnUSL), separator == '.' ? "10.5" : "10,5");
        Select(row, cnUSL, row, cnUSL);
        ExpectCalculation(cnUSL, pmPlus, "0");
        Run();
        EXPECT_FALSE(Marked(row, cnUSL)) << "given as the baseline shows it";
    }
}

TEST_F(FillCalculationTest, PercentageIsTakenOfTheValueFirst) {
    // Another order of the same operations overflows, or gives other digits.
    const std::int32_t large = AddPair(0, 1);
    desk.Grid.SetTextMatrix(large, Position(cnTGT), "1E307");
    Select(large, cnUSL, large, cnUSL);
    ExpectCalculation(cnTGT, pmPlusPercent, "100");
    Run();
    EXPECT_EQ(g.gFields->Ref(large).USL(), 2E307);
    const std::int32_t small = AddPair(0, 3);
    Select(small, cnUSL, small, cnUSL);
    ExpectCalculation(cnTGT, pmMinusPercent, "100.0000001");
    Run();
    EXPECT_EQ(g.gFields->Ref(small).USL(), -2.99999936004269E-09);
}

TEST_F(FillCalculationTest, ColumnsAreToldByTheirNumbersInAnyOrder) {
    // "USL" and "TGT" have changed places with "Units" and "Category".
    const auto swapColumns = [this](ColumnNumber one, ColumnNumber other) {
        desk.Grid.SetColData(Position(one), other);
        desk.Grid.SetColData(Position(other), one);
    };
    AddPair(0, 0);
    swapColumns(cnUSL, cnUnits);
    swapColumns(cnTGT, cnCategory);
    desk.Grid.SetTextMatrix(1, Position(cnCategory), "10");  // where "TGT" stands now
    Select(1, cnUnits, 1, cnUnits);                          // where "USL" stands now
    Expect([](frmFill& form) {
        EXPECT_EQ(form.lblLimit.Caption(), "USL  =");
        form.txtLimitValue.UserFocus();
        form.txtLimitValue.UserType("1");
        form.cmdOk.UserClick();  // from TGT, plus
    });
    Run();
    EXPECT_EQ(g.gFields->Ref(1).USL(), 11);
}

TEST_F(FillCalculationTest, HiddenFirstColumnOfASelectionIsTheOneThatIsFilled) {
    AddPair(1, 10);
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnUCL);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.lblLimit.Caption(), "USL  =");
        form.txtLimitValue.UserFocus();
        form.txtLimitValue.UserType("1");
        form.cmdOk.UserClick();
    });
    const Text ucl = Cell(1, cnUCL);
    Run();
    EXPECT_EQ(Cell(1, cnUSL), "11.000");
    EXPECT_EQ(Cell(1, cnUCL), ucl);
}

TEST_F(FillCalculationTest, ResultBeyondANumberIsRefusedWithNoCellChanged) {
    AddPair(1, 10);
    AddPair(2, 10);
    desk.Grid.SetTextMatrix(2, Position(cnTGT), "1E308");  // the first row's result is a number all the same
    Select(1, cnUSL, 2, cnUSL);
    ExpectCalculation(cnTGT, pmPlus, "1E308");
    toolkit.ExpectBox("Invalid Limit value!", BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "2.000"));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(FillCalculationTest, LastConstantIsLeftAlone) {
    AddPair(0, 10);
    memory.LastFillText = "kept";
    Select(1, cnUSL, 1, cnUSL);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtLimitValue.Value(), "");
        form.txtLimitValue.UserFocus();
        form.txtLimitValue.UserType("1");
        form.cmdOk.UserClick();  // from TGT, plus
    });
    Run();
    EXPECT_EQ(memory.LastFillText, "kept");
    EXPECT_THAT(Column(cnUSL), ElementsAre("11.000"));
}

TEST_F(FillCalculationTest, ThirtyThousandCellsRepaintOnce) {
    for (int row = 0; row < 30000; ++row) {
        AddPair(0, row);
    }
    Select(1, cnUSL, 30000, cnUSL);
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    ExpectCalculation(cnTGT, pmPlus, "1");
    Run();
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    desk.Grid.SetScreen(nullptr);
    EXPECT_EQ(Cell(30000, cnUSL), "30000.000");
}

}  // namespace
}  // namespace kd
