#include "qt/grid/CellEditor.h"

#include <QKeyEvent>
#include <QPainter>
#include <limits>

#include "qt/grid/GridMetrics.h"
#include "qt/services/Frame.h"

namespace kd {

CellEditor::CellEditor(QWidget* parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("CellEditor"));
    setContextMenuPolicy(Qt::NoContextMenu);  // the grid has one menu, which the edit commands belong to
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max());         // a text is never cut
    setTextMargins(CellMargin - 2, 0, CellMargin - 2, 0);  // a line edit has 2 pixels of its own
    setAutoFillBackground(true);
}

void CellEditor::keyPressEvent(QKeyEvent* event) {
    QLineEdit::keyPressEvent(event);
    event->accept();
}

void CellEditor::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    DrawFrame(painter, rect(), FrameWidth, palette().color(QPalette::Highlight));
}

}  // namespace kd
