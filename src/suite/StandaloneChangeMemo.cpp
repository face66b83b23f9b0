#include "suite/StandaloneChangeMemo.h"

#include <algorithm>

#include "base/Expect.h"
#include "base/cError.h"
#include "suite/ChangeFile.h"

namespace kd {

namespace {

Text Padded(const Text& text, std::size_t width) {
    const std::size_t count = CharacterCount(text);
    return count < width ? text + Text(width - count, ' ') : text;
}

}  // namespace

StandaloneChangeMemo::~StandaloneChangeMemo() {
    try {
        CloseMemo();
    } catch (...) {
        // Nothing may leave a destructor. The failure that ended the commit has been told.
    }
}

void StandaloneChangeMemo::OpenMemo(std::string_view path) {
    KD_EXPECT(!m_file);
    const ChangeFileEnd end = EndOf(m_files, path);
    m_file = m_files.OpenForAppend(path);
    m_head.clear();
    m_items.clear();
    if (end == ChangeFileEnd::OpenLine) {
        m_file->Write(CrLf);
    }
}

void StandaloneChangeMemo::BeginEntry(std::string_view view, std::string_view user, std::string_view date,
                                      std::string_view time) {
    if (!m_file) {
        throw cError(errInvalidArgument, "StandaloneChangeMemo.BeginEntry");
    }
    WriteEntry();
    m_head = OneLine(view) + ", " + OneLine(user) + ", " + Text(date) + " " + Text(time);
}

void StandaloneChangeMemo::WriteItem(std::string_view variable, std::string_view property,
                                     std::string_view oldValue, std::string_view newValue) {
    if (m_head.empty()) {
        throw cError(errInvalidArgument, "StandaloneChangeMemo.WriteItem");
    }
    m_items.push_back({OneLine(variable), OneLine(property), OneLine(oldValue), OneLine(newValue)});
}

Text StandaloneChangeMemo::EntryText() const {
    std::array<std::size_t, 3> widths{};
    for (const auto& item : m_items) {
        for (std::size_t column = 0; column < widths.size(); ++column) {
            widths[column] = std::max(widths[column], CharacterCount(item[column]));
        }
    }
    Text text = m_head;
    text += CrLf;
    for (const auto& [variable, property, oldValue, newValue] : m_items) {
        text += "   ";
        text += Padded(variable + ",", widths[0] + 1);
        text += " ";
        text += Padded(property + ",", widths[1] + 1);
        text += " ";
        text += Padded(oldValue, widths[2]);
        text += " -> ";
        text += newValue;
        text += CrLf;
    }
    text += CrLf;
    return text;
}

void StandaloneChangeMemo::WriteEntry() {
    if (!m_head.empty()) {
        const std::string entry = m_page.Encode(EntryText());
        m_head.clear();  // an entry that fails is not tried once more behind its own half
        m_items.clear();
        m_file->Write(entry);
    }
}

void StandaloneChangeMemo::CloseMemo() {
    if (m_file) {
        WriteEntry();
        const auto file = std::move(m_file);
        file->CloseForSettling();
    }
}

}  // namespace kd
