#pragma once

#include <gtest/gtest.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "platform/VSFlexGrid.h"
#include "qt/grid/GridWidget.h"

namespace kd {

/// A grid widget on the offscreen screen, with a history of the grid's events.
class GridFixture : public testing::Test {
protected:
    /// Rows below the header, columns; cell texts are "r" row "c" column.
    void Make(std::int32_t rows, std::int32_t cols, std::unique_ptr<GridManner> manner = nullptr) {
        grid.SetCols(cols);
        grid.SetRows(rows + 1);
        for (std::int32_t row = 0; row <= rows; ++row) {
            for (std::int32_t col = 0; col < cols; ++col) {
                grid.SetTextMatrix(row, col,
                                   row == 0 ? "Column " + std::to_string(col)
                                            : "r" + std::to_string(row) + "c" + std::to_string(col));
            }
        }
        for (std::int32_t col = 0; col < cols; ++col) {
            grid.SetColWidth(col, ColumnWidth);
        }
        top = std::make_unique<QWidget>();
        other = new QLineEdit(top.get());
        other->setGeometry(0, 320, 100, 24);
        widget = new GridWidget(grid, top.get(), std::move(manner));
        widget->setGeometry(0, 0, 400, 300);
        top->resize(400, 350);
        top->show();
        top->activateWindow();
        (void)QTest::qWaitForWindowActive(top.get());  // a failure shows in what follows
        widget->setFocus();
        QApplication::processEvents();
    }

    void ListenToMouse() {
        grid.BeforeMouseDown = [this](MouseButton button, int shift, int, int, bool& cancel) {
            Tell("Before", button, shift);
            cancel = cancelPress;
        };
        grid.MouseDown = [this](MouseButton button, int shift, int, int) { Tell("Down", button, shift); };
        grid.MouseUp = [this](MouseButton button, int shift, int, int) { Tell("Up", button, shift); };
    }
    void ListenToEdits() {
        grid.BeforeEdit = [this](std::int32_t row, std::int32_t, bool& cancel) {
            history.push_back("BeforeEdit");
            cancel = row < 1 || readOnly;
        };
        grid.ValidateEdit = [this](std::int32_t, std::int32_t, bool& cancel) {
            history.push_back("ValidateEdit " + grid.EditText());
            cancel = refuse;
        };
        grid.AfterEdit = [this](std::int32_t row, std::int32_t col) {
            history.push_back("AfterEdit " + std::to_string(row) + "," + std::to_string(col));
        };
    }

    QWidget* Port() const { return widget->viewport(); }
    QLineEdit* Editor() const { return widget->findChild<QLineEdit*>("CellEditor"); }
    QPoint Middle(std::int32_t row, std::int32_t col) const {
        return widget->Layout().ShownRect(row, col).center();
    }
    void Click(std::int32_t row, std::int32_t col, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
               Qt::MouseButton button = Qt::LeftButton) const {
        QTest::mouseClick(Port(), button, modifiers, Middle(row, col));
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    void Type(const char* text) const { QTest::keyClicks(QApplication::focusWidget(), text); }
    void Move(QPoint to, Qt::MouseButtons buttons = Qt::NoButton) const {
        QMouseEvent move(QEvent::MouseMove, to, Port()->mapToGlobal(to), Qt::NoButton, buttons,
                         Qt::NoModifier);
        QApplication::sendEvent(Port(), &move);
    }
    QImage Picture() const { return Port()->grab().toImage(); }
    /// Colour of a cell's ground, right of its left edge and above its bottom: free of text and frame.
    QColor Ground(std::int32_t row, std::int32_t col) const {
        const QRect cell = widget->Layout().ShownRect(row, col);
        return Picture().pixelColor(cell.left() + 3, cell.bottom() - 4);
    }
    std::vector<std::int32_t> Current() const { return {grid.Row(), grid.Col()}; }
    std::vector<std::int32_t> Selection() const {
        const GridSelection cells = grid.GetSelection();
        return {cells.firstRow, cells.firstCol, cells.lastRow, cells.lastCol};
    }

    static constexpr int ColumnWidth = 80;
    VSFlexGrid grid{"Grid"};
    std::unique_ptr<QWidget> top;
    GridWidget* widget = nullptr;
    QLineEdit* other = nullptr;  // somewhere else for the focus to go
    std::vector<std::string> history;
    bool cancelPress = false;
    bool refuse = false;
    bool readOnly = false;

private:
    void Tell(const char* what, MouseButton button, int shift) {
        history.push_back(std::string(what) + " " + std::to_string(static_cast<int>(button)) + " " +
                          std::to_string(shift) + " at " + std::to_string(grid.MouseRow()) + "," +
                          std::to_string(grid.MouseCol()));
    }
};

using Cell = std::vector<std::int32_t>;
using History = std::vector<std::string>;

}  // namespace kd
