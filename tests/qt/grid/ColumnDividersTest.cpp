#include "qt/grid/GridFixture.h"
#include "qt/grid/GridMetrics.h"

namespace kd {
namespace {

class ColumnDividersTest : public GridFixture {
protected:
    /// In the header row, `beside` pixels behind a column's right edge.
    QPoint Edge(std::int32_t col, int beside = 0) const {
        const QRect header = widget->Layout().CellRect(0, col);
        return {header.left() + header.width() + beside, header.center().y()};
    }
    void Drag(QPoint from, int by) const {
        QTest::mousePress(Port(), Qt::LeftButton, {}, from);
        Move(from + QPoint(by, 0), Qt::LeftButton);
        QTest::mouseRelease(Port(), Qt::LeftButton, {}, from + QPoint(by, 0));
    }
    /// What is left beside the frozen columns when they are as wide as they may be by hand.
    int LeftBesideFrozen() const {
        QApplication::processEvents();
        return Port()->width() - widget->Layout().FrozenWidth();
    }
    int Fitting(std::int32_t col) {
        VSFlexGrid& g = grid;
        g.AutoSize(col, col);
        const int width = g.ColWidth(col);
        g.SetColWidth(col, ColumnWidth);
        return width;
    }
};

TEST_F(ColumnDividersTest, ThreePixelsToEachSideOfAnEdgeDragTheWidth) {
    Make(5, 4);
    for (const int beside : {-3, 0, 2}) {
        grid.SetColWidth(1, ColumnWidth);
        Drag(Edge(1, beside), 25);
        EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 25) << beside;
        EXPECT_EQ(grid.ColWidth(2), ColumnWidth) << beside;
    }
}

TEST_F(ColumnDividersTest, TheWidthFollowsThePointer) {
    Make(5, 4);
    QTest::mousePress(Port(), Qt::LeftButton, {}, Edge(1));
    const QPoint from = Edge(1);
    for (const int by : {5, 40, -20}) {
        Move(from + QPoint(by, 0), Qt::LeftButton);
        EXPECT_EQ(grid.ColWidth(1), ColumnWidth + by);
    }
    Move(from + QPoint(60, 0));  // the button was let go elsewhere
    Move(from + QPoint(70, 0), Qt::LeftButton);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth - 20);
}

TEST_F(ColumnDividersTest, ADragEndsWithItsButtonAlone) {
    Make(5, 4);
    ListenToMouse();
    const QPoint from = Edge(1);
    const QPoint cell = Middle(2, 1);
    QTest::mousePress(Port(), Qt::RightButton, {}, cell);
    QTest::mousePress(Port(), Qt::LeftButton, {}, from);
    Move(from + QPoint(10, 0), Qt::LeftButton | Qt::RightButton);
    QTest::mouseRelease(Port(), Qt::RightButton, {}, cell);
    EXPECT_EQ(history, (History{"Before 2 0 at 2,1", "Down 2 0 at 2,1", "Up 2 0 at 2,1"}));
    Move(from + QPoint(20, 0), Qt::LeftButton);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 20) << "another button was let go";
    QTest::mouseRelease(Port(), Qt::LeftButton, {}, from + QPoint(20, 0));
    Move(from + QPoint(60, 0), Qt::LeftButton);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 20) << "it has ended";
}

TEST_F(ColumnDividersTest, ADragWhoseEndWasNotHeardOfIsOverAtTheNextPress) {
    Make(5, 4);
    QTest::mousePress(Port(), Qt::LeftButton, {}, Edge(1));
    QTest::mousePress(Port(), Qt::LeftButton, {}, Middle(0, 2));
    Move(Middle(0, 2) + QPoint(30, 0), Qt::LeftButton);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth);
    QTest::mouseRelease(Port(), Qt::LeftButton, {}, Middle(0, 2));
}

TEST_F(ColumnDividersTest, ADragEndsWhenItsColumnGoes) {
    Make(5, 4);
    const QPoint from = Edge(1);
    QTest::mousePress(Port(), Qt::LeftButton, {}, from);
    for (const bool hidden : {true, false}) {
        grid.SetColHidden(1, hidden);
        Move(from + QPoint(30, 0), Qt::LeftButton);
        EXPECT_EQ(grid.ColWidth(1), ColumnWidth) << hidden;
    }
    QTest::mouseRelease(Port(), Qt::LeftButton, {}, from);
}

TEST_F(ColumnDividersTest, APressThereIsNoPressOfTheHeader) {
    Make(5, 4);
    ListenToMouse();
    grid.Select(2, 3);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        QTest::mouseClick(Port(), button, {}, Edge(1, -3));
        QTest::mouseDClick(Port(), button, {}, Edge(1, 2));
    }
    EXPECT_EQ(history, History{});
    EXPECT_EQ(Current(), (Cell{2, 3}));
}

TEST_F(ColumnDividersTest, BesideTheDividerTheHeaderIsPressed) {
    Make(5, 4);
    ListenToMouse();
    cancelPress = true;
    QTest::mouseClick(Port(), Qt::LeftButton, {}, Edge(1, -4));
    QTest::mouseClick(Port(), Qt::LeftButton, {}, Edge(1, 3));
    EXPECT_EQ(history, (History{"Before 1 0 at 0,1", "Before 1 0 at 0,2"}));
}

TEST_F(ColumnDividersTest, BelowTheHeaderTheCellIsPressed) {
    Make(5, 4);
    const QRect cell = widget->Layout().CellRect(3, 1);
    QTest::mouseClick(Port(), Qt::LeftButton, {}, QPoint(cell.right(), cell.center().y()));
    EXPECT_EQ(Current(), (Cell{3, 1}));
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth);
}

TEST_F(ColumnDividersTest, ADoubleClickFitsTheColumnToItsTexts) {
    Make(5, 4);
    grid.SetTextMatrix(4, 1, "a text that is wider than its column");
    grid.SetRowHidden(4, true);
    const int fitting = Fitting(1);
    ASSERT_GT(fitting, ColumnWidth);
    QApplication::processEvents();
    QTest::mouseDClick(Port(), Qt::LeftButton, {}, Edge(1));
    EXPECT_EQ(grid.ColWidth(1), fitting);
    EXPECT_EQ(grid.ColWidth(2), ColumnWidth);
}

TEST_F(ColumnDividersTest, FrozenColumnsHaveDividersAndCoverThoseScrolledBelowThem) {
    Make(5, 8);
    grid.SetFrozenCols(2);
    QApplication::processEvents();
    Drag(Edge(1), 15);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 15);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(ColumnWidth + 50);
    ASSERT_LT(Edge(2).x(), widget->Layout().FrozenWidth());
    Drag({Edge(2).x(), 5}, 15);
    EXPECT_EQ(grid.ColWidth(2), ColumnWidth);
    Drag(Edge(3), 15);
    EXPECT_EQ(grid.ColWidth(3), ColumnWidth + 15);
}

TEST_F(ColumnDividersTest, FrozenColumnsLeaveTenCharactersOfThoseThatScroll) {
    Make(5, 8);
    grid.SetFrozenCols(2);
    grid.SetTextMatrix(3, 1, std::string(200, 'W'));
    QApplication::processEvents();
    const int tenCharacters = widget->Layout().GetSizes().defaultColWidth;
    Drag(Edge(1), 1000);
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters) << "by a drag";
    Drag(Edge(1), -100);
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters + 100);
    grid.Select(1, 1);
    for (int i = 0; i < 100; ++i) {
        Press(Qt::Key_Right, Qt::AltModifier);
    }
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters) << "by key";
    Drag(Edge(1), -100);
    Press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters) << "by fitting";
    Drag(Edge(1), -100);
    QApplication::processEvents();
    QTest::mouseDClick(Port(), Qt::LeftButton, {}, Edge(1));
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters) << "by a double click";
    Drag(Edge(0), 1000);
    EXPECT_EQ(LeftBesideFrozen(), tenCharacters) << "the first one has nothing left to take";
    EXPECT_EQ(grid.ColWidth(0), ColumnWidth);
    Drag(Edge(2), 1000);
    EXPECT_EQ(grid.ColWidth(2), ColumnWidth + 1000) << "one that scrolls is as wide as one likes";
}

TEST_F(ColumnDividersTest, FrozenColumnsLeaveNothingWhereNoneScroll) {
    Make(5, 2);
    grid.SetFrozenCols(2);
    QApplication::processEvents();
    Drag(Edge(1), 1000);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 1000);
}

TEST_F(ColumnDividersTest, AFrozenColumnThatIsWiderThanItsRoomOnlyBecomesNarrower) {
    constexpr int TooWide = 600;  // more than the viewport has
    Make(5, 8);
    grid.SetFrozenCols(2);
    grid.SetColWidth(0, TooWide);
    grid.Select(1, 0);
    QApplication::processEvents();
    Press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(grid.ColWidth(0), TooWide) << "wider by key";
    Press(Qt::Key_Left, Qt::AltModifier);
    const int narrower = grid.ColWidth(0);
    EXPECT_LT(narrower, TooWide);
    EXPECT_GT(narrower, Port()->width()) << "by one step alone";
    grid.SetFrozenCols(1);
    grid.SetColWidth(0, Port()->width() - 10);  // its divider is in sight, and it leaves less than it should
    QApplication::processEvents();
    const int wide = grid.ColWidth(0);
    Drag(Edge(0), 30);
    EXPECT_EQ(grid.ColWidth(0), wide) << "wider by a drag";
    QApplication::processEvents();
    Drag(Edge(0), -5);
    EXPECT_EQ(grid.ColWidth(0), wide - 5);
}

/// On a screen with twice the usual dots.
class FineGridWidget : public GridWidget {
public:
    using GridWidget::GridWidget;

protected:
    int metric(PaintDeviceMetric metric) const override {
        const bool dots = metric == PdmDpiX || metric == PdmDpiY;
        return dots ? 192 : GridWidget::metric(metric);
    }
};

TEST_F(ColumnDividersTest, OnAScreenOfFinerDotsAColumnStillLeavesAPlaceToPressBetweenItsDividers) {
    Make(5, 4);
    delete widget;
    widget = new FineGridWidget(grid, top.get());
    widget->setGeometry(0, 0, 400, 300);
    widget->show();
    QApplication::processEvents();
    Drag(Edge(1, -6), -200);
    EXPECT_EQ(grid.ColWidth(1), 32);
    QApplication::processEvents();
    ListenToMouse();
    cancelPress = true;
    for (const int beside : {-32, -27, -26, -7, -6, 0}) {
        QTest::mouseClick(Port(), Qt::LeftButton, {}, Edge(1, beside));
    }
    EXPECT_EQ(history, (History{"Before 1 0 at 0,1", "Before 1 0 at 0,1"})) << "between the two alone";
}

TEST_F(ColumnDividersTest, NoColumnBecomesTooNarrowToBeTakenAgain) {
    Make(5, 4);
    Drag(Edge(1), -200);
    EXPECT_EQ(grid.ColWidth(1), 16);
    QApplication::processEvents();
    Drag(Edge(1), 30);
    EXPECT_EQ(grid.ColWidth(1), 46);
}

TEST_F(ColumnDividersTest, ThePointerSplitsOverADivider) {
    Make(5, 4);
    for (std::int32_t col = 0; col < 4; ++col) {
        Move(Edge(col));
        EXPECT_EQ(Port()->cursor().shape(), Qt::SplitHCursor) << col;
        Move(Middle(0, col));
        EXPECT_EQ(Port()->cursor().shape(), Qt::ArrowCursor) << col;
    }
    Move(Edge(1), Qt::RightButton);
    EXPECT_EQ(Port()->cursor().shape(), Qt::ArrowCursor) << "what was pressed elsewhere goes on";
    Move(Edge(1) + QPoint(0, widget->Layout().GetSizes().headerHeight));
    EXPECT_EQ(Port()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ColumnDividersTest, OverADividerThePointerIsOverNoCell) {
    Make(5, 4);
    std::vector<std::int32_t> rows;
    grid.MouseMove = [&](MouseButton, int, int, int) { rows.push_back(grid.MouseRow()); };
    Move(Middle(0, 1));
    Move(Edge(1));
    EXPECT_EQ(rows, (std::vector<std::int32_t>{0, -1}));
    QTest::mousePress(Port(), Qt::LeftButton, {}, Edge(1));
    Move(Edge(1) + QPoint(20, 0), Qt::LeftButton);
    EXPECT_EQ(rows, (std::vector<std::int32_t>{0, -1, -1})) << "while it is dragged";
    QTest::mouseRelease(Port(), Qt::LeftButton, {}, Edge(1));
}

TEST_F(ColumnDividersTest, ADragOfTheSelectionPassesOverDividers) {
    Make(5, 4);
    QTest::mousePress(Port(), Qt::LeftButton, {}, Middle(2, 0));
    Move(Edge(1), Qt::LeftButton);
    Move(Middle(3, 2), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{2, 0, 3, 2}));
    EXPECT_NE(Port()->cursor().shape(), Qt::SplitHCursor);
}

TEST_F(ColumnDividersTest, ADragOfTheSelectionWhoseEndWasNotHeardOfIsOverAtTheNextPress) {
    Make(5, 4);
    QTest::mousePress(Port(), Qt::LeftButton, {}, widget->Layout().CellRect(3, 1).center());
    Drag(Edge(1), 25);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 25);
    Move(Middle(4, 2), Qt::LeftButton);
    EXPECT_EQ(Selection(), (Cell{3, 1, 3, 1}));
}

TEST_F(ColumnDividersTest, AnOpenEditorStaysAndFollowsItsColumn) {
    Make(5, 4);
    grid.Select(2, 1);
    Type("x");
    QTest::mouseClick(Port(), Qt::LeftButton, {}, Edge(0));
    QApplication::processEvents();
    ASSERT_TRUE(grid.EditWindow());
    Drag(Edge(0), 30);
    QApplication::processEvents();
    EXPECT_TRUE(grid.EditWindow());
    EXPECT_EQ(Editor()->geometry().left(), ColumnWidth + 30);
    EXPECT_EQ(QApplication::focusWidget(), Editor());
}

TEST_F(ColumnDividersTest, AColumnThatIsSizedByKeyIsSeenWholeAfterwards) {
    Make(5, 12);
    const std::int32_t col = Port()->width() / ColumnWidth - 1;
    grid.SetTextMatrix(2, col, std::string(20, 'W'));
    grid.Select(2, col);
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Right}) {
        const int before = grid.ColWidth(col);
        Press(key, Qt::AltModifier);
        QApplication::processEvents();
        EXPECT_GT(grid.ColWidth(col), before);
        EXPECT_GE(widget->Layout().CellRect(2, col).left(), 0);
        EXPECT_LE(widget->Layout().CellRect(2, col).right(), Port()->width());
    }
}

TEST_F(ColumnDividersTest, AltAndArrowsSizeTheCurrentColumn) {
    Make(5, 4);
    const int fitting = Fitting(1);
    grid.Select(2, 1);
    Press(Qt::Key_Right, Qt::AltModifier);
    Press(Qt::Key_Right, Qt::AltModifier);
    const int character = widget->Layout().GetSizes().defaultColWidth / DefaultColChars;
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + 2 * character);
    Press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth + character);
    Press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(grid.ColWidth(1), fitting);
    EXPECT_EQ(grid.ColWidth(2), ColumnWidth);
    EXPECT_EQ(Selection(), (Cell{2, 1, 2, 1}));
}

TEST_F(ColumnDividersTest, NoColumnIsSizedByKeyWhereNoneIsInSight) {
    Make(5, 2);
    grid.Select(2, 1);
    grid.SetColHidden(1, true);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Up}) {
        Press(key, Qt::AltModifier);
    }
    EXPECT_EQ(grid.ColWidth(1), ColumnWidth);
    EXPECT_EQ(grid.ColWidth(0), ColumnWidth);
}

TEST_F(ColumnDividersTest, AWidthByHandOutlivesAChangeOfTheFontUntilAllColumnsAreSizedAnew) {
    Make(5, 4);
    grid.AutoSize(0, 3);
    const int fitting = grid.ColWidth(1);
    QApplication::processEvents();
    Drag(Edge(1), 40);
    QFont larger = widget->font();
    larger.setPointSize(larger.pointSize() * 2);
    widget->setFont(larger);
    EXPECT_EQ(grid.ColWidth(1), fitting + 40);
    EXPECT_GT(grid.ColWidth(2), fitting);
    grid.AutoSize(0, 3);
    EXPECT_EQ(grid.ColWidth(1), grid.ColWidth(2));
}

TEST_F(ColumnDividersTest, AListHasNone) {
    Make(5, 1, std::make_unique<ListManner>(grid));
    const int width = widget->Layout().CellRect(0, 0).width();
    Drag(Edge(0, -2), -50);
    Press(Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(widget->Layout().CellRect(0, 0).width(), width);
    Move(Edge(0, -2));
    EXPECT_NE(Port()->cursor().shape(), Qt::SplitHCursor);
}

}  // namespace
}  // namespace kd
