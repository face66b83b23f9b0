#include <gmock/gmock.h>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <QAccessible>
#include <utility>
#include <vector>

#include "qt/grid/GridFixture.h"

namespace kd {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

struct Told {
    QAccessible::Event type;
    int child;  // -1: the grid itself

    bool operator==(const Told&) const = default;
};

/// What a screen reader hears of the grid.
class GridTellingTest : public GridFixture {
protected:
    void SetUp() override {
        GridFixture::SetUp();
        Switch(true);
        s_heard.clear();
        QAccessible::installUpdateHandler([](QAccessibleEvent* event) {
            if (qobject_cast<GridWidget*>(event->object()) != nullptr) {
                s_heard.push_back({event->type(), event->child()});
            }
        });
    }
    void TearDown() override {
        QAccessible::installUpdateHandler(nullptr);
        Switch(false);
        GridFixture::TearDown();
    }

    /// What has been heard since the last time.
    static std::vector<Told> Heard() { return std::exchange(s_heard, {}); }
    static std::vector<Told> CurrentCell(int row, int col, int cols) {
        return {{QAccessible::Selection, -1}, {QAccessible::Focus, row * cols + col}};
    }

    static void Switch(bool on) {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(on);
    }

private:
    static inline std::vector<Told> s_heard;
};

TEST_F(GridTellingTest, TheCurrentCellIsToldWhileTheGridHasTheKeyboard) {
    Make(5, 3);
    widget->setFocus();
    (void)Heard();
    grid.Select(1, 0);
    EXPECT_EQ(Heard(), CurrentCell(1, 0, 3));
    grid.Select(4, 2);
    EXPECT_EQ(Heard(), CurrentCell(4, 2, 3));

    other->setFocus();
    (void)Heard();
    grid.Select(2, 1);
    EXPECT_THAT(Heard(), ElementsAre(Told{QAccessible::Selection, -1}));
}

TEST_F(GridTellingTest, AGridWithoutACurrentCellTellsItsSelectionAlone) {
    Make(0, 3);
    widget->setFocus();
    (void)Heard();
    widget->SelectionChanged();
    EXPECT_THAT(Heard(), ElementsAre(Told{QAccessible::Selection, -1}));
}

TEST_F(GridTellingTest, WithoutAScreenReaderNoCellIsMadeForIt) {
    static int asked = 0;
    Switch(false);
    const QAccessible::InterfaceFactory count = [](const QString& /*className*/, QObject* object) {
        asked += qobject_cast<GridWidget*>(object) != nullptr ? 1 : 0;
        return static_cast<QAccessibleInterface*>(nullptr);
    };
    QAccessible::installFactory(count);
    Make(5, 3);
    asked = 0;
    grid.Select(4, 2);
    QAccessible::removeFactory(count);
    EXPECT_EQ(asked, 0);
}

TEST_F(GridTellingTest, ATableOfAnotherSizeIsToldOnce) {
    Make(5, 3);
    const Told anew{QAccessible::TableModelChanged, -1};
    (void)Heard();
    grid.SetRows(7);
    QApplication::processEvents();
    EXPECT_THAT(Heard(), Contains(anew).Times(1));
    grid.SetCols(4);
    QApplication::processEvents();
    EXPECT_THAT(Heard(), Contains(anew).Times(1));
    widget->LayoutChanged();
    QApplication::processEvents();
    EXPECT_THAT(Heard(), IsEmpty());
}

TEST_F(GridTellingTest, TheCurrentCellIsToldWhenTheKeyboardComesToItAndNotWhenItGoes) {
    const Told selection{QAccessible::Selection, -1};
    Make(5, 3);
    grid.Select(2, 1);
    (void)Heard();
    other->setFocus();
    EXPECT_THAT(Heard(), Not(Contains(selection)));
    widget->setFocus();
    EXPECT_THAT(Heard(), IsSupersetOf(CurrentCell(2, 1, 3)));
    QTest::keyClick(widget, Qt::Key_F2);
    (void)Heard();
    widget->setFocus();
    EXPECT_THAT(Heard(), Not(Contains(selection))) << "its editor has it";
}

}  // namespace
}  // namespace kd
