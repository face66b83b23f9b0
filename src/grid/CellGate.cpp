#include "grid/CellGate.h"

#include <algorithm>
#include <array>

#include "model/Decimals.h"
#include "model/PropertyTable.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

constexpr std::array<std::string_view, 9> ReportTypes{"V", "VT", "A", "A1", "A3", "A5", "A10", "A20", "A30"};
constexpr std::array<std::string_view, 3> RequiredMarks{"Y", "N", "P"};
constexpr std::array<std::string_view, 2> UpperCaseMarks{"Y", "N"};

/// Whether the text is one of the words, in any case that the code page knows.
template <std::size_t N>
bool IsOneOf(const std::array<std::string_view, N>& words, std::string_view text, const Locale& locale) {
    const Text upper = locale.CodePage().Upper(text);
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view word) { return EqualsNoCaseAscii(word, upper); });
}

bool IsNumberFrom(double least, std::string_view text, const Locale& locale) {
    return IsNumericText(text, locale) && ParseCellNumber(text, locale) >= least;
}

bool IsLimitText(std::string_view text, const Locale& locale) {
    return EqualsNoCaseAscii(text, "C") || EqualsNoCaseAscii(text, "B") || IsNumericText(text, locale);
}

/// Whether every character stands for a rule of the catalogue.
bool AreRuleLetters(std::string_view text, const Globals& g) {
    const Text letters = g.platform.locale.CodePage().Upper(text);
    for (std::size_t at = 0; at < letters.size();) {
        const std::size_t next = at + ByteOffset(std::string_view(letters).substr(at), 2);
        if (g.gRuleLetters.find(letters.substr(at, next - at)) == Text::npos) {
            return false;
        }
        at = next;
    }
    return true;
}

bool MayHold(CellRule rule, std::string_view text, const Globals& g) {
    const Locale& locale = g.platform.locale;
    switch (rule) {
        case crAny:
            break;
        case crFromOne:
            return IsNumberFrom(1, text, locale);
        case crFromNought:
            return IsNumberFrom(0, text, locale);
        case crNumber:
            return IsNumericText(text, locale);
        case crLimit:
            return IsLimitText(text, locale);
        case crTypeLetters:
            // Deliberate: a search of the text, so that a run of letters such as "NA" passes and "n" does
            // not. CellGateTest.ARunOfTypeLettersPasses
            return !text.empty() && std::string_view("NARCTPL").find(text) != std::string_view::npos;
        case crReportType:
            return IsOneOf(ReportTypes, text, locale);
        case crLimitMethod:
            return IsOneOf(LimitMethodWords, text, locale);
        case crTargetMethod:
            return IsOneOf(TargetMethodWords, text, locale);
        case crRequired:
            return IsOneOf(RequiredMarks, text, locale);
        case crRuleLetters:
            return AreRuleLetters(text, g);
        case crYesNo:
            return IsOneOf(UpperCaseMarks, text, locale);
    }
    return true;
}

}  // namespace

bool IsNumericText(std::string_view text, const Locale& locale) {
    const Text normalized = NormalizeDecimalText(text, locale);
    // The outcome is empty for a text that mixes both separators, and the empty text is no number.
    return IsNumber(normalized, LocaleDecimalSeparator(locale));
}

double ParseCellNumber(std::string_view text, const Locale& locale) {
    const Text normalized = NormalizeDecimalText(text, locale);
    return normalized.empty() ? 0 : ToDouble(normalized, LocaleDecimalSeparator(locale));
}

bool IsCellValueValid(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text) {
    (void)row;  // what may stand in a cell depends on the column alone
    const std::int32_t number = desk.Grid.ColData(screenCol);
    return !IsVariableColumn(number) || MayHold(PropertyOf(number).rule, text, desk.g);
}

void SetCellValue(Desk& desk, std::int32_t row, std::int32_t screenCol, std::string_view text) {
    Globals& g = desk.g;
    const Text given(text);  // it may be a view of the very cell that is written
    const std::int32_t key = desk.Grid.RowData(row);
    const std::int32_t number = desk.Grid.ColData(screenCol);
    if (!IsVariableColumn(number)) {
        return;  // the view's own columns hold no value of the variable: their cells keep their text
    }
    cField& field = g.gFields->Ref(key);
    field.SetValue(number, vmGrid, given, g.platform);
    desk.Grid.SetTextMatrix(row, screenCol, field.ValueText(number, vmGrid, g.platform.locale));
    const Text saved = g.gSavedFields->Ref(key).ValueText(number, vmGrid, g.platform.locale);
    // Deliberate: the text as given counts, not as it is shown, so that "12.5" over "12.500" is a change.
    // CellGateTest.TheMarkComparesTheTextAsGiven
    if (given != saved) {
        desk.Grid.SetBackColor(row, screenCol, ChangedColour);
        g.gFiles->Ref(field.FileID()).SetChangesMade(true);
    } else {
        desk.Grid.SetBackColor(row, screenCol, 0);
    }
}

}  // namespace kd
