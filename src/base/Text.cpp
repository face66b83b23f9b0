#include "base/Text.h"

#include <algorithm>

namespace kd {

namespace {

char UpperChar(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool StartsCharacter(char c) noexcept {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

}  // namespace

Text UpperAscii(std::string_view text) {
    Text result(text);
    std::transform(result.begin(), result.end(), result.begin(), UpperChar);
    return result;
}

bool EqualsNoCaseAscii(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return UpperChar(x) == UpperChar(y); });
}

Text OneLine(std::string_view text) {
    Text line(text);
    const auto isEnd = [](char c) { return c == '\t' || c == '\r' || c == '\n'; };
    std::replace_if(line.begin(), line.end(), isEnd, ' ');
    return line;
}

void BlankLineEnds(Text& text, std::size_t from) {
    for (std::size_t at = text.find(CrLf, from); at != Text::npos; at = text.find(CrLf, at)) {
        text.replace(at, CrLf.size(), CrLf.size(), ' ');
    }
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    if (text.empty()) {
        return parts;
    }
    std::size_t begin = 0;
    for (;;) {
        const auto end = text.find(separator, begin);
        if (end == std::string_view::npos) {
            parts.push_back(text.substr(begin));
            return parts;
        }
        parts.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

char32_t NextCharacter(std::string_view text, std::size_t& at) noexcept {
    constexpr char32_t Bad = 0xFFFD;
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byteAt(at++);
    if (first < 0xC0U) {
        return Bad;
    }
    const int more = first >= 0xF0U ? 3 : first >= 0xE0U ? 2 : 1;
    char32_t code = first & (0x1FU >> static_cast<unsigned>(more - 1));
    for (int i = 0; i < more; ++i) {
        if (at >= text.size() || (byteAt(at) & 0xC0U) != 0x80U) {
            return Bad;
        }
        code = (code << 6U) | (byteAt(at++) & 0x3FU);
    }
    constexpr char32_t Least[] = {0x80, 0x800, 0x10000};
    return code < Least[more - 1] ? Bad : code;
}

std::size_t CharacterCount(std::string_view text) noexcept {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), StartsCharacter));
}

std::size_t ByteOffset(std::string_view text, std::size_t position) noexcept {
    std::size_t count = 0;
    for (std::size_t offset = 0; offset < text.size(); ++offset) {
        if (StartsCharacter(text[offset]) && ++count == position) {
            return offset;
        }
    }
    return text.size();
}

}  // namespace kd
