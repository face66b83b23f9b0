#pragma once

#include <algorithm>
#include <string>

#include "base/Bytes.h"
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
    std::string_view Upper(std::string_view key, bool mayChange);

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
        // The first control character of a line is nearly always its end, and is then the only one.
        const std::size_t control = FindControl(text, position);
        const std::size_t end =
            text.substr(control, CrLf.size()) == CrLf ? control : text.find(CrLf, control);
        if (end == std::string_view::npos) {
            return;
        }
        const std::string_view whole = text.substr(position, end - position);
        const Line line = ParseLine(control == end ? whole : WithoutControls(whole));
        if (!line.section.empty()) {
            if (line.section.front() == '[') {
                m_group = line.section;
            }
            sink(std::string_view(m_group), line.section, line.value);
        }
        position = end + CrLf.size();
    }
}

inline std::string_view IniScanner::WithoutControls(std::string_view line) {
    const auto isControl = [](char c) { return c == '\t' || c == '\r' || c == '\n'; };
    m_line = line;
    std::replace_if(m_line.begin(), m_line.end(), isControl, ' ');
    return m_line;
}

inline std::string_view IniScanner::Upper(std::string_view key, bool mayChange) {
    if (!mayChange) {
        return key;
    }
    m_upper = m_page.Upper(key);
    return m_upper;
}

inline IniScanner::Line IniScanner::ParseLine(std::string_view line) {
    const std::string_view text = line.substr(FindNotBlank(line));
    if (text.empty()) {
        return {};
    }
    if (text.front() == '[') {
        const std::string_view section = TrimRight(text);
        return {Upper(section, MayHaveCapitals(section)), {}};
    }
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        return {};
    }
    const std::string_view padded = text.substr(0, equals);
    const std::string_view key = padded.substr(0, EndBeforeBlanks(padded));
    // Asked of the blanks too: they change nothing, and a longer text is asked sooner.
    return {Upper(key, MayHaveCapitals(padded)), Trim(text.substr(equals + 1))};
}

}  // namespace kd
