#pragma once

#include "platform/Controls.h"

namespace kd {

/// The box of three states above a list: shows whether all of the list's entries are selected, none or some,
/// and selects all of them or none. Neither reacts before the first Show. Takes the handlers of both
/// controls, which outlive it.
class SelectAll {
public:
    SelectAll(CheckBox& box, ListBox& list);
    SelectAll(const SelectAll&) = delete;
    SelectAll& operator=(const SelectAll&) = delete;

    /// Checked when all entries are selected (of an empty list too), clear when none is, else grey.
    CheckState GetCheckState() const;
    /// Sets the box by the list. To be called when the form itself has changed the list.
    void Show();

private:
    void Box_Click();

    CheckBox& m_box;
    ListBox& m_list;
    bool m_filled = false;
};

}  // namespace kd
