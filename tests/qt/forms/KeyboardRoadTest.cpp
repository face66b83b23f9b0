#include <QAbstractButton>
#include <QAccessible>
#include <QFile>
#include <QGroupBox>
#include <QRadioButton>
#include <set>

#include "SourceFolder.h"
#include "qt/WindowFixture.h"
#include "qt/services/ReadableStyle.h"

namespace kd {
namespace {

using Names = std::vector<std::string>;

/// The road of the keyboard through a dialog.
struct Road {
    const char* title;
    const char* window;
    Qt::Key menu;        // with Alt; Key_unknown: Alt+Down in the grid
    const char* entry;   // of that menu
    Names stops;         // by Tab, from the one that has the keyboard at first
    const char* enter;   // the button that Enter presses
    const char* escape;  // the button that Esc presses; nullptr: Esc does nothing
    const char* letters;

    friend std::ostream& operator<<(std::ostream& out, const Road& road) { return out << road.window; }
};

const std::vector<Road>& Roads() {
    static const std::vector<Road> roads{
        {"Manage Applications",
         "frmApplicationAdmin",
         Qt::Key_F,
         "mnuApplications",
         {"cboFilter", "cmdFilter", "Grid", "cmdAddApplication", "cmdRemoveApplication", "cmdHelp", "cmdOk",
          "cmdCancel"},
         "cmdOk",
         "cmdCancel",
         "AHPR"},
        {"Commit",
         "frmCommit",
         Qt::Key_F,
         "mnuCommit",
         {"lstFiles", "chkSelectAll", "cmdOk", "cmdCancel"},
         "cmdOk",
         "cmdCancel",
         "S"},
        {"Filter of a column",
         "frmAutoFilter",
         Qt::Key_unknown,
         "",
         {"lstAutoFilter", "cmdOk", "cmdCancel", "chkSelectAll"},
         "cmdOk",
         "cmdCancel",
         "S"},
        {"Fill",
         "frmFill",
         Qt::Key_E,
         "mnuEditFill",
         {"txtConstant", "optFillLimit", "optLimits_3", "optPlusMinus_0", "txtLimitValue", "cmdOk",
          "cmdCancel", "optFillConstant"},
         "cmdOk",
         "cmdCancel",
         "CU"},
        {"Replace",
         "frmReplace",
         Qt::Key_E,
         "mnuEditReplace",
         {"txtFind", "txtReplace", "chkMatchCase", "cmdReplace", "cmdCancel"},
         "cmdReplace",
         nullptr,
         "MR"},
        {"About",
         "frmAbout",
         Qt::Key_H,
         "mnuHelpAbout",
         {"cmdOk", "lblWebsite", "lblEmail"},
         "cmdOk",
         "cmdOk",
         "O"}};
    return roads;
}

/// What a screen reader says a stop is; of an option the question that it answers.
QString Spoken(QWidget& widget) {
    if (qobject_cast<QRadioButton*>(&widget) != nullptr) {
        for (QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
            if (qobject_cast<QGroupBox*>(above) != nullptr) {
                return above->accessibleName();
            }
        }
    }
    const QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(&widget);
    return spoken == nullptr ? QString() : spoken->text(QAccessible::Name).trimmed();
}

QString Caption(QWidget& dialog, const char* button) {
    return Find<QAbstractButton>(dialog, button).text().remove(QLatin1Char('&'));
}

/// The letters that go straight to a control with Alt, in order.
std::string Letters(QWidget& dialog) {
    std::string letters;
    for (const QAbstractButton* const button : dialog.findChildren<QAbstractButton*>()) {
        const QString text = button->text();
        if (const auto at = text.indexOf(QLatin1Char('&')); at >= 0) {
            letters += text.mid(at + 1, 1).toUpper().toStdString();
        }
    }
    std::sort(letters.begin(), letters.end());
    return letters;
}

class KeyboardRoadTest : public WindowFixture, public testing::WithParamInterface<Road> {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        QApplication::setStyle(new ReadableStyle(QStringLiteral("Fusion")));  // which owns it
        Load({aField().Name("Fat").Usl(10).Tgt(5), aField().Name("Protein").Usl(20).Tgt(6)});
        screen.g.gFiles->Item(1)->SetChangesMade(std::string(GetParam().window) == "frmCommit");
        ClickCell(1, cnUSL);
    }
    void TearDown() override { QApplication::setStyle(QStringLiteral("Fusion")); }
    /// By the keyboard alone, as the user gets there.
    void Walk(const std::function<void(QWidget&)>& user) {
        const Road& road = GetParam();
        Modals modals;
        modals.Then(road.window, user);
        if (road.menu == Qt::Key_unknown) {
            Press(Qt::Key_Down, Qt::AltModifier);
            return;
        }
        QTest::keyClick(&window, road.menu, Qt::AltModifier);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        while (menu->activeAction() == nullptr || menu->activeAction()->objectName() != road.entry) {
            const QAction* const before = menu->activeAction();
            QTest::keyClick(menu, Qt::Key_Down);
            ASSERT_NE(menu->activeAction(), before);
        }
        QTest::keyClick(menu, Qt::Key_Return);
    }
    static void Leave(QWidget& dialog) {
        dialog.close();
        EXPECT_FALSE(dialog.isVisible());
    }
};

TEST_P(KeyboardRoadTest, TabGoesThroughEveryControlAndShiftTabBack) {
    Walk([](QWidget& dialog) {
        EXPECT_EQ(TabOrder(dialog), GetParam().stops);
        Names back;
        for (std::size_t step = 0; step < GetParam().stops.size(); ++step) {
            back.insert(back.begin(), Focused()->objectName().toStdString());
            QTest::keyClick(Focused(), Qt::Key_Backtab, Qt::ShiftModifier);
        }
        std::rotate(back.begin(), back.end() - 1, back.end());
        EXPECT_EQ(back, GetParam().stops);
        // Nothing that can be worked is left out of the road.
        for (QWidget* const widget : dialog.findChildren<QWidget*>()) {
            if (auto* const button = qobject_cast<QPushButton*>(widget);
                button != nullptr && button->isEnabled()) {
                EXPECT_NE(std::count(back.begin(), back.end(), button->objectName().toStdString()), 0)
                    << button->objectName().toStdString();
            }
        }
        Leave(dialog);
    });
}

TEST_P(KeyboardRoadTest, EveryStopIsSeenAndHasAName) {
    Walk([](QWidget& dialog) {
        for (std::size_t step = 0; step < GetParam().stops.size(); ++step) {
            QWidget* const at = Focused();
            EXPECT_FALSE(Spoken(*at).isEmpty()) << at->objectName().toStdString();
            const QImage with = at->grab().toImage();
            QTest::keyClick(at, Qt::Key_Tab);
            EXPECT_FALSE(at->hasFocus());
            EXPECT_NE(with, at->grab().toImage()) << at->objectName().toStdString() << " shows no focus";
        }
        Leave(dialog);
    });
}

TEST_P(KeyboardRoadTest, EnterPressesTheMarkedButton) {
    Walk([](QWidget& dialog) {
        for (const QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            EXPECT_EQ(button->isDefault(), button->objectName() == GetParam().enter)
                << button->objectName().toStdString();
        }
        Leave(dialog);
    });
}

TEST_P(KeyboardRoadTest, EscapeIsTheCancelButton) {
    Walk([](QWidget& dialog) {
        bool pressed = false;
        if (GetParam().escape != nullptr) {
            QObject::connect(&Find<QAbstractButton>(dialog, GetParam().escape), &QAbstractButton::clicked,
                             &dialog, [&pressed] { pressed = true; });
        }
        Press(Qt::Key_Escape);
        EXPECT_EQ(pressed, GetParam().escape != nullptr);
        EXPECT_EQ(dialog.isVisible(), GetParam().escape == nullptr);
        if (dialog.isVisible()) {
            Leave(dialog);
        }
    });
}

TEST_P(KeyboardRoadTest, LettersWithAltLeadToOneControlEach) {
    Walk([](QWidget& dialog) {
        const std::string letters = Letters(dialog);
        EXPECT_EQ(letters, GetParam().letters);
        EXPECT_EQ(std::set<char>(letters.begin(), letters.end()).size(), letters.size());
        Leave(dialog);
    });
}

TEST_P(KeyboardRoadTest, HelpTellsTheRoad) {
    QFile file(QStringLiteral(KD_SOURCE_DIR "/help/keyboard.html"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString page = QString::fromUtf8(file.readAll()).simplified();
    Walk([&page](QWidget& dialog) {
        const Road& road = GetParam();
        QStringList stops;
        for (const std::string& stop : road.stops) {
            stops << Spoken(Find(dialog, stop.c_str()));
        }
        QStringList letters;
        for (const char* letter = road.letters; *letter != '\0'; ++letter) {
            letters << QStringLiteral("<kbd>Alt+%1</kbd>").arg(QLatin1Char(*letter));
        }
        const QString row =
            QStringLiteral("<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td><td>%5</td></tr>")
                .arg(QLatin1String(road.title), stops.join(QLatin1String(", ")), Caption(dialog, road.enter),
                     road.escape == nullptr ? QStringLiteral("nothing") : Caption(dialog, road.escape),
                     letters.join(QLatin1String(", ")));
        EXPECT_TRUE(page.contains(row)) << row.toStdString();
        Leave(dialog);
    });
}

INSTANTIATE_TEST_SUITE_P(Dialogs, KeyboardRoadTest, testing::ValuesIn(Roads()),
                         [](const testing::TestParamInfo<Road>& tried) {
                             return std::string(tried.param.window);
                         });

}  // namespace
}  // namespace kd
