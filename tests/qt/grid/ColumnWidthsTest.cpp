#include "qt/WindowFixture.h"

namespace kd {
namespace {

using ColumnWidthsTest = WindowFixture;

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
