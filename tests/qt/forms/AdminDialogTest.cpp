#include "qt/forms/AdminDialog.h"

#include <QAbstractItemView>
#include <QFontInfo>

#include "qt/Screen.h"
#include "qt/forms/Widgets.h"
#include "qt/grid/GridWidget.h"

namespace kd {
namespace {

class AdminDialogTest : public testing::Test {
protected:
    ScreenDesk desk;
    frmApplicationAdmin form{desk.g};

    void SetUp() override {
        desk.toolkit.Register<frmApplicationAdmin, AdminDialog>();
        for (const char* const path : {"/data/cheese.kdt", "/data/milk.kdt", "/data/cement.kdt6"}) {
            desk.g.gMasterFiles->Add(path, true);
        }
    }
    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next(user);
        form.Display();
    }
    static void ClickRow(QWidget& window, std::int32_t row) {
        auto& grid = Find<GridWidget>(window, "Grid");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.Layout().ShownRect(row, 0).center());
    }
    std::vector<Text> VisiblePaths() const {
        std::vector<Text> paths;
        for (const std::int32_t row : form.Grid.VisibleRows()) {
            paths.emplace_back(form.Grid.TextMatrix(row, 0));
        }
        return paths;
    }
};

TEST_F(AdminDialogTest, ControlsBearNamesAndEditsHaveAccessibleOnes) {
    Show([](QWidget& window) {
        EXPECT_EQ(window.windowTitle(), "KD LimitDesk - Manage Applications");
        for (const char* const name : {"Label1", "cboFilter", "cmdFilter", "Grid", "cmdAddApplication",
                                       "cmdRemoveApplication", "cmdHelp", "cmdOk", "cmdCancel"}) {
            EXPECT_TRUE(Find(window, name).isVisible()) << name;
        }
        auto& filter = Find<QComboBox>(window, "cboFilter");
        EXPECT_FALSE(filter.accessibleName().isEmpty());
        EXPECT_EQ(filter.lineEdit()->accessibleName(), filter.accessibleName());
        EXPECT_EQ(filter.view()->accessibleName(), filter.accessibleName());
        EXPECT_FALSE(Find(window, "Grid").accessibleName().isEmpty());
        EXPECT_TRUE(Find(window, "cmdOk").accessibleName().isEmpty());
        EXPECT_EQ(Find<QLabel>(window, "Label1").text(), "Enter filter criteria separated by spaces");
        window.close();
    });
    EXPECT_TRUE(form.Cancel());
}

TEST_F(AdminDialogTest, FilterIsTypedInLettersOfOneWidth) {
    Show([](QWidget& window) {
        const QFont font = Find(window, "cboFilter").font();
        EXPECT_EQ(font.families().first(), "Courier New");
        const QFontMetrics letters(font);
        EXPECT_EQ(letters.horizontalAdvance("iiii"), letters.horizontalAdvance("WWWW"))
            << QFontInfo(font).family().toStdString();
        window.close();
    });
}

TEST_F(AdminDialogTest, LettersOfTheFilterAreOfOneWidthWhateverFontsThereAre) {
    Show([](QWidget& window) {
        EXPECT_EQ(Find(window, "cboFilter").font().styleHint(), QFont::Monospace);
        window.close();
    });
}

TEST_F(AdminDialogTest, FilterKeepsRoomForTwentyLettersAndLongCriteriaDoNotWidenTheDialog) {
    desk.g.gRecents->Add(Text(300, 'w'));
    Show([](QWidget& window) {
        auto& filter = Find<QComboBox>(window, "cboFilter");
        filter.showPopup();
        ASSERT_EQ(filter.count(), 2);
        filter.hidePopup();
        EXPECT_EQ(filter.minimumContentsLength(), 20);
        window.resize(1, window.height());
        QTest::qWait(0);
        EXPECT_LT(window.width(), filter.fontMetrics().horizontalAdvance(QString(300, QLatin1Char('w'))));
        window.close();
    });
}

TEST_F(AdminDialogTest, NoTwoMnemonicsAreTheSame) {
    Show([](QWidget& window) {
        QStringList letters;
        for (const QPushButton* const button : window.findChildren<QPushButton*>()) {
            const auto at = button->text().indexOf('&');
            if (at >= 0) {
                letters << button->text().mid(at + 1, 1).toUpper();
            }
        }
        EXPECT_EQ(letters.size(), 4);
        EXPECT_EQ(letters.removeDuplicates(), 0);
        window.close();
    });
}

TEST_F(AdminDialogTest, MouseFiltersPicksAndRemoves) {
    Show([&](QWidget& window) {
        Find(window, "cboFilter").setFocus();
        Type(".KDT6|milk");
        EXPECT_EQ(VisiblePaths().size(), 3U) << "typing alone filters nothing";
        Click(Find(window, "cmdFilter"));
        EXPECT_EQ(VisiblePaths(), (std::vector<Text>{"/data/milk.kdt", "/data/cement.kdt6"}));
        ClickRow(window, 3);
        EXPECT_TRUE(form.Grid.IsSelected(3));
        Click(Find(window, "cmdRemoveApplication"));
        EXPECT_EQ(VisiblePaths(), std::vector<Text>{"/data/milk.kdt"});
        Click(Find(window, "cmdOk"));
    });
    EXPECT_FALSE(form.Cancel());
    EXPECT_TRUE(form.Changed());
    ASSERT_EQ(desk.g.gRecents->Count(), 1);
    EXPECT_EQ(desk.g.gRecents->Item(1)->Criteria(), ".KDT6|milk");
}

TEST_F(AdminDialogTest, KeyboardAloneFiltersPicksAndRemoves) {
    Show([&](QWidget& window) {
        EXPECT_EQ(window.focusWidget(), &Find(window, "cboFilter"));
        Type("milk");
        Press(Qt::Key_P, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return VisiblePaths() == std::vector<Text>{"/data/milk.kdt"}; }));
        Press(Qt::Key_Tab);
        Press(Qt::Key_Tab);
        EXPECT_EQ(Focused(), &Find(window, "Grid"));
        Press(Qt::Key_Home);
        Press(Qt::Key_Space);
        EXPECT_TRUE(form.Grid.IsSelected(2));
        Press(Qt::Key_R, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return form.Grid.Rows() == 3; }));
        Press(Qt::Key_Escape);
    });
    EXPECT_TRUE(form.Cancel());
}

TEST_F(AdminDialogTest, EnterInTheFilterAppliesItAndOnceMoreIsOk) {
    Show([&](QWidget& window) {
        Type("milk");
        Press(Qt::Key_Return);
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(VisiblePaths(), std::vector<Text>{"/data/milk.kdt"});
        Press(Qt::Key_Return);
    });
    EXPECT_FALSE(form.Cancel());
}

TEST_F(AdminDialogTest, TheArrowKeysInTheClosedFilterLeaveTheTypedText) {
    desk.g.gRecents->Add("cheese");
    Show([&](QWidget& window) {
        auto& combo = Find<ComboBoxWidget>(window, "cboFilter");
        combo.showPopup();
        combo.hidePopup();
        Type("mil");
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp}) {
            Press(key);
            EXPECT_EQ(combo.currentText(), "mil");
        }
        EXPECT_EQ(form.cboFilter.Value(), "mil");
        Press(Qt::Key_Escape);
    });
}

TEST_F(AdminDialogTest, DownInTheClosedFilterOpensTheListAndLeavesTheTypedText) {
    desk.g.gRecents->Add("cheese");
    Show([&](QWidget& window) {
        auto& combo = Find<ComboBoxWidget>(window, "cboFilter");
        combo.showPopup();
        combo.hidePopup();
        Type("mil");
        Press(Qt::Key_Down);
        EXPECT_TRUE(combo.view()->isVisible());
        EXPECT_EQ(combo.currentText(), "mil");
        combo.hidePopup();
        EXPECT_EQ(form.cboFilter.Value(), "mil");
        EXPECT_EQ(VisiblePaths().size(), 3U) << "nothing was chosen";
        Press(Qt::Key_Escape);
    });
}

TEST_F(AdminDialogTest, AllRecentCriteriaAreInSightAtOnce) {
    for (int i = 0; i < 20; ++i) {
        desk.g.gRecents->Add("criteria " + std::to_string(i));
    }
    Show([this](QWidget& window) {
        auto& filter = Find<QComboBox>(window, "cboFilter");
        filter.showPopup();
        EXPECT_EQ(filter.count(), desk.g.gRecents->Count() + 1) << "and the blank one";
        EXPECT_GE(filter.maxVisibleItems(), filter.count());
        filter.hidePopup();
        window.close();
    });
}

TEST_F(AdminDialogTest, RecentCriteriaAreOfferedAndChosen) {
    desk.g.gRecents->Add("cheese");
    Show([&](QWidget& window) {
        auto& combo = Find<ComboBoxWidget>(window, "cboFilter");
        combo.showPopup();
        ASSERT_EQ(combo.count(), 2);
        EXPECT_EQ(combo.itemText(0), "");
        EXPECT_EQ(combo.itemText(1), "cheese");
        QTest::keyClick(combo.view(), Qt::Key_End);
        QTest::keyClick(combo.view(), Qt::Key_Return);
        EXPECT_EQ(VisiblePaths(), std::vector<Text>{"/data/cheese.kdt"});
        Press(Qt::Key_Escape);
        window.close();
    });
}

TEST_F(AdminDialogTest, TheListOfCriteriaOpensOnNoEntryAndLeavesTheText) {
    desk.g.gRecents->Add("cheese");
    Show([&](QWidget& window) {
        auto& combo = Find<ComboBoxWidget>(window, "cboFilter");
        combo.setFocus();
        Type("mi");
        combo.showPopup();
        EXPECT_EQ(combo.currentIndex(), -1);
        EXPECT_EQ(combo.currentText(), "mi");
        combo.hidePopup();
        window.close();
    });
}

TEST_F(AdminDialogTest, AddedFilesAreListedAndDuplicatesTold) {
    desk.fileDialog.answer = std::vector<Text>{"/data", "new.kdt", "MILK.kdt"};
    QString text;
    Show([&](QWidget& window) {
        {
            NextModal box([&](QWidget& shown) {
                text = dynamic_cast<QMessageBox&>(shown).text();
                EXPECT_EQ(shown.windowTitle(), "Duplicate Files");
                ClickBoxButton(shown, QMessageBox::Ok);
            });
            Click(Find(window, "cmdAddApplication"));
        }
        EXPECT_EQ(VisiblePaths().back(), "/data/new.kdt");
        window.close();
    });
    EXPECT_TRUE(
        text.startsWith("WARNING - The following selected files were already added:\n\n/data/MILK.kdt"));
}

TEST_F(AdminDialogTest, HelpRunsWhatTheCommandSet) {
    int helps = 0;
    form.ShowHelp = [&] { ++helps; };
    Show([](QWidget& window) {
        Click(Find(window, "cmdHelp"));
        window.close();
    });
    EXPECT_EQ(helps, 1);
}

TEST_F(AdminDialogTest, FilterAndGridTakeTheWidthOfTheWindow) {
    Show([](QWidget& window) {
        const int before = Find(window, "Grid").width();
        const int filterBefore = Find(window, "cboFilter").width();
        window.resize(window.width() + 100, window.height() + 50);
        QTest::qWait(0);
        EXPECT_EQ(Find(window, "Grid").width(), before + 100);
        EXPECT_EQ(Find(window, "cboFilter").width(), filterBefore + 100);
        window.close();
    });
}

}  // namespace
}  // namespace kd
