#include "qt/forms/AboutDialog.h"

#include "help/Maker.h"
#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// The About box through the Help menu, and the help of Manage Applications.
class AboutDialogTest : public WindowFixture {
protected:
    void SetUp() override {
        WindowFixture::SetUp();
        screen.toolkit.ShowModeless(form);
        Activate();
    }
    void About(std::function<void(QWidget&)> user) {
        Modals modals;
        modals.Then("frmAbout", std::move(user));
        Choose("mnuHelp", "mnuHelpAbout");
    }
    static std::string TextOf(QWidget& dialog, const char* label) {
        return Find<QLabel>(dialog, label).text().toStdString();
    }
};

TEST_F(AboutDialogTest, TellsTitleVersionAndMaker) {
    EXPECT_EQ(Find<QAction>(window, "mnuHelpAbout").text(), "&About KDLimitDesk");
    About([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "About");
        EXPECT_EQ(TextOf(dialog, "lblAppTitle"), "KDLimitDesk");
        EXPECT_EQ(TextOf(dialog, "lblVersion"),
                  frmAbout::VersionText(KD_VERSION_MAJOR, KD_VERSION_MINOR, KD_VERSION_REVISION));
        const QStringList lines = Find<QLabel>(dialog, "lblCompanyInfo").text().split('\n');
        ASSERT_EQ(lines.size(), 6);
        EXPECT_TRUE(lines[4].startsWith("Tel: "));
        EXPECT_TRUE(lines[5].startsWith("Fax: "));
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdOk").text(), "&OK");
        const QPoint middle = dialog.screen()->availableGeometry().center();
        EXPECT_NEAR(dialog.frameGeometry().center().x(), middle.x(), 1);
        EXPECT_NEAR(dialog.frameGeometry().center().y(), middle.y(), 1);
        dialog.close();
    });
}

TEST_F(AboutDialogTest, TitleIsBoldAndLargerThanTheOtherTexts) {
    About([](QWidget& dialog) {
        const QFont title = Find(dialog, "lblAppTitle").font();
        const QFont others = Find(dialog, "lblVersion").font();
        EXPECT_NEAR(title.pointSizeF(), others.pointSizeF() * 1.4, 0.01);
        EXPECT_TRUE(title.bold());
        EXPECT_FALSE(others.bold());
        dialog.close();
    });
}

TEST_F(AboutDialogTest, PictureIsNotScaledAndStandsLeftOfTheTexts) {
    const QIcon before = QApplication::windowIcon();
    QIcon icon;
    for (const int size : {48, 64, 128}) {
        QPixmap drawn(size, size);
        drawn.fill(size == 64 ? Qt::red : Qt::blue);
        icon.addPixmap(drawn);
    }
    QApplication::setWindowIcon(icon);
    About([](QWidget& dialog) {
        const auto& image = Find<QLabel>(dialog, "Image1");
        const QPixmap picture = image.pixmap();
        EXPECT_EQ(picture.deviceIndependentSize(), QSizeF(64, 64));
        EXPECT_EQ(picture.toImage().pixelColor(0, 0), QColor(Qt::red));
        EXPECT_EQ(image.size(), QSize(64, 64));
        EXPECT_EQ(image.y(), Find(dialog, "lblAppTitle").y());
        for (const char* const text :
             {"lblAppTitle", "lblVersion", "lblCompanyInfo", "lblWebsite", "lblEmail"}) {
            EXPECT_GE(Find(dialog, text).x(), image.geometry().right() + dialog.fontMetrics().height())
                << text << " has a line's height between";
            EXPECT_EQ(Find(dialog, text).x(), Find(dialog, "lblAppTitle").x()) << text;
        }
        dialog.close();
    });
    QApplication::setWindowIcon(before);
}

TEST_F(AboutDialogTest, ShownAgainItHasTheKeyboardWhereItBegins) {
    QString first;
    About([&](QWidget& dialog) {
        first = dialog.focusWidget()->objectName();
        Find(dialog, "lblWebsite").setFocus();
        dialog.close();
    });
    EXPECT_NE(first, "lblWebsite");
    About([&](QWidget& dialog) {
        EXPECT_EQ(dialog.focusWidget()->objectName(), first);
        dialog.close();
    });
}

TEST_F(AboutDialogTest, ShownAgainItStandsInTheMiddleAsLargeAsAtFirst) {
    QRect first;
    About([&](QWidget& dialog) {
        first = QRect(dialog.pos(), dialog.size());
        dialog.move(20, 30);
        dialog.resize(dialog.size() + QSize(40, 40));
        dialog.close();
    });
    About([&](QWidget& dialog) {
        EXPECT_EQ(QRect(dialog.pos(), dialog.size()), first);
        dialog.close();
    });
}

TEST_F(AboutDialogTest, IsOwnedByTheMainWindow) {
    About([this](QWidget& dialog) {
        EXPECT_EQ(dialog.parentWidget(), &window);
        EXPECT_TRUE(dialog.isModal());
        dialog.close();
    });
}

TEST_F(AboutDialogTest, LinksAreBlueAndUnderlined) {
    About([](QWidget& dialog) {
        for (const char* const name : {"lblWebsite", "lblEmail"}) {
            const auto& link = Find<QLabel>(dialog, name);
            EXPECT_TRUE(link.font().underline()) << name;
            const QColor colour = link.palette().color(link.foregroundRole());
            EXPECT_GT(colour.blue(), colour.red()) << name;
            EXPECT_GT(colour.blue(), colour.green()) << name;
            EXPECT_EQ(link.cursor().shape(), Qt::PointingHandCursor) << name;
        }
        EXPECT_FALSE(Find<QLabel>(dialog, "lblVersion").font().underline());
        dialog.close();
    });
}

TEST_F(AboutDialogTest, LinksOpenWhatIsShown) {
    About([this](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "lblWebsite"), maker::Website);
        EXPECT_EQ(TextOf(dialog, "lblEmail"), maker::Email);
        Click(Find(dialog, "lblWebsite"));
        Click(Find(dialog, "lblEmail"));
        Click(Find(dialog, "lblCompanyInfo"));
        EXPECT_EQ(screen.shell.opened,
                  (std::vector<Text>{TextOf(dialog, "lblWebsite"),
                                     "mailto:" + TextOf(dialog, "lblEmail") + "?Subject=KDLimitDesk&Body="}));
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
}

TEST_F(AboutDialogTest, KeyboardAloneOpensALink) {
    About([this](QWidget& dialog) {
        EXPECT_EQ(TabOrder(dialog), (std::vector<std::string>{"cmdOk", "lblWebsite", "lblEmail"}));
        Press(Qt::Key_Tab);
        Press(Qt::Key_Tab);
        ASSERT_EQ(Focused(), &Find(dialog, "lblEmail"));
        Press(Qt::Key_Space);
        Press(Qt::Key_Backtab, Qt::ShiftModifier);
        Press(Qt::Key_Return);
        ASSERT_EQ(screen.shell.opened.size(), 2U);
        EXPECT_TRUE(screen.shell.opened[0].starts_with("mailto:"));
        EXPECT_EQ(screen.shell.opened[1], maker::Website);
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
}

TEST_F(AboutDialogTest, ClosesByOkEscEnterAndFrameAndShowsTheSameTextAgain) {
    const std::function<void(QWidget&)> ways[] = {
        [](QWidget& dialog) { Click(Find(dialog, "cmdOk")); }, [](QWidget&) { Press(Qt::Key_Escape); },
        [](QWidget&) { Press(Qt::Key_Return); }, [](QWidget& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        About([&leave](QWidget& dialog) {
            EXPECT_EQ(TextOf(dialog, "lblAppTitle"), "KDLimitDesk");
            EXPECT_EQ(TextOf(dialog, "lblCompanyInfo").find("Kestrix Quality Systems\n"), 0U);
            leave(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
    }
    EXPECT_TRUE(window.isVisible());
    EXPECT_TRUE(screen.shell.opened.empty());
}

// --- help -------------------------------------------------------------------------------------------------

class HelpCommandTest : public WindowFixture {
protected:
    /// Opens Manage Applications from the File menu and presses its Help button.
    void PressHelp(Modals& modals) {
        modals.Then("frmApplicationAdmin", [](QWidget& dialog) { Click(Find(dialog, "cmdHelp")); });
    }
    static void Leave(QWidget& dialog) { Click(Find(dialog, "cmdCancel")); }
};

TEST_F(HelpCommandTest, OpensTheDocumentationAndTheDialogStays) {
    Load({aField()});
    screen.suite.helpTopics["Documentation"] = 0;
    Modals modals;
    modals.Then("frmApplicationAdmin", [this](QWidget& dialog) {
        Click(Find(dialog, "cmdHelp"));
        EXPECT_EQ(screen.suite.helpTopics["Documentation"], 1);
        EXPECT_TRUE(dialog.isVisible());
        Leave(dialog);
    });
    Choose("mnuFile", "mnuApplications");
}

TEST_F(HelpCommandTest, TopicThatTheCatalogueLacksSaysNothing) {
    Load({aField()});
    Modals modals;
    modals.Then("frmApplicationAdmin", [](QWidget& dialog) {
        Click(Find(dialog, "cmdHelp"));
        EXPECT_TRUE(dialog.isVisible());
        Leave(dialog);
    });
    Choose("mnuFile", "mnuApplications");
    EXPECT_EQ(screen.suite.log.back(), "FindTopic Documentation");
}

TEST_F(HelpCommandTest, MissingCatalogueIsToldOverTheDialogWhichStays) {
    Load({aField()});
    screen.suite.helpIndexMissing = true;
    Modals modals;
    PressHelp(modals);
    modals.ThenBox("Run-time error '53':\n\nFile not found", QMessageBox::Critical)
        .Then("frmApplicationAdmin", Leave);
    Choose("mnuFile", "mnuApplications");
    EXPECT_TRUE(window.isVisible());
}

TEST_F(HelpCommandTest, HelpMenuHoldsTheAboutEntryAlone) {
    Load({aField()});
    QMenu& menu = Open("mnuHelp");
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_EQ(menu.actions().front()->objectName(), "mnuHelpAbout");
    menu.close();
}

}  // namespace
}  // namespace kd
