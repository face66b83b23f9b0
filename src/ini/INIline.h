#pragma once

#include <cstdint>
#include <utility>

#include "base/Text.h"
#include "base/cList.h"

namespace kd {

/// One record of an ini-style text.
class INIline {
public:
    /// The section header that the line belongs to, with its brackets.
    const Text& Group() const noexcept { return m_group; }
    void SetGroup(Text value) { m_group = std::move(value); }
    /// The key of the line.
    const Text& Section() const noexcept { return m_section; }
    void SetSection(Text value) { m_section = std::move(value); }
    const Text& Value() const noexcept { return m_value; }
    void SetValue(Text value) { m_value = std::move(value); }

private:
    Text m_group;
    Text m_section;
    Text m_value;
};

/// The records in order; keys may repeat.
class INIlines : public cList<INIline> {
public:
    Record Add(Text group, Text section, Text value) {
        auto line = std::make_shared<INIline>();
        line->SetGroup(std::move(group));
        line->SetSection(std::move(section));
        line->SetValue(std::move(value));
        return Append(std::move(line));
    }

    /// Unlike the other lists this one takes a position as it stands, so that a text of any number of lines
    /// can be read. @throws cError(errInvalidArgument) for a position outside 1..Count().
    Record Item(std::int32_t position) const {
        if (position < 1 || position > Count()) {
            throw cError(errInvalidArgument, "INIlines.Item");
        }
        return *(begin() + (position - 1));  // only here from 0
    }
    /// A text is a key, never a position, and no record has one.
    [[noreturn]] static Record Item(std::string_view /*key*/) {
        throw cError(errInvalidArgument, "INIlines.Item");
    }
    [[noreturn]] static Record Item(const char* key) { Item(std::string_view(key)); }
};

}  // namespace kd
