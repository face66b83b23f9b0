#include "qt/grid/GridFixture.h"

#include <QStyle>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"

namespace kd {
namespace {

class GridWidgetPaintingTest : public GridFixture {
protected:
    void UsePalette(bool dark) {
        QPalette colours;
        colours.setColor(QPalette::Base, dark ? QColor(30, 30, 30) : QColor(Qt::white));
        colours.setColor(QPalette::Text, dark ? QColor(Qt::white) : QColor(Qt::black));
        colours.setColor(QPalette::Button, dark ? QColor(50, 50, 50) : QColor(240, 240, 240));
        colours.setColor(QPalette::ButtonText, dark ? QColor(Qt::white) : QColor(Qt::black));
        colours.setColor(QPalette::Highlight, QColor(40, 130, 220));
        colours.setColor(QPalette::HighlightedText, QColor(Qt::white));
        widget->setPalette(colours);
        QApplication::processEvents();
    }
    /// Whether a pixel of about that colour stands in a cell.
    bool Has(std::int32_t row, std::int32_t col, const QColor& wanted, int tolerance = 40) const {
        const QRect cell = widget->Layout().ShownRect(row, col).adjusted(3, 3, -4, -4);
        const QImage picture = Picture();
        for (int y = cell.top(); y <= cell.bottom(); ++y) {
            for (int x = cell.left(); x <= cell.right(); ++x) {
                const QColor at = picture.pixelColor(x, y);
                if (std::abs(at.red() - wanted.red()) + std::abs(at.green() - wanted.green()) +
                        std::abs(at.blue() - wanted.blue()) <=
                    tolerance) {
                    return true;
                }
            }
        }
        return false;
    }
};

TEST_F(GridWidgetPaintingTest, MarkIsLightYellowInBothThemes) {
    Make(5, 3);
    grid.SetBackColor(2, 1, ChangedColour);
    for (const bool dark : {false, true}) {
        UsePalette(dark);
        EXPECT_EQ(Ground(2, 1), QColor(0xFF, 0xFF, 0xC0)) << (dark ? "dark" : "light");
        EXPECT_EQ(Ground(1, 1), widget->palette().color(QPalette::Base)) << (dark ? "dark" : "light");
    }
}

TEST_F(GridWidgetPaintingTest, WhereNoRowIsShownThereAreNoLinesBelowTheHeader) {
    Make(3, 2);
    UsePalette(false);
    for (std::int32_t row = 1; row <= 3; ++row) {
        grid.SetRowHidden(row, true);
    }
    QApplication::processEvents();
    const QImage picture = Picture();
    const GridLayout::Sizes& sizes = widget->Layout().GetSizes();
    for (int y = sizes.headerHeight; y < sizes.headerHeight + 2 * sizes.rowHeight; ++y) {
        for (int x = 0; x < 2 * ColumnWidth; ++x) {
            ASSERT_EQ(picture.pixelColor(x, y), QColor(Qt::white)) << x << "," << y;
        }
    }
}

TEST_F(GridWidgetPaintingTest, TextOnAMarkIsBlackInTheDarkThemeToo) {
    Make(5, 3);
    UsePalette(true);
    grid.SetBackColor(2, 1, ChangedColour);
    EXPECT_TRUE(Has(2, 1, Qt::black));
    EXPECT_FALSE(Has(2, 1, Qt::white));
    EXPECT_TRUE(Has(1, 1, Qt::white));
}

TEST_F(GridWidgetPaintingTest, MarkInsideASelectionIsTwoPartsMarkAndOnePartHighlight) {
    Make(5, 3);
    UsePalette(false);
    grid.SetBackColor(2, 1, ChangedColour);
    grid.Select(1, 0);
    grid.ExtendSelection(3, 2);
    EXPECT_EQ(Ground(2, 1), QColor((2 * 0xFF + 40) / 3, (2 * 0xFF + 130) / 3, (2 * 0xC0 + 220) / 3));
    EXPECT_TRUE(Has(2, 1, Qt::black));
    EXPECT_EQ(Ground(2, 2), QColor(40, 130, 220));
    EXPECT_EQ(Ground(4, 1), QColor(Qt::white));
}

TEST_F(GridWidgetPaintingTest, CurrentCellKeepsItsGroundInsideAFrame) {
    Make(5, 3);
    UsePalette(false);
    grid.Select(2, 1);
    grid.ExtendSelection(3, 2);
    EXPECT_EQ(Ground(2, 1), QColor(Qt::white));
    const QRect cell = widget->Layout().CellRect(2, 1);
    EXPECT_EQ(Picture().pixelColor(cell.center().x(), cell.top()), QColor(40, 130, 220));
    EXPECT_EQ(Picture().pixelColor(cell.left(), cell.center().y()), QColor(40, 130, 220));
    grid.SetBackColor(2, 1, ChangedColour);
    EXPECT_EQ(Ground(2, 1), QColor(0xFF, 0xFF, 0xC0));
}

TEST_F(GridWidgetPaintingTest, NothingIsSelectedWhileTheCurrentRowIsTheHeader) {
    Make(5, 3);
    UsePalette(false);
    grid.Select(0, 1);
    grid.ExtendSelection(3, 1);
    EXPECT_EQ(Ground(2, 1), QColor(Qt::white));
}

TEST_F(GridWidgetPaintingTest, HeaderIsTenPixelsHigherThanARow) {
    Make(5, 3);
    EXPECT_EQ(widget->Layout().CellRect(0, 0).height(), widget->Layout().CellRect(1, 0).height() + 10);
}

TEST_F(GridWidgetPaintingTest, FunnelStandsInTheHeadersRightBottomCorner) {
    Make(5, 3);
    UsePalette(false);
    const QRect header = widget->Layout().CellRect(0, 1);
    const QPoint inFunnel(header.right() - 1 - FunnelSize / 2, header.bottom() - 1 - FunnelSize + 5);
    EXPECT_EQ(Picture().pixelColor(inFunnel), QColor(240, 240, 240));
    grid.SetCellPicture(1, HeaderPicture::FilterOff);
    const QColor grey = Picture().pixelColor(inFunnel);
    EXPECT_EQ(grey.red(), grey.green());
    EXPECT_EQ(grey.green(), grey.blue());
    EXPECT_LT(grey.red(), 230);
    grid.SetCellPicture(1, HeaderPicture::FilterOn);
    const QColor red = Picture().pixelColor(inFunnel);
    EXPECT_GT(red.red(), red.green() + 80);
    EXPECT_EQ(red.green(), red.blue());
}

TEST_F(GridWidgetPaintingTest, TextStandsWhereTheColumnsAlignmentPutsIt) {
    Make(1, 1);
    UsePalette(false);
    grid.SetColWidth(0, 200);
    grid.SetTextMatrix(1, 0, "HHH");
    const auto inked = [&](CellAlignment alignment) {
        grid.SetColAlignment(0, alignment);
        QApplication::processEvents();
        const QRect cell = widget->Layout().CellRect(1, 0);
        const QImage picture = Picture();
        const auto hasInk = [&](int from, int to) {
            for (int x = from; x < to; ++x) {
                for (int y = cell.top() + 2; y < cell.bottom() - 2; ++y) {
                    if (picture.pixelColor(x, y).lightness() < 128) {
                        return true;
                    }
                }
            }
            return false;
        };
        return std::vector<bool>{hasInk(2, 60), hasInk(70, 130), hasInk(140, 198)};
    };
    EXPECT_EQ(inked(caLeftCenter), (std::vector<bool>{true, false, false}));
    EXPECT_EQ(inked(caCenterCenter), (std::vector<bool>{false, true, false}));
    EXPECT_EQ(inked(caRightCenter), (std::vector<bool>{false, false, true}));
}

TEST_F(GridWidgetPaintingTest, TheHeadersTextStandsAsItsColumnsCellsDo) {
    Make(1, 2);
    UsePalette(false);
    grid.SetColWidth(1, 200);
    grid.SetTextMatrix(0, 1, "HHH");
    const auto firstInk = [&](CellAlignment alignment) {
        grid.SetColAlignment(1, alignment);
        QApplication::processEvents();
        const QRect cell = widget->Layout().CellRect(0, 1);
        const QImage picture = Picture();
        const QRgb ground = picture.pixel(cell.left() + 1, cell.top() + 2);
        for (int x = cell.left() + 1; x < cell.right(); ++x) {
            for (int y = cell.top() + 2; y < cell.bottom() - 2; ++y) {
                if (picture.pixel(x, y) != ground) {
                    return x - cell.left();
                }
            }
        }
        return 0;
    };
    const int left = firstInk(caLeftCenter);
    const int centre = firstInk(caCenterCenter);
    const int right = firstInk(caRightCenter);
    EXPECT_GT(left, 0);
    EXPECT_LT(left, 20);
    EXPECT_GT(centre, left + 40);
    EXPECT_GT(right, centre + 40);
}

TEST_F(GridWidgetPaintingTest, TextWiderThanItsCellEndsInAnEllipsis) {
    Make(1, 1);
    TextWidths widths;
    widths.SetFont(widget->font(), widget->viewport());
    const QString fitted = widths.Fitted("a text that is far too wide", 60);
    EXPECT_TRUE(fitted.endsWith(QChar(0x2026))) << fitted.toStdString();
    EXPECT_EQ(widths.Fitted("short", 600), QString("short"));
}

TEST_F(GridWidgetPaintingTest, RowsAndColumnsThatAreHiddenTakeNoRoom) {
    Make(5, 3);
    grid.SetRowHidden(2, true);
    grid.SetColHidden(0, true);
    EXPECT_EQ(widget->Layout().CellRect(3, 1).top(), widget->Layout().CellRect(1, 1).bottom() + 1);
    EXPECT_EQ(widget->Layout().CellRect(1, 1).left(), 0);
    EXPECT_TRUE(widget->Layout().CellRect(2, 1).isEmpty());
    EXPECT_TRUE(widget->Layout().CellRect(1, 0).isEmpty());
}

TEST_F(GridWidgetPaintingTest, AChangedCellIsTheOnlyOnePaintedAnew) {
    Make(5, 3);
    QApplication::processEvents();
    struct Watch : QObject {
        QRegion painted;
        bool eventFilter(QObject*, QEvent* event) override {
            if (event->type() == QEvent::Paint) {
                painted += static_cast<QPaintEvent*>(event)->region();
            }
            return false;
        }
    } watch;
    Port()->installEventFilter(&watch);
    grid.SetTextMatrix(2, 1, "new");
    EXPECT_TRUE(watch.painted.isEmpty()) << "painted at once";
    QApplication::processEvents();
    EXPECT_EQ(watch.painted.boundingRect(), widget->Layout().CellRect(2, 1));
    watch.painted = {};
    grid.SetCellPicture(1, HeaderPicture::FilterOn);
    QApplication::processEvents();
    EXPECT_EQ(watch.painted.boundingRect(), widget->Layout().CellRect(0, 1));
}

TEST_F(GridWidgetPaintingTest, NothingIsPaintedForCellsOutOfSight) {
    Make(500, 3);
    struct Watch : QObject {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } watch;
    Port()->installEventFilter(&watch);
    grid.SetTextMatrix(400, 1, "new");
    QApplication::processEvents();
    EXPECT_EQ(watch.paints, 0);
}

TEST_F(GridWidgetPaintingTest, HidingManyRowsPaintsOnce) {
    Make(500, 3);
    struct Watch : QObject {
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } watch;
    Port()->installEventFilter(&watch);
    for (std::int32_t row = 1; row <= 500; row += 2) {
        grid.SetRowHidden(row, true);
    }
    for (int pass = 0; pass < 3; ++pass) {
        QApplication::processEvents();
    }
    EXPECT_EQ(watch.paints, 1);
}

TEST_F(GridWidgetPaintingTest, AGridThatGrowsWithRedrawOffIsPaintedWithoutFault) {
    Make(5, 3);
    grid.SetRedraw(false);
    grid.SetCols(2);
    grid.SetRows(1);
    EXPECT_FALSE(Picture().isNull());
    grid.SetRows(0);
    EXPECT_FALSE(Picture().isNull());
    grid.SetCols(0);
    grid.SetRedraw(true);
    EXPECT_FALSE(Picture().isNull());
}

}  // namespace
}  // namespace kd
