#include "edit/Replace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include <vector>

#include "edit/EditDesk.h"
#include "edit/frmReplace.h"
#include "grid/CellGate.h"

namespace kd {
namespace {

using testing::ElementsAre;

Text InvalidBox(const Text& column, const Text& value) {
    return "Fill contains invalid data - Could not Replace!\r\n\r\nFound: " + column + " = '" + value + "'";
}

struct ReplaceDesk : testing::Test, EditDesk {
    void Expect(const std::function<void(frmReplace&)>& user) {
        toolkit.ExpectForm<frmReplace>("frmReplace", user);
    }
    void ExpectCancel() {
        Expect([](frmReplace& form) { form.cmdCancel.UserClick(); });
    }
    void ExpectTexts(const Text& find, const Text& replacement, bool matchCase = false) {
        Expect([=](frmReplace& form) {
            form.txtFind.UserType(find);
            form.txtReplace.UserType(replacement);
            form.chkMatchCase.SetValue(matchCase ? csChecked : csUnchecked);
            form.cmdReplace.UserClick();
        });
    }
    void Run() { Replace(desk, memory); }
};

// --- the text of a cell
// ------------------------------------------------------------------------------------

TEST(ReplaceFirstTest, FirstOccurrenceAlone) {
    struct Case {
        const char* label;
        const char* text;
        const char* find;
        const char* replacement;
        bool matchCase;
        std::optional<Text> result;
    };
    const Case cases[] = {{"first of two", "1.5;1.5", "1.5", "2", true, "2;1.5"},
                          {"in the middle", "abcabc", "bc", "X", true, "aXabc"},
                          {"whole text", "abc", "abc", "", true, ""},
                          {"at the end", "abc", "c", "dd", true, "abdd"},
                          {"not found", "abc", "x", "y", true, std::nullopt},
                          {"other case, exact", "USL", "usl", "x", true, std::nullopt},
                          {"other case, either", "The USL is", "usl", "Limit", false, "The Limit is"},
                          {"case of the rest stays", "aBcD", "bC", "-", false, "a-D"},
                          {"replacement goes in as typed", "abc", "B", "xY", false, "axYc"},
                          {"not again in the new text", "aa", "a", "aa", true, "aaa"},
                          {"no wildcards", "abc", "*", "x", false, std::nullopt},
                          {"letters outside ASCII", "K\u00C4SE", "\u00E4s", "a", false, "KaE"},
                          {"a match behind letters of two bytes", "\u00E4\u00F6\u00FCx", "X", "y", false,
                           "\u00E4\u00F6\u00FCy"},
                          {"empty text", "", "a", "b", false, std::nullopt},
                          {"longer than the text", "ab", "abc", "x", false, std::nullopt}};
    for (const Case& c : cases) {
        EXPECT_EQ(ReplaceFirst(CodePage::Of(1252), c.text, c.find, c.replacement, c.matchCase), c.result)
            << c.label;
    }
}

TEST(ReplaceFirstTest, CapitalOfAnotherNumberOfBytesDoesNotShiftTheMatch) {
    // The small dotless letter takes two bytes, its capital one.
    EXPECT_EQ(ReplaceFirst(CodePage::Of(1254), "\u0131\u0131abc", "B", "-", false), "\u0131\u0131a-c");
    EXPECT_EQ(ReplaceFirst(CodePage::Of(1254), "x\u0131y", "I", "-", false), "x-y");
}

// --- the dialog
// --------------------------------------------------------------------------------------------

using frmReplaceTest = ReplaceDesk;

TEST_F(frmReplaceTest, CaptionsAreTheDesignedOnes) {
    frmReplace form(g);
    EXPECT_EQ(form.Caption(), "Replace");
    EXPECT_EQ(form.Label1.Caption(), "Replace in Column:");
    EXPECT_EQ(form.lblFind.Caption(), "Find What:");
    EXPECT_EQ(form.LblReplace.Caption(), "Replace With:");
    EXPECT_EQ(form.chkMatchCase.Caption(), "Match Case");
    EXPECT_EQ(form.chkMatchCase.Value(), csUnchecked);
    EXPECT_EQ(form.cmdReplace.Caption(), "Replace");
    EXPECT_EQ(form.cmdCancel.Caption(), "Cancel");
    EXPECT_TRUE(form.Cancel());
    EXPECT_FALSE(form.OwnPlace().has_value());
}

TEST_F(frmReplaceTest, StartsWithTheColumnAndTheFirstCellsText) {
    AddUnits({"g", "kg"});
    Select(1, cnUnits, 2, cnUnits);
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.lblColumn.Caption(), "Units");
        EXPECT_EQ(form.txtFind.Value(), "g");
        EXPECT_EQ(form.txtReplace.Value(), "");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(frmReplaceTest, EmptyFindTextIsRefusedAndGetsTheFocus) {
    frmReplace form(g);
    int focused = 0;
    form.txtFind.OnFocusWanted = [&] {
        ++focused;
        EXPECT_EQ(toolkit.boxes.size(), 1U) << "the box comes first";
    };
    Expect([&](frmReplace& shown) {
        toolkit.ExpectBox("Find Text must be specified!", BoxIcon::Exclamation);
        shown.txtFind.UserType("");
        shown.txtReplace.UserType("x");
        shown.cmdReplace.UserClick();
        EXPECT_TRUE(shown.Shown());
        EXPECT_TRUE(shown.Cancel());
        EXPECT_EQ(shown.ReplaceText(), "");
        shown.UserClose();
    });
    form.Display();
    EXPECT_EQ(focused, 1);
}

TEST_F(frmReplaceTest, WholeFindTextIsSelectedAtEachShowing) {
    frmReplace form(g);
    int selected = 0;
    form.txtFind.OnSelectAll = [&selected] { ++selected; };
    for (int showing = 1; showing <= 2; ++showing) {
        Expect([&](frmReplace& shown) {
            EXPECT_EQ(selected, showing) << "by the time that the user sees it";
            shown.UserClose();
        });
        form.Display();
    }
}

TEST_F(frmReplaceTest, MatchCaseIsTheTicksStateAtEachReplace) {
    frmReplace form(g);
    form.SetFindText("x");
    for (const bool ticked : {true, false}) {
        Expect([](frmReplace& shown) {
            shown.chkMatchCase.UserClick();
            shown.cmdReplace.UserClick();
        });
        form.Display();
        EXPECT_EQ(form.MatchCase(), ticked);
    }
}

TEST_F(frmReplaceTest, FrameSetsNothingAndCancelCancels) {
    frmReplace form(g);
    form.SetFindText("x");
    Expect([](frmReplace& shown) { shown.cmdReplace.UserClick(); });
    form.Display();
    EXPECT_FALSE(form.Cancel());
    Expect([](frmReplace& shown) { shown.UserClose(); });
    form.Display();
    EXPECT_FALSE(form.Cancel());
    ExpectCancel();
    form.Display();
    EXPECT_TRUE(form.Cancel());
}

// --- the command
// -------------------------------------------------------------------------------------------

using ReplaceTest = ReplaceDesk;

TEST_F(ReplaceTest, WithoutASelectionNothingIsShown) {
    AddUnits({"g"});
    Run();
    desk.Grid.Select(0, Position(cnUnits));
    Run();
    Hide({1});
    Select(1, cnUnits, 1, cnUnits);
    Run();
    EXPECT_TRUE(toolkit.log.empty());
}

TEST_F(ReplaceTest, SeveralVisibleColumnsAreRefusedBeforeTheDialog) {
    AddUnits({"g"});
    Select(1, cnCategory, 1, cnUnits);
    toolkit.ExpectBox("Can only replace within a single column.", BoxIcon::Exclamation);
    Run();
}

TEST_F(ReplaceTest, SeveralColumnsAreReportedBeforeReadOnlyOnes) {
    AddUnits({"g"});
    Select(1, cnType, 1, cnLength);
    toolkit.ExpectBox("Can only replace within a single column.", BoxIcon::Exclamation);
    Run();
}

TEST_F(ReplaceTest, OneVisibleColumnBesideHiddenOnesIsAllowed) {
    AddUnits({"g"});
    SetShown(cnUCL, false);
    SetShown(cnUWL, false);
    Select(1, cnUSL, 1, cnUWL);
    ExpectCancel();
    Run();
}

TEST_F(ReplaceTest, ReadOnlyColumnIsRefusedBeforeTheDialog) {
    AddUnits({"g"});
    Select(1, cnType, 1, cnType);
    toolkit.ExpectBox("Cannot replace read-only cells.", BoxIcon::Exclamation);
    Run();
}

TEST_F(ReplaceTest, FoundTextIsReplacedInEachVisibleCell) {
    AddUnits({"mg", "kg", "l", "g"});
    Hide({2});
    Select(1, cnUnits, 4, cnUnits);
    ExpectTexts("G", "b");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("mb", "kg", "l", "b"));
    EXPECT_TRUE(Marked(1, cnUnits));
    EXPECT_FALSE(Marked(2, cnUnits));
    EXPECT_FALSE(Marked(3, cnUnits));
    EXPECT_TRUE(ChangesMade());
}

TEST_F(ReplaceTest, MatchCaseTellsTheCasesApart) {
    AddUnits({"g", "G"});
    Select(1, cnUnits, 2, cnUnits);
    ExpectTexts("G", "x", true);
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("g", "x"));
}

TEST_F(ReplaceTest, EmptyReplacementDeletes) {
    AddUnits({"kg"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectTexts("k", "");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("g"));
}

TEST_F(ReplaceTest, SelectionThatBeginsHiddenLeavesOutTheLastVisibleRow) {
    AddUnits({"a", "a", "a"});
    Hide({1});
    Select(1, cnUnits, 3, cnUnits);
    ExpectTexts("a", "b");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("b", "b", "a"));
}

TEST_F(ReplaceTest, SelectionThatEndsHiddenSparesTheHiddenRow) {
    AddUnits({"a", "a"});
    Hide({2});
    Select(1, cnUnits, 2, cnUnits);
    ExpectTexts("a", "b");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("b", "a"));
}

TEST_F(ReplaceTest, SingleCellOnTheLastRow) {
    AddUnits({"a", "a"});
    Select(2, cnUnits, 2, cnUnits);
    ExpectTexts("a", "b");
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a", "b"));
}

TEST_F(ReplaceTest, CellsWithoutAMatchAreNeitherJudgedNorWritten) {
    AddRow([](cField& field) { field.SetReportType("old"); });  // not valid, but it came from the file
    AddRow([](cField& field) { field.SetReportType("A1"); });
    const Text before = Cell(1, cnReportType);
    Select(1, cnReportType, 2, cnReportType);
    ExpectTexts("A1", "A3");
    Run();
    EXPECT_EQ(Cell(1, cnReportType), before);
    EXPECT_EQ(Cell(2, cnReportType), "A3");
    EXPECT_FALSE(Marked(1, cnReportType));
}

TEST_F(ReplaceTest, DialogStartsWithTheSelectionsFirstCellNotWithTheCurrentOne) {
    AddUnits({"top", "bottom"});
    Select(2, cnUnits, 1, cnUnits);
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.txtFind.Value(), "top");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(ReplaceTest, HiddenFirstColumnOfASelectionIsTheOneThatIsSearched) {
    AddLimits(cnUSL, {12});
    const Text ucl = Cell(1, cnUCL);
    SetShown(cnUSL, false);
    Select(1, cnUSL, 1, cnUCL);
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.lblColumn.Caption(), "USL");
        form.txtFind.UserType("2");
        form.txtReplace.UserType("3");
        form.cmdReplace.UserClick();
    });
    Run();
    EXPECT_EQ(Cell(1, cnUSL), "13.000");
    EXPECT_EQ(Cell(1, cnUCL), ucl);
}

TEST_F(ReplaceTest, SameTextIsJudgedButNotWritten) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectTexts("a", "a");
    Run();
    EXPECT_FALSE(Marked(1, cnUnits));
    EXPECT_FALSE(ChangesMade());
    AddRow([](cField& field) { field.SetReportType("old"); });
    Select(2, cnReportType, 2, cnReportType);
    ExpectTexts("L", "L");
    toolkit.ExpectBox(InvalidBox("ReportType", "oLd"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
}

TEST_F(ReplaceTest, IdenticalTextIsRefusedWhereTheCellIsNotValid) {
    AddRow([](cField& field) { field.SetReportType("OLD"); });
    Select(1, cnReportType, 1, cnReportType);
    ExpectTexts("L", "L");
    toolkit.ExpectBox(InvalidBox("ReportType", "OLD"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_FALSE(Marked(1, cnReportType));
}

TEST_F(ReplaceTest, RefusedTextGoesBackToTheDialogWithNothingWritten) {
    AddLimits(cnUSL, {1, 12});
    Select(1, cnUSL, 2, cnUSL);
    ExpectTexts("2", "x");
    toolkit.ExpectBox(InvalidBox("USL", "1x.000"), BoxIcon::Exclamation);
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.txtFind.Value(), "2");
        EXPECT_EQ(form.txtReplace.Value(), "x");
        form.cmdCancel.UserClick();
    });
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("1.000", "12.000"));
    EXPECT_FALSE(ChangesMade());
}

TEST_F(ReplaceTest, EarlierCellsStayUntouchedWhenALaterOneIsRefused) {
    AddLimits(cnUSL, {1, 11});
    SetCellValue(desk, 2, Position(cnUSL), "C");
    g.gFiles->Ref(1).SetChangesMade(false);
    desk.Grid.SetTextMatrix(2, Position(cnUSL), "1..");
    Select(1, cnUSL, 2, cnUSL);
    ExpectTexts("1", "2");
    toolkit.ExpectBox(InvalidBox("USL", "2.."), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_EQ(Cell(1, cnUSL), "1.000");
    EXPECT_FALSE(ChangesMade());
}

TEST_F(ReplaceTest, WhatWasTypedStaysInTheDialogAsItWasTyped) {
    AddLimits(cnUSL, {12});
    Select(1, cnUSL, 1, cnUSL);
    ExpectTexts("2", "\u03A9", true);  // a letter that the code page lacks
    toolkit.ExpectBox(InvalidBox("USL", "1?.000"), BoxIcon::Exclamation);
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.txtReplace.Value(), "\u03A9");
        EXPECT_EQ(form.chkMatchCase.Value(), csChecked);
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(ReplaceTest, RefusedTextsMayBeMended) {
    AddLimits(cnUSL, {12});
    Select(1, cnUSL, 1, cnUSL);
    ExpectTexts("2", "x");
    toolkit.ExpectBox(InvalidBox("USL", "1x.000"), BoxIcon::Exclamation);
    ExpectTexts("2", "3");
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("13.000"));
}

TEST_F(ReplaceTest, RefusedTextsAreRemembered) {
    AddLimits(cnUSL, {12});
    Select(1, cnUSL, 1, cnUSL);
    ExpectTexts("2", "x", true);
    toolkit.ExpectBox(InvalidBox("USL", "1x.000"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_EQ(memory.LastFindText, "2");
    EXPECT_EQ(memory.LastReplaceText, "x");
    Expect([](frmReplace& form) {
        EXPECT_EQ(form.txtFind.Value(), "2");
        EXPECT_EQ(form.txtReplace.Value(), "x");
        EXPECT_EQ(form.chkMatchCase.Value(), csUnchecked);
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(ReplaceTest, CancelledTextsAreNotRemembered) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Expect([](frmReplace& form) {
        form.txtFind.UserType("q");
        form.cmdCancel.UserClick();
    });
    Run();
    EXPECT_EQ(memory.LastFindText, "");
}

TEST_F(ReplaceTest, ClosingByTheFrameAtTheFirstShowingCancels) {
    AddUnits({"a"});
    Select(1, cnUnits, 1, cnUnits);
    Expect([](frmReplace& form) {
        form.txtReplace.UserType("b");
        form.UserClose();
    });
    Run();
    EXPECT_THAT(Column(cnUnits), ElementsAre("a"));
}

TEST_F(ReplaceTest, ClosingByTheFrameAfterAReplaceGoesOnWithTheLastChoices) {
    AddLimits(cnUSL, {12});
    Select(1, cnUSL, 1, cnUSL);
    ExpectTexts("2", "x");
    toolkit.ExpectBox(InvalidBox("USL", "1x.000"), BoxIcon::Exclamation);
    Expect([](frmReplace& form) {
        form.txtReplace.UserType("3");  // never confirmed
        form.UserClose();
    });
    toolkit.ExpectBox(InvalidBox("USL", "1x.000"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_THAT(Column(cnUSL), ElementsAre("12.000"));
}

TEST_F(ReplaceTest, BothSeparatorsServeInEitherLocale) {
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        for (const Text replacement : {"7.5", "7,5"}) {
            AddLimits(cnUSL, {12});
            const std::int32_t row = desk.Grid.Rows() - 1;
            Select(row, cnUSL, row, cnUSL);
            ExpectTexts(Cell(row, cnUSL), replacement);
            Run();
            EXPECT_EQ(Cell(row, cnUSL), separator == '.' ? "7.500" : "7,500");
        }
    }
}

TEST_F(ReplaceTest, CharacterThatTheCodePageLacksIsSeenInTheCellAndFindsNothing) {
    AddUnits({"a?"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectTexts("\u03A9", "x");
    Run();
    EXPECT_EQ(Cell(1, cnUnits), "a?");
    ExpectTexts("a", "\u03A9");
    Run();
    EXPECT_EQ(Cell(1, cnUnits), "??");
}

TEST_F(ReplaceTest, ALineEndInTheNewTextNeverReachesACell) {
    AddUnits({"kg"});
    Select(1, cnUnits, 1, cnUnits);
    ExpectTexts("g", "g\r\n[FIELD]\tx");
    Run();
    EXPECT_EQ(Cell(1, cnUnits), "kg  [FIELD] x");
}

TEST_F(ReplaceTest, ManyRowsRepaintOnce) {
    AddUnits(std::vector<Text>(30000, "kg"));
    Select(1, cnUnits, 30000, cnUnits);
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    ExpectTexts("k", "m");
    Run();
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    desk.Grid.SetScreen(nullptr);
    EXPECT_EQ(Cell(30000, cnUnits), "mg");
}

}  // namespace
}  // namespace kd
