#include "appfiles/DerivedBounds.h"

#include "appfiles/FileNumbers.h"
#include "base/cError.h"

namespace kd::modKDLimitDesk {

namespace {

/// Nines with the point where the mask has it.
Text Nines(std::int32_t length, std::int32_t decimals) {
    if (length < 0 || (decimals > 0 && decimals >= length)) {
        throw cError(errInvalidArgument, "DerivedBounds.Nines");
    }
    Text text(static_cast<std::size_t>(length), '9');
    if (decimals > 0) {
        text[static_cast<std::size_t>(length - decimals - 1)] = '.';
    }
    return text;
}

}  // namespace

double MaxForMask(std::int32_t length, std::int32_t decimals) {
    return FileNumber(Nines(length, decimals));
}

double MinForMask(std::int32_t length, std::int32_t decimals) {
    Text text = Nines(length, decimals);
    if (!text.starts_with('9')) {
        return 0;
    }
    text.front() = '-';
    return FileNumber(text);
}

void DeriveBounds(cField& saved, cField& field) {
    if (IsNumericType(saved.FieldType()) && saved.Maximum() == 0 && saved.Minimum() == 0) {
        saved.SetMaximum(MaxForMask(saved.Length(), saved.Decimals()));
        saved.SetMinimum(MinForMask(saved.Length(), saved.Decimals()));
        field.CopyFrom(saved);  // the twins still hold the same values, and so go on sharing them
    }
}

}  // namespace kd::modKDLimitDesk
