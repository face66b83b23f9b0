#pragma once

#include <cstdint>

#include "ini/INIline.h"
#include "platform/Files.h"
#include "platform/Services.h"

namespace kd {

/// An ini-style text as a list of lines. Order and repeated keys are kept; blank lines and lines without "="
/// are not. A text that was loaded is not meant to be saved: its section headers would become keys.
///
/// The file is text of the machine's code page. One that must hold a character which the page lacks is
/// written as UTF-8 with a byte order mark, and read by that mark. Its layout is read back by
/// tests alone.
class INIfile {
public:
    INIfile(Files& files, const Locale& locale) : m_files(files), m_locale(locale) {}

    kd::INIlines& INIlines() noexcept { return m_lines; }
    /// Whether keys are written in upper case.
    bool UcaseSection() const noexcept { return m_ucaseSection; }
    void SetUcaseSecton(bool value) noexcept { m_ucaseSection = value; }
    /// Blanks before a key.
    std::int32_t LeadingSpaces() const noexcept { return m_leadingSpaces; }
    void SetLeadingSpaces(std::int32_t value) noexcept { m_leadingSpaces = value; }
    /// Column of the "=", from 1; a longer key pushes it to the right.
    std::int32_t EqualPos() const noexcept { return m_equalPos; }
    void SetEqualPos(std::int32_t value) noexcept { m_equalPos = value; }

    /// Replaces the records by those of a file; a missing or unreadable one gives none, without a word.
    /// @returns whether the file was read.
    bool LoadFile(std::string_view path);

    /// Replaces the file by the records. What fails on the disk is not told; the earlier file then stays.
    /// @returns whether the file was written.
    /// @throws cError(errOverflow) for more than 32,767 records; nothing is written.
    bool SaveFile(std::string_view path);

private:
    void AppendLine(const INIline& line, Text& text) const;

    Files& m_files;
    const Locale& m_locale;
    kd::INIlines m_lines;
    bool m_ucaseSection = false;
    std::int32_t m_leadingSpaces = 3;
    std::int32_t m_equalPos = 17;
};

}  // namespace kd
