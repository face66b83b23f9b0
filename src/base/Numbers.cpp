#include "base/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/cError.h"

namespace kd {

namespace {

constexpr int SignificantDigits = 15;
constexpr double TwoToThe96 = 79228162514264337593543950336.0;

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

/// Whether a number that does not fit a double is too large (else it is too small, or 0). `text` has "." as
/// separator, and no sign.
bool IsTooLarge(std::string_view text) noexcept {
    const auto exponentAt = std::min(text.find_first_of("eE"), text.size());
    const auto mantissa = text.substr(0, exponentAt);
    const auto first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) {
        return false;
    }
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

/// The 15 significant digits of a number: 0.d1d2d3... times 10^point.
struct Decimal {
    bool negative = false;
    std::array<char, SignificantDigits> digits{};
    int count = 0;  // digits without trailing zeros; 0 is the number 0
    int point = 0;

    explicit Decimal(double value) {
        negative = std::signbit(value);
        std::array<char, 40> text{};
        const auto end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                       std::chars_format::scientific, SignificantDigits - 1)
                             .ptr;
        const std::string_view view(text.data(), static_cast<std::size_t>(end - text.data()));
        const auto exponentAt = view.find('e');
        for (const char c : view.substr(0, exponentAt)) {
            if (IsDigit(c)) {
                digits[static_cast<std::size_t>(count++)] = c;
            }
        }
        auto exponent = view.substr(exponentAt + 1);
        if (exponent.front() == '+') {
            exponent.remove_prefix(1);
        }
        int power = 0;
        std::from_chars(exponent.data(), exponent.data() + exponent.size(), power);
        point = power + 1;
        Trim();
    }

    void Trim() {
        while (count > 0 && digits[static_cast<std::size_t>(count - 1)] == '0') {
            --count;
        }
        if (count == 0) {
            point = 0;
        }
    }

    /// Keeps `places` digits behind the point, half away from zero.
    void Round(int places) {
        const int kept = point + places;
        if (count == 0 || kept >= count) {
            return;
        }
        if (kept < 0) {
            count = 0;
            point = 0;
            return;
        }
        const bool up = digits[static_cast<std::size_t>(kept)] >= '5';
        count = kept;
        if (up) {
            int at = kept - 1;
            while (at >= 0 && digits[static_cast<std::size_t>(at)] == '9') {
                --at;
            }
            if (at < 0) {
                digits[0] = '1';
                count = 1;
                ++point;
            } else {
                ++digits[static_cast<std::size_t>(at)];
                count = at + 1;
            }
        }
        Trim();
    }

    double Value() const {
        if (count == 0) {
            return 0.0;
        }
        Text text(digits.data(), static_cast<std::size_t>(count));
        text += 'e';
        text += Digits(point - count);
        double value = 0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        return negative ? -value : value;
    }

    /// Plain digits without an exponent; "0" for zero.
    Text Plain() const {
        if (count == 0) {
            return "0";
        }
        Text text = negative ? "-" : "";
        const auto size = static_cast<std::size_t>(count);
        if (point <= 0) {
            text += '.';
            text.append(static_cast<std::size_t>(-point), '0');
            text.append(digits.data(), size);
        } else if (point >= count) {
            text.append(digits.data(), size);
            text.append(static_cast<std::size_t>(point - count), '0');
        } else {
            text.append(digits.data(), static_cast<std::size_t>(point));
            text += '.';
            text.append(digits.data() + point, static_cast<std::size_t>(count - point));
        }
        return text;
    }

    Text WithExponent() const {
        Text text = negative ? "-" : "";
        text += digits[0];
        if (count > 1) {
            text += '.';
            text.append(digits.data() + 1, static_cast<std::size_t>(count - 1));
        }
        const int power = point - 1;
        text += power < 0 ? "E-" : "E+";
        const Text size = Digits(std::abs(power));
        if (size.size() < 2) {
            text += '0';
        }
        return text + size;
    }

    bool NeedsExponent() const { return count > 0 && (point > SignificantDigits || point < -14); }
};

constexpr std::array<double, 7> PowersOfTen{1, 10, 100, 1000, 10000, 100000, 1000000};

/// The mask's text for everyday numbers, without the detour over the decimal digits.
class QuickMask {
public:
    /// False where a number is too large or too near to a tie for plain double arithmetic to be sure of the
    /// outcome.
    bool Lay(double value, int decimals) noexcept {
        constexpr double LargestScaled = 1e9;
        constexpr double NearTie = 1e-5;
        const int places = decimals < 0 ? 0 : decimals;
        if (places >= static_cast<int>(PowersOfTen.size())) {
            return false;
        }
        const double scaled = std::abs(value) * PowersOfTen[static_cast<std::size_t>(places)];
        if (!(scaled < LargestScaled)) {
            return false;
        }
        const auto below = static_cast<std::uint32_t>(scaled);
        const double fraction = scaled - below;
        if (std::abs(fraction - 0.5) < NearTie) {
            return false;
        }
        Write(below + (fraction > 0.5 ? 1U : 0U), value < 0, places, decimals >= 0);
        return true;
    }

    /// The last characters of the text, so many at most.
    std::string_view Last(std::size_t count) const noexcept {
        const std::string_view text(m_characters.data() + m_begin, Width - m_begin);
        return text.substr(text.size() - std::min(text.size(), count));
    }

private:
    static constexpr std::size_t Width = 16;  // sign, ten digits, point

    void Put(char c) noexcept { m_characters[--m_begin] = c; }

    void Write(std::uint32_t rounded, bool negative, int places, bool hasPoint) noexcept {
        m_begin = Width;
        std::uint32_t rest = rounded;
        for (int place = 0; place < places; ++place, rest /= 10) {
            Put(static_cast<char>('0' + rest % 10));
        }
        if (hasPoint) {
            Put('.');
        }
        for (bool isWanted = rest != 0 || rounded == 0; isWanted; isWanted = rest != 0) {
            Put(static_cast<char>('0' + rest % 10));
            rest /= 10;
        }
        if (negative && rounded != 0) {
            Put('-');
        }
    }

    std::array<char, Width> m_characters{};
    std::size_t m_begin = Width;
};

/// The mask's text for any number; the plain text cuts it to 15 digits before it is rounded.
Text LayExactly(double value, int decimals) {
    Text text = PlainText(RoundHalfAway(value, decimals < 0 ? 0 : decimals));
    if (decimals >= 0) {
        if (text.find('.') == Text::npos) {
            text += '.';
        }
        text.resize(text.find('.') + 1 + static_cast<std::size_t>(decimals), '0');
    }
    return text;
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
    double value = 0;
    if (ConvertQuickly(trimmed, separator, value)) {
        return value;
    }
    const Scanned found = Scan(trimmed, 0, separator);
    if (found.digits == 0 || found.end != trimmed.size()) {
        throw cError(errTypeMismatch, "Numbers.ToDouble");
    }
    value = Convert(trimmed, found, separator);
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

Text Digits(std::int64_t value) {
    Text text;
    AppendDigits(value, text);
    return text;
}

void AppendDigits(std::int64_t value, Text& text) {
    std::array<char, 24> digits{};
    text.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

Text PlainText(double value) {
    if (!std::isfinite(value)) {
        return std::isnan(value) ? "NAN" : value < 0 ? "-INF" : "INF";
    }
    const Decimal decimal(value);
    return decimal.NeedsExponent() ? decimal.WithExponent() : decimal.Plain();
}

Text PlainTextWithLeadingZero(double value, char separator) {
    Text text = PlainText(value);
    const std::size_t first = text.front() == '-' ? 1 : 0;
    if (text[first] == '.') {
        text.insert(first, 1, '0');
    }
    for (char& c : text) {
        if (c == '.') {
            c = separator;
        }
    }
    return text;
}

double RoundHalfAway(double value, int decimals) {
    if (!std::isfinite(value) || !(std::abs(value) * std::pow(10.0, decimals) < TwoToThe96)) {
        return value;
    }
    Decimal decimal(value);
    decimal.Round(decimals);
    return decimal.Value();
}

Text RevisionText(double value) {
    if (!std::isfinite(value)) {
        return PlainText(value);
    }
    Decimal decimal(value);
    decimal.Round(3);
    if (decimal.count == 0) {
        return ".";
    }
    Text text = decimal.Plain();
    if (text.find('.') == Text::npos) {
        text += '.';
    }
    return text;
}

Text LayIntoMask(double value, int length, int decimals) {
    Text text;
    AppendIntoMask(value, length, decimals, text);
    return text;
}

void AppendIntoMask(double value, int length, int decimals, Text& text) {
    const auto kept = static_cast<std::size_t>(length < 0 ? 0 : length);
    QuickMask quick;
    if (quick.Lay(value, decimals)) {
        text += quick.Last(kept);
        return;
    }
    const Text exact = LayExactly(value, decimals);
    text.append(exact, exact.size() - std::min(exact.size(), kept));
}

}  // namespace kd
