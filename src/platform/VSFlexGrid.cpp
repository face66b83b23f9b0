#include "platform/VSFlexGrid.h"

#include "base/Scope.h"

namespace kd {

void VSFlexGrid::CellsLeave(std::int32_t first) {
    if (Row() >= first) {
        CancelEdit();
    }
}

void VSFlexGrid::CellsHide() {
    if (m_editing && (RowHidden(Row()) || ColHidden(Col()))) {
        CancelEdit();
    }
}

void VSFlexGrid::CurrentCellMoved() {
    if (RowColChange) {
        RowColChange();
    }
}

void VSFlexGrid::SetEditText(std::string_view text) {
    if (!m_editing) {
        return;
    }
    m_editText = TypedText ? TypedText(text) : Text(text);
    if (m_editText != text) {
        EditorDiffers();
    }
}

bool VSFlexGrid::StartEdit() {
    if (m_editing) {
        return true;
    }
    if (Row() >= Rows() || Col() >= Cols()) {
        return false;
    }
    bool cancel = false;
    if (BeforeEdit) {
        BeforeEdit(Row(), Col(), cancel);
    }
    if (cancel) {
        return false;
    }
    m_editText = TextMatrix(Row(), Col());
    m_editing = true;
    EditorDiffers();
    return true;
}

bool VSFlexGrid::FinishEdit() {
    if (!m_editing) {
        return true;
    }
    if (m_finishing) {
        return false;  // the refusal's message box takes the focus: that is no second way out
    }
    const std::int32_t row = Row();
    const std::int32_t col = Col();
    {
        m_finishing = true;
        const Scope done([this] { m_finishing = false; });
        bool cancel = false;
        if (ValidateEdit) {
            ValidateEdit(row, col, cancel);
        }
        if (cancel) {
            return false;
        }
        m_editing = false;
        if (m_editText != TextMatrix(row, col)) {
            SetTextMatrix(row, col, m_editText);
        }
        EditorDiffers();
    }
    if (AfterEdit) {
        AfterEdit(row, col);
    }
    return true;
}

void VSFlexGrid::CancelEdit() {
    if (m_editing) {
        m_editing = false;
        EditorDiffers();
    }
}

}  // namespace kd
