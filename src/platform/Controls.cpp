#include "platform/Controls.h"

#include <algorithm>

namespace kd {

void ListBox::Clear() {
    m_entries.clear();
    m_selectedCount = 0;
    m_listIndex = -1;
    Changed();
}

void ListBox::Add(Text text, bool selected, std::int32_t data) {
    m_entries.push_back({std::move(text), selected, data});
    m_selectedCount += selected ? 1 : 0;
    Changed();
}

void ListBox::SetEntries(std::vector<Entry> entries) {
    m_entries = std::move(entries);
    m_selectedCount = static_cast<std::int32_t>(
        std::count_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return entry.selected; }));
    m_listIndex = -1;
    Changed();
}

void ListBox::SetSelected(std::int32_t index, bool value) {
    SetSelectedRange(index, index, value);
}

void ListBox::SetSelectedRange(std::int32_t first, std::int32_t last, bool value) {
    bool changed = false;
    for (std::int32_t index = std::max(first, 0); index <= last && index < Count(); ++index) {
        bool& selected = m_entries[static_cast<std::size_t>(index)].selected;
        if (selected != value) {
            selected = value;
            m_selectedCount += value ? 1 : -1;
            changed = true;
        }
    }
    if (changed) {
        Changed();
    }
}

void ListBox::UserSelect(const std::vector<std::int32_t>& indexes, bool value) {
    for (const std::int32_t index : indexes) {
        SetSelected(index, value);
    }
    if (SelectionChange) {
        SelectionChange();
    }
}

}  // namespace kd
