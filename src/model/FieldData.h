#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "base/Text.h"
#include "model/FieldSlots.h"

/// What a variable keeps. Only cField.cpp, FieldTexts.cpp and PropertyTable.h go by it, so that a new
/// property leaves everybody else as it is.
namespace kd {

/// Slots of texts without a pair of accessors: their columns alone lead to them. They begin empty.
enum FurtherTextSlot : std::uint8_t {
    tsLastWithAccessors = tsBehindLast - 1,
    // A new text's slot stands here.
    tsCount
};

struct LimitPair {
    const Text* flag;  // one text for all flags of these letters
    double value = 0;
};

struct FieldData {
    FieldData();

    std::array<std::int32_t, lsBehindLast> longs{};
    std::array<std::int16_t, ssBehindLast> shorts{};
    // What a check of all limits reads stands together.
    std::array<double, bsBehindLast> bounds{};
    std::array<LimitPair, LimitCount> limits;
    std::array<Text, tsCount> texts;
    std::shared_ptr<const Text> relation;  // most records hold the same one
};

}  // namespace kd
