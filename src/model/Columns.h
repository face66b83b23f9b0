#pragma once

#include <cstdint>

/// The numbers of the grid's columns, from 1. What stands in a column, PropertyTable.h says.
namespace kd {

/// A column keeps its number for good; its position on the screen, from 0, is one less. A new one comes last.
enum ColumnNumber : std::int32_t {
    cnID = 1,
    cnFolder = 2,
    cnFilename = 3,
    cnTitle = 4,
    cnViewName = 5,
    cnViewNo = 6,
    cnVarNo = 7,
    cnVariableName = 8,
    cnMax = 9,
    cnUSL = 10,
    cnUCL = 11,
    cnUWL = 12,
    cnTGT = 13,
    cnLWL = 14,
    cnLCL = 15,
    cnLSL = 16,
    cnMin = 17,
    cnType = 18,
    cnLength = 19,
    cnDecimals = 20,
    cnXRef = 21,
    cnReportType = 22,
    cnLimitMethod = 23,
    cnTargetMethod = 24,
    cnSample = 25,
    cnRequired = 26,
    cnCategory = 27,
    cnUnits = 28,
    cnRules = 29,
    cnPopup = 30,
    cnInputFile = 31,
    cnOutputFile = 32,
    cnHelpFile = 33,
    cnCalculation = 34,
    cnUCase = 35,
    cnBehindLast
};

/// Number of columns; a column's number is its position in gLabels.
inline constexpr std::int32_t ColumnCount = cnBehindLast - 1;

/// The columns before this one belong to the view, the others to the variable.
inline constexpr std::int32_t FirstVariableColumn = cnVarNo;
/// This column and those behind it are shown on request alone.
inline constexpr std::int32_t FirstFurtherColumn = cnXRef;

/// The seven limits, from top to bottom.
inline constexpr std::int32_t FirstLimitColumn = cnUSL;
inline constexpr std::int32_t LastLimitColumn = cnLSL;

/// Whether a column holds a value of the variable; false for a number that is no column's.
constexpr bool IsVariableColumn(std::int32_t column) noexcept {
    return column >= FirstVariableColumn && column <= ColumnCount;
}

inline constexpr int NoLimit = -1;
/// Index, from 0, of the limit in a column; NoLimit for any other column.
constexpr int LimitOf(std::int32_t column) noexcept {
    return column >= FirstLimitColumn && column <= LastLimitColumn ? column - FirstLimitColumn : NoLimit;
}
/// The column of a limit's index.
constexpr std::int32_t LimitColumn(int limit) noexcept {
    return FirstLimitColumn + limit;
}

}  // namespace kd
