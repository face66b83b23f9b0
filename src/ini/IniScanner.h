#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "base/CodePage.h"
#include "base/Text.h"

namespace kd {

/// Walks the lines of an ini-style text and hands each record on, without keeping one: schema files of many
/// megabytes are read through it. CR LF alone ends a line; text behind the last CR LF is not seen.
class IniScanner {
public:
    /// `page` gives the capitals of keys.
    explicit IniScanner(const CodePage& page) : m_page(page) {}

    /// Calls sink(group, section, value) for each record in order: `group` is the section line that the
    /// record belongs to, with its brackets, and `section` the record's key, both in upper case; `value` is
    /// trimmed. A section line is a record too, of which group and section are the same and the value is
    /// empty. Lines without a key are left out. The views are good during the call alone.
    template <typename Sink>
    void Scan(std::string_view text, Sink&& sink);

private:
    struct Line {
        std::string_view section;
        std::string_view value;
    };

    Line ParseLine(std::string_view line);
    std::string_view WithoutControls(std::string_view line);
    std::string_view Upper(std::string_view key);

    const CodePage& m_page;
    std::string m_group;
    std::string m_line;   // a line in which TAB, CR and LF became blanks
    std::string m_upper;  // the last key that was not in upper case already
};

template <typename Sink>
void IniScanner::Scan(std::string_view text, Sink&& sink) {
    m_group.clear();
    std::size_t position = 0;
    for (;;) {
        const std::size_t end = text.find(CrLf, position);
        if (end == std::string_view::npos) {
            return;
        }
        const Line line = ParseLine(text.substr(position, end - position));
        if (!line.section.empty()) {
            if (line.section.front() == '[') {
                m_group = line.section;
            }
            sink(std::string_view(m_group), line.section, line.value);
        }
        position = end + CrLf.size();
    }
}

/// Whether a byte below that of the blank stands in the text, eight at a time: next to no line has one, and
/// each is asked.
inline bool HoldsControl(std::string_view text) noexcept {
    constexpr std::uint64_t Each = 0x0101010101010101ULL;
    const auto eightHoldOne = [text](std::size_t at) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + at, 8);
        return ((eight - Each * 0x20U) & ~eight & (Each * 0x80U)) != 0;
    };
    if (text.size() < 8) {
        return std::any_of(text.begin(), text.end(),
                           [](char c) { return static_cast<unsigned char>(c) < 0x20U; });
    }
    for (std::size_t at = 0; at + 8 < text.size(); at += 8) {
        if (eightHoldOne(at)) {
            return true;
        }
    }
    return eightHoldOne(text.size() - 8);
}

inline std::string_view IniScanner::WithoutControls(std::string_view line) {
    if (!HoldsControl(line)) {
        return line;
    }
    const auto isControl = [](char c) { return c == '\t' || c == '\r' || c == '\n'; };
    m_line = line;
    std::replace_if(m_line.begin(), m_line.end(), isControl, ' ');
    return m_line;
}

inline std::string_view IniScanner::Upper(std::string_view key) {
    const auto mayChange = [](char c) {
        return (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80U;
    };
    if (std::none_of(key.begin(), key.end(), mayChange)) {
        return key;
    }
    m_upper = m_page.Upper(key);
    return m_upper;
}

inline IniScanner::Line IniScanner::ParseLine(std::string_view line) {
    const std::string_view text = Trim(WithoutControls(line));
    if (text.empty()) {
        return {};
    }
    if (text.front() == '[') {
        return {Upper(text), {}};
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        return {};
    }
    return {Upper(TrimRight(text.substr(0, equals))), Trim(text.substr(equals + 1))};
}

}  // namespace kd
