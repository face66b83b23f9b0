#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "base/Expect.h"
#include "base/Text.h"

/// The controls of forms as plain state. A control tells its listener when its state changed, whoever changed
/// it; the screen's widget shows the state, and hands what the user did to the User... operations, which
/// change the state and then run the form's handler. Handlers run for the user's doing only, never for a
/// setter, so that no form has to guard against its own changes unless it is told to.
namespace kd {

class Control {
public:
    explicit Control(Text name) : m_name(std::move(name)) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// Name of the control, which is also the widget's object name.
    const Text& Name() const noexcept { return m_name; }

    bool Enabled() const noexcept { return m_enabled; }
    void SetEnabled(bool value) { Set(m_enabled, value); }
    bool Visible() const noexcept { return m_visible; }
    void SetVisible(bool value) { Set(m_visible, value); }
    const Text& Caption() const noexcept { return m_caption; }
    void SetCaption(Text value) { Set(m_caption, std::move(value)); }

    /// Asks the screen to give the control the keyboard.
    void SetFocus() {
        if (OnFocusWanted) {
            OnFocusWanted();
        }
    }

    /// The screen's listener: the state changed.
    std::function<void()> OnChanged;
    /// The screen's listener: the form wants the focus here.
    std::function<void()> OnFocusWanted;
    /// The form's handler: the user gave the control the focus.
    std::function<void()> GotFocus;

    /// The user gave the control the focus.
    void UserFocus() {
        if (GotFocus) {
            GotFocus();
        }
    }

protected:
    template <typename V>
    void Set(V& member, V value) {
        if (member != value) {
            member = std::move(value);
            Changed();
        }
    }
    void Changed() {
        if (OnChanged) {
            OnChanged();
        }
    }

private:
    Text m_name;
    Text m_caption;
    bool m_enabled = true;
    bool m_visible = true;
};

/// Text that the user reads: a label, a frame, a status panel. The caption is the text.
class Label : public Control {
public:
    using Control::Control;
    /// The form's handler, for labels that act as links.
    std::function<void()> Click;
    void UserClick() {
        if (Click) {
            Click();
        }
    }
};

class Button : public Control {
public:
    using Control::Control;
    std::function<void()> Click;
    /// Nothing happens while the button is disabled.
    void UserClick() {
        if (Enabled() && Click) {
            Click();
        }
    }
};

class TextBox : public Control {
public:
    using Control::Control;
    const Text& Value() const noexcept { return m_value; }
    void SetValue(Text value) { Set(m_value, std::move(value)); }
    /// A field holds one line: TAB, CR and LF that are typed or pasted become blanks. A text that nobody
    /// touches stays as it was set.
    void UserType(std::string_view value) { SetValue(OneLine(value)); }
    /// Asks the screen to select the whole text. A form asks before its window is there: the wish waits.
    void SelectAll() {
        m_selectAllWaits = !OnSelectAll;
        if (OnSelectAll) {
            OnSelectAll();
        }
    }
    std::function<void()> OnSelectAll;
    /// For the screen, when it comes: whether the whole text is to be selected; asked once.
    [[nodiscard]] bool TakeSelectAll() noexcept { return std::exchange(m_selectAllWaits, false); }

private:
    Text m_value;
    bool m_selectAllWaits = false;
};

/// Values of a check box.
enum CheckState : std::uint8_t { csUnchecked = 0, csChecked = 1, csGrayed = 2 };

class CheckBox : public Control {
public:
    using Control::Control;
    CheckState Value() const noexcept { return m_value; }
    void SetValue(CheckState value) { Set(m_value, value); }
    std::function<void()> Click;
    /// The user's click: clear becomes checked; checked and grey become clear. Then the handler.
    void UserClick() {
        SetValue(m_value == csUnchecked ? csChecked : csUnchecked);
        if (Click) {
            Click();
        }
    }

private:
    CheckState m_value = csUnchecked;
};

/// One option button that stands alone in a pair managed by the form, or a member of an OptionGroup.
class OptionButton : public Control {
public:
    using Control::Control;
    bool Value() const noexcept { return m_value; }
    void SetValue(bool value) { Set(m_value, value); }
    std::function<void()> Click;
    void UserClick() {
        if (Click) {
            Click();
        }
    }

private:
    bool m_value = false;
};

/// Option buttons of which one is selected; indexes count from 0. The members' captions stand in order.
class OptionGroup : public Control {
public:
    OptionGroup(Text name, std::vector<Text> captions)
        : Control(std::move(name)), m_captions(std::move(captions)) {}
    const std::vector<Text>& Captions() const noexcept { return m_captions; }
    std::int32_t Selected() const noexcept { return m_selected; }
    /// `index` is one of 0..Captions().size()-1: the caller sees to it.
    void SetSelected(std::int32_t index) {
        KD_EXPECT(index >= 0 && static_cast<std::size_t>(index) < m_captions.size());
        Set(m_selected, index);
    }
    /// The user chose or moved the focus to a member, which selects it.
    void UserSelect(std::int32_t index) {
        SetSelected(index);
        UserFocus();
    }

private:
    std::vector<Text> m_captions;
    std::int32_t m_selected = 0;
};

/// A list of texts of which any number can be selected (or ticked); indexes count from 0.
class ListBox : public Control {
public:
    struct Entry {
        Text text;
        bool selected = false;
        std::int32_t data = 0;  // the entry's integer, free for the form
    };

    using Control::Control;

    std::int32_t Count() const noexcept { return static_cast<std::int32_t>(m_entries.size()); }
    const std::vector<Entry>& Entries() const noexcept { return m_entries; }
    void Clear();
    void Add(Text text, bool selected, std::int32_t data = 0);
    /// Takes all entries at once: one change for the screen.
    void SetEntries(std::vector<Entry> entries);
    /// `index` is one of 0..Count()-1: the caller sees to it.
    bool Selected(std::int32_t index) const {
        KD_EXPECT(index >= 0 && index < Count());
        return m_entries[static_cast<std::size_t>(index)].selected;
    }
    /// Does nothing for an index that no entry has.
    void SetSelected(std::int32_t index, bool value);
    /// Selects or deselects the entries `first` to `last` in one operation: one change for the screen. A
    /// range that reaches beyond the entries is cut to them.
    void SetSelectedRange(std::int32_t first, std::int32_t last, bool value);
    std::int32_t SelectedCount() const noexcept { return m_selectedCount; }
    /// The current entry, -1 for none.
    std::int32_t ListIndex() const noexcept { return m_listIndex; }
    /// `index` is one of -1..Count()-1: the caller sees to it.
    void SetListIndex(std::int32_t index) {
        KD_EXPECT(index >= -1 && index < Count());
        Set(m_listIndex, index);
    }

    /// The form's handler: the user changed what is selected.
    std::function<void()> SelectionChange;
    void UserSelect(std::int32_t index, bool value) {
        SetSelected(index, value);
        if (SelectionChange) {
            SelectionChange();
        }
    }
    /// Several entries at once; the handler runs once.
    void UserSelect(const std::vector<std::int32_t>& indexes, bool value);

private:
    std::vector<Entry> m_entries;
    std::int32_t m_selectedCount = 0;
    std::int32_t m_listIndex = -1;
};

/// An edit field with a drop-down list.
class ComboBox : public Control {
public:
    using Control::Control;
    const Text& Value() const noexcept { return m_value; }
    void SetValue(Text value) { Set(m_value, std::move(value)); }
    const std::vector<Text>& Entries() const noexcept { return m_entries; }
    void SetEntries(std::vector<Text> entries) { Set(m_entries, std::move(entries)); }

    /// The form's handlers: the list is about to open; the user chose from the list.
    std::function<void()> DropDown;
    std::function<void()> Click;
    /// The form's handler for the Enter key in the field: whether the form has used the key up. While empty,
    /// Enter presses the window's default button.
    std::function<bool()> Enter;
    /// One line, as in a TextBox.
    void UserType(std::string_view value) { SetValue(OneLine(value)); }
    [[nodiscard]] bool UserEnter() { return Enter && Enter(); }
    void UserDropDown() {
        if (DropDown) {
            DropDown();
        }
    }
    /// The user chose the entry `index`, one of 0..Entries().size()-1: the caller sees to it. The value is
    /// that entry before the handler runs.
    void UserChoose(std::int32_t index) {
        KD_EXPECT(index >= 0 && static_cast<std::size_t>(index) < m_entries.size());
        SetValue(m_entries[static_cast<std::size_t>(index)]);
        if (Click) {
            Click();
        }
    }

private:
    Text m_value;
    std::vector<Text> m_entries;
};

/// Takes 0 to 100; a value outside is brought to the nearer end.
class ProgressBar : public Control {
public:
    using Control::Control;
    double Value() const noexcept { return m_value; }
    void SetValue(double value) { Set(m_value, std::clamp(value, 0.0, 100.0)); }

private:
    double m_value = 0;
};

/// A menu entry; one with entries of its own is a menu.
class MenuItem : public Control {
public:
    /// `accessLetter` is a letter of the caption; where the caption marks one itself, or none is to be had,
    /// 0.
    MenuItem(Text name, Text caption, char accessLetter = 0)
        : Control(std::move(name)), m_accessLetter(accessLetter) {
        SetCaption(std::move(caption));
    }

    /// The letter that chooses the entry in its open menu; 0 where the caption marks its own.
    char AccessLetter() const noexcept { return m_accessLetter; }

    bool Checked() const noexcept { return m_checked; }
    void SetChecked(bool value) {
        m_checkable = true;
        Set(m_checked, value);
    }
    /// Whether the entry ever bears a check mark.
    bool Checkable() const noexcept { return m_checkable; }

    /// The entries in order; a null stands for a separator. They belong to the form.
    const std::vector<MenuItem*>& Entries() const noexcept { return m_entries; }
    void SetEntries(std::vector<MenuItem*> entries) { m_entries = std::move(entries); }

    /// The form's handler: the entry was chosen, or the menu is about to open.
    std::function<void()> Click;
    /// Nothing happens while the entry is disabled.
    void UserClick() {
        if (Enabled() && Click) {
            Click();
        }
    }

private:
    char m_accessLetter;
    bool m_checked = false;
    bool m_checkable = false;
    std::vector<MenuItem*> m_entries;
};

}  // namespace kd
