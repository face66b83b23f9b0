#pragma once

#include <QObject>

#include "qt/grid/GridPainter.h"
#include "qt/grid/GridParts.h"

class QKeyEvent;
class QMouseEvent;

namespace kd {

class CellEditor;

/// The editor side of a grid's widget: shows the grid's open editor as a line edit in its cell, wider where
/// its text is, and hands what is typed, pressed and left there to the grid. The line edit belongs to the
/// viewport; it is hidden while no cell is edited.
class GridEditing : public QObject {
    Q_OBJECT
public:
    GridEditing(const GridParts& parts, const GridPainter& painter);

    /// The grid has opened, changed or closed its editor.
    void Changed();
    /// Puts the editor where its cell is now.
    void Arrange();
    /// Takes the cell's colours anew.
    void Colour();
    /// What is typed takes the place of the open editor's text.
    void Replace(const QString& text);
    /// Hands on an event that reached the grid while its editor is open.
    void Send(QEvent& event);
    /// The focus comes to the grid. Returns whether it belongs to the open editor, which takes it.
    bool TakeFocus();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Show();
    void Open();
    void Close();
    void FocusLost(Qt::FocusReason reason);
    void FinishAfterFocusLoss();
    bool Key(const QKeyEvent& event);
    bool RightButton(const QMouseEvent& event);

    GridParts m_parts;
    const GridPainter& m_painter;
    CellEditor* m_editor;
};

}  // namespace kd
