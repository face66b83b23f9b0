#include "qt/forms/ListBinder.h"

#include <QProxyStyle>
#include <QScrollBar>
#include <QStringListModel>
#include <algorithm>

#include "qt/Screen.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

ListBox::Entry Entry(Text text, bool selected) {
    return {std::move(text), selected, 0};
}

// --- model ------------------------------------------------------------------------------------------------

TEST(ListModelTest, TellsWhichRowsMayLookOtherwiseOrThatAllIsAnew) {
    using Told = std::vector<std::pair<int, int>>;
    struct Case {
        const char* label;
        std::size_t before;
        std::size_t after;
        Told changed;  // first and last row
        Told anew;     // number of rows when that was announced, and when it was done
    };
    for (const Case& c :
         {Case{"none", 0, 0, {}, {}}, Case{"one", 1, 1, {{0, 0}}, {}}, Case{"three", 3, 3, {{0, 2}}, {}},
          Case{"one more", 3, 4, {}, {{3, 4}}}, Case{"all gone", 3, 0, {}, {{3, 0}}}}) {
        ListBox control("lstFiles");
        control.SetEntries(std::vector<ListBox::Entry>(c.before));
        ListModel model(control, false, nullptr);
        Told changed;
        Told anew;
        int announced = -1;
        QObject::connect(&model, &QAbstractItemModel::dataChanged,
                         [&](const QModelIndex& first, const QModelIndex& last) {
                             changed.emplace_back(first.row(), last.row());
                         });
        QObject::connect(&model, &QAbstractItemModel::modelAboutToBeReset,
                         [&] { announced = model.rowCount(); });
        QObject::connect(&model, &QAbstractItemModel::modelReset,
                         [&] { anew.emplace_back(announced, model.rowCount()); });
        control.SetEntries(std::vector<ListBox::Entry>(c.after));
        model.Refresh();
        EXPECT_EQ(changed, c.changed) << c.label;
        EXPECT_EQ(anew, c.anew) << c.label;
    }
}

TEST(ListModelTest, ARowWhoseEntryHasGoneHasNoText) {
    ListBox control("lstFiles");
    control.SetEntries({Entry("a", true), Entry("b", true), Entry("c", true)});
    const ListModel model(control, true, nullptr);
    control.SetEntries({Entry("a", true), Entry("b", true)});
    EXPECT_EQ(model.data(model.index(2), Qt::DisplayRole), QVariant());
    EXPECT_EQ(model.data(model.index(2), Qt::CheckStateRole), QVariant());
    EXPECT_EQ(model.data(model.index(1), Qt::DisplayRole), "b");
}

TEST(ListModelTest, AnEntryHasItsTextAndWhereItIsTickedItsTickAndNothingElse) {
    ListBox control("lstFiles");
    control.SetEntries({Entry("a", true)});
    for (const bool checkable : {false, true}) {
        const ListModel model(control, checkable, nullptr);
        const QModelIndex entry = model.index(0);
        EXPECT_EQ(model.data(entry, Qt::CheckStateRole).isValid(), checkable);
        for (const int role : {Qt::DecorationRole, Qt::ToolTipRole, Qt::FontRole, Qt::TextAlignmentRole}) {
            EXPECT_FALSE(model.data(entry, role).isValid()) << role;
        }
        EXPECT_EQ(model.flags(entry).testFlag(Qt::ItemIsUserCheckable), checkable);
        EXPECT_TRUE(model.flags(entry).testFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable));
        EXPECT_FALSE(model.flags(entry).testFlag(Qt::ItemIsEditable));
    }
}

// --- what both lists do -----------------------------------------------------------------------------------

template <typename B>
class AnyListTest : public testing::Test {
protected:
    QtToolkit toolkit;
    ListBox control{"lstFiles"};
    QListView view;

    void SetUp() override {
        control.SetEntries({Entry("a", true), Entry("b", false), Entry("c", true)});
        new B(control, view, toolkit.Boundary());
    }
};
using Binders = testing::Types<ListBinder, CheckListBinder>;
TYPED_TEST_SUITE(AnyListTest, Binders);

TYPED_TEST(AnyListTest, EnabledAndVisibleFollowTheControl) {
    this->view.show();
    for (const bool on : {false, true}) {
        this->control.SetEnabled(on);
        EXPECT_EQ(this->view.isEnabled(), on);
        this->control.SetVisible(on);
        EXPECT_EQ(this->view.isVisible(), on);
    }
}

TYPED_TEST(AnyListTest, TheFormsCurrentEntryIsShown) {
    for (const int index : {2, 0, -1, 0}) {
        this->control.SetListIndex(index);
        EXPECT_EQ(this->view.currentIndex().row(), index);
    }
    this->control.Clear();
    EXPECT_EQ(this->view.model()->rowCount(), 0);
    EXPECT_FALSE(this->view.currentIndex().isValid());
}

TYPED_TEST(AnyListTest, AChangedEntryIsDrawnAnew) {
    int drawn = 0;
    QObject::connect(this->view.model(), &QAbstractItemModel::dataChanged, [&drawn] { ++drawn; });
    this->control.SetSelectedRange(1, 1, true);
    EXPECT_EQ(drawn, 1);
}

// --- selection --------------------------------------------------------------------------------------------

class ListBinderTest : public testing::Test {
protected:
    QtToolkit toolkit;
    ListBox control{"lstFiles"};
    QListView view;
    int changes = 0;

    void SetUp() override {
        control.SetEntries({Entry("a", true), Entry("<b>b</b>", false), Entry("c", true)});
        control.SelectionChange = [&] { ++changes; };
    }
    bool Shown(int row) const { return view.selectionModel()->isRowSelected(row, {}); }
    QPoint At(int row) const { return view.visualRect(view.model()->index(row, 0)).center(); }
};

TEST_F(ListBinderTest, EntriesAndSelectionAreShown) {
    new ListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(view.model()->rowCount(), 3);
    EXPECT_EQ(view.model()->index(1, 0).data().toString(), "<b>b</b>");
    EXPECT_TRUE(Shown(0));
    EXPECT_FALSE(Shown(1));
    EXPECT_TRUE(Shown(2));
    EXPECT_EQ(changes, 0);
}

TEST_F(ListBinderTest, NoPlaceInTheListHasNoText) {
    new ListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(view.model()->data(QModelIndex(), Qt::DisplayRole), QVariant());
    EXPECT_EQ(view.model()->data(QModelIndex(), Qt::CheckStateRole), QVariant());
    EXPECT_EQ(view.model()->rowCount(view.model()->index(0, 0)), 0);
}

TEST_F(ListBinderTest, ClickTurnsOneEntryOverAndLeavesTheOthers) {
    new ListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, At(1));
    EXPECT_TRUE(control.Selected(0));
    EXPECT_TRUE(control.Selected(1));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ControlModifier, At(0));
    EXPECT_FALSE(control.Selected(0));
    EXPECT_TRUE(control.Selected(2));
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(control.ListIndex(), 0);
}

TEST_F(ListBinderTest, KeyboardMovesAndTurnsOver) {
    new ListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    Press(Qt::Key_End);
    Press(Qt::Key_Space);
    EXPECT_FALSE(control.Selected(2));
    EXPECT_TRUE(control.Selected(0));
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(control.SelectedCount(), 3);
}

TEST_F(ListBinderTest, FormsRangeOperationIsShown) {
    new ListBinder(control, view, toolkit.Boundary());
    control.SetSelectedRange(0, 2, true);
    EXPECT_TRUE(Shown(1));
    control.SetSelectedRange(0, 2, false);
    EXPECT_FALSE(Shown(0) || Shown(1) || Shown(2));
    EXPECT_EQ(changes, 0);
}

TEST_F(ListBinderTest, HandlersChangeDuringTheUsersClickIsShown) {
    control.SelectionChange = [&] { control.SetSelectedRange(0, 2, false); };
    new ListBinder(control, view, toolkit.Boundary());
    view.show();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, At(1));
    EXPECT_EQ(control.SelectedCount(), 0);
    EXPECT_FALSE(Shown(0) || Shown(1) || Shown(2));
}

TEST_F(ListBinderTest, EntriesThatComeAndGoAreShown) {
    new ListBinder(control, view, toolkit.Boundary());
    control.Add("d", true);
    EXPECT_EQ(view.model()->rowCount(), 4);
    EXPECT_TRUE(Shown(3));
    control.Clear();
    EXPECT_EQ(view.model()->rowCount(), 0);
}

TEST_F(ListBinderTest, EntryThatIsWiderThanTheListCanBeScrolledToItsEnd) {
    control.SetEntries({Entry("a", true), Entry(Text(300, 'W'), false), Entry("c", true)});
    new ListBinder(control, view, toolkit.Boundary());
    view.resize(200, 100);
    view.show();
    QTest::qWait(0);
    EXPECT_GE(view.visualRect(view.model()->index(1, 0)).width(),
              view.fontMetrics().horizontalAdvance(QString(300, QLatin1Char('W'))));
    EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(view.textElideMode(), Qt::ElideNone);
}

TEST_F(ListBinderTest, EntriesAreAsWideAsTheWidestInTheListsFontAndFourPixelsHigherThanTheirText) {
    QFont font = view.font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setKerning(false);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.3);
    struct Case {
        QStringList texts;
        int wider;  // at most: where the first entry's own width is no whole number
    };
    for (const Case& c :
         {Case{{"", ""}, 0}, Case{{"", "mmm", "m"}, 0}, Case{{"mmm", ""}, 0}, Case{{"m", "mmm", "mm"}, 1}}) {
        control.Clear();
        for (const QString& text : c.texts) {
            control.Add(FromQt(text), false);
        }
        QListView list;
        new ListBinder(control, list, toolkit.Boundary());
        list.setFont(font);
        QStringListModel model(c.texts);
        QListView plain;
        plain.setModel(&model);
        plain.setFont(font);
        int widest = 0;
        for (int row = 0; row < model.rowCount(); ++row) {
            widest = std::max(widest, plain.sizeHintForIndex(model.index(row)).width());
        }
        const QSize size = list.sizeHintForIndex(list.model()->index(0, 0));
        EXPECT_GE(size.width(), widest) << c.texts.join('|').toStdString();
        EXPECT_LE(size.width(), widest + c.wider) << c.texts.join('|').toStdString();
        EXPECT_EQ(size.height(), plain.sizeHintForIndex(model.index(0)).height() + 4);
    }
}

/// Counts how often the size of an entry is asked for.
class CountingStyle : public QProxyStyle {
public:
    mutable int asked = 0;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        asked += type == CT_ItemViewItem ? 1 : 0;
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
};

TEST_F(ListBinderTest, TheSizeOfOneEntryIsTakenForAll) {
    control.SetEntries(std::vector<ListBox::Entry>(1000));
    CountingStyle style;
    QListView list;
    list.setStyle(&style);
    new ListBinder(control, list, toolkit.Boundary());
    list.show();
    EXPECT_TRUE(list.visualRect(list.model()->index(999, 0)).isValid());
    EXPECT_GT(style.asked, 0);
    EXPECT_LT(style.asked, 100);
}

TEST_F(ListBinderTest, WhatTheUserChangesAtOnceIsShownAtOnce) {
    new ListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    int shown = 0;
    QObject::connect(view.model(), &QAbstractItemModel::dataChanged, [&shown] { ++shown; });
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(control.SelectedCount(), 3);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(shown, 1);
}

TEST_F(ListBinderTest, ListAtTheLimitIsShownWhole) {
    std::vector<ListBox::Entry> entries;
    for (int i = 0; i < 32767; ++i) {
        entries.push_back(Entry(std::to_string(i), i % 2 == 0));
    }
    control.SetEntries(std::move(entries));
    new ListBinder(control, view, toolkit.Boundary());
    view.show();
    EXPECT_EQ(view.model()->rowCount(), 32767);
    EXPECT_TRUE(Shown(32766));
    EXPECT_FALSE(Shown(32765));
    control.SetSelectedRange(0, 32766, true);
    EXPECT_TRUE(Shown(32765));
    EXPECT_EQ(view.selectionModel()->selection().size(), 1) << "one range, not one for each";
}

class CheckListBinderTest : public ListBinderTest {
protected:
    Qt::CheckState Tick(int row) const {
        return view.model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
    }
};

TEST_F(CheckListBinderTest, TicksAreShownAndFollowTheForm) {
    new CheckListBinder(control, view, toolkit.Boundary());
    EXPECT_EQ(Tick(0), Qt::Checked);
    EXPECT_EQ(Tick(1), Qt::Unchecked);
    control.SetSelectedRange(0, 2, false);
    EXPECT_EQ(Tick(0), Qt::Unchecked);
    EXPECT_EQ(changes, 0);
}

TEST_F(CheckListBinderTest, ClickOnTheMarkAndOnTheTextTurnsTheTickOverOnce) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    const QRect entry = view.visualRect(view.model()->index(1, 0));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(entry.left() + 8, entry.center().y()));
    EXPECT_TRUE(control.Selected(1));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, entry.center());
    EXPECT_FALSE(control.Selected(1));
    EXPECT_EQ(changes, 2);
}

TEST_F(CheckListBinderTest, AClickMakesAnEntryCurrentAndTheRightButtonTurnsNoTickOver) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, At(2));
    EXPECT_EQ(control.ListIndex(), 2);
    EXPECT_EQ(changes, 1);
    QTest::mouseClick(view.viewport(), Qt::RightButton, {}, At(1));
    EXPECT_EQ(control.ListIndex(), 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(CheckListBinderTest, ALetterGoesToTheEntryThatBeginsWithItAndTurnsNoTickOver) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    control.SetListIndex(0);
    Type("c");
    EXPECT_EQ(control.ListIndex(), 2);
    EXPECT_EQ(changes, 0);
}

TEST_F(CheckListBinderTest, SpaceTurnsATickOverAndDoesNotGoToAnEntryThatBeginsWithABlank) {
    control.SetEntries({Entry("a", false), Entry(" b", false), Entry("c", false)});
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    control.SetListIndex(2);
    Press(Qt::Key_Space);
    EXPECT_TRUE(control.Selected(2));
    EXPECT_EQ(control.ListIndex(), 2);
}

TEST_F(CheckListBinderTest, TheFirstKeyLeadsToTheEndThatItNamesAndLettingItGoNowhere) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    QTest::keyRelease(&view, Qt::Key_End);
    EXPECT_EQ(control.ListIndex(), -1);
    Press(Qt::Key_Home);
    EXPECT_EQ(control.ListIndex(), 0);
    Press(Qt::Key_End);
    EXPECT_EQ(control.ListIndex(), 2);
    control.Clear();
    Press(Qt::Key_End);
    EXPECT_EQ(control.ListIndex(), -1);
}

TEST_F(CheckListBinderTest, SpaceTurnsTheCurrentTickOver) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    Press(Qt::Key_End);
    Press(Qt::Key_Space);
    EXPECT_FALSE(control.Selected(2));
    EXPECT_EQ(control.ListIndex(), 2);
    EXPECT_EQ(changes, 1);
}

TEST_F(CheckListBinderTest, ListOpensWithoutACurrentEntryThoughItHasTheKeyboard) {
    new CheckListBinder(control, view, toolkit.Boundary());
    ShowActive(view);
    view.setFocus();
    EXPECT_FALSE(view.currentIndex().isValid());
    EXPECT_EQ(control.ListIndex(), -1);
    Press(Qt::Key_Space);
    EXPECT_EQ(changes, 0);
    control.SetListIndex(1);
    EXPECT_EQ(view.currentIndex().row(), 1);
}

}  // namespace
}  // namespace kd
