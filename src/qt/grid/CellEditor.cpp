#include "qt/grid/CellEditor.h"

#include <QKeyEvent>
#include <QPainter>
#include <limits>

#include "qt/grid/GridMetrics.h"

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
    const QColor colour = palette().color(QPalette::Highlight);
    painter.fillRect(0, 0, width(), 2, colour);
    painter.fillRect(0, height() - 2, width(), 2, colour);
    painter.fillRect(0, 0, 2, height(), colour);
    painter.fillRect(width() - 2, 0, 2, height(), colour);
}

}  // namespace kd
