#include "qt/grid/GridFixture.h"

#include <QPainter>
#include <QStaticText>
#include <QStyle>
#include <functional>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"
#include "qt/grid/GridPainter.h"

namespace kd {
namespace {

/// Two parts of the one colour, one of the other.
QColor Mixed(const QColor& two, const QColor& one) {
    const auto mix = [](int a, int b) { return (2 * a + b) / 3; };
    return {mix(two.red(), one.red()), mix(two.green(), one.green()), mix(two.blue(), one.blue())};
}

BackColour BackColourOf(const QColor& colour) {
    return static_cast<BackColour>(colour.red() | colour.green() << 8 | colour.blue() << 16);
}

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
    /// A grid without texts, below whose last whole row half a row is left.
    void MakeBlank(std::int32_t rows, std::int32_t cols, std::unique_ptr<GridManner> manner = nullptr) {
        Make(rows, cols, std::move(manner));
        for (std::int32_t row = 0; row <= rows; ++row) {
            for (std::int32_t col = 0; col < cols; ++col) {
                grid.SetTextMatrix(row, col, "");
            }
        }
        QApplication::processEvents();
        const GridLayout::Sizes& sizes = widget->Layout().GetSizes();
        const int port = sizes.headerHeight + 8 * sizes.rowHeight + sizes.rowHeight / 2;
        widget->resize(260, widget->height() - Port()->height() + port);
        QApplication::processEvents();
    }
    /// Whether the frame of the current cell, or of a list's current row, is there: two pixels along the
    /// inside of the lines, above everything else.
    bool InFrame(GridCell cell, QPoint at) const {
        const GridLayout& layout = widget->Layout();
        QRect frame = layout.CellRect(cell.row, cell.screenCol);
        if (widget->Manner().WholeRows()) {
            frame.setLeft(layout.LeftOf(layout.Columns().front()));
            frame.setRight(layout.CellRect(cell.row, layout.Columns().back().screenCol).right());
        }
        return widget->Manner().IsCurrent(cell) && (widget->hasFocus() || !widget->Manner().WholeRows()) &&
               frame.adjusted(0, 0, -1, -1).contains(at) && !frame.adjusted(2, 2, -3, -3).contains(at);
    }
    /// The colour that a pixel of a grid without texts has, by where the layout says that cells stand.
    QColor Planned(QPoint at) const {
        const GridLayout& layout = widget->Layout();
        const auto of = [&](QPalette::ColorRole role) { return widget->palette().color(role); };
        const GridCell cell = layout.CellAt(at);
        if (cell.row < 0 || cell.screenCol < 0) {
            return of(QPalette::Base);
        }
        const QRect place = layout.CellRect(cell.row, cell.screenCol);
        const bool onLine = at.x() == place.right() || at.y() == place.bottom();
        if (cell.row == 0) {
            return onLine ? Mixed(of(QPalette::Button), of(QPalette::ButtonText)) : of(QPalette::Button);
        }
        const bool selected = widget->Manner().LooksSelected(cell);
        if (InFrame(cell, at)) {
            return !widget->Manner().WholeRows() ? of(QPalette::Highlight)
                   : selected                    ? QColor(Qt::white)
                                                 : QColor(Qt::black);
        }
        if (at.x() == place.right() && at.x() + 1 == layout.FrozenWidth()) {
            return of(QPalette::Text);
        }
        if (onLine) {
            return Mixed(Mixed(of(QPalette::Base), of(QPalette::Text)), of(QPalette::Base));
        }
        return of(selected ? QPalette::Highlight : QPalette::Base);
    }
    void ExpectAsPlanned(const char* label) const {
        const QImage picture = Picture();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y) != Planned({x, y})) {
                    ADD_FAILURE() << label << ": " << x << "," << y << " is "
                                  << picture.pixelColor(x, y).name().toStdString() << ", not "
                                  << Planned({x, y}).name().toStdString();
                    return;
                }
            }
        }
    }
    /// A place of the grid, drawn on a ground of that colour.
    QImage Drawn(QRect place, const QColor& ground, const std::function<void(QPainter&)>& draw) const {
        QPixmap sheet(Port()->size());
        sheet.fill(ground);
        QPainter painter(&sheet);
        draw(painter);
        painter.end();
        return sheet.toImage().copy(place).convertToFormat(QImage::Format_RGB32);
    }
    QImage Seen(QRect place) const { return Picture().copy(place).convertToFormat(QImage::Format_RGB32); }
    /// A text in the middle of a place's height, its margins kept, with what room it leaves on the side or
    /// the sides that the alignment says.
    void PutText(QPainter& painter, QRect place, const char* text, CellAlignment alignment,
                 const QColor& colour) const {
        TextWidths widths;
        widths.SetFont(widget->font(), Port());
        const int room = place.width() - 2 * CellMargin;
        const QString shown = widths.Fitted(text, room);
        const double left = room - widths.ExactOf(shown);
        QStaticText drawn(shown);
        drawn.setTextFormat(Qt::PlainText);
        painter.setFont(widths.Font());
        painter.setPen(colour);
        painter.drawStaticText(QPointF(place.left() + CellMargin +
                                           (alignment == caLeftCenter     ? 0
                                            : alignment == caCenterCenter ? left / 2
                                                                          : left),
                                       place.top() + (place.height() - widths.Metrics().height()) / 2),
                               drawn);
    }
};

TEST_F(GridWidgetPaintingTest, GroundsLinesAndFrameStandWhereTheCellsDo) {
    struct Case {
        const char* label;
        bool dark;
        std::int32_t rows;
        std::int32_t cols;
        std::int32_t frozen;
        int across;  // how far it is scrolled, in pixels
        int down;    // in rows
        GridCell current;
        GridCell end;
        GridCell hidden;
    };
    for (const Case& each :
         {Case{"all in sight", false, 5, 3, 0, 0, 0, {1, 0}, {1, 0}, {}},
          Case{"frozen columns", true, 5, 3, 2, 0, 0, {2, 1}, {4, 2}, {}},
          Case{"the last of few rows", false, 5, 3, 1, 0, 0, {5, 2}, {4, 1}, {}},
          Case{"scrolled", false, 60, 9, 2, 33, 4, {6, 2}, {8, 4}, {}},
          Case{"scrolled in the dark", true, 60, 9, 1, 50, 4, {6, 3}, {5, 1}, {}},
          Case{"a current row just above those in sight", false, 60, 9, 1, 40, 9, {9, 3}, {12, 5}, {}},
          Case{"scrolled to the end", false, 60, 9, 1, 9999, 9999, {60, 8}, {58, 8}, {}},
          Case{"the header's row is current", false, 5, 3, 0, 0, 0, {0, 1}, {2, 1}, {}},
          Case{"a hidden row is current", false, 5, 3, 1, 0, 0, {3, 1}, {4, 2}, {3, -1}},
          Case{"a hidden column is current", false, 5, 3, 1, 0, 0, {3, 1}, {4, 2}, {-1, 1}},
          Case{"a hidden frozen column", false, 5, 4, 2, 0, 0, {3, 2}, {3, 3}, {-1, 1}},
          Case{"no rows", false, 0, 3, 1, 0, 0, {0, 0}, {0, 0}, {}}}) {
        MakeBlank(each.rows, each.cols);
        UsePalette(each.dark);
        grid.SetFrozenCols(each.frozen);
        grid.Select(each.current.row, each.current.screenCol);
        grid.ExtendSelection(each.end.row, each.end.screenCol);
        if (each.hidden.row > 0) {
            grid.SetRowHidden(each.hidden.row, true);
        }
        if (each.hidden.screenCol >= 0) {
            grid.SetColHidden(each.hidden.screenCol, true);
        }
        QApplication::processEvents();
        widget->horizontalScrollBar()->setValue(each.across);
        widget->verticalScrollBar()->setValue(each.down);
        ExpectAsPlanned(each.label);
        grid.SetFrozenCols(0);
        grid.SetRows(0);
        grid.SetCols(0);
    }
}

TEST_F(GridWidgetPaintingTest, AGridWithoutEvenAHeaderIsBlank) {
    MakeBlank(3, 3);
    UsePalette(false);
    grid.SetRows(0);
    QApplication::processEvents();
    ExpectAsPlanned("without a header");
}

TEST_F(GridWidgetPaintingTest, AListWithTheKeyboardFramesItsCurrentRowAsAWhole) {
    MakeBlank(60, 2, std::make_unique<ListManner>(grid));
    UsePalette(false);
    QPalette colours = widget->palette();
    colours.setColor(QPalette::Highlight, QColor(0, 0, 128));
    widget->setPalette(colours);
    grid.SetIsSelected(3, true);
    grid.Select(2, 0);
    QApplication::processEvents();
    ExpectAsPlanned("current");
    grid.Select(3, 1);
    ExpectAsPlanned("current and selected");
    other->setFocus();
    ExpectAsPlanned("without the keyboard");
    widget->setFocus();
    grid.SetColWidth(0, 500);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(50);
    ExpectAsPlanned("scrolled across");
    widget->verticalScrollBar()->setValue(3);
    ExpectAsPlanned("scrolled above the rows in sight");
    grid.SetColHidden(0, true);
    grid.SetColHidden(1, true);
    QApplication::processEvents();
    ExpectAsPlanned("without columns");
}

TEST_F(GridWidgetPaintingTest, APartThatIsPaintedAloneIsAsInTheWhole) {
    Make(30, 6);
    UsePalette(false);
    grid.SetFrozenCols(1);
    grid.Select(5, 3);
    grid.ExtendSelection(24, 0);
    QApplication::processEvents();
    widget->horizontalScrollBar()->setValue(30);
    widget->verticalScrollBar()->setValue(2);
    const QImage whole = Picture();
    for (int x = 0; x < whole.width(); ++x) {
        const QRect part(x, 0, 1, whole.height());
        ASSERT_TRUE(Port()->grab(part).toImage() == whole.copy(part)) << "column " << x;
    }
    for (int y = 0; y < whole.height(); ++y) {
        const QRect part(0, y, whole.width(), 1);
        ASSERT_TRUE(Port()->grab(part).toImage() == whole.copy(part)) << "line " << y;
    }
}

TEST_F(GridWidgetPaintingTest, ATextStandsInTheMiddleOfItsCellAsItsColumnIsAligned) {
    struct Case {
        const char* label;
        std::int32_t row;
        std::int32_t col;
        CellAlignment alignment;
        const char* text;
        QPalette::ColorRole ground;
        QPalette::ColorRole ink;
    };
    Make(4, 3);
    UsePalette(false);
    QPalette colours = widget->palette();
    colours.setColor(QPalette::Text, QColor(0, 0, 120));
    colours.setColor(QPalette::ButtonText, QColor(120, 0, 0));
    colours.setColor(QPalette::HighlightedText, QColor(255, 255, 160));
    widget->setPalette(colours);
    grid.SetFrozenCols(1);
    grid.Select(3, 1);
    grid.ExtendSelection(4, 2);
    constexpr auto Base = QPalette::Base;
    constexpr auto Button = QPalette::Button;
    const char* const wide = "a text that is too wide";
    for (const Case& each :
         {Case{"left", 1, 1, caLeftCenter, "Hj", Base, QPalette::Text},
          Case{"centre", 1, 1, caCenterCenter, "Hj", Base, QPalette::Text},
          Case{"right", 1, 1, caRightCenter, "Hj", Base, QPalette::Text},
          Case{"too wide, left", 1, 1, caLeftCenter, wide, Base, QPalette::Text},
          Case{"too wide, centre", 1, 1, caCenterCenter, wide, Base, QPalette::Text},
          Case{"too wide, right", 1, 1, caRightCenter, wide, Base, QPalette::Text},
          Case{"tags", 1, 2, caLeftCenter, "<b>H</b>", Base, QPalette::Text},
          Case{"frozen, of letters that might be pushed together", 1, 0, caLeftCenter, "AVAToVA", Base,
               QPalette::Text},
          Case{"selected", 4, 2, caLeftCenter, "Hj", QPalette::Highlight, QPalette::HighlightedText},
          Case{"first header", 0, 0, caLeftCenter, "AVAToVA", Button, QPalette::ButtonText},
          Case{"header, centre", 0, 1, caCenterCenter, "Hj", Button, QPalette::ButtonText},
          Case{"header, right", 0, 2, caRightCenter, "Hj", Button, QPalette::ButtonText},
          Case{"header, too wide", 0, 2, caRightCenter, wide, Button, QPalette::ButtonText}}) {
        grid.SetColAlignment(each.col, each.alignment);
        grid.SetTextMatrix(each.row, each.col, each.text);
        QApplication::processEvents();
        const QRect place = widget->Layout().CellRect(each.row, each.col).adjusted(0, 0, -1, -1);
        EXPECT_TRUE(Seen(place) == Drawn(place, colours.color(each.ground),
                                         [&](QPainter& painter) {
                                             PutText(painter, place, each.text, each.alignment,
                                                     colours.color(each.ink));
                                         }))
            << each.label;
    }
}

TEST_F(GridWidgetPaintingTest, AHeadersTextAndItsLinesKeepOffItsFunnel) {
    Make(1, 3);
    UsePalette(false);
    grid.SetColAlignment(1, caRightCenter);
    const QColor button = widget->palette().color(QPalette::Button);
    const QColor line = Mixed(button, widget->palette().color(QPalette::ButtonText));
    for (const HeaderPicture picture :
         {HeaderPicture::None, HeaderPicture::FilterOff, HeaderPicture::FilterOn}) {
        for (const char* const text : {"Hj", "a text that is too wide"}) {
            grid.SetCellPicture(1, picture);
            grid.SetTextMatrix(0, 1, text);
            QApplication::processEvents();
            const QRect header = widget->Layout().CellRect(0, 1);
            EXPECT_TRUE(
                Seen(header) ==
                Drawn(header, button,
                      [&](QPainter& painter) {
                          QRect inside = header.adjusted(0, 0, -1, -1);
                          painter.fillRect(header.right(), 0, 1, header.height(), line);
                          painter.fillRect(header.left(), header.bottom(), header.width(), 1, line);
                          if (picture != HeaderPicture::None) {
                              const QPoint corner = inside.bottomRight() - QPoint(FunnelSize, FunnelSize);
                              DrawFunnel(painter, QRectF(corner, QSizeF(FunnelSize, FunnelSize)),
                                         picture == HeaderPicture::FilterOn);
                              inside.setRight(corner.x() - PictureGap + CellMargin);  // a margin goes off it
                          }
                          PutText(painter, inside, text, caRightCenter, Qt::black);
                      }))
                << text << " with picture " << static_cast<int>(picture);
        }
    }
}

TEST_F(GridWidgetPaintingTest, ColoursHaveBlueInFrontAndTextIsBlackOnWhatIsBrighterThanNineTwentieths) {
    Make(1, 1);
    const CellManner manner(grid);
    const GridScroll scroll(*widget, grid, manner);
    const GridPainter painter(grid, manner, scroll);
    grid.SetBackColor(1, 0, 0x573513);
    EXPECT_EQ(painter.LookOf({1, 0}, widget->palette()).ground, QColor(0x13, 0x35, 0x57));
    struct Case {
        QColor ground;
        QColor text;
    };
    for (const Case& each :
         {Case{{114, 114, 114}, Qt::white}, Case{{115, 115, 115}, Qt::black}, Case{{255, 0, 0}, Qt::white},
          Case{{0, 255, 0}, Qt::black}, Case{{0, 0, 255}, Qt::white}, Case{{0, 80, 0}, Qt::white},
          Case{{0, 160, 255}, Qt::black}}) {
        grid.SetBackColor(1, 0, BackColourOf(each.ground));
        EXPECT_EQ(painter.LookOf({1, 0}, widget->palette()).text, each.text)
            << each.ground.name().toStdString();
    }
}

TEST_F(GridWidgetPaintingTest, TheFrameIsBlackOrWhiteWhereItsColourWouldNotShowOnTheCell) {
    Make(5, 3);
    QPalette colours = widget->palette();
    const QColor highlight(100, 100, 100);
    colours.setColor(QPalette::Highlight, highlight);
    widget->setPalette(colours);
    grid.Select(2, 1);
    QApplication::processEvents();
    const QRect cell = widget->Layout().CellRect(2, 1);
    const auto frameOn = [&](int grey) {
        grid.SetBackColor(2, 1, BackColourOf({grey, grey, grey}));
        return Picture().pixelColor(cell.left(), cell.center().y());
    };
    EXPECT_EQ(frameOn(164), highlight);
    EXPECT_EQ(frameOn(163), QColor(Qt::black));
    EXPECT_EQ(frameOn(37), QColor(Qt::white));
    EXPECT_EQ(frameOn(36), highlight);
}

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
