#include "qt/grid/ColumnWidths.h"

#include <cmath>

#include "qt/WindowFixture.h"
#include "qt/grid/Funnel.h"
#include "qt/grid/GridMetrics.h"

namespace kd {
namespace {

using ColumnWidthsTest = WindowFixture;

TEST(ColumnWidthsOfTextsTest, AColumnHasRoomForItsWidestTextAndForThePictureBesideItsHeader) {
    const char* const wide = "a text that is wider than any header with its picture";
    constexpr int Picture = FunnelSize + PictureGap;
    struct Case {
        const char* header;
        bool picture;
        const char* cell;
        const char* widest;
        int beside;
    };
    const std::vector<Case> cases{
        {"", false, "", "", 0},          {"i", false, "Wi", "Wi", 0},   {"Wi", false, "i", "Wi", 0},
        {"", true, "", "", Picture},     {"i", true, "", "i", Picture}, {"Wi", true, "i", "Wi", Picture},
        {"Column", true, wide, wide, 0}, {"i", false, wide, wide, 0},
    };
    const auto last = static_cast<std::int32_t>(cases.size());
    VSFlexGrid grid("Grid");
    grid.SetCols(last + 2);  // one to each side is not asked for
    grid.SetRows(4);
    grid.SetTextMatrix(1, 0, wide);
    grid.SetTextMatrix(1, last + 1, wide);
    for (std::int32_t col = 1; col <= last; ++col) {
        const Case& c = cases[static_cast<std::size_t>(col - 1)];
        grid.SetTextMatrix(0, col, c.header);
        grid.SetTextMatrix(2, col, c.cell);
        grid.SetCellPicture(col, c.picture ? HeaderPicture::FilterOff : HeaderPicture::None);
    }
    QWidget device;
    for (const double spacing : {0.0, 0.25}) {  // so that texts end between two pixels
        QFont font;
        font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
        TextWidths widths;
        widths.SetFont(font, &device);
        std::vector<int> wanted;
        for (const Case& c : cases) {
            wanted.push_back(static_cast<int>(std::ceil(widths.Exact(c.widest) + c.beside)) + 2 * CellMargin +
                             1);
        }
        EXPECT_EQ(ColumnWidths(grid, widths, 1, last), wanted) << spacing;
    }
}

TEST_F(ColumnWidthsTest, WidthsLiveUntilTheNextLoad) {
    Load({aField().Name("Water")});
    const std::int32_t col = cnVariableName - 1;
    const int fitting = desk.Grid.ColWidth(col);
    const QRect header = Widget().Layout().CellRect(0, col);
    const QPoint edge(header.right(), header.center().y());
    QTest::mousePress(Widget().viewport(), Qt::LeftButton, {}, edge);
    QMouseEvent move(QEvent::MouseMove, edge + QPoint(33, 0),
                     Widget().viewport()->mapToGlobal(edge + QPoint(33, 0)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(Widget().viewport(), &move);
    QTest::mouseRelease(Widget().viewport(), Qt::LeftButton, {}, edge + QPoint(33, 0));
    EXPECT_EQ(desk.Grid.ColWidth(col), fitting + 33);
    form.LoadAndShowApplications();
    EXPECT_EQ(desk.Grid.ColWidth(col), fitting);
}

}  // namespace
}  // namespace kd
