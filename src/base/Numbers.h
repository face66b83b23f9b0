#pragma once

#include <cstdint>

#include "base/Text.h"

/// Texts to numbers. Nothing here asks the locale: the decimal separator is a parameter where one counts.
namespace kd {

/// The number at the front of a text, with "." as the point: leading blanks are skipped; an optional sign;
/// digits with an optional point, or a point with digits; an exponent directly behind. What follows is
/// ignored. A text without a number gives 0. A number beyond the range of a double gives infinity, or 0 when
/// too small.
double NumberAtFront(std::string_view text) noexcept;

/// Whether `text` is a number, blanks around it allowed: an optional sign, ASCII digits with at most one
/// `separator`, an optional exponent; within the range of a double. The empty text is none.
bool IsNumber(std::string_view text, char separator) noexcept;

/// The value of a text for which IsNumber holds.
/// @throws cError(errTypeMismatch) for any other text.
double ToDouble(std::string_view text, char separator);

/// Rounded to the nearest whole number, a tie to the even one.
/// @throws cError(errOverflow) outside the width, and for what is no number.
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

}  // namespace kd
