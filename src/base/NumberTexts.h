#pragma once

#include <cstdint>

#include "base/Text.h"

/// Numbers to texts, and rounded as texts are. Nothing here asks the locale: the decimal separator is a
/// parameter where one counts.
namespace kd {

/// Plain digits with "-" in front of a negative number.
Text Digits(std::int64_t value);
/// Appends the same.
void AppendDigits(std::int64_t value, Text& text);

/// The shortest text of up to 15 significant digits, always with "." and without a digit before the point
/// when the size is below 1 (".5", "-.25"). From 1E+15 on and below 1E-15 with an exponent: "1E+15",
/// "1.5E-16". What is no number, or endless, is "NAN", "INF" and "-INF".
Text PlainText(double value);

/// PlainText with a digit before the point ("0.5") and with `separator` in place of the point.
Text PlainTextWithLeadingZero(double value, char separator);

/// Rounded to `decimals` places (0 or more), half away from zero, as the number's 15 significant digits say:
/// 1.005 at two places is 1.01. A number of which value * 10^decimals reaches 2^96 comes back as it is, and
/// so does what is no number.
double RoundHalfAway(double value, int decimals);

/// At most three decimals, rounded half away from zero, no trailing zeros, always a point, no digit before
/// the point below 1: 7 gives "7.", 0.5 ".5", 0 ".". `value` is finite: the caller sees to it.
Text RevisionText(double value);

/// Lays a number into a mask of `length` characters of which the `decimals` last ones stand behind the point;
/// `decimals` below 0 is a mask without a point. The text is padded with zeros behind the point, and keeps
/// only its last `length` characters: a number too wide loses its leading digits. Not padded with blanks in
/// front: the result is the trimmed text. Always with ".".
Text LayIntoMask(double value, int length, int decimals);
/// Appends the same.
void AppendIntoMask(double value, int length, int decimals, Text& text);

}  // namespace kd
