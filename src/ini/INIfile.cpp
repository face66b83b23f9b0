#include "ini/INIfile.h"

#include <algorithm>
#include <string>

#include "ini/IniScanner.h"

namespace kd {

namespace {

std::string Encoded(const CodePage& page, const Text& text) {
    std::string bytes = page.Encode(text);
    // The page's own bytes must not look like the mark either.
    const bool needsMark = !page.CanEncode(text) || bytes.starts_with(ByteOrderMark);
    return needsMark ? std::string(ByteOrderMark) + text : bytes;
}

void AppendBlanks(Text& text, std::int64_t count) {
    text.append(static_cast<std::size_t>(std::max<std::int64_t>(count, 0)), ' ');
}

}  // namespace

bool INIfile::LoadFile(std::string_view path) {
    m_lines.Clear();
    std::string bytes;
    try {
        bytes = m_files.Read(path);
    } catch (const cError&) {
        return false;  // by contract without a word
    }
    const CodePage& page = m_locale.CodePage();
    IniScanner(page).Scan(page.DecodeMarked(bytes),
                          [&](std::string_view group, std::string_view section, std::string_view value) {
                              m_lines.Add(Text(group), Text(section), Text(value));
                          });
    return true;
}

bool INIfile::SaveFile(std::string_view path) {
    if (m_lines.Count() > MostRecords) {
        throw cError(errOverflow, "INIfile.SaveFile", {}, Text(path));
    }
    Text text;
    for (const auto& line : m_lines) {
        AppendLine(*line, text);
        text += CrLf;
    }
    try {
        m_files.ReplaceFile(path, Encoded(m_locale.CodePage(), text));
        return true;
    } catch (const cError&) {
        return false;  // by contract without a word
    }
}

void INIfile::AppendLine(const INIline& line, Text& text) const {
    const CodePage& page = m_locale.CodePage();
    const std::string_view section = Trim(line.Section());
    if (section.empty()) {
        text += page.Upper(Trim(line.Group()));
        return;
    }
    const Text key = m_ucaseSection ? page.Upper(section) : Text(section);
    AppendBlanks(text, m_leadingSpaces);
    text += key;
    const std::int64_t width =
        std::max<std::int64_t>(m_leadingSpaces, 0) + static_cast<std::int64_t>(CharacterCount(key));
    AppendBlanks(text, std::int64_t{m_equalPos} - 1 - width);
    const std::string_view value = Trim(line.Value());
    if (value.empty()) {
        text += '=';
    } else {
        text += "= ";
        text += value;
    }
}

}  // namespace kd
