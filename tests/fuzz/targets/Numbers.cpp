#include "base/Numbers.h"
#include "base/NumberTexts.h"

#include <algorithm>
#include <cmath>

#include "base/CodePage.h"
#include "base/cError.h"
#include "fakes/FakeServices.h"
#include "fuzz/FuzzTargets.h"
#include "grid/CellGate.h"
#include "model/Decimals.h"

namespace kd::fuzz {

void Numbers(std::string_view input) {
    const Text text = CodePage::Of(1252).Decode(input);
    const double number = NumberAtFront(text);
    if (std::isfinite(number)) {
        const Text plain = PlainText(number);
        const double again = NumberAtFront(plain);
        Promise(PlainText(again) == plain, "what is written is read back");
        Promise(std::fabs(again - number) <= std::fabs(number) * 1e-14, "fifteen digits are kept");
        Promise(NumberAtFront(RevisionText(number)) ==
                    NumberAtFront(RevisionText(NumberAtFront(RevisionText(number)))),
                "a revision is read back");
    }
    for (const char separator : {'.', ','}) {
        FakeLocale locale;
        locale.separator = separator;
        const Text normal = modKDLimitDesk::NormalizeDecimalText(text, locale);
        Promise(modKDLimitDesk::NormalizeDecimalText(normal, locale) == normal,
                "a normal text stays as it is");
        if (IsNumericText(text, locale)) {
            const double value = ParseCellNumber(text, locale);
            Promise(std::isfinite(value), "a numeric text has a value");
            const Text shown = PlainTextWithLeadingZero(value, separator);
            Promise(IsNumericText(shown, locale), "a number is shown as a number");
        }
        if (IsNumber(text, separator)) {
            Promise(std::isfinite(ToDouble(text, separator)), "a number has a value");
        }
    }
    for (const int decimals : {-1, 0, 2, 7}) {
        const int length = input.empty() ? 8 : 8 + static_cast<unsigned char>(input.front()) % 64;
        Promise(CharacterCount(LayIntoMask(number, length, decimals)) <= static_cast<std::size_t>(length),
                "a masked number fits its mask");
    }
}

}  // namespace kd::fuzz
