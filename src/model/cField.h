#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

#include "base/Text.h"
#include "base/cList.h"
#include "platform/Platform.h"

namespace kd {

/// What a read of a cell's value is for.
enum ValueMode : std::int32_t {
    vmFile = -1,  // as it stands in a file: "." as separator, "F" before a fixed limit, methods as digits
    vmRaw = 0,    // numbers stay numbers, no "F", "." as separator
    vmGrid = 1,   // the text of a grid cell: the locale's separator, no "F", methods as words
};

/// The seven limits, from top to bottom: USL, UCL, UWL, TGT, LWL, LCL, LSL; indexes count from 0.
inline constexpr int LimitCount = 7;

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

/// One variable of one view. The pairs keep what they are given, unchecked. A copy of a record's values is
/// cheap: two records share them until one is changed.
class cField {
public:
    cField() : m_data(NewRecord()) {}
    cField(const cField&) = delete;
    cField& operator=(const cField&) = delete;

    /// Position in gFiles of the view that owns this variable, from 1.
    std::int32_t FileID() const noexcept { return m_data->fileID; }
    void SetFileID(std::int32_t value) { Set(&Data::fileID, value); }
    /// Carried from file to file.
    std::int32_t RawField() const noexcept { return m_data->rawField; }
    void SetRawField(std::int32_t value) { Set(&Data::rawField, value); }
    /// Carried from file to file.
    std::int32_t PivotField() const noexcept { return m_data->pivotField; }
    void SetPivotField(std::int32_t value) { Set(&Data::pivotField, value); }
    /// Carried from file to file.
    std::int32_t Statistic() const noexcept { return m_data->statistic; }
    void SetStatistic(std::int32_t value) { Set(&Data::statistic, value); }
    /// Name of the variable.
    const Text& Name() const noexcept { return m_data->name; }
    void SetName(Text value) { Set(&Data::name, std::move(value)); }
    /// One letter of "NARC" (numeric) or "TPL".
    const Text& FieldType() const noexcept { return m_data->fieldType; }
    void SetFieldType(Text value) { Set(&Data::fieldType, std::move(value)); }
    /// Character width of a value, with its point and sign.
    std::int16_t Length() const noexcept { return m_data->length; }
    void SetLength(std::int16_t value) { Set(&Data::length, value); }
    /// Digits behind the point.
    std::int16_t Decimals() const noexcept { return m_data->decimals; }
    void SetDecimals(std::int16_t value) { Set(&Data::decimals, value); }
    /// Cross reference.
    const Text& XRef() const noexcept { return m_data->xRef; }
    void SetXRef(Text value) { Set(&Data::xRef, std::move(value)); }
    /// "Y" or "N".
    const Text& UpperCase() const noexcept { return m_data->upperCase; }
    void SetUpperCase(Text value) { Set(&Data::upperCase, std::move(value)); }
    /// Sample size.
    std::int16_t Sample() const noexcept { return m_data->sample; }
    void SetSample(std::int16_t value) { Set(&Data::sample, value); }
    /// "V", "VT", "A", "A1", "A3", "A5", "A10", "A20", "A30".
    const Text& ReportType() const noexcept { return m_data->reportType; }
    void SetReportType(Text value) { Set(&Data::reportType, std::move(value)); }
    /// "Y", "N" or "P".
    const Text& Required() const noexcept { return m_data->required; }
    void SetRequired(Text value) { Set(&Data::required, std::move(value)); }
    /// Path.
    const Text& InputFile() const noexcept { return m_data->inputFile; }
    void SetInputFile(Text value) { Set(&Data::inputFile, std::move(value)); }
    /// Path.
    const Text& OutputFile() const noexcept { return m_data->outputFile; }
    void SetOutputFile(Text value) { Set(&Data::outputFile, std::move(value)); }
    /// 0 to 5, see LimitMethodWords.
    std::int32_t LimitMethod() const noexcept { return m_data->limitMethod; }
    void SetLimitMethod(std::int32_t value) { Set(&Data::limitMethod, value); }
    /// 0 or 1, see TargetMethodWords.
    std::int32_t TargetMethod() const noexcept { return m_data->targetMethod; }
    void SetTargetMethod(std::int32_t value) { Set(&Data::targetMethod, value); }
    /// Largest value allowed.
    double Maximum() const noexcept { return m_data->maximum; }
    void SetMaximum(double value) { Set(&Data::maximum, value); }
    const Text& USLflag() const noexcept { return *m_data->limits[0].flag; }
    void SetUSLflag(Text value) { SetLimitFlag(0, std::move(value)); }
    double USL() const noexcept { return m_data->limits[0].value; }
    void SetUSL(double value) { SetLimit(0, value); }
    const Text& UCLflag() const noexcept { return *m_data->limits[1].flag; }
    void SetUCLflag(Text value) { SetLimitFlag(1, std::move(value)); }
    double UCL() const noexcept { return m_data->limits[1].value; }
    void SetUCL(double value) { SetLimit(1, value); }
    const Text& UWLflag() const noexcept { return *m_data->limits[2].flag; }
    void SetUWLflag(Text value) { SetLimitFlag(2, std::move(value)); }
    double UWL() const noexcept { return m_data->limits[2].value; }
    void SetUWL(double value) { SetLimit(2, value); }
    const Text& TGTflag() const noexcept { return *m_data->limits[3].flag; }
    void SetTGTflag(Text value) { SetLimitFlag(3, std::move(value)); }
    double TGT() const noexcept { return m_data->limits[3].value; }
    void SetTGT(double value) { SetLimit(3, value); }
    const Text& LWLflag() const noexcept { return *m_data->limits[4].flag; }
    void SetLWLflag(Text value) { SetLimitFlag(4, std::move(value)); }
    double LWL() const noexcept { return m_data->limits[4].value; }
    void SetLWL(double value) { SetLimit(4, value); }
    const Text& LCLflag() const noexcept { return *m_data->limits[5].flag; }
    void SetLCLflag(Text value) { SetLimitFlag(5, std::move(value)); }
    double LCL() const noexcept { return m_data->limits[5].value; }
    void SetLCL(double value) { SetLimit(5, value); }
    const Text& LSLflag() const noexcept { return *m_data->limits[6].flag; }
    void SetLSLflag(Text value) { SetLimitFlag(6, std::move(value)); }
    double LSL() const noexcept { return m_data->limits[6].value; }
    void SetLSL(double value) { SetLimit(6, value); }
    /// Smallest value allowed.
    double Minimum() const noexcept { return m_data->minimum; }
    void SetMinimum(double value) { Set(&Data::minimum, value); }
    /// Carried from file to file.
    std::int16_t AvgCount() const noexcept { return m_data->avgCount; }
    void SetAvgCount(std::int16_t value) { Set(&Data::avgCount, value); }
    /// Values of a pop-up, or the name of a list.
    const Text& Popup() const noexcept { return m_data->popup; }
    void SetPopup(Text value) { Set(&Data::popup, std::move(value)); }
    /// Carried from file to file.
    std::int16_t Lookup() const noexcept { return m_data->lookup; }
    void SetLookup(std::int16_t value) { Set(&Data::lookup, value); }
    /// Carried from file to file.
    std::int16_t CompData() const noexcept { return m_data->compData; }
    void SetCompData(std::int16_t value) { Set(&Data::compData, value); }
    /// Carried from file to file.
    std::int16_t KeyID() const noexcept { return m_data->keyID; }
    void SetKeyID(std::int16_t value) { Set(&Data::keyID, value); }
    /// Rule letters: of the catalogue in gFields, of the file in gSavedFields.
    const Text& Rules() const noexcept { return m_rules; }
    void SetRules(Text value) { m_rules = std::move(value); }
    /// Carried from file to file.
    std::int16_t Range() const noexcept { return m_data->range; }
    void SetRange(std::int16_t value) { Set(&Data::range, value); }
    /// Twelve groups of three digits, carried from file to file.
    const Text& Relation() const noexcept { return *m_data->relation; }
    void SetRelation(Text value);
    /// Calculation expression.
    const Text& Calculation() const noexcept { return m_data->calculation; }
    void SetCalculation(Text value) { Set(&Data::calculation, std::move(value)); }
    /// Unit of measure.
    const Text& Units() const noexcept { return m_data->units; }
    void SetUnits(Text value) { Set(&Data::units, std::move(value)); }
    /// Group of the variable.
    const Text& Category() const noexcept { return m_data->category; }
    void SetCategory(Text value) { Set(&Data::category, std::move(value)); }
    /// Path.
    const Text& HelpFile() const noexcept { return m_data->helpFile; }
    void SetHelpFile(Text value) { Set(&Data::helpFile, std::move(value)); }
    /// Position of the variable within its view, from 1.
    std::int16_t VariableNo() const noexcept { return m_data->variableNo; }
    void SetVariableNo(std::int16_t value) { Set(&Data::variableNo, value); }

    /// The pairs of the limits by index.
    const Text& LimitFlag(int index) const noexcept {
        return *m_data->limits[static_cast<std::size_t>(index)].flag;
    }
    double Limit(int index) const noexcept { return m_data->limits[static_cast<std::size_t>(index)].value; }
    void SetLimitFlag(int index, Text value);
    void SetLimit(int index, double value);

    /// Takes every property of another record.
    void CopyFrom(const cField& source);

    /// The value of a column (7 to 35), see the catalogue. Empty text for any other column or mode.
    /// @throws cError(errInvalidArgument) for a limit or bound whose mask has no place for the point.
    FieldValue Value(std::int32_t column, std::int32_t mode, const Locale& locale) const;
    /// The same as text, appended to `text`.
    void AppendValue(std::int32_t column, std::int32_t mode, const Locale& locale, std::string& text) const;
    /// The same as text.
    Text ValueText(std::int32_t column, std::int32_t mode, const Locale& locale) const;

    /// Stores a cell's text; the mode must be vmGrid, any other shows a message box and changes nothing. A
    /// column outside 7 to 35 is ignored.
    /// @throws cError(errTypeMismatch) for a text that is no number where one is wanted, cError(errOverflow)
    /// for a whole number outside 16 bits.
    void SetValue(std::int32_t column, std::int32_t mode, std::string_view text, const Platform& platform);

    /// The number of a text with either decimal separator; 0 for a blank one.
    /// @throws cError(errTypeMismatch) for a text that is none, or that mixes the separators.
    static double ParseGridDouble(std::string_view text, const Locale& locale);

private:
    /// The one text that stands for all flags of these letters: a record has seven, and there are three that
    /// count. Lives as long as the program.
    static const Text* SharedFlag(std::string_view flag);

    struct LimitPair {
        const Text* flag;
        double value = 0;
    };
    struct Data {
        Data();

        std::int32_t fileID = 0;
        std::int32_t rawField = 0;
        std::int32_t pivotField = 0;
        std::int32_t statistic = 0;
        std::int32_t limitMethod = 0;
        std::int32_t targetMethod = 0;
        std::int16_t length = 0;
        std::int16_t decimals = 0;
        std::int16_t sample = 0;
        std::int16_t avgCount = 0;
        std::int16_t lookup = 0;
        std::int16_t compData = 0;
        std::int16_t keyID = 0;
        std::int16_t range = 0;
        std::int16_t variableNo = 0;
        // What a check of all limits reads stands together.
        Text fieldType = "T";
        double maximum = 0;
        std::array<LimitPair, LimitCount> limits;
        double minimum = 0;
        Text name;
        Text xRef;
        Text upperCase = "N";
        Text reportType = "V";
        Text required = "N";
        Text inputFile;
        Text outputFile;
        Text popup;
        std::shared_ptr<const Text> relation;  // most records hold the same one
        Text calculation;
        Text units;
        Text category;
        Text helpFile;
    };
    static const std::shared_ptr<Data>& NewRecord();

    template <typename V>
    void Set(V Data::*member, V value) {
        if ((*m_data).*member != value) {
            (*Edit()).*member = std::move(value);
        }
    }
    /// The values, of this record alone.
    Data* Edit();

    void AppendLimit(int index, bool withF, const Locale* localised, std::string& text) const;
    void AppendBound(double value, const Locale* localised, std::string& text) const;
    void AppendMethod(std::int32_t column, std::int32_t mode, std::string& text) const;
    void SetLimitText(int index, std::string_view text, const Locale& locale);
    void SetWholeNumber(std::int32_t column, std::string_view text, const Locale& locale);
    bool SetTextColumn(std::int32_t column, std::string_view text, const Locale& locale);
    const Text* TextColumn(std::int32_t column) const noexcept;

    std::shared_ptr<Data>
        m_data;    // shared with records that hold the same values, until one of them is changed
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
