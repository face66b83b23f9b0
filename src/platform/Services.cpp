#include "platform/Services.h"

#include <array>
#include <cstdio>

#include "base/cError.h"

namespace kd {

namespace {

Text Padded(int value, std::size_t width) {
    Text digits = std::to_string(value);
    return digits.size() < width ? Text(width - digits.size(), '0') + digits : digits;
}

}  // namespace

Text DateText(const DateTime& moment) {
    return Padded(moment.year, 4) + "-" + Padded(moment.month, 2) + "-" + Padded(moment.day, 2);
}

Text TimeText(const DateTime& moment) {
    return Padded(moment.hour, 2) + ":" + Padded(moment.minute, 2) + ":" + Padded(moment.second, 2);
}

DateTime ParseDateTime(std::string_view text) {
    constexpr std::string_view Form = "dddd-dd-dd dd:dd:dd";
    std::array<int, 6> parts{};
    std::size_t part = 0;
    bool good = text.size() == Form.size();
    for (std::size_t at = 0; good && at < Form.size(); ++at) {
        if (Form[at] == 'd') {
            good = text[at] >= '0' && text[at] <= '9';
            parts[part] = parts[part] * 10 + (text[at] - '0');
        } else {
            good = text[at] == Form[at];
            ++part;
        }
    }
    if (!good || parts[1] < 1 || parts[1] > 12 || parts[2] < 1 || parts[2] > 31 || parts[3] > 23 ||
        parts[4] > 59 || parts[5] > 59) {
        throw cError(errTypeMismatch, "Services.ParseDateTime");
    }
    return {parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]};
}

}  // namespace kd
