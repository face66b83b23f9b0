#include "edit/Fill.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit/FillDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct FillTest : testing::Test, FillDesk {
    void Run() { Fill(desk, memory); }
};

TEST_F(FillTest, WithoutASelectionNothingIsShown) {
    AddUnits({"g"});
    Run();
    desk.Grid.Select(0, Position(cnUnits));
    Run();
    Hide({1});
    Select(1, cnUnits, 1, cnUnits);
    Run();
    EXPECT_TRUE(toolkit.log.empty());
}

TEST_F(FillTest, ConstantGoesIntoEveryVisibleCell) {
    AddUnits({"a", "b", "c", "d"});
    Hide({2});
    Select(1, cnCategory, 3, cnUnits);
    ExpectConstant("x");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "b", "x", "d"));
    EXPECT_THAT(Column(cnCategory), ElementsAre("x", "", "x", ""));
    EXPECT_TRUE(Marked(1, cnCategory));
    EXPECT_FALSE(Marked(2, cnUnits));
    EXPECT_TRUE(ChangesMade());
}

TEST_F(FillTest, HiddenColumnInsideIsSpared) {
    AddRow([](cField& field) { field.SetUnits("u"); });
    SetShown(cnUnits, false);
    SetShown(cnRules, true);
    Select(1, cnCategory, 1, cnRules);
    ExpectConstant("A");
    Run();
    EXPECT_EQ(Cell(1, cnCategory), "A");
    EXPECT_EQ(Cell(1, cnUnits), "u");
    EXPECT_EQ(Cell(1, cnRules), "A");
}

TEST_F(FillTest, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "b", "c"});
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    ExpectConstant("x");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "x", "c"));
}

TEST_F(FillTest, ALineEndInTheConstantNeverReachesACell) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectConstant("g\r\n[FIELD]\tx");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("g  [FIELD] x"));
}

TEST_F(FillTest, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "b"});
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    ExpectConstant("x");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("x", "b"));
}

TEST_F(FillTest, SingleCellOnTheLastRow) {
    AddUnits({"a", "b"});
    Select(2, cnUnits, 2, cnUnits);
    ExpectConstant("x");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "x"));
}

TEST_F(FillTest, CancelChangesNothing) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Expect([](frmFill& form) {
        form.txtConstant.UserType("x");
        form.cmdCancel.UserClick();
    });
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a"));
    EXPECT_EQ(memory.LastFillText, "");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(FillTest, ClosingByTheFrameAtTheFirstShowingCancels) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Expect([](frmFill& form) {
        form.txtConstant.UserType("x");
        form.UserClose();
    });
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a"));
}

TEST_F(FillTest, SecondFillStartsWithTheLastConstant) {
    AddUnits({"a", "b"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectConstant("x");
    Run();
    Select(2, cnUnits, 2, cnUnits);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "x");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(FillTest, EmptyConstantBlanksAndTheNextFillStartsFromTheCell) {
    AddUnits({"a", "b"});
    memory.LastFillText = "old";
    Select(1, cnUnits, 1, cnUnits);
    ExpectConstant("");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("", "b"));
    EXPECT_EQ(memory.LastFillText, "");
    Select(2, cnUnits, 2, cnUnits);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "b");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(FillTest, EmptyConstantIsRefusedByALimit) {
    AddLimits(cnUSL, {1});
    Select(1, cnUSL, 1, cnUSL);
    ExpectConstant("");
    toolkit.ExpectBox(InvalidBox("USL", ""), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000"));
}

TEST_F(FillTest, LettersAndBothSeparatorsAreConstantsOfALimit) {
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        for (const Text text : {"1.5", "1,5"}) {
            AddLimits(cnUSL, {0});
            const std::int32_t row = desk.Grid.Rows() - 1;
            Select(row, cnUSL, row, cnUSL);
            ExpectConstant(text);
            Run();
            EXPECT_EQ(Cell(row, cnUSL), separator == '.' ? "1.500" : "1,500");
            EXPECT_EQ(g.gFields->Ref(row).USL(), 1.5);
        }
    }
    ExpectConstant("b");
    Run();
    EXPECT_EQ(Cell(desk.Grid.Rows() - 1, cnUSL), "B");
}

TEST_F(FillTest, CharacterThatTheCodePageLacksBecomesAQuestionMark) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectConstant("\u03A9m");
    Run();
    EXPECT_EQ(Cell(1, cnUnits), "?m");
    EXPECT_EQ(memory.LastFillText, "?m");
}

TEST_F(FillTest, ReadOnlyColumnIsReportedOnlyAfterTheDialog) {
    AddUnits({"a"});
    Select(1, cnType, 1, cnType);
    ExpectConstant("T");
    toolkit.ExpectBox(ReadOnlyBox, BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_THAT(toolkit.log, ElementsAre("form frmFill", "box " + Text(ReadOnlyBox), "form frmFill"));
    EXPECT_THAT(Column(cnType), ElementsAre("N"));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(FillTest, FirstOffendingCellIsReportedRowByRow) {
    AddUnits({"a", "b"});
    Select(1, cnMin, 2, cnType);
    ExpectConstant("x");
    toolkit.ExpectBox(InvalidBox("Min", "x"), BoxIcon::Exclamation);
    ExpectConstant("1");
    toolkit.ExpectBox(ReadOnlyBox, BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_FALSE(ChangesMade());
}

TEST_F(FillTest, RefusalNamesTheOffendingColumnOfSeveral) {
    AddLimits(cnUSL, {1});
    Select(1, cnVariableName, 1, cnMax);
    ExpectConstant("x");
    toolkit.ExpectBox(InvalidBox("Max", "x"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_EQ(Cell(1, cnVariableName), "V1");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(FillTest, DialogStartsWithTheSelectionsFirstCellNotWithTheCurrentOne) {
    AddUnits({"top", "bottom"});
    Select(2, cnUnits, 1, cnUnits);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "top");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(FillTest, RefusedConstantIsRemembered) {
    AddLimits(cnUSL, {1, 2});
    Select(1, cnUSL, 2, cnUSL);
    ExpectConstant("abc");
    toolkit.ExpectBox(InvalidBox("USL", "abc"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_EQ(memory.LastFillText, "abc");
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "2.000"));
    EXPECT_FALSE(ChangesMade());
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "abc");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(FillTest, WhatWasTypedStaysAfterARefusalAndMayBeMended) {
    AddLimits(cnUSL, {1});
    Select(1, cnUSL, 1, cnUSL);
    ExpectConstant("abc");
    toolkit.ExpectBox(InvalidBox("USL", "abc"), BoxIcon::Exclamation);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "abc");
        form.txtConstant.UserType("7");
        form.cmdOk.UserClick();
    });
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("7.000"));
}

TEST_F(FillTest, ClosingByTheFrameAfterAnOkGoesOnWithTheLastChoices) {
    AddLimits(cnUSL, {1});
    Select(1, cnUSL, 1, cnUSL);
    ExpectConstant("abc");
    toolkit.ExpectBox(InvalidBox("USL", "abc"), BoxIcon::Exclamation);
    Expect([](frmFill& form) {
        form.txtConstant.UserType("7");  // never confirmed
        form.UserClose();
    });
    toolkit.ExpectBox(InvalidBox("USL", "abc"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000"));
}

TEST_F(FillTest, AConstantThatNobodyTouchedIsHandedOnAsItWasGiven) {
    AddUnits({"a\nb"});
    Select(1, cnUnits, 1, cnUnits);
    Expect([](frmFill& form) { form.cmdOk.UserClick(); });
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a\nb"));
    EXPECT_FALSE(ChangesMade());
}

}  // namespace
}  // namespace kd
