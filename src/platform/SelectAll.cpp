#include "platform/SelectAll.h"

namespace kd {

SelectAll::SelectAll(CheckBox& box, ListBox& list) : m_box(box), m_list(list) {
    // Neither hears of the other's changes: handlers run for the user's doing alone.
    m_box.Click = [this] { Box_Click(); };
    m_list.SelectionChange = [this] {
        if (m_filled) {
            Show();
        }
    };
}

CheckState SelectAll::GetCheckState() const {
    const std::int32_t selected = m_list.SelectedCount();
    if (selected == m_list.Count()) {
        return csChecked;
    }
    return selected == 0 ? csUnchecked : csGrayed;
}

void SelectAll::Show() {
    m_filled = true;
    m_box.SetValue(GetCheckState());
}

void SelectAll::Box_Click() {
    if (!m_filled) {
        return;
    }
    if (GetCheckState() == csGrayed) {
        m_box.SetValue(csChecked);
    }
    m_list.SetSelectedRange(0, m_list.Count(), m_box.Value() == csChecked);  // cut to the entries
    Show();
}

}  // namespace kd
