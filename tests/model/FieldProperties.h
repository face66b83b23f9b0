#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include "base/NumberTexts.h"
#include "model/PropertyTable.h"
#include "model/cField.h"

namespace kd {

/// One property of a variable, for tests that must hold for every one of them.
struct FieldProperty {
    std::string name;
    std::string newRecord;                  // value of a record that nothing was set in
    std::function<void(cField&, int)> set;  // to a value of its own for each number from 1
    std::function<std::string(const cField&)> get;
};

inline Text TextOf(const Text& value) {
    return value;
}
inline Text TextOf(double value) {
    return PlainText(value);
}
inline Text TextOf(std::int32_t value) {
    return Digits(value);
}
inline Text TextOf(std::int16_t value) {
    return Digits(value);
}

template <typename V>
V ValueFor(int n) {
    if constexpr (std::is_same_v<V, Text>) {
        return "text " + Digits(n);
    } else if constexpr (std::is_same_v<V, double>) {
        return n + 0.5;
    } else {
        return static_cast<V>(n);
    }
}

/// The properties whose columns alone lead to them; each bears its column's title.
inline std::vector<FieldProperty> PropertiesWithoutAccessors() {
    std::vector<FieldProperty> properties;
    for (const Property& property : PropertyTable) {
        const bool isText = property.kind == vkText || property.kind == vkCapitals;
        if (isText && property.slot >= tsBehindLast) {
            const std::size_t slot = property.slot;
            properties.push_back({std::string(property.title), "",
                                  [slot](cField& field, int n) { field.SetTextAt(slot, ValueFor<Text>(n)); },
                                  [slot](const cField& field) { return TextOf(field.TextAt(slot)); }});
        }
    }
    return properties;
}

/// Every property of a variable, in the record's order.
inline const std::vector<FieldProperty>& FieldProperties() {
#define KD_PROPERTY(name, type, fresh)                                                                     \
    FieldProperty {                                                                                        \
#name, fresh,                                                                                      \
            [](cField & field,                                                                             \
               int n) { field.Set##name(ValueFor<type>(n)); },                                             \
                                                            [](const cField&                               \
                                                                   field) { return TextOf(field.name()); } \
    }
#define KD_LIMIT(name) KD_PROPERTY(name##flag, Text, "C"), KD_PROPERTY(name, double, "0")
    static const std::vector<FieldProperty> properties = [] {
        std::vector<FieldProperty> all{
            KD_PROPERTY(FileID, std::int32_t, "0"),
            KD_PROPERTY(RawField, std::int32_t, "0"),
            KD_PROPERTY(PivotField, std::int32_t, "0"),
            KD_PROPERTY(Statistic, std::int32_t, "0"),
            KD_PROPERTY(Name, Text, ""),
            KD_PROPERTY(FieldType, Text, "T"),
            KD_PROPERTY(Length, std::int16_t, "0"),
            KD_PROPERTY(Decimals, std::int16_t, "0"),
            KD_PROPERTY(XRef, Text, ""),
            KD_PROPERTY(UpperCase, Text, "N"),
            KD_PROPERTY(Sample, std::int16_t, "0"),
            KD_PROPERTY(ReportType, Text, "V"),
            KD_PROPERTY(Required, Text, "N"),
            KD_PROPERTY(InputFile, Text, ""),
            KD_PROPERTY(OutputFile, Text, ""),
            KD_PROPERTY(LimitMethod, std::int32_t, "0"),
            KD_PROPERTY(TargetMethod, std::int32_t, "0"),
            KD_PROPERTY(Maximum, double, "0"),
            KD_LIMIT(USL),
            KD_LIMIT(UCL),
            KD_LIMIT(UWL),
            KD_LIMIT(TGT),
            KD_LIMIT(LWL),
            KD_LIMIT(LCL),
            KD_LIMIT(LSL),
            KD_PROPERTY(Minimum, double, "0"),
            KD_PROPERTY(AvgCount, std::int16_t, "0"),
            KD_PROPERTY(Popup, Text, ""),
            KD_PROPERTY(Lookup, std::int16_t, "0"),
            KD_PROPERTY(CompData, std::int16_t, "0"),
            KD_PROPERTY(KeyID, std::int16_t, "0"),
            KD_PROPERTY(Rules, Text, ""),
            KD_PROPERTY(Range, std::int16_t, "0"),
            KD_PROPERTY(Relation, Text, "000,000,000,000,000,000,000,000,000,000,000,000"),
            KD_PROPERTY(Calculation, Text, ""),
            KD_PROPERTY(Units, Text, ""),
            KD_PROPERTY(Category, Text, ""),
            KD_PROPERTY(HelpFile, Text, ""),
            KD_PROPERTY(VariableNo, std::int16_t, "0"),
        };
        std::ranges::move(PropertiesWithoutAccessors(), std::back_inserter(all));
        return all;
    }();
#undef KD_LIMIT
#undef KD_PROPERTY
    return properties;
}

/// Every property's text, in order.
inline std::vector<std::string> AllOf(const cField& field) {
    std::vector<std::string> all;
    for (const FieldProperty& property : FieldProperties()) {
        all.push_back(property.name + "=" + property.get(field));
    }
    return all;
}

/// Gives every property a value of its own.
inline void SetAll(cField& field, int from) {
    for (const FieldProperty& property : FieldProperties()) {
        property.set(field, from++);
    }
}

}  // namespace kd
