#include "qt/grid/GridLayout.h"

#include <gtest/gtest.h>

#include <vector>

namespace kd {
namespace {

using Numbers = std::vector<int>;

/// Five columns of 40, 30, 50, any and 1 pixels, of which the second is hidden, and seven rows of 20 below a
/// header of 30.
class GridLayoutTest : public testing::Test {
protected:
    static constexpr GridLayout::Sizes Measures{20, 30, 70};
    static constexpr QSize Port{200, 130};

    GridLayoutTest() {
        grid.SetCols(5);
        grid.SetRows(8);
        const Numbers widths{40, 30, 50, 0, 1};
        for (std::int32_t col = 0; col < 5; ++col) {
            grid.SetColWidth(col, widths[static_cast<std::size_t>(col)]);
        }
        grid.SetColHidden(1, true);
        layout.SetSizes(Measures);
    }

    void Build(std::int32_t frozenCols = 0, QSize viewport = Port) {
        grid.SetFrozenCols(frozenCols);
        layout.Build(viewport, false, 0);
    }
    /// Of each column its number, its left edge, its width and whether it is frozen.
    std::vector<Numbers> Columns() const {
        std::vector<Numbers> columns;
        for (const GridLayout::Column& each : layout.Columns()) {
            columns.push_back({each.screenCol, each.left, each.width, each.frozen ? 1 : 0});
        }
        return columns;
    }

    VSFlexGrid grid{"Grid"};
    GridLayout layout{grid};
};

TEST_F(GridLayoutTest, BeforeItIsBuiltItHasNoColumns) {
    VSFlexGrid one("One");
    one.SetCols(1);
    const GridLayout unbuilt(one);
    EXPECT_TRUE(unbuilt.Columns().empty());
    EXPECT_FALSE(unbuilt.Fits());
    EXPECT_EQ(unbuilt.TotalWidth(), 0);
    EXPECT_EQ(unbuilt.FrozenWidth(), 0);
    EXPECT_EQ(unbuilt.TopIndex(), 0);
}

TEST_F(GridLayoutTest, ShownColumnsStandSideBySide) {
    Build();
    EXPECT_EQ(Columns(),
              (std::vector<Numbers>{{0, 0, 40, 0}, {2, 40, 50, 0}, {3, 90, 70, 0}, {4, 160, 1, 0}}));
    EXPECT_EQ(layout.TotalWidth(), 161);
    EXPECT_EQ(layout.FrozenWidth(), 0);
    Build(3);
    EXPECT_EQ(Columns(),
              (std::vector<Numbers>{{0, 0, 40, 1}, {2, 40, 50, 1}, {3, 90, 70, 0}, {4, 160, 1, 0}}));
    EXPECT_EQ(layout.TotalWidth(), 161);
    EXPECT_EQ(layout.FrozenWidth(), 90);
    Build();
    EXPECT_EQ(layout.FrozenWidth(), 0) << "none is frozen any more";
    EXPECT_TRUE(layout.Fits());
    grid.SetCols(4);
    EXPECT_FALSE(layout.Fits());
}

TEST_F(GridLayoutTest, HiddenColumnsAndThoseThatAreNotThereAreNotFound) {
    Build();
    grid.SetColHidden(4, true);
    Build();
    for (const std::int32_t col : {-1, 1, 4, 5, 99}) {
        EXPECT_EQ(layout.Find(col), nullptr) << col;
    }
    for (const std::int32_t col : {0, 2, 3}) {
        ASSERT_NE(layout.Find(col), nullptr) << col;
        EXPECT_EQ(layout.Find(col)->screenCol, col);
    }
}

TEST_F(GridLayoutTest, TheLastColumnIsStretchedToTheRightEdgeOrToItsWidth) {
    grid.SetColHidden(4, true);
    struct Case {
        const char* label;
        int viewport;
        bool stretch;
        int lastWidth;
        Numbers widthAndTotal;
    };
    for (const Case& c : {
             Case{"to the edge", 300, true, 100, {210, 300}},
             Case{"to its width", 100, true, 120, {120, 210}},
             Case{"it is wider already", 100, true, 60, {70, 160}},
             Case{"not at all", 300, false, 120, {70, 160}},
         }) {
        layout.Build({c.viewport, 130}, c.stretch, c.lastWidth);
        EXPECT_EQ((Numbers{layout.Columns().back().width, layout.TotalWidth()}), c.widthAndTotal) << c.label;
    }
    for (std::int32_t col = 0; col < 5; ++col) {
        grid.SetColHidden(col, true);
    }
    GridLayout empty(grid);
    empty.Build(Port, true, 120);
    EXPECT_TRUE(empty.Columns().empty());
    EXPECT_EQ(empty.TotalWidth(), 0);
}

TEST_F(GridLayoutTest, RowsThatFitAndThoseThatAreCutOffAreCounted) {
    struct Case {
        int height;
        int full;
        int shown;
    };
    for (const Case& c : {Case{0, 1, 0}, Case{29, 1, 0}, Case{30, 1, 0}, Case{31, 1, 1}, Case{50, 1, 1},
                          Case{51, 1, 2}, Case{69, 1, 2}, Case{70, 2, 2}, Case{71, 2, 3}, Case{130, 5, 5}}) {
        Build(0, {200, c.height});
        EXPECT_EQ(layout.FullRows(), c.full) << c.height;
        EXPECT_EQ(layout.ShownRows(), c.shown) << c.height;
        Build(0, {200, 1000});
        EXPECT_EQ(layout.FullRowsIn(c.height), c.full) << c.height;
    }
}

TEST_F(GridLayoutTest, CellsHaveTheirWholePlaceWhereverTheyAreScrolled) {
    grid.SetRowHidden(4, true);
    grid.SetRowHidden(7, true);
    Build(3);
    EXPECT_EQ(layout.CellRect(2, 3), QRect(90, 50, 70, 20)) << "not scrolled yet";
    layout.SetScroll(2, 25);
    EXPECT_EQ(layout.TopIndex(), 2);
    EXPECT_EQ(layout.CellRect(0, 0), QRect(0, 0, 40, 30));
    EXPECT_EQ(layout.CellRect(0, 3), QRect(65, 0, 70, 30));
    EXPECT_EQ(layout.CellRect(1, 2), QRect(40, -10, 50, 20));
    EXPECT_EQ(layout.CellRect(3, 0), QRect(0, 30, 40, 20));
    EXPECT_EQ(layout.CellRect(5, 3), QRect(65, 50, 70, 20)) << "the row above is hidden";
    for (const Numbers& cell : {Numbers{4, 0}, Numbers{7, 0}, Numbers{0, 1}, Numbers{3, 1}, Numbers{-1, 0},
                                Numbers{8, 0}, Numbers{99, 0}, Numbers{3, 5}, Numbers{3, -1}}) {
        EXPECT_EQ(layout.CellRect(cell[0], cell[1]), QRect()) << cell[0] << "," << cell[1];
        EXPECT_EQ(layout.ShownRect(cell[0], cell[1]), QRect()) << cell[0] << "," << cell[1];
    }
}

TEST_F(GridLayoutTest, HeaderAndFrozenColumnsCoverWhatIsScrolledBelowThem) {
    Build(3);
    EXPECT_EQ(layout.ClipOf(0, true), QRect(0, 0, 90, 30));
    EXPECT_EQ(layout.ClipOf(0, false), QRect(90, 0, 110, 30));
    EXPECT_EQ(layout.ClipOf(1, true), QRect(0, 30, 90, 100));
    EXPECT_EQ(layout.ClipOf(5, false), QRect(90, 30, 110, 100));
    layout.SetScroll(2, 25);
    EXPECT_EQ(layout.ShownRect(0, 0), QRect(0, 0, 40, 30));
    EXPECT_EQ(layout.ShownRect(0, 3), QRect(90, 0, 45, 30));
    EXPECT_EQ(layout.ShownRect(3, 2), QRect(40, 30, 50, 20));
    EXPECT_EQ(layout.ShownRect(4, 3), QRect(90, 50, 45, 20));
    EXPECT_TRUE(layout.ShownRect(2, 0).isEmpty());
    Build(3, {60, 45});
    EXPECT_EQ(layout.ClipOf(1, true), QRect(0, 30, 60, 15));
    EXPECT_EQ(layout.ShownRect(3, 2), QRect(40, 30, 20, 15)) << "cut off right and below";
}

TEST_F(GridLayoutTest, RowsAreFoundByTheirPlace) {
    grid.SetRowHidden(4, true);
    Build();
    EXPECT_EQ(layout.RowAt(30), 1);
    layout.SetScroll(2, 0);
    const std::vector<Numbers> found{{-1, -1}, {0, 0},  {29, 0}, {30, 3},  {49, 3},   {50, 5},
                                     {69, 5},  {70, 6}, {90, 7}, {109, 7}, {110, -1}, {129, -1}};
    for (const Numbers& each : found) {
        EXPECT_EQ(layout.RowAt(each[0]), each[1]) << each[0];
    }
    layout.SetScroll(0, 0);
    grid.SetRows(1);
    EXPECT_EQ((Numbers{layout.RowAt(0), layout.RowAt(29), layout.RowAt(30)}), (Numbers{0, 0, -1}));
    grid.SetRows(0);
    EXPECT_EQ((Numbers{layout.RowAt(0), layout.RowAt(29), layout.RowAt(30)}), (Numbers{-1, -1, -1}));
}

TEST_F(GridLayoutTest, ColumnsAreFoundByTheirPlace) {
    Build(3);
    layout.SetScroll(0, 25);
    const std::vector<Numbers> frozen{{-1, -1}, {0, 0},   {39, 0},  {40, 2},   {89, 2},
                                      {90, 3},  {134, 3}, {135, 4}, {136, -1}, {199, -1}};
    for (const Numbers& each : frozen) {
        EXPECT_EQ(layout.ColAt(each[0]), each[1]) << each[0];
    }
    const GridCell cell = layout.CellAt({95, 50});
    EXPECT_EQ((Numbers{cell.row, cell.screenCol}), (Numbers{2, 3}));
    Build();
    for (const Numbers& each : {Numbers{-1, -1}, Numbers{0, 0}, Numbers{14, 0}, Numbers{15, 2}}) {
        EXPECT_EQ(layout.ColAt(each[0]), each[1]) << each[0] << " with none frozen";
    }
}

TEST_F(GridLayoutTest, DividersAreFoundInTheHeaderAloneAndByTheirGrip) {
    struct Case {
        const char* label;
        int frozenCols;
        int offset;
        QPoint place;
        std::int32_t col;
    };
    for (const Case& c : {
             Case{"left of the grip", 3, 25, {36, 5}, -1},
             Case{"its left edge", 3, 25, {37, 5}, 0},
             Case{"its right edge", 3, 25, {42, 5}, 0},
             Case{"right of the grip", 3, 25, {43, 5}, -1},
             Case{"above the header", 3, 25, {40, -1}, -1},
             Case{"the header's first line", 3, 25, {40, 0}, 0},
             Case{"the header's last line", 3, 25, {40, 29}, 0},
             Case{"below the header", 3, 25, {40, 30}, -1},
             Case{"the border of the frozen ones", 3, 25, {92, 5}, 2},
             Case{"left of a scrolled one", 3, 25, {131, 5}, -1},
             Case{"a scrolled one", 3, 25, {132, 5}, 3},
             Case{"the last one", 3, 25, {138, 5}, 4},
             Case{"behind the last one", 3, 25, {139, 5}, -1},
             Case{"below the frozen ones", 3, 90, {70, 5}, -1},
             Case{"scrolled to their border", 3, 70, {92, 5}, 2},
             Case{"scrolled to the left edge", 0, 40, {1, 5}, -1},
             Case{"one pixel less", 0, 39, {1, 5}, 0},
         }) {
        Build(c.frozenCols);
        layout.SetScroll(0, c.offset);
        EXPECT_EQ(layout.DividerAt(c.place, 3), c.col) << c.label;
    }
    Build();
    layout.SetScroll(0, 0);
    grid.SetRows(1);
    EXPECT_EQ(layout.DividerAt({40, 5}, 3), 0) << "the header alone";
    grid.SetRows(0);
    EXPECT_EQ(layout.DividerAt({40, 5}, 3), -1) << "no header";
}

}  // namespace
}  // namespace kd
