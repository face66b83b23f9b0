#include "appfiles/SchemaKeys.h"

#include <array>
#include <cstdint>

#include "appfiles/FileNumbers.h"
#include "model/PropertyTable.h"
#include "model/cField.h"

namespace kd {

namespace {

/// Where the rows of the keys are found: every key of every variable of every file is looked up here.
using KeySlots = std::array<std::uint8_t, 256>;

/// Slot of a key that is not empty: the upper byte of its length and three of its letters times the factor.
constexpr std::size_t Slot(std::string_view key, std::uint32_t factor) noexcept {
    const auto letter = [&](std::size_t index) {
        return std::uint32_t{static_cast<unsigned char>(key[index])};
    };
    const std::uint32_t marks = letter(0) | letter(key.size() / 3) << 8U | letter(key.size() - 1) << 16U |
                                static_cast<std::uint32_t>(key.size()) << 24U;
    return (marks * factor) >> 24U;
}

/// Whether the factor gives each key a slot of its own.
constexpr bool Parts(std::uint32_t factor) noexcept {
    std::array<bool, KeySlots().size()> taken{};
    for (const Property& property : PropertyTable) {
        if (property.key.empty()) {
            continue;
        }
        bool& slot = taken[Slot(property.key, factor)];
        if (slot) {
            return false;
        }
        slot = true;
    }
    return true;
}

/// The first factor of a row of odd numbers that does; 0 for none.
constexpr std::uint32_t FindFactor() noexcept {
    constexpr std::uint32_t Golden = 0x9E3779B1U;
    std::uint32_t factor = Golden;
    for (int tries = 0; tries < 1000; ++tries, factor += 2 * Golden) {
        if (Parts(factor)) {
            return factor;
        }
    }
    return 0;
}

constexpr std::uint32_t Factor = FindFactor();
static_assert(Factor != 0, "no factor parts the keys: two of them share their length and the three letters");

/// Number of the row in each slot, from 1; 0 for none.
constexpr KeySlots Slots = [] {
    KeySlots slots{};
    for (std::size_t row = 0; row < PropertyTable.size(); ++row) {
        if (!PropertyTable[row].key.empty()) {
            slots[Slot(PropertyTable[row].key, Factor)] = static_cast<std::uint8_t>(row + 1);
        }
    }
    return slots;
}();

void StoreLimit(cField& field, int index, std::string_view value) {
    const std::string_view flag = value.substr(0, ByteOffset(value, 2));
    if (field.LimitFlag(index) != flag) {
        field.SetLimitFlag(index, Text(flag));
    }
    field.SetLimit(index, flag == "F" ? FileNumber(value.substr(flag.size())) : 0.0);
}

}  // namespace

const Property* FindSchemaKey(std::string_view key) noexcept {
    if (key.empty()) {
        return nullptr;
    }
    const std::size_t number = Slots[Slot(key, Factor)];
    return number != 0 && PropertyTable[number - 1].key == key ? &PropertyTable[number - 1] : nullptr;
}

void StoreFileText(cField& field, const Property& property, std::string_view value) {
    switch (property.kind) {
        case vkView:
            return;
        case vkText:
        case vkCapitals:
            // Most texts are the ones that a new record holds already.
            if (field.TextAt(property.slot) != value) {
                field.SetTextAt(property.slot, Text(value));
            }
            return;
        case vkShort:
            field.SetShortAt(property.slot, ToInt16(FileNumber(value)));
            return;
        case vkLong:
        case vkLimitMethod:
        case vkTargetMethod:
            field.SetLongAt(property.slot, ToInt32(FileNumber(value)));
            return;
        case vkBound:
            field.SetBoundAt(property.slot, FileNumber(value));
            return;
        case vkLimit:
            StoreLimit(field, property.slot, value);
            return;
        case vkRules:
            field.SetRules(Text(value));
            return;
        case vkRelation:
            if (field.Relation() != value) {
                field.SetRelation(Text(value));
            }
    }
}

}  // namespace kd
