#pragma once

#include <utility>

#include "model/Globals.h"
#include "platform/Toolkit.h"

namespace kd {

/// The dialog that asks what to find and what to put in its place. It only collects: the command does the
/// work, and shows it again after a refusal, with what was typed still in it.
class frmReplace : public Form {
public:
    explicit frmReplace(Globals& g);

    /// Name of the column, shown in lblColumn.
    void SetLabelName(Text value) { m_labelName = std::move(value); }
    const Text& FindText() const noexcept { return m_findText; }
    void SetFindText(Text value) { m_findText = std::move(value); }
    /// Empty to delete what was found.
    const Text& ReplaceText() const noexcept { return m_replaceText; }
    void SetReplaceText(Text value) { m_replaceText = std::move(value); }
    /// Whether chkMatchCase was ticked at Replace.
    bool MatchCase() const noexcept { return m_matchCase; }
    /// True from the start; the Replace button sets it false, the Cancel button true. Closing by the frame
    /// leaves it.
    bool Cancel() const noexcept { return m_cancel; }

    /// Shows the dialog. When it is shown again, the focus stays where it was.
    void Display();

    Label Label1{"Label1"};
    Label lblColumn{"lblColumn"};
    Label lblFind{"lblFind"};
    TextBox txtFind{"txtFind"};
    Label LblReplace{"LblReplace"};
    TextBox txtReplace{"txtReplace"};
    CheckBox chkMatchCase{"chkMatchCase"};
    Button cmdReplace{"cmdReplace"};  // default button
    Button cmdCancel{"cmdCancel"};    // deliberately no cancel button: Esc does nothing here

private:
    void cmdReplace_Click();
    void cmdCancel_Click();

    Globals& m_g;
    Text m_labelName;
    Text m_findText;
    Text m_replaceText;
    bool m_matchCase = false;
    bool m_cancel = true;
    bool m_loaded = false;
};

}  // namespace kd
