#include "base/CodePage.h"

#include <cstdint>
#include <deque>

#include "base/Bytes.h"
#include "base/CodePageTables.h"

namespace kd {

namespace {

Text Utf8Of(char16_t character) {
    Text text;
    const auto code = static_cast<std::uint32_t>(character);
    if (code < 0x80U) {
        text += static_cast<char>(code);
    } else if (code < 0x800U) {
        text += static_cast<char>(0xC0U | (code >> 6U));
        text += static_cast<char>(0x80U | (code & 0x3FU));
    } else {
        text += static_cast<char>(0xE0U | (code >> 12U));
        text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
        text += static_cast<char>(0x80U | (code & 0x3FU));
    }
    return text;
}

/// Calls ascii(run) for runs of ASCII and other(character, its UTF-8) for the rest, in order.
template <typename Ascii, typename Other>
void ForEachRun(std::string_view text, Ascii ascii, Other other) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t run = AsciiRun(text.substr(at));
        if (run > 0) {
            ascii(text.substr(at, run));
            at += run;
            continue;
        }
        const std::size_t begin = at;
        const char32_t character = NextCharacter(text, at);
        other(character, text.substr(begin, at - begin));
    }
}

}  // namespace

CodePage::CodePage(int number, const std::array<char16_t, 256>& decode,
                   const std::array<unsigned char, 256>& upper)
    : m_number(number), m_upper(upper) {
    for (std::size_t byte = 0; byte < decode.size(); ++byte) {
        m_text[byte] = Utf8Of(decode[byte]);
        if (byte >= 0x80U) {
            m_bytes.emplace(decode[byte], static_cast<unsigned char>(byte));
        }
    }
}

const CodePage& CodePage::Of(int number) {
    static const std::deque<CodePage> pages = [] {
        std::deque<CodePage> made;
        for (const auto& table : tables::Pages) {
            made.emplace_back(table.number, table.decode, table.upper);
        }
        return made;
    }();
    const CodePage* western = nullptr;
    for (const CodePage& page : pages) {
        if (page.Number() == number) {
            return page;
        }
        if (page.Number() == 1252) {
            western = &page;
        }
    }
    return *western;
}

void CodePage::DecodeTo(std::string_view bytes, Text& text) const {
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t run = AsciiRun(bytes.substr(at));
        text.append(bytes.substr(at, run));
        at += run;
        while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) >= 0x80U) {
            text += m_text[static_cast<unsigned char>(bytes[at++])];
        }
    }
}

std::string_view CodePage::DecodeInto(std::string_view bytes, Text& buffer) const {
    if (AsciiRun(bytes) == bytes.size()) {
        return bytes;
    }
    buffer.clear();
    DecodeTo(bytes, buffer);
    return buffer;
}

Text CodePage::Decode(std::string_view bytes) const {
    Text text;
    text.reserve(bytes.size());
    DecodeTo(bytes, text);
    return text;
}

std::string CodePage::Encode(std::string_view text) const {
    std::string bytes;
    bytes.reserve(text.size());
    ForEachRun(
        text, [&](std::string_view run) { bytes.append(run); },
        [&](char32_t character, std::string_view) {
            const auto found = m_bytes.find(character);
            bytes += found == m_bytes.end() ? '?' : static_cast<char>(found->second);
        });
    return bytes;
}

bool CodePage::CanEncode(std::string_view text) const {
    bool all = true;
    ForEachRun(
        text, [](std::string_view) {},
        [&](char32_t character, std::string_view) { all = all && m_bytes.count(character) != 0; });
    return all;
}

Text CodePage::DecodeMarked(std::string_view bytes) const {
    return bytes.starts_with(ByteOrderMark) ? Text(bytes.substr(ByteOrderMark.size())) : Decode(bytes);
}

Text CodePage::Narrowed(std::string_view text) const {
    Text seen;
    seen.reserve(text.size());
    ForEachRun(
        text, [&](std::string_view run) { seen.append(run); },
        [&](char32_t character, std::string_view bytes) {
            if (m_bytes.count(character) != 0) {
                seen.append(bytes);
            } else {
                seen += '?';
            }
        });
    return seen;
}

Text CodePage::Upper(std::string_view text) const {
    Text upper;
    upper.reserve(text.size());
    AppendUpper(text, upper);
    return upper;
}

void CodePage::AppendUpper(std::string_view text, Text& upper) const {
    if (!MayHaveCapitals(text)) {
        upper.append(text);
        return;
    }
    ForEachRun(
        text,
        [&](std::string_view run) {
            for (const char c : run) {
                upper += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
            }
        },
        [&](char32_t character, std::string_view bytes) {
            const auto found = m_bytes.find(character);
            if (found == m_bytes.end()) {
                upper.append(bytes);
            } else {
                upper += m_text[m_upper[found->second]];
            }
        });
}

}  // namespace kd
