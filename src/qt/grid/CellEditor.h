#pragma once

#include <QLineEdit>

namespace kd {

/// The line edit in which a cell's text is typed, in the frame of the current cell.
class CellEditor : public QLineEdit {
public:
    explicit CellEditor(QWidget* parent);

protected:
    /// Takes every key, those too that it has no use for: none of them is the grid's.
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kd
