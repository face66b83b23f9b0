#include "base/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/Expect.h"
#include "base/cError.h"

namespace kd {

namespace {

bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// A number's text in its pieces. `end` is the offset behind it; `digits` is 0 when there is no number.
struct Scanned {
    bool negative = false;
    std::size_t begin = 0;  // of the digits, behind the sign
    std::size_t end = 0;
    int digits = 0;
};

/// Scans sign, digits with at most one separator, and an exponent of at least one digit.
Scanned Scan(std::string_view text, std::size_t at, char separator) noexcept {
    Scanned found;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
        found.negative = text[at] == '-';
        ++at;
    }
    found.begin = at;
    bool separated = false;
    for (; at < text.size(); ++at) {
        if (IsDigit(text[at])) {
            ++found.digits;
        } else if (text[at] == separator && !separated) {
            separated = true;
        } else {
            break;
        }
    }
    found.end = at;
    if (found.digits > 0 && at < text.size() && (text[at] == 'E' || text[at] == 'e')) {
        ++at;
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
            ++at;
        }
        if (at < text.size() && IsDigit(text[at])) {
            while (at < text.size() && IsDigit(text[at])) {
                ++at;
            }
            found.end = at;
        }
    }
    return found;
}

/// Whether a number that does not fit a double is too large (else it is too small). `text` has "." as
/// separator, and no sign; 0 always fits.
bool IsTooLarge(std::string_view text) noexcept {
    const auto exponentAt = std::min(text.find_first_of("eE"), text.size());
    const auto mantissa = text.substr(0, exponentAt);
    const auto first = mantissa.find_first_of("123456789");
    KD_EXPECT(first != std::string_view::npos);
    const auto point = std::min(mantissa.find('.'), mantissa.size());
    // Places of the first digit that counts before the point (positive) or behind it.
    const std::int64_t size = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    std::string_view exponent = text.substr(std::min(exponentAt + 1, text.size()));
    const bool negative = !exponent.empty() && exponent.front() == '-';
    if (!exponent.empty() && (negative || exponent.front() == '+')) {
        exponent.remove_prefix(1);
    }
    std::int32_t power = 0;
    const auto end = exponent.data() + exponent.size();
    if (std::from_chars(exponent.data(), end, power).ec == std::errc::result_out_of_range) {
        return !negative;
    }
    return size + (negative ? -std::int64_t{power} : std::int64_t{power}) > 0;
}

/// The number of a text that is nothing but a number of up to 15 characters: a sign, digits, at most one
/// separator. Plain arithmetic gives it exactly rounded, since both parts of the quotient are whole numbers
/// that a double holds. False for any other text.
bool ConvertQuickly(std::string_view text, char separator, double& value) noexcept {
    constexpr std::array<double, 16> Powers{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (text.empty() || text.size() >= Powers.size()) {
        return false;
    }
    const bool negative = text.front() == '-';
    const std::size_t begin = negative || text.front() == '+' ? 1 : 0;
    std::uint64_t digits = 0;
    std::size_t point = text.size();
    for (std::size_t at = begin; at < text.size(); ++at) {
        const auto digit = static_cast<unsigned>(text[at]) - unsigned{'0'};
        if (digit <= 9) {
            digits = digits * 10 + digit;
        } else if (text[at] == separator && point == text.size()) {
            point = at;
        } else {
            return false;
        }
    }
    const std::size_t behind = point == text.size() ? 0 : text.size() - point - 1;
    if (point - begin + behind == 0) {
        return false;  // no digits
    }
    value = static_cast<double>(digits) / Powers[behind];
    value = negative ? -value : value;
    return true;
}

double Convert(std::string_view text, const Scanned& found, char separator) noexcept {
    std::string_view number = text.substr(found.begin, found.end - found.begin);
    double value = 0;
    Text withPoint;
    if (separator != '.') {
        withPoint = number;
        for (char& c : withPoint) {
            if (c == separator) {
                c = '.';
            }
        }
        number = withPoint;
    }
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        value = IsTooLarge(number) ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return found.negative ? -value : value;
}

std::size_t SkipBlanks(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size() && text[at] == ' ') {
        ++at;
    }
    return at;
}

}  // namespace

double NumberAtFront(std::string_view text) noexcept {
    double value = 0;
    if (ConvertQuickly(text, '.', value)) {
        return value;
    }
    const Scanned found = Scan(text, SkipBlanks(text), '.');
    return found.digits == 0 ? 0.0 : Convert(text, found, '.');
}

bool IsNumber(std::string_view text, char separator) noexcept {
    const std::string_view trimmed = Trim(text);
    double quick = 0;
    if (ConvertQuickly(trimmed, separator, quick)) {
        return true;
    }
    const Scanned found = Scan(trimmed, 0, separator);
    return found.digits > 0 && found.end == trimmed.size() &&
           std::isfinite(Convert(trimmed, found, separator));
}

double ToDouble(std::string_view text, char separator) {
    const std::string_view trimmed = Trim(text);
    double quick = 0;
    if (ConvertQuickly(trimmed, separator, quick)) {
        return quick;
    }
    const Scanned found = Scan(trimmed, 0, separator);
    if (found.digits == 0 || found.end != trimmed.size()) {
        throw cError(errTypeMismatch, "Numbers.ToDouble");
    }
    const double value = Convert(trimmed, found, separator);
    if (!std::isfinite(value)) {
        throw cError(errTypeMismatch, "Numbers.ToDouble");
    }
    return value;
}

std::int16_t ToInt16(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -32768.0 && rounded <= 32767.0)) {
        throw cError(errOverflow, "Numbers.ToInt16");
    }
    return static_cast<std::int16_t>(rounded);
}

std::int32_t ToInt32(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) {
        throw cError(errOverflow, "Numbers.ToInt32");
    }
    return static_cast<std::int32_t>(rounded);
}

}  // namespace kd
