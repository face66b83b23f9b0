#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

class CellEditorTest : public GridFixture {
protected:
    void SetUp() override {
        Make(3, 2);
        QPalette colours;
        colours.setColor(QPalette::Base, Qt::white);
        colours.setColor(QPalette::Text, Qt::black);
        colours.setColor(QPalette::Highlight, Highlight);
        widget->setPalette(colours);
        grid.SetTextMatrix(2, 1, "H");
        QApplication::processEvents();
    }
    void Open() {
        grid.Select(2, 1);
        Press(Qt::Key_F2);
        QApplication::processEvents();
    }
    /// The first pixel right of the frame that is not white, from the left; -1 for none.
    static int FirstInk(const QImage& cell) {
        for (int x = 3; x < cell.width() - 3; ++x) {
            for (int y = 3; y < cell.height() - 3; ++y) {
                if (cell.pixelColor(x, y) != QColor(Qt::white)) {
                    return x;
                }
            }
        }
        return -1;
    }

    const QColor Highlight{40, 130, 220};
};

TEST_F(CellEditorTest, TheEditorHasAFrameOfTwoPixelsAllRound) {
    Open();
    Press(Qt::Key_Delete);  // a selected text would have the frame's colour
    const QImage picture = Editor()->grab().toImage();
    const QRect inside = picture.rect().adjusted(2, 2, -2, -2);
    ASSERT_FALSE(inside.isEmpty());
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ASSERT_EQ(picture.pixelColor(x, y) == Highlight, !inside.contains(x, y)) << x << "," << y;
        }
    }
}

TEST_F(CellEditorTest, ATextThatIsEditedStaysWhereItIs) {
    const int before = FirstInk(Picture().copy(widget->Layout().CellRect(2, 1)));
    ASSERT_GT(before, 0);
    Open();
    Press(Qt::Key_End);
    EXPECT_EQ(FirstInk(Editor()->grab().toImage()), before);
    EXPECT_EQ(Editor()->textMargins().top(), 0);
    EXPECT_EQ(Editor()->textMargins().bottom(), 0);
}

TEST_F(CellEditorTest, ABlinkOfTheCursorPaintsNothingOfTheGridBelow) {
    Open();
    struct Watch : QObject {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } port, editor;
    Port()->installEventFilter(&port);
    Editor()->installEventFilter(&editor);
    Editor()->update();
    QApplication::processEvents();
    EXPECT_GT(editor.paints, 0);
    EXPECT_EQ(port.paints, 0);
}

}  // namespace
}  // namespace kd
