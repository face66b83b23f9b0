#pragma once

#include "base/Text.h"
#include "platform/Services.h"

namespace kd::modKDLimitDesk {

/// The decimal separator of the user's locale, taken afresh on each call.
inline char LocaleDecimalSeparator(const Locale& locale) {
    return locale.DecimalSeparator();
}

/// The text, trimmed, with the other decimal separator ("," or ".") replaced by the locale's. Empty when it
/// holds both: mixed separators are refused.
Text NormalizeDecimalText(std::string_view text, const Locale& locale);

}  // namespace kd::modKDLimitDesk
