#include "base/NumberTexts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/Expect.h"

namespace kd {

namespace {

constexpr int SignificantDigits = 15;
constexpr double TwoToThe96 = 79228162514264337593543950336.0;

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
            if (c != '.') {
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

    /// For one that needs it: the power has two digits at least.
    Text WithExponent() const {
        Text text = negative ? "-" : "";
        text += digits[0];
        if (count > 1) {
            text += '.';
            text.append(digits.data() + 1, static_cast<std::size_t>(count - 1));
        }
        const int power = point - 1;
        text += power < 0 ? "E-" : "E+";
        return text + Digits(std::abs(power));
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
    KD_EXPECT(std::isfinite(value));
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
