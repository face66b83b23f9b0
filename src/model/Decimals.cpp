#include "model/Decimals.h"

namespace kd::modKDLimitDesk {

Text NormalizeDecimalText(std::string_view text, const Locale& locale) {
    Text result(Trim(text));
    const char separator = LocaleDecimalSeparator(locale);
    const char other = separator == '.' ? ',' : '.';
    if (result.find(other) == Text::npos) {
        return result;
    }
    if (result.find(separator) != Text::npos) {
        return {};
    }
    for (char& c : result) {
        if (c == other) {
            c = separator;
        }
    }
    return result;
}

}  // namespace kd::modKDLimitDesk
