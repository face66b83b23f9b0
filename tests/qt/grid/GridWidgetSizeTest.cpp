#include <cmath>

#include "qt/grid/Funnel.h"
#include "qt/grid/GridFixture.h"
#include "qt/grid/GridMetrics.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

class GridWidgetSizeTest : public GridFixture {
protected:
    /// Of the font that cells are drawn in.
    QFontMetricsF Metrics() const {
        QFont font = widget->font();
        font.setKerning(false);
        font.setStyleStrategy(QFont::PreferNoShaping);
        return {font, widget->viewport()};
    }
    void Enlarge(double times) const {
        QFont font = widget->font();
        font.setPointSizeF(font.pointSizeF() * times);
        widget->setFont(font);
    }
    std::vector<std::int32_t> Widths() const {
        std::vector<std::int32_t> widths;
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            widths.push_back(grid.ColWidth(col));
        }
        return widths;
    }
    /// The widest text of a column, measured one by one.
    int Measured(std::int32_t col) const {
        const QFontMetricsF metrics = Metrics();
        double widest = 0;
        for (std::int32_t row = 0; row < grid.Rows(); ++row) {
            double width = metrics.horizontalAdvance(ToQt(grid.TextMatrix(row, col)));
            if (row == 0 && grid.CellPicture(col) != HeaderPicture::None) {
                width += FunnelSize + PictureGap;
            }
            widest = std::max(widest, width);
        }
        return static_cast<int>(std::ceil(widest)) + 2 * CellMargin + 1;
    }
};

TEST_F(GridWidgetSizeTest, AutoSizeEqualsMeasuringEveryText) {
    Make(400, 8);
    const std::vector<std::string> pieces{"AVATAR",           "fi",           "ffl", "12.5",
                                          "-0,001",           "To",           "WWW", "iii",
                                          "\xC3\xA4\xC3\x9F", "\xE2\x82\xAC", " ",   ""};
    for (std::int32_t row = 1; row <= 400; ++row) {
        for (std::int32_t col = 0; col < 6; ++col) {
            const auto pick = [&](std::int32_t salt) {
                return pieces[static_cast<std::size_t>(row * 7 + col * 5 + salt * row) % pieces.size()];
            };
            grid.SetTextMatrix(row, col, pick(0) + pick(3) + pick(5) + std::to_string(row % 17));
        }
        grid.SetTextMatrix(row, 6, "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D " + std::to_string(row));
        grid.SetTextMatrix(row, 7, "");
    }
    grid.SetCellPicture(7, HeaderPicture::FilterOff);
    grid.AutoSize(0, 7);
    for (std::int32_t col = 0; col < 8; ++col) {
        EXPECT_EQ(grid.ColWidth(col), Measured(col)) << col;
    }
}

TEST_F(GridWidgetSizeTest, HiddenRowsAndColumnsCount) {
    Make(5, 3);
    grid.SetTextMatrix(3, 1, "the widest text of all");
    grid.SetRowHidden(3, true);
    grid.SetColHidden(1, true);
    grid.AutoSize(0, 2);
    EXPECT_EQ(grid.ColWidth(1), Measured(1));
    EXPECT_GT(grid.ColWidth(1), grid.ColWidth(0));
}

TEST_F(GridWidgetSizeTest, TheHeadersPictureTakesRoomBesideItsText) {
    Make(1, 2);
    grid.SetTextMatrix(1, 0, "");
    grid.AutoSize(0, 0);
    const auto without = grid.ColWidth(0);
    grid.SetCellPicture(0, HeaderPicture::FilterOff);
    grid.AutoSize(0, 0);
    EXPECT_EQ(grid.ColWidth(0), without + FunnelSize + PictureGap);
}

TEST_F(GridWidgetSizeTest, OnlyTheNamedColumnsAreSized) {
    Make(2, 3);
    grid.SetTextMatrix(1, 0, "a text wider than its column is now");
    grid.SetTextMatrix(1, 1, "a text wider than its column is now");
    grid.AutoSize(1, 2);
    EXPECT_EQ(grid.ColWidth(0), ColumnWidth);
    EXPECT_EQ(grid.ColWidth(1), Measured(1));
}

TEST_F(GridWidgetSizeTest, AnotherFontSizesRowsAndColumnsAnew) {
    Make(5, 2);
    grid.AutoSize(0, 1);
    const int rowHeight = widget->Layout().GetSizes().rowHeight;
    const auto width = grid.ColWidth(0);
    Enlarge(2);
    QApplication::processEvents();
    EXPECT_GT(widget->Layout().GetSizes().rowHeight, rowHeight * 3 / 2);
    EXPECT_GT(grid.ColWidth(0), width * 3 / 2);
    EXPECT_EQ(grid.ColWidth(0), Measured(0));
}

TEST_F(GridWidgetSizeTest, AnotherFontSizesOnlyTheColumnsThatHaveBeenSized) {
    Make(5, 3);
    grid.AutoSize(1, 1);
    Enlarge(2);
    QApplication::processEvents();
    EXPECT_EQ(grid.ColWidth(0), ColumnWidth);
    EXPECT_EQ(grid.ColWidth(1), Measured(1));
    EXPECT_EQ(grid.ColWidth(2), ColumnWidth);
}

TEST_F(GridWidgetSizeTest, AnotherFontLeavesColumnsThatWereNeverFitted) {
    Make(100, 3);
    const int rowHeight = widget->Layout().GetSizes().rowHeight;
    Enlarge(2);
    QApplication::processEvents();
    EXPECT_EQ(Widths(), (Cell{ColumnWidth, ColumnWidth, ColumnWidth}));
    EXPECT_GT(widget->Layout().GetSizes().rowHeight, rowHeight);
    EXPECT_EQ(widget->verticalScrollBar()->maximum(), 100 - widget->Layout().FullRows());
}

TEST_F(GridWidgetSizeTest, AnotherFontSizesNothingWhereSizedColumnsHaveGone) {
    Make(5, 3);
    grid.AutoSize(0, 2);
    grid.SetCols(2);
    EXPECT_NO_THROW(Enlarge(2));
    EXPECT_EQ(Widths(), (Cell{0, 0}));
}

TEST_F(GridWidgetSizeTest, RowsAndColumnsTakeTheirSizesFromTheFontAtOnce) {
    Make(5, 2);
    grid.SetColWidth(0, 0);
    for (const double times : {1.0, 1.1, 1.3, 1.7}) {
        Enlarge(times);
        const QFontMetricsF metrics = Metrics();
        const int rowHeight = static_cast<int>(std::ceil(metrics.height())) + RowMargin;
        const int tenCharacters = static_cast<int>(std::ceil(metrics.averageCharWidth() * DefaultColChars));
        EXPECT_EQ(widget->Layout().CellRect(1, 0),
                  QRect(0, rowHeight + HeaderExtra, tenCharacters, rowHeight));
        EXPECT_EQ(widget->Layout().CellRect(0, 1),
                  QRect(tenCharacters, 0, ColumnWidth, rowHeight + HeaderExtra));
    }
}

TEST_F(GridWidgetSizeTest, OfColumnsThatAreNotThereNoneIsSized) {
    Make(2, 3);
    grid.AutoSize(7, 9);
    grid.AutoSize(2, 0);
    grid.AutoSize(-5, -1);
    EXPECT_EQ(Widths(), (Cell{ColumnWidth, ColumnWidth, ColumnWidth}));
    grid.AutoSize(-5, 9);
    EXPECT_EQ(Widths(), (Cell{Measured(0), Measured(1), Measured(2)}));
}

TEST_F(GridWidgetSizeTest, FocusThatComesOrGoesSizesNothing) {
    Make(5, 2);
    grid.AutoSize(0, 1);
    const std::vector<std::int32_t> before = Widths();
    grid.SetTextMatrix(2, 0, "a text that is much wider than its column");
    other->setFocus();
    widget->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(Widths(), before);
}

TEST_F(GridWidgetSizeTest, AGridWithItsHeaderAloneIsSizedByIt) {
    Make(0, 2);
    grid.AutoSize(0, 1);
    EXPECT_EQ(grid.ColWidth(1), Measured(1));
}

TEST_F(GridWidgetSizeTest, LettersAreNotJoined) {
    Make(1, 1);
    TextWidths widths;
    widths.SetFont(widget->font(), widget->viewport());
    for (const char* text : {"ff", "fi", "ffi", "fl", "ffl", "fj", "Th", "tt"}) {
        EXPECT_EQ(widths.Exact(text), widths.AtMost(text)) << text;
    }
}

TEST_F(GridWidgetSizeTest, OfCharactersThatShapeTheirNeighboursThereIsNoSum) {
    Make(1, 1);
    TextWidths widths;
    widths.SetFont(widget->font(), widget->viewport());
    for (const char16_t character :
         {u'\u0300', u'\u036F', u'\u0590', u'\u10FF', u'\u200B', u'\u200F', u'\u202A', u'\u202E'}) {
        const std::string text = "a" + QString(QChar(character)).toStdString() + "b";
        EXPECT_TRUE(std::isinf(widths.AtMost(text))) << std::hex << static_cast<int>(character);
    }
    EXPECT_TRUE(std::isinf(widths.AtMost("\xF0\x9F\x98\x80"))) << "beyond the basic plane";
    for (const char16_t character : {u'\u00C4', u'\u02FF', u'\u0370', u'\u058F', u'\u1100', u'\u200A',
                                     u'\u2010', u'\u2029', u'\u202F', u'\uD7FF'}) {
        const std::string text = "a" + QString(QChar(character)).toStdString() + "b";
        EXPECT_FALSE(std::isinf(widths.AtMost(text))) << std::hex << static_cast<int>(character);
    }
}

TEST_F(GridWidgetSizeTest, TheSumOfCharactersIsNeverBelowTheExactWidth) {
    Make(1, 1);
    TextWidths widths;
    widths.SetFont(widget->font(), widget->viewport());
    for (const char* text : {"", " ", "AVAVA", "Tofu", "office", "fluffy fjord", "a\tb", "line\r\nbreak",
                             "1.2345E+10", "\xC3\x84\xC3\x96", "\xD0\x96\xD0\xB8", "\xE0\xB8\x81\xE0\xB8\xB3",
                             "\xD8\xA7\xD9\x84", "e\xCC\x81", "\xF0\x9F\x98\x80"}) {
        EXPECT_GE(widths.AtMost(text), widths.Exact(text)) << text;
    }
}

}  // namespace
}  // namespace kd
