#pragma once

#include <array>
#include <string>
#include <unordered_map>

#include "base/Text.h"

namespace kd {

/// The bytes at the front of a file that is marked as UTF-8.
inline constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

/// A single-byte code page: the one door between the bytes of a file and Text. Every byte value has a
/// character of its own, so that a file's bytes survive decoding and encoding unchanged: a byte that the page
/// leaves undefined stands for the control character of its number, or from 0xA0 on for a private character.
class CodePage {
public:
    /// The page of that number (874, 1250 to 1258); 1252 for a number that is not known.
    static const CodePage& Of(int number);

    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    int Number() const noexcept { return m_number; }

    /// The text of a file's bytes.
    Text Decode(std::string_view bytes) const;
    /// The text of a file's bytes where a byte order mark may tell that they are UTF-8.
    Text DecodeMarked(std::string_view bytes) const;
    /// The text of a file's bytes: the bytes themselves where they are all ASCII, else what is put into the
    /// buffer, which keeps its capacity from call to call.
    std::string_view DecodeInto(std::string_view bytes, Text& buffer) const;
    /// The bytes of a text. A character that the page lacks becomes "?".
    std::string Encode(std::string_view text) const;
    /// Whether the page has every character of the text.
    bool CanEncode(std::string_view text) const;

    /// The text as a file would give it back: a character that the page lacks becomes "?". What is typed or
    /// pasted enters through here, so that nothing changes silently at the save.
    Text Narrowed(std::string_view text) const;

    /// Upper case, one character for one; a letter without a single capital in the page stays, and so does a
    /// character that the page lacks. The number of characters never changes.
    Text Upper(std::string_view text) const;
    /// Appends the same.
    void AppendUpper(std::string_view text, Text& upper) const;

    CodePage(int number, const std::array<char16_t, 256>& decode,
             const std::array<unsigned char, 256>& upper);
    ~CodePage() = default;

private:
    void DecodeTo(std::string_view bytes, Text& text) const;

    int m_number;
    std::array<Text, 256> m_text;                         // UTF-8 of each byte
    std::array<unsigned char, 256> m_upper;               // byte of each byte's capital
    std::unordered_map<char32_t, unsigned char> m_bytes;  // byte of each character outside ASCII
};

}  // namespace kd
