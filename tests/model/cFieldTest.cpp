#include "model/cField.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "base/NumberTexts.h"
#include "fakes/TestMachine.h"
#include "model/FieldProperties.h"
#include "model/PropertyTable.h"
#include "model/modKDLimitDesk.h"

namespace kd {
namespace {

constexpr std::array<std::int32_t, 3> Modes{vmFile, vmRaw, vmGrid};

class cFieldTest : public testing::Test {
protected:
    cFieldTest() {
        field.SetFieldType("N");
        field.SetLength(6);
        field.SetDecimals(2);
    }

    Text Read(std::int32_t column, std::int32_t mode = vmGrid) const {
        return field.ValueText(column, mode, desk.locale);
    }
    void Write(std::int32_t column, std::string_view text) {
        field.SetValue(column, vmGrid, text, desk.platform);
    }
    std::int32_t ErrorOfWrite(std::int32_t column, std::string_view text) {
        try {
            Write(column, text);
        } catch (const cError& error) {
            return error.Number();
        }
        return 0;
    }
    std::int32_t ErrorOfRead(std::int32_t column, std::int32_t mode) const {
        try {
            (void)Read(column, mode);  // for its failure alone
        } catch (const cError& error) {
            return error.Number();
        }
        return 0;
    }

    TestMachine desk;
    cField field;
};

// --- the record
// ----------------------------------------------------------------------------------------------

TEST_F(cFieldTest, NewRecordHasItsDefaults) {
    const cField fresh;
    for (const FieldProperty& property : FieldProperties()) {
        EXPECT_EQ(property.get(fresh), property.newRecord) << property.name;
    }
    // A slot for each; a limit has two pairs; rules and relation are kept apart.
    constexpr std::size_t all =
        std::size_t{tsCount} + ssBehindLast + lsBehindLast + bsBehindLast + std::size_t{2} * LimitCount + 2;
    EXPECT_EQ(FieldProperties().size(), all) << "a slot has no line in FieldProperties.h";
}

TEST_F(cFieldTest, PlainPairsKeepWhatTheyAreGiven) {
    SetAll(field, 100);
    int n = 100;
    std::set<std::string> seen;
    for (const FieldProperty& property : FieldProperties()) {
        cField expected;
        property.set(expected, n++);
        EXPECT_EQ(property.get(field), property.get(expected)) << property.name;
        EXPECT_NE(property.get(field), property.newRecord) << property.name;
        seen.insert(property.get(field));
    }
    EXPECT_EQ(seen.size(), FieldProperties().size()) << "two pairs share one place";
    field.SetFieldType(" zz ");
    field.SetUSLflag("f");
    EXPECT_EQ(field.FieldType(), " zz ") << "unchecked";
    EXPECT_EQ(field.USLflag(), "f") << "unchecked";
}

TEST_F(cFieldTest, PairsOfTheLimitsStandInOrderUnderTheirIndex) {
    field.SetUSLflag("1");
    field.SetUCLflag("2");
    field.SetUWLflag("3");
    field.SetTGTflag("4");
    field.SetLWLflag("5");
    field.SetLCLflag("6");
    field.SetLSLflag("7");
    field.SetUSL(1);
    field.SetUCL(2);
    field.SetUWL(3);
    field.SetTGT(4);
    field.SetLWL(5);
    field.SetLCL(6);
    field.SetLSL(7);
    for (int i = 0; i < LimitCount; ++i) {
        EXPECT_EQ(field.LimitFlag(i), Digits(i + 1));
        EXPECT_EQ(field.Limit(i), i + 1);
        field.SetLimitFlag(i, "x" + Digits(i));
        field.SetLimit(i, 10.0 + i);
    }
    EXPECT_EQ(field.USLflag() + field.TGTflag() + field.LSLflag(), "x0x3x6");
    EXPECT_EQ(field.USL(), 10);
    EXPECT_EQ(field.TGT(), 13);
    EXPECT_EQ(field.LSL(), 16);
}

TEST_F(cFieldTest, ChangingACopyNeverChangesTheSource) {
    for (const FieldProperty& property : FieldProperties()) {
        cField source;
        SetAll(source, 100);
        cField copy;
        copy.CopyFrom(source);
        const auto before = AllOf(source);
        EXPECT_EQ(AllOf(copy), before);

        property.set(copy, 999);
        EXPECT_EQ(AllOf(source), before) << property.name;
        cField expected;
        SetAll(expected, 100);
        property.set(expected, 999);
        EXPECT_EQ(AllOf(copy), AllOf(expected)) << property.name;
    }
}

TEST_F(cFieldTest, ChangingTheSourceNeverChangesACopy) {
    for (const FieldProperty& property : FieldProperties()) {
        cField source;
        SetAll(source, 100);
        cField first;
        first.CopyFrom(source);
        cField second;
        second.CopyFrom(first);
        const auto before = AllOf(source);

        property.set(source, 999);
        property.set(first, 998);
        EXPECT_EQ(AllOf(second), before) << property.name;
        EXPECT_NE(property.get(first), property.get(source)) << property.name;
    }
}

TEST_F(cFieldTest, ARecordThatSharesItsValuesNoMoreIsChangedInPlace) {
    cField copy;
    copy.CopyFrom(field);
    copy.SetName("a");
    EXPECT_NE(&copy.Data(), &field.Data());
    const FieldData* const own = &copy.Data();
    copy.SetName("b");
    EXPECT_EQ(&copy.Data(), own);
    EXPECT_EQ(copy.Name(), "b");
}

TEST_F(cFieldTest, EveryWriteToACellLeavesTheTwinAlone) {
    for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
        cField source;
        source.SetFieldType("N");
        source.SetLength(8);
        cField copy;
        copy.CopyFrom(source);
        const auto before = AllOf(source);
        const Text text = column == cnLimitMethod ? "HighAverage" : column == cnTargetMethod ? "Calc" : "3";
        copy.SetValue(column, vmGrid, text, desk.platform);
        EXPECT_EQ(AllOf(source), before) << column;
        EXPECT_NE(AllOf(copy), before) << column;
    }
}

TEST_F(cFieldTest, CopyFromItselfAndCopyOfAChangedCopyHold) {
    SetAll(field, 5);
    const auto before = AllOf(field);
    field.CopyFrom(field);
    EXPECT_EQ(AllOf(field), before);
    {
        cField copy;
        copy.CopyFrom(field);
        copy.SetName("gone with the copy");
    }
    EXPECT_EQ(AllOf(field), before);
}

TEST_F(cFieldTest, CopyFieldValuesCopiesEveryProperty) {
    cField source;
    SetAll(source, 100);
    cField target;
    SetAll(target, 500);
    modKDLimitDesk::CopyFieldValues(source, target);
    EXPECT_EQ(AllOf(target), AllOf(source));
}

// --- types
// ---------------------------------------------------------------------------------------------------

TEST_F(cFieldTest, FieldWithoutTypeCountsAsNumeric) {
    struct Case {
        const char* type;
        bool numeric;
    };
    const Case cases[] = {{"N", true},   {"A", true},  {"R", true},    {"C", true},
                          {"T", false},  {"P", false}, {"L", false},   {"n", false},
                          {"", true},    {"AR", true}, {"NARC", true}, {"NR", false},
                          {"RA", false}, {"X", false}, {" ", false},   {"#", false}};
    for (const Case& c : cases) {
        EXPECT_EQ(IsNumericType(c.type), c.numeric) << "'" << c.type << "'";
        field.SetFieldType(c.type);
        field.SetUSLflag("F");
        field.SetUSL(12.5);
        for (const std::int32_t mode : Modes) {
            for (const std::int32_t column : {cnMax, cnUSL, cnUCL, cnUWL, cnTGT, cnLWL, cnLCL, cnLSL, cnMin,
                                              cnLimitMethod, cnTargetMethod}) {
                EXPECT_EQ(!Read(column, mode).empty(), c.numeric) << "'" << c.type << "' " << column;
            }
        }
    }
}

TEST_F(cFieldTest, TextVariableReadsEmptyWhateverItsLimitsHold) {
    field.SetFieldType("T");
    field.SetUSLflag("F");
    field.SetUSL(3);
    field.SetUCLflag("B");
    field.SetMaximum(9);
    field.SetLimitMethod(2);
    field.SetDecimals(9);  // a mask that would be impossible
    field.SetVariableNo(4);
    field.SetName("width");
    field.SetXRef("x1");
    for (const std::int32_t mode : Modes) {
        for (const std::int32_t column :
             {cnMax, cnUSL, cnUCL, cnUWL, cnTGT, cnLWL, cnLCL, cnLSL, cnMin, cnLimitMethod, cnTargetMethod}) {
            EXPECT_EQ(Read(column, mode), "") << column;
        }
        EXPECT_EQ(Read(cnVarNo, mode), "4");
        EXPECT_EQ(Read(cnVariableName, mode), "width");
        EXPECT_EQ(Read(cnType, mode), "T");
        EXPECT_EQ(Read(cnLength, mode), "6");
        EXPECT_EQ(Read(cnDecimals, mode), "9");
        EXPECT_EQ(Read(cnXRef, mode), "x1");
        EXPECT_EQ(Read(cnReportType, mode), "V");
    }
}

TEST_F(cFieldTest, LimitTypedForATextVariableIsStoredAndShowsNothing) {
    field.SetFieldType("T");
    Write(cnUSL, "3.5");
    Write(cnMax, "7");
    EXPECT_EQ(field.USLflag(), "F");
    EXPECT_EQ(field.USL(), 3.5);
    EXPECT_EQ(field.Maximum(), 7);
    EXPECT_EQ(Read(cnUSL), "");
    EXPECT_EQ(Read(cnMax), "");
}

// --- reading
// -------------------------------------------------------------------------------------------------

/// What each column reads, for a record of which every column holds something of its own.
struct Column {
    std::int32_t number;
    const char* file;
    const char* raw;
    const char* grid;  // under a locale with ","
    bool numericOnly;
};
constexpr Column Columns[] = {
    {cnVarNo, "71", "71", "71", false},
    {cnVariableName, "a name", "a name", "a name", false},
    {cnMax, "99.50", "99.50", "99,50", true},
    {cnUSL, "F12.500", "12.500", "12,500", true},
    {cnUCL, "C", "C", "C", true},
    {cnUWL, "B", "B", "B", true},
    {cnTGT, "F.500", ".500", ",500", true},
    {cnLWL, "F-.250", "-.250", "-,250", true},
    {cnLCL, "", "", "", true},
    {cnLSL, "F0.000", "0.000", "0,000", true},
    {cnMin, "-1.25", "-1.25", "-1,25", true},
    {cnType, "N", "N", "N", false},
    {cnLength, "6", "6", "6", false},
    {cnDecimals, "2", "2", "2", false},
    {cnXRef, "x.1", "x.1", "x.1", false},
    {cnReportType, "A10", "A10", "A10", false},
    {cnLimitMethod, "4", "LowAverage", "LowAverage", true},
    {cnTargetMethod, "1", "Calc", "Calc", true},
    {cnSample, "-5", "-5", "-5", false},
    {cnRequired, "P", "P", "P", false},
    {cnCategory, "c.1", "c.1", "c.1", false},
    {cnUnits, "mm", "mm", "mm", false},
    {cnRules, "AC", "AC", "AC", false},
    {cnPopup, "p.1", "p.1", "p.1", false},
    {cnInputFile, "in.txt", "in.txt", "in.txt", false},
    {cnOutputFile, "out.txt", "out.txt", "out.txt", false},
    {cnHelpFile, "help.htm", "help.htm", "help.htm", false},
    {cnCalculation, "V1*1.5", "V1*1.5", "V1*1.5", false},
    {cnUCase, "Y", "Y", "Y", false},
};

TEST(ColumnsTest, EveryColumnOfTheVariableIsReadHere) {
    for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
        const auto isRead = [column](const Column& c) { return c.number == column; };
        EXPECT_EQ(std::count_if(std::begin(Columns), std::end(Columns), isRead), 1)
            << PropertyOf(column).title;
    }
}

void FillColumns(cField& field) {
    field.SetVariableNo(71);
    field.SetName("a name");
    field.SetMaximum(99.5);
    field.SetUSLflag("F");
    field.SetUSL(12.5);
    field.SetUCLflag("C");
    field.SetUCL(3);
    field.SetUWLflag("B");
    field.SetUWL(4);
    field.SetTGTflag("F");
    field.SetTGT(0.5);
    field.SetLWLflag("F");
    field.SetLWL(-0.25);
    field.SetLCLflag("x");
    field.SetLCL(5);
    field.SetLSLflag("F");
    field.SetMinimum(-1.25);
    field.SetXRef("x.1");
    field.SetReportType("A10");
    field.SetLimitMethod(4);
    field.SetTargetMethod(1);
    field.SetSample(-5);
    field.SetRequired("P");
    field.SetCategory("c.1");
    field.SetUnits("mm");
    field.SetRules("AC");
    field.SetPopup("p.1");
    field.SetInputFile("in.txt");
    field.SetOutputFile("out.txt");
    field.SetHelpFile("help.htm");
    field.SetCalculation("V1*1.5");
    field.SetUpperCase("Y");
}

TEST_F(cFieldTest, EveryColumnInEveryModeForEveryType) {
    FillColumns(field);
    desk.locale.separator = ',';
    for (const char* const type : {"N", "A", "R", "C", "", "AR", "T", "P", "L", "n"}) {
        field.SetFieldType(type);
        for (const Column& c : Columns) {
            const bool empty = c.numericOnly && !IsNumericType(type);
            const auto expected = [&](const char* text) {
                return c.number == cnType ? Text(type) : empty ? Text() : Text(text);
            };
            EXPECT_EQ(Read(c.number, vmFile), expected(c.file))
                << "type '" << type << "' column " << c.number;
            EXPECT_EQ(Read(c.number, vmRaw), expected(c.raw)) << "type '" << type << "' column " << c.number;
            EXPECT_EQ(Read(c.number, vmGrid), expected(c.grid))
                << "type '" << type << "' column " << c.number;
        }
    }
}

TEST_F(cFieldTest, NumbersStayNumbersInTheRawModeAlone) {
    FillColumns(field);
    const std::map<std::int32_t, std::int16_t> numbers{
        {cnVarNo, 71}, {cnLength, 6}, {cnDecimals, 2}, {cnSample, -5}};
    for (std::int32_t column = 1; column <= ColumnCount + 5; ++column) {
        for (const std::int32_t mode : Modes) {
            const FieldValue value = field.Value(column, mode, desk.locale);
            if (mode == vmRaw && numbers.count(column) != 0) {
                ASSERT_TRUE(std::holds_alternative<std::int16_t>(value)) << column;
                EXPECT_EQ(std::get<std::int16_t>(value), numbers.at(column)) << column;
            } else {
                ASSERT_TRUE(std::holds_alternative<Text>(value)) << column << " mode " << mode;
                EXPECT_EQ(std::get<Text>(value), Read(column, mode)) << column << " mode " << mode;
            }
        }
    }
}

TEST_F(cFieldTest, OtherColumnsAndModesReadEmpty) {
    FillColumns(field);
    for (const std::int32_t column : {-1, 0, 1, 2, 3, 4, 5, 6, ColumnCount + 1, 100, 2147483647}) {
        for (const std::int32_t mode : Modes) {
            EXPECT_EQ(Read(column, mode), "") << column;
        }
    }
    for (const std::int32_t mode : {-2, 2, 17}) {
        for (std::int32_t column = 1; column <= ColumnCount + 1; ++column) {
            EXPECT_EQ(Read(column, mode), "") << column << " mode " << mode;
            EXPECT_EQ(std::get<Text>(field.Value(column, mode, desk.locale)), "") << column;
        }
    }
}

TEST_F(cFieldTest, AppendValueAppendsAndLocalisesItsOwnTextAlone) {
    desk.locale.separator = ',';
    field.SetMaximum(1.5);
    Text text = "1.0\t";
    field.AppendValue(cnMax, vmGrid, desk.locale, text);
    EXPECT_EQ(text, "1.0\t1,50");
}

TEST_F(cFieldTest, MethodsReadAsWordsOrDigits) {
    struct Case {
        std::int32_t number;
        const char* limit;
        const char* target;
    };
    const Case cases[] = {{0, "Population", "Fixed"},
                          {1, "MrEstimate", "Calc"},
                          {2, "LowVariation", ""},
                          {3, "HighVariation", ""},
                          {4, "LowAverage", ""},
                          {5, "HighAverage", ""},
                          {6, "", ""},
                          {-1, "", ""},
                          {70000, "", ""}};
    for (const Case& c : cases) {
        field.SetLimitMethod(c.number);
        field.SetTargetMethod(c.number);
        EXPECT_EQ(Read(cnLimitMethod, vmGrid), c.limit) << c.number;
        EXPECT_EQ(Read(cnLimitMethod, vmRaw), c.limit) << c.number;
        EXPECT_EQ(Read(cnLimitMethod, vmFile), Digits(c.number));
        EXPECT_EQ(Read(cnTargetMethod, vmGrid), c.target) << c.number;
        EXPECT_EQ(Read(cnTargetMethod, vmRaw), c.target) << c.number;
        EXPECT_EQ(Read(cnTargetMethod, vmFile), Digits(c.number));
    }
}

TEST_F(cFieldTest, AMethodsWordIsKnownInTheCodePagesUpperCase) {
    field.SetTargetMethod(1);
    desk.locale.page = 1254;
    Write(cnTargetMethod,
          "f\xC4\xB1xed");  // with the letter i without its dot, whose capital is the plain one
    EXPECT_EQ(Read(cnTargetMethod), "Fixed");
    Write(cnLimitMethod, "Mrest\xC4\xB1mate");
    EXPECT_EQ(Read(cnLimitMethod), "MrEstimate");
}

TEST_F(cFieldTest, FixedLimitShowsOneDecimalMoreThanItsVariable) {
    struct Case {
        const char* label;
        std::int16_t length;
        std::int16_t decimals;
        double value;
        const char* limit;  // "!" for error 5
        const char* bound;
    };
    const Case cases[] = {
        {"everyday", 6, 2, 12.5, "12.500", "12.50"},
        {"without decimals", 6, 0, 12.5, "12.5", "13"},
        {"negative tie of a bound", 6, 0, -2.5, "-2.5", "-3"},
        {"half a thousandth", 6, 2, 0.0005, ".001", "0.00"},
        {"zero", 6, 2, 0, "0.000", "0.00"},
        {"below 1", 6, 2, 0.5, ".500", ".50"},
        {"too wide", 6, 2, 12345.5, "345.500", "345.50"},
        {"sign lost", 6, 2, -345.5, "345.500", "345.50"},
        {"leading digits lost", 3, 1, 1234, "4.00", "4.0"},
        {"all places used, without decimals", 3, 0, 123.4, "123.4", "123"},
        {"one place wider without decimals", 3, 0, 1234.5, "234.5", "235"},
        {"no length", 0, 0, 12.5, ".5", ""},
        {"one place", 1, 0, 5, "5.0", "5"},
        {"point first", 3, 2, 1.234, ".234", ".23"},
        {"no place for the point", 2, 2, 1.5, "!", "!"},
        {"decimals beyond the length", 2, 9, 1.5, "!", "!"},
        {"no length and decimals", 0, 1, 1.5, "!", "!"},
        {"negative length", -1, 0, 1.5, "!", "!"},
        {"negative length and decimals", -3, -2, 1.5, "!", "!"},
        {"negative length, room for a bare point", -1, -1, 1.5, "!", "!"},
        {"decimals of minus 1: a bare point", 6, -1, 12.5, "13.", "13"},
        {"decimals of minus 1, a number too wide", 3, -1, 1234567.0, "4567.", "567"},
        {"decimals further below: no point", 6, -2, 12.5, "13", "13"},
        {"widest decimals", 32767, 32766, 0.5, nullptr, nullptr},
        {"exponent", 20, 2, 1e15, "1E+15.000", "1E+15.00"},
        {"exponent with a point of its own", 20, 2, 1.5e20, "1.5E+", "1.5E"},
    };
    for (const Case& c : cases) {
        field.SetLength(c.length);
        field.SetDecimals(c.decimals);
        field.SetTGTflag("F");
        field.SetTGT(c.value);
        field.SetMaximum(c.value);
        field.SetMinimum(c.value);
        if (c.limit == nullptr) {
            EXPECT_EQ(Read(cnTGT).size(), 32768U) << c.label;
            continue;
        }
        if (Text(c.limit) == "!") {
            for (const std::int32_t mode : Modes) {
                for (const std::int32_t column : {cnMax, cnTGT, cnMin}) {
                    EXPECT_EQ(ErrorOfRead(column, mode), errInvalidArgument) << c.label << " " << column;
                }
            }
            continue;
        }
        EXPECT_EQ(Read(cnTGT), c.limit) << c.label;
        EXPECT_EQ(Read(cnTGT, vmRaw), c.limit) << c.label;
        EXPECT_EQ(Read(cnTGT, vmFile), Text("F") + c.limit) << c.label;
        for (const std::int32_t column : {cnMax, cnMin}) {
            EXPECT_EQ(Read(column), c.bound) << c.label;
            EXPECT_EQ(Read(column, vmFile), c.bound) << c.label;
        }
    }
}

TEST_F(cFieldTest, AMaskWithoutPlaceForThePointTellsWhichTextItWasFor) {
    field.SetLength(2);
    field.SetTGTflag("F");
    for (const std::int32_t column : {cnTGT, cnMax, cnMin}) {
        try {
            (void)Read(column);
            ADD_FAILURE() << column;
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errInvalidArgument) << column;
            EXPECT_EQ(error.Source(), column == cnTGT ? "cField.FormatLimit" : "cField.FormatBound");
        }
    }
}

TEST_F(cFieldTest, LettersNeedNoMask) {
    field.SetLength(2);
    field.SetDecimals(5);
    for (const char* const flag : {"C", "B"}) {
        field.SetUSLflag(flag);
        for (const std::int32_t mode : Modes) {
            EXPECT_EQ(Read(cnUSL, mode), flag);
        }
    }
    field.SetUSLflag("");
    EXPECT_EQ(Read(cnUSL), "") << "no kind, no text";
    field.SetUSLflag("f");
    EXPECT_EQ(Read(cnUSL), "") << "the kind is exact";
}

TEST_F(cFieldTest, EveryPointIsLocalisedInTheGridAlone) {
    desk.locale.separator = ',';
    Write(cnUSL, "1.5");
    EXPECT_EQ(Read(cnUSL), "1,500");
    EXPECT_EQ(Read(cnUSL, vmFile), "F1.500");
    EXPECT_EQ(Read(cnUSL, vmRaw), "1.500");
    desk.locale.separator = '.';
    EXPECT_EQ(Read(cnUSL), "1.500") << "the locale is asked afresh";
}

// --- writing
// -------------------------------------------------------------------------------------------------

TEST_F(cFieldTest, WriteInAnotherModeSaysSoAndChangesNothing) {
    FillColumns(field);
    const auto before = AllOf(field);
    for (const std::int32_t mode : {-1, 0, 2, -2}) {
        for (const std::int32_t column : std::initializer_list<std::int32_t>{
                 cnID, cnVarNo, cnVariableName, cnUSL, cnRules, ColumnCount + 1}) {
            desk.toolkit.ExpectBox("Not supported!");
            field.SetValue(column, mode, "1", desk.platform);
            EXPECT_EQ(AllOf(field), before);
        }
    }
}

TEST_F(cFieldTest, WriteToAnotherColumnIsIgnored) {
    FillColumns(field);
    const auto before = AllOf(field);
    for (const std::int32_t column : {-1, 0, 1, 2, 3, 4, 5, 6, ColumnCount + 1, 1000}) {
        Write(column, "not even a number");
        EXPECT_EQ(AllOf(field), before) << column;
    }
}

TEST_F(cFieldTest, EveryColumnIsWrittenToItsOwnPropertyAlone) {
    const std::map<std::int32_t, std::string> properties{{cnVarNo, "VariableNo"},
                                                         {cnVariableName, "Name"},
                                                         {cnMax, "Maximum"},
                                                         {cnMin, "Minimum"},
                                                         {cnType, "FieldType"},
                                                         {cnLength, "Length"},
                                                         {cnDecimals, "Decimals"},
                                                         {cnXRef, "XRef"},
                                                         {cnReportType, "ReportType"},
                                                         {cnLimitMethod, "LimitMethod"},
                                                         {cnTargetMethod, "TargetMethod"},
                                                         {cnSample, "Sample"},
                                                         {cnRequired, "Required"},
                                                         {cnCategory, "Category"},
                                                         {cnUnits, "Units"},
                                                         {cnRules, "Rules"},
                                                         {cnPopup, "Popup"},
                                                         {cnInputFile, "InputFile"},
                                                         {cnOutputFile, "OutputFile"},
                                                         {cnHelpFile, "HelpFile"},
                                                         {cnCalculation, "Calculation"},
                                                         {cnUCase, "UpperCase"}};
    for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
        EXPECT_EQ(properties.count(column), LimitOf(column) == NoLimit ? 1U : 0U) << PropertyOf(column).title;
    }
    for (const auto& [column, name] : properties) {
        const Text text = column == cnLimitMethod ? "highaverage" : column == cnTargetMethod ? "CALC" : "3";
        const Text stored = column == cnLimitMethod ? "5" : column == cnTargetMethod ? "1" : "3";
        cField fresh;
        const auto before = AllOf(fresh);
        const auto isNamed = [&wanted = name](const FieldProperty& each) { return each.name == wanted; };
        EXPECT_TRUE(std::ranges::any_of(FieldProperties(), isNamed)) << name;
        fresh.SetValue(column, vmGrid, text, desk.platform);
        const auto after = AllOf(fresh);
        std::string written(name);
        written.append("=").append(stored);
        for (std::size_t i = 0; i < before.size(); ++i) {
            const std::string& property = FieldProperties()[i].name;
            EXPECT_EQ(after[i], property == name ? written : before[i]) << column;
        }
    }
}

TEST_F(cFieldTest, WholeNumberColumns) {
    struct Case {
        const char* text;
        int stored;
        std::int32_t error;
    };
    const Case cases[] = {
        {"12", 12, 0},
        {" 12 ", 12, 0},
        {"-3", -3, 0},
        {"2.5", 2, 0},
        {"2,5", 2, 0},
        {"3.5", 4, 0},
        {"3,5", 4, 0},
        {"-2.5", -2, 0},
        {"1E3", 1000, 0},
        {"32767", 32767, 0},
        {"-32768", -32768, 0},
        {"32767.4", 32767, 0},
        {"32767.5", 0, errOverflow},
        {"32768", 0, errOverflow},
        {"-32769", 0, errOverflow},
        {"1E300", 0, errOverflow},
        {"", 0, errTypeMismatch},
        {" ", 0, errTypeMismatch},
        {"abc", 0, errTypeMismatch},
        {"1.2.3", 0, errTypeMismatch},
        {"1,234.5", 0, errTypeMismatch},
        {"1E400", 0, errTypeMismatch},
    };
    for (const char separator : {'.', ','}) {
        desk.locale.separator = separator;
        for (const std::int32_t column : {cnVarNo, cnLength, cnDecimals, cnSample}) {
            for (const Case& c : cases) {
                cField fresh;
                fresh.SetValue(column, vmGrid, "77", desk.platform);
                std::int32_t error = 0;
                try {
                    fresh.SetValue(column, vmGrid, c.text, desk.platform);
                } catch (const cError& failure) {
                    error = failure.Number();
                }
                EXPECT_EQ(error, c.error) << "'" << c.text << "' in " << column;
                EXPECT_EQ(fresh.ValueText(column, vmGrid, desk.locale), Digits(c.error == 0 ? c.stored : 77))
                    << "'" << c.text << "' in " << column;
            }
        }
    }
}

TEST_F(cFieldTest, BoundColumns) {
    struct Case {
        const char* text;
        double stored;
        bool error;
    };
    const Case cases[] = {{"", 0, false},        {"   ", 0, false},       {"12.5", 12.5, false},
                          {"12,5", 12.5, false}, {" -1,5 ", -1.5, false}, {"1E2", 100, false},
                          {",5", 0.5, false},    {".5", 0.5, false},      {"1,234.5", 0, true},
                          {"abc", 0, true},      {"1,2,3", 0, true},      {"C", 0, true}};
    for (const char separator : {'.', ','}) {
        desk.locale.separator = separator;
        for (const std::int32_t column : {cnMax, cnMin}) {
            for (const Case& c : cases) {
                field.SetMaximum(77);
                field.SetMinimum(77);
                EXPECT_EQ(ErrorOfWrite(column, c.text), c.error ? errTypeMismatch : 0)
                    << "'" << c.text << "'";
                EXPECT_EQ(column == cnMax ? field.Maximum() : field.Minimum(), c.error ? 77 : c.stored)
                    << "'" << c.text << "'";
                EXPECT_EQ(column == cnMax ? field.Minimum() : field.Maximum(), 77) << "the other bound";
            }
        }
    }
}

TEST_F(cFieldTest, EmptyBoundIsZeroAndEmptyLimitIsBlank) {
    field.SetMaximum(5);
    Write(cnMax, "");
    EXPECT_EQ(field.Maximum(), 0);
    EXPECT_EQ(Read(cnMax), "0.00");
    field.SetUSLflag("F");
    field.SetUSL(5);
    Write(cnUSL, "");
    EXPECT_EQ(field.USLflag(), "B");
    EXPECT_EQ(field.USL(), 0);
    EXPECT_EQ(Read(cnUSL), "B");
}

TEST_F(cFieldTest, LimitColumns) {
    struct Case {
        const char* label;
        const char* text;
        const char* flag;
        double number;
        bool error;
    };
    const Case cases[] = {
        {"empty is blank", "", "B", 0, false},
        {"letter", "C", "C", 0, false},
        {"small letter", "c", "C", 0, false},
        {"blank letter", "B", "B", 0, false},
        {"small blank letter", "b", "B", 0, false},
        {"blanks are a fixed zero", "  ", "F", 0, false},
        {"number", "12.5", "F", 12.5, false},
        {"number with a comma", "12,5", "F", 12.5, false},
        {"all its decimals", "1.23456789", "F", 1.23456789, false},
        {"blanks around a number", " 7 ", "F", 7, false},
        {"exponent", "-1.5E2", "F", -150, false},
        {"blanks around a letter", " b ", "F", 77, true},
        {"no F in front", "F5", "F", 77, true},
        {"mixed separators", "1,234.5", "F", 77, true},
        {"two separators", "1,234,567", "F", 77, true},
        {"letters", "CB", "F", 77, true},
    };
    for (const char separator : {'.', ','}) {
        desk.locale.separator = separator;
        for (int index = 0; index < LimitCount; ++index) {
            for (const Case& c : cases) {
                for (int i = 0; i < LimitCount; ++i) {
                    field.SetLimitFlag(i, "C");
                    field.SetLimit(i, 77);
                }
                EXPECT_EQ(ErrorOfWrite(LimitColumn(index), c.text), c.error ? errTypeMismatch : 0) << c.label;
                for (int i = 0; i < LimitCount; ++i) {
                    EXPECT_EQ(field.LimitFlag(i), i == index ? c.flag : "C") << c.label;
                    EXPECT_EQ(field.Limit(i), i == index ? c.number : 77) << c.label;
                }
                EXPECT_EQ(field.Rules(), "") << c.label;
            }
        }
    }
}

TEST_F(cFieldTest, FailedNumberLeavesTheOldOneBehindAFixedLimit) {
    Write(cnUSL, "12.5");
    Write(cnUSL, "b");
    field.SetUSL(9);
    EXPECT_EQ(ErrorOfWrite(cnUSL, "1.2.3"), errTypeMismatch);
    EXPECT_EQ(field.USLflag(), "F");
    EXPECT_EQ(field.USL(), 9);
}

TEST_F(cFieldTest, NumberKeepsTheDecimalsThatTheMaskDoesNotShow) {
    Write(cnUSL, "1.23456");
    EXPECT_EQ(Read(cnUSL), "1.235");
    EXPECT_EQ(field.USL(), 1.23456);
    Write(cnUSL, Read(cnUSL));
    EXPECT_EQ(field.USL(), 1.235) << "the shown text written back loses them";
}

TEST_F(cFieldTest, TextColumnsAreStoredUnchanged) {
    for (const std::int32_t column : {cnVariableName, cnXRef, cnCategory, cnUnits, cnRules, cnPopup,
                                      cnInputFile, cnOutputFile, cnHelpFile, cnCalculation}) {
        for (const char* const text : {" a,B.c ", "", "\u00E4\u00DF", "1,5", "C"}) {
            Write(column, text);
            EXPECT_EQ(Read(column), text) << column;
            EXPECT_EQ(Read(column, vmFile), text) << column;
        }
    }
}

TEST_F(cFieldTest, FourColumnsAreStoredInUpperCase) {
    for (const std::int32_t column : {cnType, cnReportType, cnRequired, cnUCase}) {
        Write(column, " vt1 ");
        EXPECT_EQ(Read(column), " VT1 ") << column;
        Write(column, "\u00E4\u00DF\u00B5y");
        EXPECT_EQ(Read(column), "\u00C4\u00DF\u00B5Y") << column << ": letter for letter";
        Write(column, "");
        EXPECT_EQ(Read(column), "") << column;
    }
}

TEST_F(cFieldTest, MethodColumns) {
    struct Case {
        const char* text;
        std::int32_t limit;
        std::int32_t target;
    };
    const Case cases[] = {
        {"Population", 0, 77},  {"MRESTIMATE", 1, 77},  {"lowvariation", 2, 77}, {"HighVariation", 3, 77},
        {"LowAverage", 4, 77},  {"HIGHaverage", 5, 77}, {"Fixed", 77, 0},        {"cAlC", 77, 1},
        {"", 77, 77},           {"2", 77, 77},          {" Population", 77, 77}, {"Fixed ", 77, 77},
        {"Populations", 77, 77}};
    for (const Case& c : cases) {
        field.SetLimitMethod(77);
        field.SetTargetMethod(77);
        Write(cnLimitMethod, c.text);
        Write(cnTargetMethod, c.text);
        EXPECT_EQ(field.LimitMethod(), c.limit) << c.text;
        EXPECT_EQ(field.TargetMethod(), c.target) << c.text;
    }
}

TEST_F(cFieldTest, WhatEveryCellShowsCanBeWrittenBack) {
    FillColumns(field);
    for (const char separator : {'.', ','}) {
        desk.locale.separator = separator;
        for (std::int32_t column = FirstVariableColumn; column <= ColumnCount; ++column) {
            if (column == cnLCL) {
                continue;  // a limit of no kind shows nothing, and comes back as blank
            }
            const Text shown = Read(column);
            Write(column, shown);
            EXPECT_EQ(Read(column), shown) << column;
        }
    }
}

// --- ParseGridDouble
// -----------------------------------------------------------------------------------------

TEST_F(cFieldTest, MixedSeparatorsHaveTheirOwnWords) {
    for (const char separator : {'.', ','}) {
        desk.locale.separator = separator;
        for (const char* const text : {"1,234.5", "1.234,5", ".,", "a.b,c"}) {
            try {
                (void)cField::ParseGridDouble(text, desk.locale);
                ADD_FAILURE() << text;
            } catch (const cError& error) {
                EXPECT_EQ(error.Number(), 13) << text;
                EXPECT_EQ(error.Source(), "cField.ParseGridDouble") << text;
                EXPECT_EQ(error.Description(),
                          "Invalid decimal format: mixed decimal separators are not allowed.")
                    << text;
            }
        }
        try {
            (void)cField::ParseGridDouble("abc", desk.locale);
            ADD_FAILURE();
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), 13);
            EXPECT_EQ(error.Description(), "Type mismatch");
        }
    }
}

TEST_F(cFieldTest, SeparatorIsAlwaysADecimalOne) {
    desk.locale.separator = '.';
    EXPECT_EQ(cField::ParseGridDouble("1,234", desk.locale), 1.234);
    EXPECT_EQ(cField::ParseGridDouble(" +1,5e1 ", desk.locale), 15);
    EXPECT_EQ(cField::ParseGridDouble("", desk.locale), 0);
    EXPECT_EQ(cField::ParseGridDouble("   ", desk.locale), 0);
    EXPECT_THROW((void)cField::ParseGridDouble("1,234,567", desk.locale), cError);
    EXPECT_THROW((void)cField::ParseGridDouble("\t", desk.locale), cError);
    desk.locale.separator = ',';
    EXPECT_EQ(cField::ParseGridDouble("1.234", desk.locale), 1.234);
    EXPECT_THROW((void)cField::ParseGridDouble("1.234.567", desk.locale), cError);
}

}  // namespace
}  // namespace kd
