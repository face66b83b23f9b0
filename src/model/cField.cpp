#include "model/cField.h"

#include <functional>
#include <set>

#include "base/Numbers.h"
#include "model/Decimals.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

enum Column : std::int32_t {
    colVarNo = 7,
    colName = 8,
    colMax = 9,
    colFirstLimit = 10,
    colLastLimit = 16,
    colMin = 17,
    colType = 18,
    colLength = 19,
    colDecimals = 20,
    colXRef = 21,
    colReportType = 22,
    colLimitMethod = 23,
    colTargetMethod = 24,
    colSample = 25,
    colRequired = 26,
    colCategory = 27,
    colUnits = 28,
    colRules = 29,
    colPopup = 30,
    colInputFile = 31,
    colOutputFile = 32,
    colHelpFile = 33,
    colCalculation = 34,
    colUCase = 35,
};

/// Position in `words`, regardless of case; -1 for none.
template <std::size_t N>
std::int32_t WordIndex(const std::array<std::string_view, N>& words, std::string_view text) {
    for (std::size_t i = 0; i < N; ++i) {
        if (EqualsNoCaseAscii(words[i], text)) {
            return static_cast<std::int32_t>(i);
        }
    }
    return -1;
}

void Localise(const Locale* locale, std::string& text, std::size_t from) {
    if (locale == nullptr) {
        return;
    }
    const char separator = LocaleDecimalSeparator(*locale);
    if (separator == '.') {
        return;
    }
    for (std::size_t at = from; at < text.size(); ++at) {
        if (text[at] == '.') {
            text[at] = separator;
        }
    }
}

}  // namespace

const Text* cField::SharedFlag(std::string_view flag) {
    static std::set<Text, std::less<>> flags;
    static std::array<const Text*, 128> letters{};  // the same texts: nearly every flag is a plain letter
    const auto find = [&] {
        const auto known = flags.find(flag);
        return known != flags.end() ? &*known : &*flags.emplace(flag).first;
    };
    const std::size_t letter = flag.size() == 1 ? static_cast<unsigned char>(flag.front()) : letters.size();
    if (letter >= letters.size()) {
        return find();
    }
    if (letters[letter] == nullptr) {
        letters[letter] = find();
    }
    return letters[letter];
}

cField::Data::Data() {
    static const auto zeros = std::make_shared<const Text>("000,000,000,000,000,000,000,000,000,000,000,000");
    relation = zeros;
    limits.fill({SharedFlag("C")});
}

const std::shared_ptr<cField::Data>& cField::NewRecord() {
    static const auto values = std::make_shared<Data>();
    return values;
}

cField::Data* cField::Edit() {
    if (m_data.use_count() > 1) {
        m_data = std::make_shared<Data>(*m_data);
    }
    return m_data.get();
}

void cField::SetLimitFlag(int index, Text value) {
    const auto at = static_cast<std::size_t>(index);
    if (*m_data->limits[at].flag != value) {
        Edit()->limits[at].flag = SharedFlag(value);
    }
}

void cField::SetLimit(int index, double value) {
    const auto at = static_cast<std::size_t>(index);
    if (m_data->limits[at].value != value) {
        Edit()->limits[at].value = value;
    }
}

void cField::SetRelation(Text value) {
    if (*m_data->relation != value) {
        Edit()->relation = std::make_shared<const Text>(std::move(value));
    }
}

void cField::CopyFrom(const cField& source) {
    m_data = source.m_data;
    m_rules = source.m_rules;
}

const Text* cField::TextColumn(std::int32_t column) const noexcept {
    switch (column) {
        case colName:
            return &m_data->name;
        case colType:
            return &m_data->fieldType;
        case colXRef:
            return &m_data->xRef;
        case colReportType:
            return &m_data->reportType;
        case colRequired:
            return &m_data->required;
        case colCategory:
            return &m_data->category;
        case colUnits:
            return &m_data->units;
        case colRules:
            return &m_rules;
        case colPopup:
            return &m_data->popup;
        case colInputFile:
            return &m_data->inputFile;
        case colOutputFile:
            return &m_data->outputFile;
        case colHelpFile:
            return &m_data->helpFile;
        case colCalculation:
            return &m_data->calculation;
        case colUCase:
            return &m_data->upperCase;
        default:
            return nullptr;
    }
}

FieldValue cField::Value(std::int32_t column, std::int32_t mode, const Locale& locale) const {
    if (mode == vmRaw) {
        switch (column) {
            case colVarNo:
                return m_data->variableNo;
            case colLength:
                return m_data->length;
            case colDecimals:
                return m_data->decimals;
            case colSample:
                return m_data->sample;
            default:
                break;
        }
    }
    return ValueText(column, mode, locale);
}

Text cField::ValueText(std::int32_t column, std::int32_t mode, const Locale& locale) const {
    Text text;
    AppendValue(column, mode, locale, text);
    return text;
}

void cField::AppendValue(std::int32_t column, std::int32_t mode, const Locale& locale,
                         std::string& text) const {
    if (mode != vmFile && mode != vmRaw && mode != vmGrid) {
        return;
    }
    const Locale* const localised = mode == vmGrid ? &locale : nullptr;
    switch (column) {
        case colVarNo:
            AppendDigits(m_data->variableNo, text);
            return;
        case colLength:
            AppendDigits(m_data->length, text);
            return;
        case colDecimals:
            AppendDigits(m_data->decimals, text);
            return;
        case colSample:
            AppendDigits(m_data->sample, text);
            return;
        case colMax:
            AppendBound(m_data->maximum, localised, text);
            return;
        case colMin:
            AppendBound(m_data->minimum, localised, text);
            return;
        case colLimitMethod:
        case colTargetMethod:
            AppendMethod(column, mode, text);
            return;
        default:
            break;
    }
    if (column >= colFirstLimit && column <= colLastLimit) {
        AppendLimit(column - colFirstLimit, mode == vmFile, localised, text);
    } else if (const Text* value = TextColumn(column)) {
        text += *value;
    }
}

void cField::AppendLimit(int index, bool withF, const Locale* localised, std::string& text) const {
    if (!IsNumericType(m_data->fieldType)) {
        return;
    }
    const LimitPair& limit = m_data->limits[static_cast<std::size_t>(index)];
    const char flag = limit.flag->size() == 1 ? limit.flag->front() : '\0';
    if (flag == 'C' || flag == 'B') {
        text += flag;
        return;
    }
    if (flag != 'F') {
        return;
    }
    // A limit shows one decimal more than its variable.
    const int behindPoint = m_data->decimals + 1;
    const int width = m_data->length + (behindPoint <= 1 ? 2 : 1);
    if (m_data->length < 0 || behindPoint >= width) {
        throw cError(errInvalidArgument, "cField.FormatLimit");
    }
    if (withF) {
        text += 'F';
    }
    const std::size_t from = text.size();
    AppendIntoMask(limit.value, width, behindPoint, text);
    Localise(localised, text, from);
}

void cField::AppendBound(double value, const Locale* localised, std::string& text) const {
    if (!IsNumericType(m_data->fieldType)) {
        return;
    }
    const bool hasPoint = m_data->decimals > 0;
    if (m_data->length < 0 || (hasPoint && m_data->decimals >= m_data->length)) {
        throw cError(errInvalidArgument, "cField.FormatBound");
    }
    const std::size_t from = text.size();
    AppendIntoMask(value, m_data->length, hasPoint ? m_data->decimals : -1, text);
    Localise(localised, text, from);
}

void cField::AppendMethod(std::int32_t column, std::int32_t mode, std::string& text) const {
    if (!IsNumericType(m_data->fieldType)) {
        return;
    }
    const std::int32_t number = column == colLimitMethod ? m_data->limitMethod : m_data->targetMethod;
    if (mode == vmFile) {
        AppendDigits(number, text);
        return;
    }
    const auto index = static_cast<std::size_t>(number);
    if (column == colLimitMethod) {
        text += number >= 0 && index < LimitMethodWords.size() ? LimitMethodWords[index] : std::string_view();
    } else {
        text +=
            number >= 0 && index < TargetMethodWords.size() ? TargetMethodWords[index] : std::string_view();
    }
}

void cField::SetValue(std::int32_t column, std::int32_t mode, std::string_view text,
                      const Platform& platform) {
    if (mode != vmGrid) {
        platform.toolkit.Say("Not supported!");
        return;
    }
    const Locale& locale = platform.locale;
    switch (column) {
        case colVarNo:
        case colLength:
        case colDecimals:
        case colSample:
            SetWholeNumber(column, text, locale);
            return;
        case colMax:
            SetMaximum(ParseGridDouble(text.empty() ? "0" : text, locale));
            return;
        case colMin:
            SetMinimum(ParseGridDouble(text.empty() ? "0" : text, locale));
            return;
        case colLimitMethod:
            if (const auto method = WordIndex(LimitMethodWords, text); method >= 0) {
                SetLimitMethod(method);
            }
            return;
        case colTargetMethod:
            if (const auto method = WordIndex(TargetMethodWords, text); method >= 0) {
                SetTargetMethod(method);
            }
            return;
        default:
            break;
    }
    if (column >= colFirstLimit && column <= colLastLimit) {
        SetLimitText(column - colFirstLimit, text, locale);
    } else {
        (void)SetTextColumn(column, text, locale);  // any other column is ignored
    }
}

void cField::SetLimitText(int index, std::string_view text, const Locale& locale) {
    // An emptied limit is no limit.
    const Text upper = text.empty() ? "B" : UpperAscii(text);
    if (upper == "C" || upper == "B") {
        SetLimitFlag(index, upper);
        SetLimit(index, 0);
        return;
    }
    // The flag goes first: a number that cannot be read leaves the old one behind a fixed limit.
    SetLimitFlag(index, "F");
    SetLimit(index, ParseGridDouble(text, locale));
}

void cField::SetWholeNumber(std::int32_t column, std::string_view text, const Locale& locale) {
    const std::int16_t value =
        ToInt16(ToDouble(NormalizeDecimalText(text, locale), LocaleDecimalSeparator(locale)));
    switch (column) {
        case colVarNo:
            SetVariableNo(value);
            return;
        case colLength:
            SetLength(value);
            return;
        case colDecimals:
            SetDecimals(value);
            return;
        default:
            SetSample(value);
    }
}

bool cField::SetTextColumn(std::int32_t column, std::string_view text, const Locale& locale) {
    const bool upper =
        column == colType || column == colReportType || column == colRequired || column == colUCase;
    Text value = upper ? locale.CodePage().Upper(text) : Text(text);
    switch (column) {
        case colName:
            SetName(std::move(value));
            return true;
        case colType:
            SetFieldType(std::move(value));
            return true;
        case colXRef:
            SetXRef(std::move(value));
            return true;
        case colReportType:
            SetReportType(std::move(value));
            return true;
        case colRequired:
            SetRequired(std::move(value));
            return true;
        case colCategory:
            SetCategory(std::move(value));
            return true;
        case colUnits:
            SetUnits(std::move(value));
            return true;
        case colRules:
            SetRules(std::move(value));
            return true;
        case colPopup:
            SetPopup(std::move(value));
            return true;
        case colInputFile:
            SetInputFile(std::move(value));
            return true;
        case colOutputFile:
            SetOutputFile(std::move(value));
            return true;
        case colHelpFile:
            SetHelpFile(std::move(value));
            return true;
        case colCalculation:
            SetCalculation(std::move(value));
            return true;
        case colUCase:
            SetUpperCase(std::move(value));
            return true;
        default:
            return false;
    }
}

double cField::ParseGridDouble(std::string_view text, const Locale& locale) {
    if (Trim(text).empty()) {
        return 0;
    }
    const Text normalized = NormalizeDecimalText(text, locale);
    if (normalized.empty()) {
        throw cError(errTypeMismatch, "cField.ParseGridDouble",
                     "Invalid decimal format: mixed decimal separators are not allowed.");
    }
    return ToDouble(normalized, LocaleDecimalSeparator(locale));
}

cFields::Record cFields::Add(std::int32_t fileId, Text name, std::string_view fieldType, std::int16_t length,
                             std::int16_t decimals) {
    auto field = std::make_shared<cField>();
    field->SetFileID(fileId);
    field->SetName(name.empty() ? "V" + Digits(Count() + 1) : std::move(name));
    const Text type = UpperAscii(fieldType);
    if (std::string_view("TPLNARC").find(type) != std::string_view::npos) {
        field->SetFieldType(type);
    }
    field->SetLength(length > 0 ? length : std::int16_t{8});
    field->SetDecimals(decimals);
    return Append(std::move(field));
}

cFields::Record cFields::AddCopy(const cField& source) {
    auto field = std::make_shared<cField>();
    field->CopyFrom(source);
    return Append(std::move(field));
}

}  // namespace kd
