#include "appfiles/SchemaKeys.h"

#include <array>
#include <cstdint>

#include "appfiles/FileNumbers.h"
#include "model/cField.h"

namespace kd {

namespace {

using TextGetter = const Text& (cField::*)() const;
using TextSetter = void (cField::*)(Text);

template <auto Get, TextSetter Set>
void ReadText(cField& field, std::string_view value) {
    // Most texts are the ones that a new record holds already.
    if ((field.*Get)() != value) {
        (field.*Set)(Text(value));
    }
}

template <void (cField::*Set)(std::int16_t)>
void ReadInt16(cField& field, std::string_view value) {
    (field.*Set)(ToInt16(FileNumber(value)));
}

template <void (cField::*Set)(std::int32_t)>
void ReadInt32(cField& field, std::string_view value) {
    (field.*Set)(ToInt32(FileNumber(value)));
}

template <void (cField::*Set)(double)>
void ReadDouble(cField& field, std::string_view value) {
    (field.*Set)(FileNumber(value));
}

template <int Index>
void ReadLimit(cField& field, std::string_view value) {
    const std::string_view flag = value.substr(0, ByteOffset(value, 2));
    if (field.LimitFlag(Index) != flag) {
        field.SetLimitFlag(Index, Text(flag));
    }
    field.SetLimit(Index, flag == "F" ? FileNumber(value.substr(flag.size())) : 0.0);
}

struct SchemaKey {
    std::string_view name;
    SchemaKeyReader read = nullptr;
};

constexpr std::array<SchemaKey, 37> Keys{{
    {"RAWFIELD", &ReadInt32<&cField::SetRawField>},
    {"PIVOTFIELD", &ReadInt32<&cField::SetPivotField>},
    {"STATISTIC", &ReadInt32<&cField::SetStatistic>},
    {"NAME", &ReadText<&cField::Name, &cField::SetName>},
    {"TYPE", &ReadText<&cField::FieldType, &cField::SetFieldType>},
    {"LENGTH", &ReadInt16<&cField::SetLength>},
    {"DECIMALS", &ReadInt16<&cField::SetDecimals>},
    {"XREF", &ReadText<&cField::XRef, &cField::SetXRef>},
    {"SAMPLE", &ReadInt16<&cField::SetSample>},
    {"REPORTTYPE", &ReadText<&cField::ReportType, &cField::SetReportType>},
    {"UCASE", &ReadText<&cField::UpperCase, &cField::SetUpperCase>},
    {"REQUIRED", &ReadText<&cField::Required, &cField::SetRequired>},
    {"INPUT", &ReadText<&cField::InputFile, &cField::SetInputFile>},
    {"OUTPUT", &ReadText<&cField::OutputFile, &cField::SetOutputFile>},
    {"LIMITMETHOD", &ReadInt32<&cField::SetLimitMethod>},
    {"TARGETMETHOD", &ReadInt32<&cField::SetTargetMethod>},
    {"MAX", &ReadDouble<&cField::SetMaximum>},
    {"USL", &ReadLimit<0>},
    {"UCL", &ReadLimit<1>},
    {"UWL", &ReadLimit<2>},
    {"TGT", &ReadLimit<3>},
    {"LWL", &ReadLimit<4>},
    {"LCL", &ReadLimit<5>},
    {"LSL", &ReadLimit<6>},
    {"MIN", &ReadDouble<&cField::SetMinimum>},
    {"#AVG", &ReadInt16<&cField::SetAvgCount>},
    {"POPUP", &ReadText<&cField::Popup, &cField::SetPopup>},
    {"LOOKUP", &ReadInt16<&cField::SetLookup>},
    {"COMPDATA", &ReadInt16<&cField::SetCompData>},
    {"KEYID", &ReadInt16<&cField::SetKeyID>},
    {"RULES", &ReadText<&cField::Rules, &cField::SetRules>},
    {"RANGE", &ReadInt16<&cField::SetRange>},
    {"RELATION", &ReadText<&cField::Relation, &cField::SetRelation>},
    {"CALC", &ReadText<&cField::Calculation, &cField::SetCalculation>},
    {"UNITS", &ReadText<&cField::Units, &cField::SetUnits>},
    {"CATEGORY", &ReadText<&cField::Category, &cField::SetCategory>},
    {"HELPFILE", &ReadText<&cField::HelpFile, &cField::SetHelpFile>},
}};

/// Slot of a key that is not empty; the factors are chosen so that no two keys share one.
constexpr std::size_t SlotCount = 256;
constexpr std::size_t Slot(std::string_view key) noexcept {
    const auto at = [&](std::size_t index) {
        return static_cast<std::size_t>(static_cast<unsigned char>(key[index]));
    };
    return (at(0) * 108U + at(key.size() / 3) * 118U + at(key.size() - 1) * 72U + key.size() * 119U) %
           SlotCount;
}

constexpr std::array<std::uint8_t, SlotCount> NoKeys{};

/// Number of the key in each slot, from 1; 0 for none.
constexpr std::array<std::uint8_t, SlotCount> Slots = [] {
    auto slots = NoKeys;
    for (std::size_t index = 0; index < Keys.size(); ++index) {
        slots[Slot(Keys[index].name)] = static_cast<std::uint8_t>(index + 1);
    }
    return slots;
}();

constexpr bool EveryKeyHasItsSlot() {
    for (std::size_t index = 0; index < Keys.size(); ++index) {
        if (Slots[Slot(Keys[index].name)] != index + 1) {
            return false;
        }
    }
    return true;
}
static_assert(EveryKeyHasItsSlot(), "two keys share a slot: choose other factors in Slot");

}  // namespace

SchemaKeyReader FindSchemaKey(std::string_view key) noexcept {
    if (key.empty()) {
        return nullptr;
    }
    const std::size_t number = Slots[Slot(key)];
    return number != 0 && Keys[number - 1].name == key ? Keys[number - 1].read : nullptr;
}

}  // namespace kd
