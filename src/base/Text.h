#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text of the program: UTF-8. Every text that reaches a file or a cell has passed a code page (CodePage.h),
/// so that it holds only characters which that page can write.
namespace kd {

using Text = std::string;

/// Line end of every file of the suite.
inline constexpr std::string_view CrLf = "\r\n";

/// Without the blanks (U+0020 alone; no tabs, no line ends) at both ends.
inline std::string_view Trim(std::string_view text) noexcept;
/// Without the blanks (U+0020 alone) at the end.
inline std::string_view TrimRight(std::string_view text) noexcept;
/// Upper case of the letters a to z, all else as it stands. For keys and other plain ASCII words; a text of
/// the user goes through CodePage::Upper.
Text UpperAscii(std::string_view text);
/// Whether both texts are the same but for the case of the letters a to z.
bool EqualsNoCaseAscii(std::string_view a, std::string_view b) noexcept;

/// The text as it stands in a line of a file: TAB, CR and LF become blanks.
Text OneLine(std::string_view text);
/// Turns each CR LF from offset `from` on into two blanks, in place: nothing else ends a line of a file. A CR
/// or LF by itself stays.
void BlankLineEnds(Text& text, std::size_t from = 0);

/// The parts of `text` between the separators, empty ones too. An empty text has no part at all.
std::vector<std::string_view> Split(std::string_view text, char separator);

/// Reads one character of UTF-8 that is no ASCII, and moves `at` behind it. Bytes that are no UTF-8 are
/// U+FFFD, which no page has, and so is a character in more bytes than it needs: it would come back in
/// fewer.
char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept;
/// Number of characters (not bytes).
std::size_t CharacterCount(std::string_view text) noexcept;
/// Offset in bytes, from 0, of the character at `position`, from 1. The position behind the last character
/// gives the size of the text, and so does any larger one.
std::size_t ByteOffset(std::string_view text, std::size_t position) noexcept;

// Every line of a file goes through these.
inline std::string_view TrimRight(std::string_view text) noexcept {
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

inline std::string_view Trim(std::string_view text) noexcept {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    return TrimRight(text);
}

}  // namespace kd
