#include "model/cField.h"

#include <functional>
#include <set>

#include "base/NumberTexts.h"
#include "base/Numbers.h"
#include "model/Decimals.h"
#include "model/FieldData.h"
#include "model/PropertyTable.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

/// The one text that stands for all flags of these letters: a record has seven, and there are three that
/// count. Lives as long as the program.
const Text* SharedFlag(std::string_view flag) {
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

}  // namespace

FieldData::FieldData() {
    static const auto zeros = std::make_shared<const Text>("000,000,000,000,000,000,000,000,000,000,000,000");
    relation = zeros;
    limits.fill({SharedFlag("C")});
    texts[tsFieldType] = "T";
    texts[tsUpperCase] = "N";
    texts[tsReportType] = "V";
    texts[tsRequired] = "N";
}

const std::shared_ptr<FieldData>& cField::NewRecord() {
    static const auto values = std::make_shared<FieldData>();
    return values;
}

FieldData& cField::Edit() {
    if (m_data.use_count() > 1) {
        m_data = std::make_shared<FieldData>(*m_data);
    }
    return *m_data;
}

const Text& cField::TextAt(std::size_t slot) const noexcept {
    return m_data->texts[slot];
}

void cField::SetTextAt(std::size_t slot, Text value) {
    if (m_data->texts[slot] != value) {
        Edit().texts[slot] = std::move(value);
    }
}

std::int16_t cField::ShortAt(std::size_t slot) const noexcept {
    return m_data->shorts[slot];
}

void cField::SetShortAt(std::size_t slot, std::int16_t value) {
    if (m_data->shorts[slot] != value) {
        Edit().shorts[slot] = value;
    }
}

std::int32_t cField::LongAt(std::size_t slot) const noexcept {
    return m_data->longs[slot];
}

void cField::SetLongAt(std::size_t slot, std::int32_t value) {
    if (m_data->longs[slot] != value) {
        Edit().longs[slot] = value;
    }
}

double cField::BoundAt(std::size_t slot) const noexcept {
    return m_data->bounds[slot];
}

void cField::SetBoundAt(std::size_t slot, double value) {
    if (m_data->bounds[slot] != value) {
        Edit().bounds[slot] = value;
    }
}

std::int32_t cField::ColumnOutOfOrder() const noexcept {
    const FieldData& data = *m_data;
    if (!IsNumericType(data.texts[tsFieldType])) {
        return 0;
    }
    double bound = data.bounds[bsMaximum];
    for (int limit = 0; limit < LimitCount; ++limit) {
        const LimitPair& pair = data.limits[static_cast<std::size_t>(limit)];
        if (*pair.flag != "F") {
            continue;
        }
        if (pair.value > bound) {
            return LimitColumn(limit);
        }
        bound = pair.value;
    }
    return data.bounds[bsMinimum] > bound ? cnMin : 0;
}

const Text& cField::LimitFlag(int index) const noexcept {
    return *m_data->limits[static_cast<std::size_t>(index)].flag;
}

double cField::Limit(int index) const noexcept {
    return m_data->limits[static_cast<std::size_t>(index)].value;
}

void cField::SetLimitFlag(int index, const Text& value) {
    const auto at = static_cast<std::size_t>(index);
    if (*m_data->limits[at].flag != value) {
        Edit().limits[at].flag = SharedFlag(value);
    }
}

void cField::SetLimit(int index, double value) {
    const auto at = static_cast<std::size_t>(index);
    if (m_data->limits[at].value != value) {
        Edit().limits[at].value = value;
    }
}

const Text& cField::Relation() const noexcept {
    return *m_data->relation;
}

void cField::SetRelation(Text value) {
    // To store the same text would part records that share their data: the one caller compares first.
    Edit().relation = std::make_shared<const Text>(std::move(value));
}

void cField::CopyFrom(const cField& source) {
    m_data = source.m_data;
    m_rules = source.m_rules;
}

FieldValue cField::Value(std::int32_t column, std::int32_t mode, const Locale& locale) const {
    if (mode == vmRaw && IsVariableColumn(column) && PropertyOf(column).kind == vkShort) {
        return ShortAt(PropertyOf(column).slot);
    }
    return ValueText(column, mode, locale);
}

Text cField::ValueText(std::int32_t column, std::int32_t mode, const Locale& locale) const {
    Text text;
    AppendValue(column, mode, locale, text);
    return text;
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
