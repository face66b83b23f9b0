#include "model/FieldTexts.h"

#include <array>
#include <span>

#include "base/NumberTexts.h"
#include "base/Numbers.h"
#include "model/Decimals.h"
#include "model/FieldData.h"
#include "model/PropertyTable.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

void Localise(const Locale* locale, Text& text, std::size_t from) {
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

/// Lays a number into a mask (LayIntoMask), with the locale's separator where one is given.
void FormatWithMask(double value, int length, int decimals, const Locale* localised, Text& text) {
    const std::size_t from = text.size();
    AppendIntoMask(value, length, decimals, text);
    Localise(localised, text, from);
}

void FormatLimit(const FieldData& data, int index, bool withF, const Locale* localised, Text& text) {
    if (!IsNumericType(data.texts[tsFieldType])) {
        return;
    }
    const LimitPair& limit = data.limits[static_cast<std::size_t>(index)];
    const Text& letters = *limit.flag;
    const char flag = letters.size() == 1 ? letters.front() : '\0';
    if (flag == 'C' || flag == 'B') {
        text += flag;
        return;
    }
    if (flag != 'F') {
        return;
    }
    // A limit shows one decimal more than its variable.
    const int length = data.shorts[ssLength];
    const int behindPoint = data.shorts[ssDecimals] + 1;
    const int width = length + (behindPoint <= 1 ? 2 : 1);
    if (length < 0 || behindPoint >= width) {
        throw cError(errInvalidArgument, "cField.FormatLimit");
    }
    if (withF) {
        text += 'F';
    }
    FormatWithMask(limit.value, width, behindPoint, localised, text);
}

void FormatBound(const FieldData& data, double value, const Locale* localised, Text& text) {
    if (!IsNumericType(data.texts[tsFieldType])) {
        return;
    }
    const int length = data.shorts[ssLength];
    const int decimals = data.shorts[ssDecimals];
    const bool hasPoint = decimals > 0;
    if (length < 0 || (hasPoint && decimals >= length)) {
        throw cError(errInvalidArgument, "cField.FormatBound");
    }
    FormatWithMask(value, length, hasPoint ? decimals : -1, localised, text);
}

void AppendMethod(const FieldData& data, std::int32_t number, std::span<const std::string_view> words,
                  std::int32_t mode, Text& text) {
    if (!IsNumericType(data.texts[tsFieldType])) {
        return;
    }
    if (mode == vmFile) {
        AppendDigits(number, text);
    } else if (static_cast<std::size_t>(number) < words.size()) {  // which no negative one is
        text += words[static_cast<std::size_t>(number)];
    }
}

void LimitMethodText(const FieldData& data, std::int32_t mode, Text& text) {
    AppendMethod(data, data.longs[lsLimitMethod], LimitMethodWords, mode, text);
}

void TargetMethodText(const FieldData& data, std::int32_t mode, Text& text) {
    AppendMethod(data, data.longs[lsTargetMethod], TargetMethodWords, mode, text);
}

void StoreMethod(cField& field, std::size_t slot, std::span<const std::string_view> words,
                 std::string_view text, const Locale& locale) {
    const Text upper = locale.CodePage().Upper(text);
    for (std::size_t number = 0; number < words.size(); ++number) {
        if (EqualsNoCaseAscii(words[number], upper)) {
            field.SetLongAt(slot, static_cast<std::int32_t>(number));
        }
    }
}

void StoreLimit(cField& field, int index, std::string_view text, const Locale& locale) {
    // An emptied limit is no limit.
    const Text upper = text.empty() ? "B" : UpperAscii(text);
    if (upper == "C" || upper == "B") {
        field.SetLimitFlag(index, upper);
        field.SetLimit(index, 0);
        return;
    }
    // The flag goes first: a number that cannot be read leaves the old one behind a fixed limit.
    field.SetLimitFlag(index, "F");
    field.SetLimit(index, cField::ParseGridDouble(text, locale));
}

}  // namespace

void AppendProperty(const cField& field, const Property& property, std::int32_t mode, const Locale& locale,
                    Text& text) {
    const FieldData& data = field.Data();
    const Locale* const localised = mode == vmGrid ? &locale : nullptr;
    switch (property.kind) {
        case vkView:
            return;
        case vkText:
        case vkCapitals:
            text += data.texts[property.slot];
            return;
        case vkShort:
            AppendDigits(data.shorts[property.slot], text);
            return;
        case vkLong:
            AppendDigits(data.longs[property.slot], text);
            return;
        case vkBound:
            FormatBound(data, data.bounds[property.slot], localised, text);
            return;
        case vkLimit:
            FormatLimit(data, property.slot, mode == vmFile, localised, text);
            return;
        case vkLimitMethod:
            LimitMethodText(data, mode, text);
            return;
        case vkTargetMethod:
            TargetMethodText(data, mode, text);
            return;
        case vkRules:
            text += field.Rules();
            return;
        case vkRelation:
            text += *data.relation;
    }
}

void StoreCellText(cField& field, const Property& property, std::string_view text, const Locale& locale) {
    switch (property.kind) {
        case vkView:
        case vkLong:
        case vkRelation:
            return;
        case vkLimitMethod:
            StoreMethod(field, property.slot, LimitMethodWords, text, locale);
            return;
        case vkTargetMethod:
            StoreMethod(field, property.slot, TargetMethodWords, text, locale);
            return;
        case vkText:
            field.SetTextAt(property.slot, Text(text));
            return;
        case vkCapitals:
            field.SetTextAt(property.slot, locale.CodePage().Upper(text));
            return;
        case vkShort:
            field.SetShortAt(property.slot, ToInt16(ToDouble(NormalizeDecimalText(text, locale),
                                                             LocaleDecimalSeparator(locale))));
            return;
        case vkBound:
            field.SetBoundAt(property.slot, cField::ParseGridDouble(text, locale));
            return;
        case vkLimit:
            StoreLimit(field, property.slot, text, locale);
            return;
        case vkRules:
            field.SetRules(Text(text));
    }
}

// The two doors to the texts stand here, since a record as such knows nothing of them.

void cField::AppendValue(std::int32_t column, std::int32_t mode, const Locale& locale,
                         std::string& text) const {
    if (IsVariableColumn(column) && (mode == vmFile || mode == vmRaw || mode == vmGrid)) {
        AppendProperty(*this, PropertyOf(column), mode, locale, text);
    }
}

void cField::SetValue(std::int32_t column, std::int32_t mode, std::string_view text,
                      const Platform& platform) {
    if (mode != vmGrid) {
        platform.toolkit.Say("Not supported!");
        return;
    }
    if (IsVariableColumn(column)) {
        StoreCellText(*this, PropertyOf(column), text, platform.locale);
    }
}

}  // namespace kd
