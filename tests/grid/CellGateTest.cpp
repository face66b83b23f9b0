#include "grid/CellGate.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "fakes/Builders.h"
#include "model/PropertyTable.h"

namespace kd {
namespace {

constexpr std::int32_t ColUsl = cnUSL - 1;  // screen positions
constexpr std::int32_t ColMax = cnMax - 1;
constexpr std::int32_t ColName = cnVariableName - 1;
constexpr std::int32_t ColUcl = cnUCL - 1;
constexpr std::int32_t ColReportType = cnReportType - 1;
constexpr std::int32_t ColSample = cnSample - 1;

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
                            {cnVarNo, "1", true},
                            {cnVarNo, "0", false},
                            {cnVarNo, "", false},
                            {cnVarNo, " ", false},
                            {cnVarNo, "0.9", false},
                            {cnVarNo, "x", false},
                            {cnLength, "1", true},
                            {cnLength, "1,5", true},
                            {cnLength, "0", false},
                            {cnLength, "-1", false},
                            {cnLength, "", false},
                            // texts
                            {cnVariableName, "", true},
                            {cnVariableName, "anything <b>", true},
                            {cnXRef, "", true},
                            {cnCategory, "x", true},
                            {cnUnits, "\xC2\xB5g", true},
                            {cnPopup, "a|b", true},
                            {cnInputFile, "", true},
                            {cnOutputFile, "c", true},
                            {cnHelpFile, "h", true},
                            {cnCalculation, "{A}+1", true},
                            // bounds
                            {cnMax, "", false},
                            {cnMax, "1", true},
                            {cnMax, "-1,5", true},
                            {cnMax, "C", false},
                            {cnMin, "", false},
                            {cnMin, "1E3", true},
                            {cnMin, " 2 ", true},
                            {cnMin, " ", false},
                            {cnMin, "1.000,5", false},
                            // limits
                            {cnUSL, "", false},
                            {cnUSL, "C", true},
                            {cnUSL, "c", true},
                            {cnUCL, "b", true},
                            {cnUWL, "B", true},
                            {cnTGT, "1.5", true},
                            {cnLWL, "1,5", true},
                            {cnLCL, "1,234.5", false},
                            {cnLSL, "F1", false},
                            {cnUWL, "C", true},
                            {cnTGT, "C", true},
                            {cnTGT, "b", true},
                            {cnLWL, "c", true},
                            {cnLWL, "B", true},
                            {cnLCL, "C", true},
                            {cnLCL, "b", true},
                            {cnLSL, "c", true},
                            {cnLSL, "B", true},
                            {cnLSL, "-1,5", true},
                            {cnUSL, " B", false},
                            {cnUSL, " ", false},
                            {cnUSL, "1.2.3", false},
                            {cnUSL, "1\t", false},
                            {cnUSL, "1\n", false},
                            // type
                            {cnType, "N", true},
                            {cnType, "NA", true},
                            {cnType, "RCT", true},
                            {cnType, "n", false},
                            {cnType, "", false},
                            {cnType, "X", false},
                            {cnType, "#", false},
                            {cnType, "TN", false},
                            // at least 0
                            {cnDecimals, "0", true},
                            {cnDecimals, "-1", false},
                            {cnDecimals, "", false},
                            {cnSample, "0", true},
                            {cnSample, "5", true},
                            {cnSample, "-0.1", false},
                            // words
                            {cnReportType, "V", true},
                            {cnReportType, "vt", true},
                            {cnReportType, "A", true},
                            {cnReportType, "a", true},
                            {cnReportType, "A1", true},
                            {cnReportType, "a3", true},
                            {cnReportType, "A5", true},
                            {cnReportType, "A20", true},
                            {cnReportType, "a10", true},
                            {cnReportType, "A30", true},
                            {cnReportType, "a2", false},
                            {cnReportType, "", false},
                            {cnLimitMethod, "Population", true},
                            {cnLimitMethod, "MRESTIMATE", true},
                            {cnLimitMethod, "lowvariation", true},
                            {cnLimitMethod, "HighVariation", true},
                            {cnLimitMethod, "LowAverage", true},
                            {cnLimitMethod, "HighAverage", true},
                            {cnLimitMethod, "0", false},
                            {cnLimitMethod, "", false},
                            {cnTargetMethod, "fixed", true},
                            {cnTargetMethod, "CALC", true},
                            {cnTargetMethod, "1", false},
                            {cnTargetMethod, "", false},
                            {cnRequired, "y", true},
                            {cnRequired, "N", true},
                            {cnRequired, "p", true},
                            {cnRequired, "x", false},
                            {cnRequired, "", false},
                            {cnRules, "", true},
                            {cnRules, "A", true},
                            {cnRules, "ba", true},
                            {cnRules, "C", false},
                            {cnRules, "A B", false},
                            {cnRules, "\xC3\xA4", false},
                            {cnUCase, "Y", true},
                            {cnUCase, "n", true},
                            {cnUCase, "P", false},
                            {cnUCase, "", false},
                            // the view's own columns
                            {cnID, "x", true},
                            {cnViewNo, "", true}};
    GateDesk desk;
    std::set<std::int32_t> judged;
    for (const Judged& each : cases) {
        EXPECT_EQ(desk.Valid(each.number, each.text), each.valid)
            << desk.g.gLabels->Ref(each.number).Name() << " '" << each.text << "'";
        judged.insert(each.number);
    }
    for (std::int32_t number = FirstVariableColumn; number <= ColumnCount; ++number) {
        EXPECT_EQ(judged.count(number), 1U) << "nothing is typed into " << PropertyOf(number).title;
    }
}

TEST(CellGateTest, ARunOfTypeLettersPasses) {
    GateDesk desk;
    EXPECT_TRUE(desk.Valid(cnType, "NA"));
    EXPECT_TRUE(desk.Valid(cnType, "RCT"));
    EXPECT_FALSE(desk.Valid(cnType, "n"));
}

TEST(CellGateTest, TheColumnsNumberCountsNotItsPosition) {
    GateDesk desk;
    desk.desk.Grid.SetColData(0, cnUCase);
    EXPECT_FALSE(IsCellValueValid(desk.desk, 1, 0, "x"));
    for (const std::int32_t unknown : {0, ColumnCount + 1}) {
        desk.desk.Grid.SetColData(ColUsl, unknown);
        EXPECT_TRUE(IsCellValueValid(desk.desk, 1, ColUsl, "x")) << unknown;
    }
}

TEST(CellGateTest, RuleLettersAreCharactersInTheCodePagesUpperCase) {
    GateDesk desk;
    desk.g.gRuleLetters = "AB\xC3\x84";
    EXPECT_TRUE(desk.Valid(cnRules, "b\xC3\xA4"));
    EXPECT_FALSE(desk.Valid(cnRules, "\xC3\x96")) << "shares a byte with a letter of the catalogue";
}

TEST(CellGateTest, WordsAreComparedInTheCodePagesUpperCase) {
    GateDesk desk;
    const Text fixed = "f\xC4\xB1xed";  // with the letter i without its dot
    desk.locale.page = 1252;
    EXPECT_FALSE(desk.Valid(cnTargetMethod, fixed)) << "the page lacks the letter";
    desk.locale.page = 1254;
    EXPECT_TRUE(desk.Valid(cnTargetMethod, fixed)) << "its capital there is the plain one";
    EXPECT_TRUE(desk.Valid(cnLimitMethod, "Mrest\xC4\xB1mate"));
    EXPECT_FALSE(desk.Valid(cnLimitMethod, "Mrest\xC4\xB1mates"));
}

TEST(CellGateTest, TheOrderOfTheLimitsIsNotTestedAtTheCell) {
    GateDesk desk;
    EXPECT_TRUE(desk.Valid(cnUSL, "5000")) << "above Max";
    EXPECT_TRUE(desk.Valid(cnLSL, "5000")) << "LSL above USL";
}

TEST(CellGateTest, RuleLettersGoByTheCatalogue) {
    GateDesk desk;
    desk.g.gRuleLetters = "ABC";
    EXPECT_TRUE(desk.Valid(cnRules, "cab"));
    EXPECT_TRUE(desk.Valid(cnRules, "acb")) << "in any order";
    EXPECT_TRUE(desk.Valid(cnRules, "bb")) << "once or more often";
    EXPECT_FALSE(desk.Valid(cnRules, "d"));
    desk.g.gRuleLetters = "";
    EXPECT_FALSE(desk.Valid(cnRules, "A"));
    EXPECT_TRUE(desk.Valid(cnRules, ""));
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
    SetCellValue(desk.desk, 1, ColUcl, "c");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColUcl), "C");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUcl), ChangedColour) << "c over C";
}

TEST(CellGateTest, AnUntouchedEditWritesTheShownTextBackAndPutsReportTypeIntoUpperCase) {
    GateDesk desk;
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColReportType), "a10");
    SetCellValue(desk.desk, 1, ColReportType, "a10");
    EXPECT_EQ(desk.g.gFields->Ref(1).ReportType(), "A10");
    EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColReportType), "A10");
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColReportType), 0U) << "the given text equals the saved one";

    desk.g.gFields->Ref(1).SetUSL(12.50049);
    SetCellValue(desk.desk, 1, ColUsl, "12.500");
    EXPECT_EQ(desk.g.gFields->Ref(1).USL(), 12.5) << "digits beyond the mask are lost";
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColUsl), 0U) << "unmarked";
}

TEST(CellGateTest, FourColumnsAreStoredInUpperCaseAndMarkedByTheGivenCase) {
    const std::pair<std::int32_t, std::pair<const char*, const char*>> cases[] = {
        {cnType, {"r", "R"}}, {cnReportType, {"vt", "VT"}}, {cnRequired, {"p", "P"}}, {cnUCase, {"y", "Y"}}};
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
            SetCellValue(desk.desk, 1, ColSample, text);
            EXPECT_EQ(desk.desk.Grid.TextMatrix(1, ColSample), shown) << separator << " '" << text << "'";
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
        SetCellValue(desk.desk, 1, ColSample, "40000");
        FAIL() << "stored";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOverflow);
    }
    EXPECT_EQ(desk.desk.Grid.BackColor(1, ColSample), 0U);
    EXPECT_FALSE(desk.g.gFiles->Ref(1).ChangesMade());
}

}  // namespace
}  // namespace kd
