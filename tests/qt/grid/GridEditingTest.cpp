#include <algorithm>
#include <cmath>

#include "qt/grid/GridFixture.h"
#include "qt/grid/GridMetrics.h"
#include "qt/grid/TextWidths.h"

namespace kd {
namespace {

/// How the open editor stands, looks and behaves; the ways into and out of it are GridWidgetEditorTest's.
class GridEditingTest : public GridFixture {
protected:
    void Open(std::int32_t row, std::int32_t col) {
        widget->setFocus();
        grid.Select(row, col);
        Press(Qt::Key_F2);
        ASSERT_TRUE(grid.EditWindow());
    }
    /// A cell without its lines to the right and below.
    QRect Inside(std::int32_t row, std::int32_t col) const {
        return widget->Layout().CellRect(row, col).adjusted(0, 0, -1, -1);
    }
    /// What the open editor's text takes with the margins of two cells.
    int WidthOfText() const {
        TextWidths widths;
        widths.SetFont(widget->font(), Port());
        return static_cast<int>(std::ceil(widths.Exact(grid.EditText()))) + 2 * (CellMargin + CellMargin);
    }
    bool HasFocus() const { return QApplication::focusWidget() == Editor(); }
};

TEST_F(GridEditingTest, TheEditorCoversItsCellWithoutTheLinesAndGrowsWithItsTextToTheRight) {
    Make(20, 12);
    grid.SetFrozenCols(2);
    for (const double points : {9.0, 10.3, 11.7}) {
        QFont font = widget->font();
        font.setHintingPreference(QFont::PreferNoHinting);  // characters that are no whole pixels wide
        font.setPointSizeF(points);
        widget->setFont(font);
        for (const std::int32_t col : {0, 2}) {
            Open(2, col);
            Editor()->selectAll();
            Type("1");
            EXPECT_EQ(Editor()->geometry(), Inside(2, col));
            while (WidthOfText() <= ColumnWidth + 40) {
                Type("x");
                QRect place = Inside(2, col);
                place.setWidth(std::max(place.width(), WidthOfText()));
                ASSERT_LT(place.right(), Port()->width());
                ASSERT_EQ(Editor()->geometry(), place) << grid.EditText() << " " << points;
            }
            Press(Qt::Key_Escape);
        }
    }
}

TEST_F(GridEditingTest, ALongTextEndsAtTheRightEdge) {
    Make(20, 12);
    grid.SetFrozenCols(2);
    for (const std::int32_t col : {0, 3}) {
        grid.SetTextMatrix(2, col, Text(300, 'x'));
        Open(2, col);
        QRect place = Inside(2, col);
        place.setRight(Port()->rect().right());
        EXPECT_EQ(Editor()->geometry(), place) << col;
        Press(Qt::Key_Escape);
    }
}

TEST_F(GridEditingTest, AnEditorThatIsOnlyPartlyInSightEndsWhereItsCellDoes) {
    Make(40, 12);
    Open(5, 2);
    QScrollBar& across = *widget->horizontalScrollBar();
    QScrollBar& down = *widget->verticalScrollBar();
    const QRect cell = Inside(5, 2);
    across.setValue(cell.left() + 30);
    EXPECT_EQ(Editor()->geometry(), QRect(0, cell.top(), cell.width() - 30, cell.height())) << "left";
    across.setValue(0);
    Press(Qt::Key_Escape);

    const std::int32_t last = Port()->width() / ColumnWidth;
    ASSERT_LT(Port()->rect().right(), Inside(5, last).right()) << "cut off";
    Open(5, last);
    across.setValue(0);
    const int left = Inside(5, last).left();
    EXPECT_EQ(Editor()->geometry().left(), left);
    EXPECT_EQ(Editor()->geometry().right(), Port()->rect().right()) << "right";
    Press(Qt::Key_Escape);

    top->resize(top->width(), top->height() + widget->Layout().GetSizes().rowHeight);
    widget->resize(widget->width(), widget->Layout().GetSizes().headerHeight +
                                        11 * widget->Layout().GetSizes().rowHeight / 2 + widget->height() -
                                        Port()->height());
    QApplication::processEvents();
    Open(20, 1);
    down.setValue(20 - widget->Layout().FullRows() - 1);  // its row is the one that is cut off
    const QRect shown = widget->Layout().ShownRect(20, 1);
    ASSERT_LT(shown.height(), widget->Layout().GetSizes().rowHeight);
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(Editor()->geometry().bottom(), Port()->rect().bottom()) << "below";
}

TEST_F(GridEditingTest, ATextThatIsTypedOverALongOneTakesItsRoomAlone) {
    Make(8, 4);
    grid.SetTextMatrix(2, 1, Text(100, 'x'));
    grid.Select(2, 1);
    Type("1");
    EXPECT_EQ(Editor()->geometry(), Inside(2, 1));
}

TEST_F(GridEditingTest, WhatIsTypedFollowsACharacterThatTheCellHadAlready) {
    Make(8, 4);
    grid.SetTextMatrix(2, 1, "7");
    grid.Select(2, 1);
    Type("7x");
    EXPECT_EQ(Editor()->text(), QString("7x"));
}

TEST_F(GridEditingTest, TheTextStandsAsInItsCell) {
    Make(5, 3);
    struct Case {
        const char* label;
        CellAlignment alignment;
        Qt::AlignmentFlag across;
    };
    for (const Case& c :
         {Case{"left", caLeftCenter, Qt::AlignLeft}, Case{"right", caRightCenter, Qt::AlignRight},
          Case{"middle", caCenterCenter, Qt::AlignHCenter}}) {
        grid.SetColAlignment(1, c.alignment);
        Open(2, 1);
        EXPECT_EQ(Editor()->alignment(), Qt::Alignment(c.across | Qt::AlignVCenter)) << c.label;
        EXPECT_FALSE(Editor()->font().kerning()) << "each character as wide as in the cell";
        Press(Qt::Key_Escape);
    }
}

TEST_F(GridEditingTest, TheEditorsColoursReadInADarkThemeTooAndFollowAChangeOfIt) {
    Make(8, 4);
    const QColor changed(0xFF, 0xFF, 0xC0);
    grid.SetBackColor(2, 1, ChangedColour);
    QPalette colours = widget->palette();
    const auto set = [&](const QColor& ground, const QColor& text) {
        colours.setColor(QPalette::Base, ground);
        colours.setColor(QPalette::Text, text);
        widget->setPalette(colours);
    };
    const auto seen = [this](QPalette::ColorRole role) { return Editor()->palette().color(role); };
    set(Qt::black, Qt::white);
    Open(2, 1);
    EXPECT_EQ(seen(QPalette::Base), changed);
    EXPECT_EQ(seen(QPalette::Text), QColor(Qt::black));
    grid.SetBackColor(2, 1, 0);
    EXPECT_EQ(seen(QPalette::Base), QColor(Qt::black));
    EXPECT_EQ(seen(QPalette::Text), QColor(Qt::white));
    set(Qt::white, Qt::darkBlue);
    EXPECT_EQ(seen(QPalette::Base), QColor(Qt::white));
    EXPECT_EQ(seen(QPalette::Text), QColor(Qt::darkBlue));
}

TEST_F(GridEditingTest, AGridWithoutCellsTakesOtherColoursToo) {
    Make(0, 0);
    QPalette colours = widget->palette();
    colours.setColor(QPalette::Base, Qt::darkGray);
    widget->setPalette(colours);
    EXPECT_EQ(Picture().pixelColor(20, 20), QColor(Qt::darkGray));
}

TEST_F(GridEditingTest, NothingOfAFormerEditIsBroughtBack) {
    Make(8, 4);
    struct Case {
        const char* label;
        std::int32_t row;
        const char* text;
    };
    grid.SetTextMatrix(4, 1, "");
    for (const Case& c : {Case{"the same cell", 2, "new"}, Case{"an empty one", 4, ""}}) {
        Open(2, 1);
        Editor()->selectAll();
        Type("new");
        Press(Qt::Key_Return);
        Open(c.row, 1);
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Editor()->text(), QString(c.text)) << c.label;
        EXPECT_EQ(grid.EditText(), c.text) << c.label;
        Press(Qt::Key_Escape);
    }
}

TEST_F(GridEditingTest, TheCursorStaysInFrontOfATextThatComesBackOtherwise) {
    Make(8, 4);
    grid.TypedText = [](std::string_view text) {
        Text back(text);
        std::replace(back.begin(), back.end(), 'c', 'C');
        return back;
    };
    Open(2, 1);
    Press(Qt::Key_Home);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Editor()->text(), QString("2C1"));
    EXPECT_EQ(Editor()->cursorPosition(), 0);
}

TEST_F(GridEditingTest, ALeftPressInTheEditorIsTheEditorsAlone) {
    Make(8, 4);
    ListenToMouse();
    Open(2, 1);
    QTest::mouseClick(Editor(), Qt::LeftButton, {}, QPoint(1, Editor()->height() / 2));
    EXPECT_FALSE(Editor()->hasSelectedText());
    EXPECT_EQ(Editor()->cursorPosition(), 0);
    EXPECT_TRUE(history.empty());
}

TEST_F(GridEditingTest, ARightPressInTheEditorIsFollowedByItsRelease) {
    Make(8, 4);
    ListenToMouse();
    Open(2, 1);
    QTest::mousePress(Editor(), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(history, (History{"Before 2 1 at 2,1", "Down 2 1 at 2,1"}));
    history.clear();
    QTest::mouseRelease(Editor(), Qt::RightButton, Qt::ShiftModifier);
    EXPECT_EQ(history, History{"Up 2 1 at 2,1"});
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_TRUE(HasFocus());
}

TEST_F(GridEditingTest, FocusThatGoesElsewhereForGoodTakesTheText) {
    Make(8, 4);
    for (const Qt::FocusReason reason : {Qt::MouseFocusReason, Qt::TabFocusReason, Qt::BacktabFocusReason,
                                         Qt::ShortcutFocusReason, Qt::OtherFocusReason}) {
        grid.SetTextMatrix(2, 1, "old");
        Open(2, 1);
        Editor()->selectAll();
        Type("new");
        other->setFocus(reason);
        QApplication::processEvents();
        EXPECT_FALSE(grid.EditWindow()) << reason;
        EXPECT_EQ(grid.TextMatrix(2, 1), "new") << reason;
        EXPECT_EQ(QApplication::focusWidget(), other) << reason;
    }
}

TEST_F(GridEditingTest, ARefusalThatHidesTheCellLeavesTheFocusWhereItWent) {
    Make(8, 4);
    grid.ValidateEdit = [this](std::int32_t row, std::int32_t, bool& cancel) {
        grid.SetRowHidden(row, true);
        cancel = true;
    };
    Open(2, 1);
    other->setFocus(Qt::MouseFocusReason);
    QApplication::processEvents();
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_FALSE(Editor()->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), other);
}

TEST_F(GridEditingTest, EscapeLeavesTheGridScrolledAsItIs) {
    Make(100, 4);
    Open(3, 1);
    QScrollBar& down = *widget->verticalScrollBar();
    down.setValue(50);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, "\x1b");
    QApplication::sendEvent(Editor(), &escape);
    EXPECT_FALSE(grid.EditWindow());
    EXPECT_EQ(down.value(), 50);
}

}  // namespace
}  // namespace kd
