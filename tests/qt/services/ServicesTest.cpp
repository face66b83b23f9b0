#include <QAbstractItemView>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTreeView>

#include "SourceFolder.h"
#include "qt/Screen.h"
#include "qt/services/HelpIndex.h"
#include "qt/services/HtmlTable.h"
#include "qt/services/QtClipboard.h"
#include "qt/services/QtFileDialog.h"
#include "qt/services/QtShell.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

// --- text -------------------------------------------------------------------------------------------------

TEST(QtTextTest, AToolTipHasTheCharactersOfItsTextWhateverTheyLookLike) {
    for (const char* const text :
         {"plain", "a & b", "&amp;", "<b>milk</b>.kdt", "/srv/two  blanks", "\xC3\xA4 \"'"}) {
        const QString tip = ToPlainToolTip(QString::fromUtf8(text));
        EXPECT_TRUE(Qt::mightBeRichText(tip)) << text;
        EXPECT_EQ(QTextDocumentFragment::fromHtml(tip).toPlainText().toStdString(), text);
    }
    EXPECT_EQ(ToPlainToolTip(QString()), "") << "none without a text";
}

TEST(QtTextTest, ALetterIsMarkedWhereItStandsFirstInEitherCase) {
    struct Case {
        const char* caption;
        char letter;
        const char* marked;
    };
    for (const Case& c : {Case{"Open", 'O', "&Open"}, Case{"open", 'O', "&open"}, Case{"Add", 'd', "A&dd"},
                          Case{"Fill Down", 'D', "Fill &Down"}, Case{"Close &All", 'C', "Close &All"}}) {
        EXPECT_EQ(CaptionWithMnemonic(c.caption, QLatin1Char(c.letter)), c.marked);
    }
}

// --- clipboard --------------------------------------------------------------------------------------------

/// Puts on the clipboard what another program would.
void FromElsewhere(const QString& plain, const QString& html) {
    auto data = std::make_unique<QMimeData>();
    if (!plain.isNull()) {
        data->setText(plain);
    }
    if (!html.isNull()) {
        data->setHtml(html);
    }
    QGuiApplication::clipboard()->setMimeData(data.release());
}

/// What LibreOffice Calc put on the clipboard; tests/qt/services/data/README.md says how it was captured.
QString Captured(const char* name) {
    QFile file(QStringLiteral(KD_SOURCE_DIR "/tests/qt/services/data/") + QLatin1String(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

TEST(CellsFromHtmlTest, ASpreadsheetsBlockArrivesAsTheCellsItShows) {
    EXPECT_EQ(CellsFromHtml(Captured("calc-block.html")).value_or("none"),
              "845.00\t-0.5\tC\tF12.50\r"
              "Gr\xC3\xB6\xC3\x9F"
              "e \xC2\xB5m\t\t0.00001\t<b>&amp;</b>\r"
              "two lines\ta b\t007\t12,345,678.90\r"
              "\xC3\x9C"
              "ber\t0.25\t\tlast");
}

TEST(CellsFromHtmlTest, ASpreadsheetsMergedCellsLeaveTheFurtherPlacesEmpty) {
    EXPECT_EQ(CellsFromHtml(Captured("calc-merged.html")).value_or("none"), "tall\t1\t2\r\t3\t4\r5\twide\t");
}

TEST(QtClipboardTest, TextComesBackToTheLetter) {
    QtClipboard clipboard;
    for (const char* const text :
         {"1\t2\r3\t4", "a\r\nb", "a\rb\r", " blank \t ", "\xC3\xA4", "<b>x</b>", "x"}) {
        clipboard.SetText(text);
        EXPECT_EQ(clipboard.GetText(), text);
        EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), text);
    }
}

TEST(QtClipboardTest, CellsGoOutAsATableToo) {
    QtClipboard().SetText("1\t<2>\r3\t4");
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    ASSERT_TRUE(data->hasHtml());
    EXPECT_EQ(CellsFromHtml(data->html()).value_or("none"), "1\t<2>\r3\t4");
}

TEST(QtClipboardTest, CellsOfTheSameProgramStartedTwiceKeepTheirBlanks) {
    auto data = std::make_unique<QMimeData>();
    data->setText(" 1 \t2");
    data->setHtml("<table><tr><td> 1 </td><td>2</td></tr></table>");
    data->setData("application/x-kdlimitdesk-cells", "1");
    QGuiApplication::clipboard()->setMimeData(data.release());
    EXPECT_EQ(QtClipboard().GetText(), " 1 \t2");
}

TEST(QtClipboardTest, AnotherProgramsTableIsTakenCellByCell) {
    FromElsewhere("1 2\n", "<table><tr><td>1</td><td>2</td></tr></table>");
    EXPECT_EQ(QtClipboard().GetText(), "1\t2");
}

TEST(QtClipboardTest, ATableWithoutACellDoesNotHideThePlainText) {
    FromElsewhere("12", "<table></table><p>12</p>");
    EXPECT_EQ(QtClipboard().GetText(), "12");
    FromElsewhere("12", "<table><tr></tr></table><p>12</p>");
    EXPECT_EQ(QtClipboard().GetText(), "12");
}

TEST(QtClipboardTest, AnotherProgramsPlainTextStaysAsItStands) {
    QtClipboard clipboard;
    FromElsewhere("1\t2\r\n3\t4\r\n", QString());
    EXPECT_EQ(clipboard.GetText(), "1\t2\r\n3\t4\r\n");
    FromElsewhere("1 2", "<p>1 <b>2</b></p>");
    EXPECT_EQ(clipboard.GetText(), "1 2");
}

TEST(QtClipboardTest, ASpreadsheetsPlainTextAloneStaysAsItStands) {
    FromElsewhere(Captured("calc-block.txt"), QString());
    EXPECT_EQ(QtClipboard().GetText(), FromQt(Captured("calc-block.txt")));
}

TEST(QtClipboardTest, ClipboardWithoutTextGivesNothing) {
    QGuiApplication::clipboard()->clear();
    EXPECT_EQ(QtClipboard().GetText(), "");
    auto data = std::make_unique<QMimeData>();
    data->setData("application/x-other", "1");
    QGuiApplication::clipboard()->setMimeData(data.release());
    EXPECT_EQ(QtClipboard().GetText(), "");
}

// --- help -------------------------------------------------------------------------------------------------

class HelpIndexTest : public testing::Test {
protected:
    MemoryFiles files;
    FakeShell shell;
    HelpIndex index{files, shell};

    void Load(const char* xml) {
        files.Put("/opt/kd/help/KDLimitDeskHelp.xml", xml);
        index.SetFileName("/opt/kd/help/KDLimitDeskHelp.xml");
        index.LoadIndex();
    }
};

TEST_F(HelpIndexTest, TopicOpensItsPageBesideTheCatalogue) {
    Load(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?><help>"
        "<topic name=\"Documentation\" page=\"index.html\"/>"
        "<topic name=\"Limits\" page=\"my limits.html#order\"/></help>");
    index.FindTopic("Documentation")->OpenTopic();
    index.FindTopic("Limits")->OpenTopic();
    EXPECT_EQ(shell.opened, (std::vector<Text>{"file:///opt/kd/help/index.html",
                                               "file:///opt/kd/help/my%20limits.html#order"}));
}

TEST_F(HelpIndexTest, UnknownTopicIsNothing) {
    Load("<help><topic name=\"Documentation\" page=\"index.html\"/></help>");
    EXPECT_EQ(index.FindTopic("Video Tutorials"), nullptr);
    EXPECT_EQ(index.FindTopic("documentation"), nullptr);
    EXPECT_TRUE(shell.opened.empty());
}

TEST_F(HelpIndexTest, APageThatLeadsOutOfTheHelpFolderIsNothing) {
    Load(
        "<help><topic name=\"above\" page=\"../secret.html\"/><topic name=\"beside\" "
        "page=\"../help2/a.html\"/>"
        "<topic name=\"hidden\" page=\"pages/../../../x\"/><topic name=\"folder\" page=\".\"/>"
        "<topic name=\"back\" page=\"pages/../index.html\"/><topic name=\"root\" page=\"/etc/passwd\"/>"
        "<topic name=\"web\" page=\"https://example.com/\"/></help>");
    for (const char* topic : {"above", "beside", "hidden", "folder"}) {
        EXPECT_EQ(index.FindTopic(topic), nullptr) << topic;
    }
    for (const char* topic : {"back", "root", "web"}) {
        index.FindTopic(topic)->OpenTopic();
    }
    EXPECT_EQ(shell.opened,
              (std::vector<Text>{"file:///opt/kd/help/index.html", "file:///opt/kd/help/etc/passwd",
                                 "file:///opt/kd/help/https:/example.com"}));
}

TEST_F(HelpIndexTest, MissingCatalogueIsFileNotFound) {
    index.SetFileName("/nowhere/KDLimitDeskHelp.xml");
    try {
        index.LoadIndex();
        FAIL() << "no error";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), 53);
        EXPECT_EQ(error.Path(), "/nowhere/KDLimitDeskHelp.xml");
    }
}

TEST_F(HelpIndexTest, BrokenCatalogueIsAnError) {
    EXPECT_THROW(Load("<help><topic name=\"Documentation\""), cError);
}

// --- shell ------------------------------------------------------------------------------------------------

TEST(QtShellTest, AddressesAreUnderstood) {
    EXPECT_EQ(QtShell::Url("https://www.example.com").toString(), "https://www.example.com");
    const QUrl mail = QtShell::Url("mailto:support@example.com?Subject=KD LimitDesk&Body=");
    EXPECT_EQ(mail.scheme(), "mailto");
    EXPECT_EQ(mail.path(), "support@example.com");
    EXPECT_EQ(mail.query(QUrl::FullyEncoded), "Subject=KD%20LimitDesk&Body=");
    EXPECT_EQ(QtShell::Url("file:///opt/a%20b.html").toLocalFile(), "/opt/a b.html");
    EXPECT_EQ(QtShell::Url(FromQt(QDir::tempPath()) + "/a#b.html").toLocalFile(),
              QDir::tempPath() + "/a#b.html");
}

TEST(QtShellTest, AnAddressIsHandedToTheDesktop) {
    QTextBrowser desktop;
    const QString scheme = QStringLiteral("kdlimitdesk");
    QDesktopServices::setUrlHandler(scheme, &desktop, "setSource");
    QtShell().Open("kdlimitdesk:guide");
    QDesktopServices::unsetUrlHandler(scheme);
    EXPECT_EQ(desktop.source(), QUrl("kdlimitdesk:guide"));
}

// --- file dialog ------------------------------------------------------------------------------------------

OpenFileRequest AddRequest(const QString& folder) {
    return {FromQt(folder), "Add Applications", "Kestrix Applications", {"*.kdt", "*.kdt6"}, true};
}

TEST(QtFileDialogTest, FilterNamesDescriptionAndPatterns) {
    EXPECT_EQ(QtFileDialog::NameFilter(AddRequest(""), false), "Kestrix Applications (*.kdt *.kdt6)");
    EXPECT_EQ(QtFileDialog::NameFilter(AddRequest(""), true),
              "Kestrix Applications (*.[kK][dD][tT] *.[kK][dD][tT]6)");
}

TEST(QtFileDialogTest, ResultHasTheServicesShapes) {
    EXPECT_EQ(QtFileDialog::Shape({"/a/b.kdt"}),
              std::vector<Text>{FromQt(QDir::toNativeSeparators("/a/b.kdt"))});
    const auto several = QtFileDialog::Shape({"/a/b.kdt", "/a/c d.kdt"});
    EXPECT_EQ(several, (std::vector<Text>{FromQt(QDir::toNativeSeparators("/a")), "b.kdt", "c d.kdt"}));
}

class FileDialogTest : public testing::Test {
protected:
    static constexpr int MostVisits = 5;
    static constexpr int PatienceMs = 2000;
    QTemporaryDir folder;
    std::optional<std::vector<Text>> result;

    void SetUp() override {
        for (const char* const name : {"a.kdt", "B.KDT", "c.kdt6", "d.txt"}) {
            QFile file(folder.filePath(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    void Ask(const std::function<void(QFileDialog&)>& user) {
        NextModal next([&](QWidget& window) { user(dynamic_cast<QFileDialog&>(window)); });
        result = QtFileDialog().OpenFiles(AddRequest(folder.path()));
    }
    /// Types names into the dialog and presses Open.
    static void TypeNames(QFileDialog& dialog, const char* names) {
        auto& edit = Find<QLineEdit>(dialog, "fileNameEdit");
        edit.clear();
        QTest::keyClicks(&edit, QLatin1String(names));
        QTest::keyClick(&edit, Qt::Key_Return);
    }
};

TEST_F(FileDialogTest, IsWideEnoughForNamesSizesAndDates) {
    Ask([](QFileDialog& dialog) {
        EXPECT_TRUE(dialog.testOption(QFileDialog::DontUseNativeDialog))
            << "no desktop is behind this screen";
        const auto& details = Find<QTreeView>(dialog, "treeView");
        EXPECT_GE(dialog.width(), details.fontMetrics().averageCharWidth() * 120);
        dialog.reject();
    });
    EXPECT_FALSE(result);
}

TEST_F(FileDialogTest, OneFileIsOneFullPath) {
    Ask([](QFileDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), "FileDialog");
        EXPECT_EQ(dialog.windowTitle(), "Add Applications");
        TypeNames(dialog, "a.kdt");
    });
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(*result, std::vector<Text>{FromQt(QDir::toNativeSeparators(folder.filePath("a.kdt")))});
}

TEST_F(FileDialogTest, SeveralFilesAreTheFolderAndTheirNames) {
    Ask([](QFileDialog& dialog) { TypeNames(dialog, "\"a.kdt\" \"B.KDT\""); });
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(*result,
              (std::vector<Text>{FromQt(QDir::toNativeSeparators(folder.path())), "a.kdt", "B.KDT"}));
}

TEST_F(FileDialogTest, PatternsMatchInAnyCase) {
    Ask([this](QFileDialog& dialog) {
        const auto* const list = dialog.findChild<QAbstractItemView*>("listView");
        ASSERT_NE(list, nullptr);
        const auto names = [&] {
            QStringList shown;
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
                shown << list->model()->index(row, 0, list->rootIndex()).data().toString();
            }
            shown.sort(Qt::CaseInsensitive);
            return shown;
        };
        // Now and then the toolkit's own list stays empty under wine, until the user comes to the folder
        // again.
        const auto listed = [&] { return names().size() == 3; };
        for (int visit = 1; visit < MostVisits && !QTest::qWaitFor(listed, PatienceMs); ++visit) {
            dialog.setDirectory(QFileInfo(folder.path()).path());
            dialog.setDirectory(folder.path());
        }
        EXPECT_TRUE(QTest::qWaitFor(listed));
        EXPECT_EQ(names(), QStringList({"a.kdt", "B.KDT", "c.kdt6"}));
        dialog.reject();
    });
}

TEST_F(FileDialogTest, CancelGivesNothing) {
    Ask([](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(result.has_value());
}

}  // namespace
}  // namespace kd
