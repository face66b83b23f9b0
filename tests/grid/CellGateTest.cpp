#include "grid/CellGate.h"

#include <gtest/gtest.h>

#include <utility>

#include "fakes/Builders.h"
#include "grid/ColumnCatalogue.h"

namespace kd {
namespace {

constexpr std::int32_t ColUsl = 9;  // screen positions
constexpr std::int32_t ColMax = 8;
constexpr std::int32_t ColName = 7;

/// One numeric variable (8 wide, 2 decimals, USL 12.5) and one text variable.
struct GateDesk : LoadedDesk {
    GateDesk() {
        Put(anApplication()
                .Field(aField().Usl(12.5).Key("REPORTTYPE", "a10"))
                .Field(aField().Name("Batch").Type("T")));
        Load();
    }
    bool Valid(std::int32_t number, std::string_view text) {
        return IsCellValueValid(desk, 1, number - 1, text);
    }
};

struct Judged {
    std::int32_t number;
    const char* text;
    bool valid;
};

TEST(CellGateTest, EachColumnTakesItsOwnTexts) {
    const Judged cases[] = {// VarNo and Length: at least 1
                            {7, "1", true},
                            {7, "0", false},
                            {7, "", false},
                            {7, " ", false},
                            {7, "0.9", false},
                            {7, "x", false},
                            {19, "1", true},
                            {19, "1,5", true},
                            {19, "0", false},
                            {19, "-1", false},
                            {19, "", false},
                            // texts
                            {8, "", true},
                            {8, "anything <b>", true},
                            {21, "", true},
                            {27, "x", true},
                            {28, "\xC2\xB5g", true},
                            {30, "a|b", true},
                            {31, "", true},
                            {32, "c", true},
                            {33, "h", true},
                            {34, "{A}+1", true},
                            // bounds
                            {9, "", false},
                            {9, "1", true},
                            {9, "-1,5", true},
                            {9, "C", false},
                            {17, "", false},
                            {17, "1E3", true},
                            {17, " 2 ", true},
                            {17, " ", false},
                            {17, "1.000,5", false},
                            // limits
                            {10, "", false},
                            {10, "C", true},
                            {10, "c", true},
                            {11, "b", true},
                            {12, "B", true},
                            {13, "1.5", true},
                            {14, "1,5", true},
                            {15, "1,234.5", false},
                            {16, "F1", false},
                            {12, "C", true},
                            {13, "C", true},
                            {13, "b", true},
                            {14, "c", true},
                            {14, "B", true},
                            {15, "C", true},
                            {15, "b", true},
                            {16, "c", true},
                            {16, "B", true},
                            {16, "-1,5", true},
                            {10, " B", false},
                            {10, " ", false},
                            {10, "1.2.3", false},
                            {10, "1\t", false},
                            {10, "1\n", false},
                            // type
                            {18, "N", true},
                            {18, "NA", true},
                            {18, "RCT", true},
                            {18, "n", false},
                            {18, "", false},
                            {18, "X", false},
                            {18, "TN", false},
                            // at least 0
                            {20, "0", true},
                            {20, "-1", false},
                            {20, "", false},
                            {25, "0", true},
                            {25, "5", true},
                            {25, "-0.1", false},
                            // words
                            {22, "V", true},
                            {22, "vt", true},
                            {22, "A", true},
                            {22, "a", true},
                            {22, "A1", true},
                            {22, "a3", true},
                            {22, "A5", true},
                            {22, "A20", true},
                            {22, "a10", true},
                            {22, "A30", true},
                            {22, "a2", false},
                            {22, "", false},
                            {23, "Population", true},
                            {23, "MRESTIMATE", true},
                            {23, "lowvariation", true},
                            {23, "HighVariation", true},
                            {23, "LowAverage", true},
                            {23, "HighAverage", true},
                            {23, "0", false},
                            {23, "", false},
                            {24, "fixed", true},
                            {24, "CALC", true},
                            {24, "1", false},
                            {24, "", false},
                            {26, "y", true},
                            {26, "N", true},
                            {26, "p", true},
                            {26, "x", false},
                            {26, "", false},
                            {29, "", true},
                            {29, "A", true},
                            {29, "ba", true},
                            {29, "C", false},
                            {29, "A B", false},
                            {29, "\xC3\xA4", false},
                            {35, "Y", true},
                            {35, "n", true},
                            {35, "P", false},
                            {35, "", false},
                            // the view's own columns
                            {1, "x", true},
                            {6, "", true}};
    GateDesk desk;
    for (const Judged& each : cases) {
        EXPECT_EQ(desk.Valid(each.number, each.text), each.valid)
            << desk.g.gLabels->Ref(each.number).Name() << " '" << each.text << "'";
    }
}

TEST(CellGateTest, ARunOfTypeLettersPasses) {
    GateDesk desk;
    EXPECT_TRUE(desk.Valid(18, "NA"));
    EXPECT_TRUE(desk.Valid(18, "RCT"));
    EXPECT_FALSE(desk.Valid(18, "n"));
}

TEST(CellGateTest, TheColumnsNumberCountsNotItsPosition) {
    GateDesk desk;
    desk.desk.Grid.SetColData(0, 35);
    EXPECT_FALSE(IsCellValueValid(desk.desk, 1, 0, "x"));
    for (const std::int32_t unknown : {0, 36}) {
        desk.desk.Grid.SetColData(ColUsl, unknown);
        EXPECT_TRUE(IsCellValueValid(desk.desk, 1, ColUsl, "x")) << unknown;
    }
}

TEST(CellGateTest, RuleLettersAreCharactersInTheCodePagesUpperCase) {
    GateDesk desk;
    desk.g.gRuleLetters = "AB\xC3\x84";
    EXPECT_TRUE(desk.Valid(29, "b\xC3\xA4"));
    EXPECT_FALSE(desk.Valid(29, "\xC3\x96")) << "shares a byte with a letter of the catalogue";
}

TEST(CellGateTest, TheOrderOfTheLimitsIsNotTestedAtTheCell) {
    GateDesk desk;
    EXPECT_TRUE(desk.Valid(10, "5000")) << "above Max";
    EXPECT_TRUE(desk.Valid(16, "5000")) << "LSL above USL";
}

TEST(CellGateTest, RuleLettersGoByTheCatalogue) {
    GateDesk desk;
    desk.g.gRuleLetters = "ABC";
    EXPECT_TRUE(desk.Valid(29, "cab"));
    EXPECT_FALSE(desk.Valid(29, "d"));
    desk.g.gRuleLetters = "";
    EXPECT_FALSE(desk.Valid(29, "A"));
    EXPECT_TRUE(desk.Valid(29, ""));
}

TEST(CellGateTest, NumbersWithEitherSeparatorAreNumericAndMixedOnesAreNot) {
    FakeLocale locale;
    for (const char separator : {'.', ','}) {
        locale.separator = separator;
        for (const char* text : {"1", "1.5", "1,5", "-.5", "+,5", " 7 ", "1E3", "1e-3"}) {
            EXPECT_TRUE(IsNumericText(text, locale)) << text;
        }
        for (const char* text : {"", " ", "1.5,0", "1,5.0", "1.2.3", "1 2", "x", "0x10", "inf", "nan", "1E",
                                 "$1", "(1)", "1E999", "."}) {
            EXPECT_FALSE(IsNumericText(text, locale)) << text;
        }
        EXPECT_EQ(ParseCellNumber("1,5", locale), 1.5);
        EXPECT_EQ(ParseCellNumber("1.5", locale), 1.5);
        EXPECT_EQ(ParseCellNumber("", locale), 0);
        EXPECT_EQ(ParseCellNumber("1.5,5", locale), 0);
    }
}

TEST(CellGateTest, AChangedCellIsStoredShownMarkedAndFlagsItsView) {
    GateDesk desk;
    SetCellValue(desk.desk, 1, ColUsl, "13,25");
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 13.25);
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColUsl), "13.250");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), ChangedColour);
    EXPECT_TRUE(desk.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(desk.g.gSavedFields->Ref(1).USL(), 12.5);
}

TEST(CellGateTest, GoingBackToTheSavedTextClearsTheMarkAndLeavesTheFlag) {
    GateDesk desk;
    SetCellValue(desk.desk, 1, ColUsl, "13");
    SetCellValue(desk.desk, 1, ColUsl, "12.500");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), 0U);
    EXPECT_TRUE(desk.g.gFiles->Ref(1).ChangesMade());
}

TEST(CellGateTest, TheMarkComparesTheTextAsGiven) {
    GateDesk desk;
    SetCellValue(desk.desk, 1, ColUsl, "12.5");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColUsl), "12.500");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), ChangedColour) << "12.5 over 12.500";
    SetCellValue(desk.desk, 1, 10, "c");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, 10), "C");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, 10), ChangedColour) << "c over C";
}

TEST(CellGateTest, AnUntouchedEditWritesTheShownTextBackAndPutsReportTypeIntoUpperCase) {
    GateDesk desk;
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, 21), "a10");
    SetCellValue(desk.desk, 1, 21, "a10");
    EXPECT_EQ(desk.g.gFields->Ref(1).ReportType(), "A10");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, 21), "A10");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, 21), 0U) << "the given text equals the saved one";

    desk.g.gFields->Ref(1).SetUSL(12.50049);
    SetCellValue(desk.desk, 1, ColUsl, "12.500");
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5) << "digits beyond the mask are lost";
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), 0U) << "unmarked";
}

TEST(CellGateTest, FourColumnsAreStoredInUpperCaseAndMarkedByTheGivenCase) {
    const std::pair<std::int32_t, std::pair<const char*, const char*>> cases[] = {
        {18, {"r", "R"}}, {22, {"vt", "VT"}}, {26, {"p", "P"}}, {35, {"y", "Y"}}};
    GateDesk desk;
    for (const auto& [number, texts] : cases) {
        SetCellValue(desk.desk, 1, number - 1, texts.first);
        EXPECT_EQ(desk.desk.Grid.TextMatrix(1, number - 1), texts.second) << number;
        EXPECT_EQ(desk.desk.Grid.BackColor(1, number - 1), ChangedColour) << number;
    }
}

TEST(CellGateTest, WholeNumbersTakeEitherSeparatorAndRoundATieToTheEvenOne) {
    const std::pair<const char*, const char*> cases[] = {{"2.5", "2"}, {"2,5", "2"}, {"3.5", "4"},
                                                         {"3,5", "4"}, {"0.4", "0"}, {" 7 ", "7"}};
    for (const char separator : {'.', ','}) {
        GateDesk desk;
        desk.locale.separator = separator;
        for (const auto& [text, shown] : cases) {
            SetCellValue(desk.desk, 1, 24, text);
            EXPECT_EQ(desk.desk.Grid.TextMatrix(1, 24), shown) << separator << " '" << text << "'";
        }
    }
}

TEST(CellGateTest, OnlyTheVariablesOwnViewIsFlaggedAlsoForAHiddenAndForTheLastRow) {
    LoadedDesk desk;
    desk.Put(anApplication().Field(aField()).View("Day", 1).Field(aField()).View("Night", 2).Field(aField()));
    desk.Load();
    for (const std::int32_t row : {2, 3}) {
        desk.desk.Grid.SetRowHidden(2, true);
        SetCellValue(desk.desk, row, ColUsl, "7");
        EXPECT_EQ(desk.desk.Grid.TextMatrix(row, ColUsl), "7.000");
        EXPECT_TRUE(desk.g.gFiles->Ref(row).ChangesMade());
        EXPECT_EQ(desk.g.gFiles->Ref(3).ChangesMade(), row == 3);
    }
    EXPECT_FALSE(desk.g.gFiles->Ref(1).ChangesMade());
    EXPECT_EQ(desk.g.gFields->Ref(1).USLflag(), "C");
}

TEST(CellGateTest, TheRowsOwnNumberNamesTheVariable) {
    GateDesk desk;
    desk.desk.Grid.SetRowData(1, 2);
    SetCellValue(desk.desk, 1, ColName, "renamed");
    EXPECT_EQ(desk.g.gFields->Ref(2).Name(), "renamed");
    EXPECT_EQ(desk.g.gFields->Ref(1).Name(), "Weight");
}

TEST(CellGateTest, ALimitTypedForATextVariableIsStoredMarkedAndShowsNothing) {
    GateDesk desk;
    SetCellValue(desk.desk, 2, ColUsl, "5");
    EXPECT_EQ(desk.g.gFields->Ref(2).USLflag(), "F");
    EXPECT_EQ(desk.g.gFields->Ref(2).USL(), 5);
    EXPECT_EQ(desk.desk.Grid.TextMatrix(2, ColUsl), "");
    EXPECT_EQ(desk.desk.Grid.BackColor(2, ColUsl), ChangedColour);
}

TEST(CellGateTest, AnEmptiedLimitShowsBAndAnEmptiedBoundShowsNought) {
    GateDesk desk;
    SetCellValue(desk.desk, 1, ColUsl, "");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColUsl), "B");
    SetCellValue(desk.desk, 1, ColMax, "");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColMax), "0.00");
}

TEST(CellGateTest, TheViewsOwnColumnsKeepTheirText) {
    GateDesk desk;
    const Text folder(desk.desk.Grid.TextMatrix(1, 1));
    SetCellValue(desk.desk, 1, 1, "elsewhere");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, 1), folder);
    EXPECT_EQ(desk.desk.Grid.BackColor(1, 1), 0U);
    EXPECT_FALSE(desk.g.gFiles->Ref(1).ChangesMade());
}

TEST(CellGateTest, ATextThatIsAViewOfTheVeryCellIsTakenWhole) {
    GateDesk desk;
    SetCellValue(desk.desk, 1, ColName, desk.desk.Grid.TextMatrix(1, ColUsl));
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColName), "12.500");
    SetCellValue(desk.desk, 1, ColUsl, desk.desk.Grid.TextMatrix(1, ColUsl));
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColUsl), "12.500");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), 0U);
}

TEST(CellGateTest, AWholeNumberBeyondSixteenBitsIsRaisedAndMarksNothing) {
    GateDesk desk;
    try {
        SetCellValue(desk.desk, 1, 24, "40000");
        FAIL() << "stored";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOverflow);
    }
    EXPECT_EQ(desk.desk.Grid.BackColor(1, 24), 0U);
    EXPECT_FALSE(desk.g.gFiles->Ref(1).ChangesMade());
}

}  // namespace
}  // namespace kd
