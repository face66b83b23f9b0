#pragma once

#include <QLineEdit>

namespace kd {

/// The line edit in which a cell's text is typed, in the frame of the current cell.
class CellEditor : public QLineEdit {
public:
    explicit CellEditor(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kd
