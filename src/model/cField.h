#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

#include "base/Text.h"
#include "base/cList.h"
#include "model/FieldSlots.h"
#include "platform/Platform.h"

namespace kd {

/// What a read of a cell's value is for.
enum ValueMode : std::int32_t {
    vmFile = -1,  // as it stands in a file: "." as separator, "F" before a fixed limit, methods as digits
    vmRaw = 0,    // numbers stay numbers, no "F", "." as separator
    vmGrid = 1,   // the text of a grid cell: the locale's separator, no "F", methods as words
};

/// Words of the methods, by their number from 0.
inline constexpr std::array<std::string_view, 6> LimitMethodWords{
    "Population", "MrEstimate", "LowVariation", "HighVariation", "LowAverage", "HighAverage"};
inline constexpr std::array<std::string_view, 2> TargetMethodWords{"Fixed", "Calc"};

/// Whether variables of this type have limits. The search being what it is, the empty text and a run of
/// letters such as "AR" count as numeric too; "n" does not.
inline bool IsNumericType(std::string_view fieldType) noexcept {
    return std::string_view("NARC").find(fieldType) != std::string_view::npos;
}

/// A number, or a text.
using FieldValue = std::variant<Text, std::int16_t>;

struct FieldData;

/// One variable of one view. A copy of a record's values is cheap: two records share them until one is
/// changed.
///
/// Its column or its slot leads to every property (see PropertyTable.h), and most code goes that way. The
/// pairs by name are an exception, for what code or a test asks for by its name; whatever has a slot of
/// FieldSlots.h has both halves, called or not. A text that only its column leads to has none. The pairs keep
/// what they are given, unchecked.
class cField {
public:
    cField() : m_data(NewRecord()) {}
    cField(const cField&) = delete;
    cField& operator=(const cField&) = delete;

    /// Position in gFiles of the view that owns this variable, from 1.
    std::int32_t FileID() const noexcept { return LongAt(lsFileID); }
    void SetFileID(std::int32_t value) { SetLongAt(lsFileID, value); }
    /// Carried from file to file.
    std::int32_t RawField() const noexcept { return LongAt(lsRawField); }
    void SetRawField(std::int32_t value) { SetLongAt(lsRawField, value); }
    /// Carried from file to file.
    std::int32_t PivotField() const noexcept { return LongAt(lsPivotField); }
    void SetPivotField(std::int32_t value) { SetLongAt(lsPivotField, value); }
    /// Carried from file to file.
    std::int32_t Statistic() const noexcept { return LongAt(lsStatistic); }
    void SetStatistic(std::int32_t value) { SetLongAt(lsStatistic, value); }
    /// Name of the variable.
    const Text& Name() const noexcept { return TextAt(tsName); }
    void SetName(Text value) { SetTextAt(tsName, std::move(value)); }
    /// One letter of "NARC" (numeric) or "TPL".
    const Text& FieldType() const noexcept { return TextAt(tsFieldType); }
    void SetFieldType(Text value) { SetTextAt(tsFieldType, std::move(value)); }
    /// Character width of a value, with its point and sign.
    std::int16_t Length() const noexcept { return ShortAt(ssLength); }
    void SetLength(std::int16_t value) { SetShortAt(ssLength, value); }
    /// Digits behind the point.
    std::int16_t Decimals() const noexcept { return ShortAt(ssDecimals); }
    void SetDecimals(std::int16_t value) { SetShortAt(ssDecimals, value); }
    /// Cross reference.
    const Text& XRef() const noexcept { return TextAt(tsXRef); }
    void SetXRef(Text value) { SetTextAt(tsXRef, std::move(value)); }
    /// "Y" or "N".
    const Text& UpperCase() const noexcept { return TextAt(tsUpperCase); }
    void SetUpperCase(Text value) { SetTextAt(tsUpperCase, std::move(value)); }
    /// Sample size.
    std::int16_t Sample() const noexcept { return ShortAt(ssSample); }
    void SetSample(std::int16_t value) { SetShortAt(ssSample, value); }
    /// "V", "VT", "A", "A1", "A3", "A5", "A10", "A20", "A30".
    const Text& ReportType() const noexcept { return TextAt(tsReportType); }
    void SetReportType(Text value) { SetTextAt(tsReportType, std::move(value)); }
    /// "Y", "N" or "P".
    const Text& Required() const noexcept { return TextAt(tsRequired); }
    void SetRequired(Text value) { SetTextAt(tsRequired, std::move(value)); }
    /// Path.
    const Text& InputFile() const noexcept { return TextAt(tsInputFile); }
    void SetInputFile(Text value) { SetTextAt(tsInputFile, std::move(value)); }
    /// Path.
    const Text& OutputFile() const noexcept { return TextAt(tsOutputFile); }
    void SetOutputFile(Text value) { SetTextAt(tsOutputFile, std::move(value)); }
    /// 0 to 5, see LimitMethodWords.
    std::int32_t LimitMethod() const noexcept { return LongAt(lsLimitMethod); }
    void SetLimitMethod(std::int32_t value) { SetLongAt(lsLimitMethod, value); }
    /// 0 or 1, see TargetMethodWords.
    std::int32_t TargetMethod() const noexcept { return LongAt(lsTargetMethod); }
    void SetTargetMethod(std::int32_t value) { SetLongAt(lsTargetMethod, value); }
    /// Largest value allowed.
    double Maximum() const noexcept { return BoundAt(bsMaximum); }
    void SetMaximum(double value) { SetBoundAt(bsMaximum, value); }
    const Text& USLflag() const noexcept { return LimitFlag(0); }
    void SetUSLflag(const Text& value) { SetLimitFlag(0, value); }
    double USL() const noexcept { return Limit(0); }
    void SetUSL(double value) { SetLimit(0, value); }
    const Text& UCLflag() const noexcept { return LimitFlag(1); }
    void SetUCLflag(const Text& value) { SetLimitFlag(1, value); }
    double UCL() const noexcept { return Limit(1); }
    void SetUCL(double value) { SetLimit(1, value); }
    const Text& UWLflag() const noexcept { return LimitFlag(2); }
    void SetUWLflag(const Text& value) { SetLimitFlag(2, value); }
    double UWL() const noexcept { return Limit(2); }
    void SetUWL(double value) { SetLimit(2, value); }
    const Text& TGTflag() const noexcept { return LimitFlag(3); }
    void SetTGTflag(const Text& value) { SetLimitFlag(3, value); }
    double TGT() const noexcept { return Limit(3); }
    void SetTGT(double value) { SetLimit(3, value); }
    const Text& LWLflag() const noexcept { return LimitFlag(4); }
    void SetLWLflag(const Text& value) { SetLimitFlag(4, value); }
    double LWL() const noexcept { return Limit(4); }
    void SetLWL(double value) { SetLimit(4, value); }
    const Text& LCLflag() const noexcept { return LimitFlag(5); }
    void SetLCLflag(const Text& value) { SetLimitFlag(5, value); }
    double LCL() const noexcept { return Limit(5); }
    void SetLCL(double value) { SetLimit(5, value); }
    const Text& LSLflag() const noexcept { return LimitFlag(6); }
    void SetLSLflag(const Text& value) { SetLimitFlag(6, value); }
    double LSL() const noexcept { return Limit(6); }
    void SetLSL(double value) { SetLimit(6, value); }
    /// Smallest value allowed.
    double Minimum() const noexcept { return BoundAt(bsMinimum); }
    void SetMinimum(double value) { SetBoundAt(bsMinimum, value); }
    /// Carried from file to file.
    std::int16_t AvgCount() const noexcept { return ShortAt(ssAvgCount); }
    void SetAvgCount(std::int16_t value) { SetShortAt(ssAvgCount, value); }
    /// Values of a pop-up, or the name of a list.
    const Text& Popup() const noexcept { return TextAt(tsPopup); }
    void SetPopup(Text value) { SetTextAt(tsPopup, std::move(value)); }
    /// Carried from file to file.
    std::int16_t Lookup() const noexcept { return ShortAt(ssLookup); }
    void SetLookup(std::int16_t value) { SetShortAt(ssLookup, value); }
    /// Carried from file to file.
    std::int16_t CompData() const noexcept { return ShortAt(ssCompData); }
    void SetCompData(std::int16_t value) { SetShortAt(ssCompData, value); }
    /// Carried from file to file.
    std::int16_t KeyID() const noexcept { return ShortAt(ssKeyID); }
    void SetKeyID(std::int16_t value) { SetShortAt(ssKeyID, value); }
    /// Rule letters: of the catalogue in gFields, of the file in gSavedFields.
    const Text& Rules() const noexcept { return m_rules; }
    void SetRules(Text value) { m_rules = std::move(value); }
    /// Carried from file to file.
    std::int16_t Range() const noexcept { return ShortAt(ssRange); }
    void SetRange(std::int16_t value) { SetShortAt(ssRange, value); }
    /// Twelve groups of three digits, carried from file to file.
    const Text& Relation() const noexcept;
    void SetRelation(Text value);
    /// Calculation expression.
    const Text& Calculation() const noexcept { return TextAt(tsCalculation); }
    void SetCalculation(Text value) { SetTextAt(tsCalculation, std::move(value)); }
    /// Unit of measure.
    const Text& Units() const noexcept { return TextAt(tsUnits); }
    void SetUnits(Text value) { SetTextAt(tsUnits, std::move(value)); }
    /// Group of the variable.
    const Text& Category() const noexcept { return TextAt(tsCategory); }
    void SetCategory(Text value) { SetTextAt(tsCategory, std::move(value)); }
    /// Path.
    const Text& HelpFile() const noexcept { return TextAt(tsHelpFile); }
    void SetHelpFile(Text value) { SetTextAt(tsHelpFile, std::move(value)); }
    /// Position of the variable within its view, from 1.
    std::int16_t VariableNo() const noexcept { return ShortAt(ssVariableNo); }
    void SetVariableNo(std::int16_t value) { SetShortAt(ssVariableNo, value); }

    /// Column of the first fixed limit or bound that is above the one before it, from Maximum down to
    /// Minimum; 0 when all are in order, and for a type without limits.
    std::int32_t ColumnOutOfOrder() const noexcept;

    /// The pairs of the limits by index.
    const Text& LimitFlag(int index) const noexcept;
    double Limit(int index) const noexcept;
    void SetLimitFlag(int index, const Text& value);
    void SetLimit(int index, double value);

    /// The plain pairs by their slot, see FieldSlots.h and FieldData.h.
    const Text& TextAt(std::size_t slot) const noexcept;
    void SetTextAt(std::size_t slot, Text value);
    std::int16_t ShortAt(std::size_t slot) const noexcept;
    void SetShortAt(std::size_t slot, std::int16_t value);
    std::int32_t LongAt(std::size_t slot) const noexcept;
    void SetLongAt(std::size_t slot, std::int32_t value);
    double BoundAt(std::size_t slot) const noexcept;
    void SetBoundAt(std::size_t slot, double value);

    /// All but the rules at once, for who knows their slots. A loan until the record is changed.
    const FieldData& Data() const noexcept { return *m_data; }

    /// Takes every property of another record.
    void CopyFrom(const cField& source);

    /// The value of a variable's column, see Columns.h. Empty text for any other column or mode.
    /// @throws cError(errInvalidArgument) for a limit or bound whose mask has no place for the point.
    FieldValue Value(std::int32_t column, std::int32_t mode, const Locale& locale) const;
    /// The same as text, appended to `text`.
    void AppendValue(std::int32_t column, std::int32_t mode, const Locale& locale, std::string& text) const;
    /// The same as text.
    Text ValueText(std::int32_t column, std::int32_t mode, const Locale& locale) const;

    /// Stores a cell's text; the mode must be vmGrid, any other shows a message box and changes nothing. A
    /// column that is none of the variable's is ignored.
    /// @throws cError(errTypeMismatch) for a text that is no number where one is wanted, cError(errOverflow)
    /// for a whole number outside 16 bits.
    void SetValue(std::int32_t column, std::int32_t mode, std::string_view text, const Platform& platform);

    /// The number of a text with either decimal separator; 0 for a blank one.
    /// @throws cError(errTypeMismatch) for a text that is none, or that mixes the separators.
    static double ParseGridDouble(std::string_view text, const Locale& locale);

private:
    static const std::shared_ptr<FieldData>& NewRecord();
    /// The values, of this record alone.
    FieldData& Edit();

    // Shared with records that hold the same values, until one of them is changed.
    std::shared_ptr<FieldData> m_data;
    Text m_rules;  // apart, since a load gives the twins different letters
};

/// The ordered list of variables.
class cFields : public cList<cField> {
public:
    /// Appends a record: an empty name becomes "V" and its position; a type that stands in "TPLNARC" (in any
    /// case) is taken in upper case, any other becomes "T"; a length below 1 becomes 8.
    Record Add(std::int32_t fileId, Text name, std::string_view fieldType, std::int16_t length,
               std::int16_t decimals);
    /// Appends a record with the values of another one.
    Record AddCopy(const cField& source);
};

}  // namespace kd
