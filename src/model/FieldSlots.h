#pragma once

#include <cstdint>

/// Where a variable keeps its plain properties: a slot for each, counted from 0 within its width.
namespace kd {

/// The seven limits, from top to bottom: USL, UCL, UWL, TGT, LWL, LCL, LSL; indexes count from 0.
inline constexpr int LimitCount = 7;

/// Texts that have a pair of accessors.
enum TextSlot : std::uint8_t {
    tsFieldType,  // first, beside what a check of the limits reads
    tsName,
    tsXRef,
    tsUpperCase,
    tsReportType,
    tsRequired,
    tsInputFile,
    tsOutputFile,
    tsPopup,
    tsCalculation,
    tsUnits,
    tsCategory,
    tsHelpFile,
    tsBehindLast
};

/// Whole numbers of 16 bits.
enum ShortSlot : std::uint8_t {
    ssLength,
    ssDecimals,
    ssSample,
    ssAvgCount,
    ssLookup,
    ssCompData,
    ssKeyID,
    ssRange,
    ssVariableNo,
    ssBehindLast
};

/// Whole numbers of 32 bits.
enum LongSlot : std::uint8_t {
    lsFileID,
    lsRawField,
    lsPivotField,
    lsStatistic,
    lsLimitMethod,
    lsTargetMethod,
    lsBehindLast
};

/// The two numbers that bracket the limits.
enum BoundSlot : std::uint8_t { bsMaximum, bsMinimum, bsBehindLast };

}  // namespace kd
