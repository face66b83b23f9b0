#include "qt/forms/CommitDialog.h"

#include <QCheckBox>
#include <QListView>

#include "qt/Screen.h"

namespace kd {
namespace {

class CommitDialogTest : public testing::Test {
protected:
    ScreenDesk desk;
    frmCommit form{desk.g};

    void SetUp() override {
        desk.toolkit.Register<frmCommit, CommitDialog>();
        for (int view = 0; view < 3; ++view) {
            const auto file = desk.g.gFiles->Add("/data/milk" + std::to_string(view) + ".kdt", "Milk", "", 0);
            file->SetChangesMade(true);
        }
    }
    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next(user);
        form.Display();
    }
    bool Selected(std::int32_t view) const { return desk.g.gFiles->Item(view)->Selected(); }
    static void ClickEntry(QWidget& window, int row) {
        auto& list = Find<QListView>(window, "lstFiles");
        const QRect at = list.visualRect(list.model()->index(row, 0));
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at.center());
    }
};

TEST_F(CommitDialogTest, OpensWithEveryChangedViewSelected) {
    Show([&](QWidget& window) {
        auto& list = Find<QListView>(window, "lstFiles");
        EXPECT_EQ(window.windowTitle(), "KD LimitDesk - Commit Changes");
        EXPECT_EQ(list.model()->rowCount(), 3);
        EXPECT_EQ(list.selectionModel()->selectedRows().size(), 3);
        EXPECT_EQ(Find<QCheckBox>(window, "chkSelectAll").checkState(), Qt::Checked);
        EXPECT_EQ(list.model()->index(1, 0).data().toString(), "/data/milk1.kdt");
        EXPECT_FALSE(list.accessibleName().isEmpty());
        EXPECT_TRUE(Find(window, "cmdOk").accessibleName().isEmpty());
        window.close();
    });
    EXPECT_TRUE(form.Cancel());
}

TEST_F(CommitDialogTest, IsWideEnoughForPathsAndHighEnoughForManyViews) {
    Show([&](QWidget& window) {
        const QFontMetrics metrics = window.fontMetrics();
        EXPECT_GE(window.width(), metrics.averageCharWidth() * 80);
        EXPECT_GE(window.height(), metrics.height() * 20);
        window.close();
    });
}

TEST_F(CommitDialogTest, WordsThatAreTooLongForALineGoOnInTheNext) {
    const QString words = QStringLiteral("many applications have changed ").repeated(20);
    form.Label1.SetCaption(words.toStdString());
    Show([&words](QWidget& window) {
        const auto& label = Find<QLabel>(window, "Label1");
        EXPECT_LT(label.width(), label.fontMetrics().horizontalAdvance(words));
        EXPECT_GE(label.height(), 2 * label.fontMetrics().height());
        window.close();
    });
}

TEST_F(CommitDialogTest, MousePicksAmongTheViews) {
    Show([&](QWidget& window) {
        ClickEntry(window, 1);
        EXPECT_EQ(Find<QCheckBox>(window, "chkSelectAll").checkState(), Qt::PartiallyChecked);
        Click(Find(window, "cmdOk"));
    });
    EXPECT_FALSE(form.Cancel());
    EXPECT_TRUE(Selected(1));
    EXPECT_FALSE(Selected(2));
    EXPECT_TRUE(Selected(3));
}

TEST_F(CommitDialogTest, KeyboardAlonePicksAmongTheViews) {
    Show([](QWidget& window) {
        EXPECT_EQ(window.focusWidget(), &Find(window, "lstFiles"));
        Press(Qt::Key_End);
        Press(Qt::Key_Space);
        Press(Qt::Key_Return);
    });
    EXPECT_FALSE(form.Cancel());
    EXPECT_TRUE(Selected(1));
    EXPECT_FALSE(Selected(3));
}

TEST_F(CommitDialogTest, GreyBoxBecomesCheckedAndSelectsAll) {
    Show([&](QWidget& window) {
        auto& all = Find<QCheckBox>(window, "chkSelectAll");
        ClickEntry(window, 0);
        ASSERT_EQ(all.checkState(), Qt::PartiallyChecked);
        ClickMark(all);
        EXPECT_EQ(all.checkState(), Qt::Checked);
        EXPECT_EQ(Find<QListView>(window, "lstFiles").selectionModel()->selectedRows().size(), 3);
        ClickMark(all);
        EXPECT_EQ(all.checkState(), Qt::Unchecked);
        EXPECT_FALSE(Find<QListView>(window, "lstFiles").selectionModel()->hasSelection());
        window.close();
    });
}

TEST_F(CommitDialogTest, OkWithNothingSelectedSaysSoAndStays) {
    QString text;
    Show([&](QWidget& window) {
        ClickMark(Find(window, "chkSelectAll"));
        {
            NextModal box([&](QWidget& shown) {
                text = dynamic_cast<QMessageBox&>(shown).text();
                ClickBoxButton(shown, QMessageBox::Ok);
            });
            Click(Find(window, "cmdOk"));
        }
        EXPECT_TRUE(window.isVisible());
        Press(Qt::Key_Escape);
    });
    EXPECT_EQ(text, "You must select at least one application!");
    EXPECT_TRUE(form.Cancel());
}

}  // namespace
}  // namespace kd
