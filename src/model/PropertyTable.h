#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "model/Columns.h"
#include "model/FieldData.h"

/// Every property of a variable, and every column of the grid, in one table: what the catalogue shows, what
/// may be typed, what a file holds and where the record keeps it.
namespace kd {

/// How the record keeps a value, and how it becomes the text of a cell or a file and back.
enum ValueKind : std::uint8_t {
    vkView,          // of the view: no record of a variable has it
    vkText,          // a TextSlot or FurtherTextSlot
    vkCapitals,      // the same; what a cell stores goes into capitals
    vkShort,         // a ShortSlot
    vkLong,          // a LongSlot, carried from file to file: no cell stores it
    vkBound,         // a BoundSlot
    vkLimit,         // index of the limit
    vkLimitMethod,   // a LongSlot, shown as one of LimitMethodWords
    vkTargetMethod,  // a LongSlot, shown as one of TargetMethodWords
    vkRules,         // apart, since baseline and current value differ from the start
    vkRelation,      // apart, since most records share it
};

/// What may be typed into a cell.
enum CellRule : std::uint8_t {
    crAny,
    crFromOne,     // a number of 1 or more
    crFromNought,  // a number of 0 or more
    crNumber,
    crLimit,  // a number, "C" or "B"
    crTypeLetters,
    crReportType,
    crLimitMethod,
    crTargetMethod,
    crRequired,
    crRuleLetters,
    crYesNo,
};

/// One row. A property without a column is carried from file to file; one without a key is in no file.
struct Property {
    std::int32_t column;     // 0 for none
    std::string_view title;  // in the header row
    char alignment;          // "L", "C" or "R"
    bool editable;
    bool visible;  // when no view option says otherwise
    CellRule rule;
    ValueKind kind;
    std::uint8_t slot;     // where the kind says
    std::string_view key;  // in upper case
    /// Letters of the types whose blocks have the line; "*" for any text as type, "V" for the same in the
    /// files of views alone.
    std::string_view types;
    /// Letters of the types whose blocks have the line one later, behind that of the next row.
    std::string_view typesOneLater = {};
};

/// The rows stand in the order of the lines in a file; columns go by their number, wherever they stand.
// clang-format off
inline constexpr auto PropertyTable = std::to_array<Property>({
    // column         title           align edit   show   may hold        kept as         slot            key             types
    {cnID,           "ID",            'R', false, false, crAny,          vkView,         0,              "",             ""},
    {cnFolder,       "Folder",        'L', false, false, crAny,          vkView,         0,              "",             ""},
    {cnFilename,     "Filename",      'L', false, true,  crAny,          vkView,         0,              "",             ""},
    {cnTitle,        "Title",         'L', false, true,  crAny,          vkView,         0,              "",             ""},
    {cnViewName,     "View Name",     'L', false, true,  crAny,          vkView,         0,              "",             ""},
    {cnViewNo,       "ViewNo",        'R', false, false, crAny,          vkView,         0,              "",             ""},
    {cnVarNo,        "VarNo",         'R', false, true,  crFromOne,      vkShort,        ssVariableNo,   "",             ""},
    {cnVariableName, "Variable Name", 'L', true,  true,  crAny,          vkText,         tsName,         "NAME",         "*"},
    {0,              "",              'R', false, false, crAny,          vkLong,         lsRawField,     "RAWFIELD",     "V"},
    {0,              "",              'R', false, false, crAny,          vkLong,         lsPivotField,   "PIVOTFIELD",   "V"},
    {0,              "",              'R', false, false, crAny,          vkLong,         lsStatistic,    "STATISTIC",    "V"},
    {cnXRef,         "XRef",          'L', true,  false, crAny,          vkText,         tsXRef,         "XREF",         "*"},
    {cnType,         "Type",          'L', false, true,  crTypeLetters,  vkCapitals,     tsFieldType,    "TYPE",         "*"},
    {cnLength,       "Length",        'R', false, true,  crFromOne,      vkShort,        ssLength,       "LENGTH",       "*"},
    {cnDecimals,     "Decimals",      'R', false, true,  crFromNought,   vkShort,        ssDecimals,     "DECIMALS",     "NARC"},
    {cnSample,       "Sample",        'R', true,  false, crFromNought,   vkShort,        ssSample,       "SAMPLE",       "NARCTPL"},
    {cnUCase,        "UCase",         'L', true,  false, crYesNo,        vkCapitals,     tsUpperCase,    "UCASE",        "TL", "P"},
    {cnRequired,     "Required",      'L', true,  false, crRequired,     vkCapitals,     tsRequired,     "REQUIRED",     "NATP"},
    {cnReportType,   "ReportType",    'L', true,  false, crReportType,   vkCapitals,     tsReportType,   "REPORTTYPE",   "NARC"},
    {cnLimitMethod,  "LimitMethod",   'L', true,  false, crLimitMethod,  vkLimitMethod,  lsLimitMethod,  "LIMITMETHOD",  "NARC"},
    {cnTargetMethod, "TargetMethod",  'L', true,  false, crTargetMethod, vkTargetMethod, lsTargetMethod, "TARGETMETHOD", "NARC"},
    {cnMax,          "Max",           'R', true,  true,  crNumber,       vkBound,        bsMaximum,      "MAX",          "NARC"},
    {cnUSL,          "USL",           'R', true,  true,  crLimit,        vkLimit,        0,              "USL",          "NARC"},
    {cnUCL,          "UCL",           'R', true,  true,  crLimit,        vkLimit,        1,              "UCL",          "NARC"},
    {cnUWL,          "UWL",           'R', true,  true,  crLimit,        vkLimit,        2,              "UWL",          "NARC"},
    {cnTGT,          "TGT",           'R', true,  true,  crLimit,        vkLimit,        3,              "TGT",          "NARC"},
    {cnLWL,          "LWL",           'R', true,  true,  crLimit,        vkLimit,        4,              "LWL",          "NARC"},
    {cnLCL,          "LCL",           'R', true,  true,  crLimit,        vkLimit,        5,              "LCL",          "NARC"},
    {cnLSL,          "LSL",           'R', true,  true,  crLimit,        vkLimit,        6,              "LSL",          "NARC"},
    {cnMin,          "Min",           'R', true,  true,  crNumber,       vkBound,        bsMinimum,      "MIN",          "NARC"},
    {cnRules,        "Rules",         'L', true,  false, crRuleLetters,  vkRules,        0,              "RULES",        "NARC"},
    {cnInputFile,    "InputFile",     'L', true,  false, crAny,          vkText,         tsInputFile,    "INPUT",        "NARCTP"},
    {cnOutputFile,   "OutputFile",    'L', true,  false, crAny,          vkText,         tsOutputFile,   "OUTPUT",       "NARCTPL"},
    {0,              "",              'R', false, false, crAny,          vkShort,        ssAvgCount,     "#AVG",         "A"},
    {0,              "",              'R', false, false, crAny,          vkShort,        ssRange,        "RANGE",        "R"},
    {cnPopup,        "Popup",         'L', true,  false, crAny,          vkText,         tsPopup,        "POPUP",        "PL"},
    {0,              "",              'R', false, false, crAny,          vkShort,        ssCompData,     "COMPDATA",     "PL"},
    {0,              "",              'R', false, false, crAny,          vkShort,        ssKeyID,        "KEYID",        "PL"},
    {0,              "",              'R', false, false, crAny,          vkShort,        ssLookup,       "LOOKUP",       "L"},
    {cnUnits,        "Units",         'L', true,  false, crAny,          vkText,         tsUnits,        "UNITS",        "NARCTPL"},
    {cnCategory,     "Category",      'L', true,  false, crAny,          vkText,         tsCategory,     "CATEGORY",     "NARCTPL"},
    {cnHelpFile,     "HelpFile",      'L', true,  false, crAny,          vkText,         tsHelpFile,     "HELPFILE",     "NARCTPL"},
    {cnCalculation,  "Calculation",   'L', true,  false, crAny,          vkText,         tsCalculation,  "CALC",         "C"},
    {0,              "",              'L', false, false, crAny,          vkRelation,     0,              "RELATION",     "NARC"},
});
// clang-format on

/// Row of each column's number; the table holds one row for each.
inline constexpr auto RowOfColumn = [] {
    std::array<std::uint8_t, ColumnCount + 1> rows{};
    for (std::size_t row = 0; row < PropertyTable.size(); ++row) {
        rows[static_cast<std::size_t>(PropertyTable[row].column)] = static_cast<std::uint8_t>(row);
    }
    return rows;
}();

consteval bool EveryColumnHasOneRow() noexcept {
    std::int32_t found = 0;
    for (const Property& property : PropertyTable) {
        found += property.column != 0 ? 1 : 0;
    }
    bool all = found == ColumnCount;
    for (std::int32_t column = 1; column <= ColumnCount; ++column) {
        all = all && PropertyTable[RowOfColumn[static_cast<std::size_t>(column)]].column == column;
    }
    return all;
}
static_assert(EveryColumnHasOneRow(), "a column has no row, or two");
static_assert(LimitOf(LastLimitColumn) == LimitCount - 1, "limits and their columns differ");

consteval bool EveryLimitHasItsSlot() noexcept {
    bool all = true;
    for (const Property& property : PropertyTable) {
        const int limit = LimitOf(property.column);
        all = all && (property.kind == vkLimit ? property.slot == limit : limit == NoLimit);
    }
    return all;
}
static_assert(EveryLimitHasItsSlot(), "a limit's slot is not the index of its column");

/// What stands in a column, 1 to ColumnCount.
constexpr const Property& PropertyOf(std::int32_t column) noexcept {
    return PropertyTable[RowOfColumn[static_cast<std::size_t>(column)]];
}

}  // namespace kd
