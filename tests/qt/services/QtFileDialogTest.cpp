#include "qt/services/QtFileDialog.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTreeView>
#include <algorithm>

#include "qt/Screen.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

class OpenFilesTest : public testing::Test {
protected:
    QTemporaryDir folder;
    std::optional<std::vector<Text>> result;

    void SetUp() override {
        QFile file(folder.filePath("a.kdt"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    void Ask(const std::function<void(QFileDialog&)>& user) {
        NextModal next([&](QWidget& window) { user(dynamic_cast<QFileDialog&>(window)); });
        result = QtFileDialog().OpenFiles(
            {FromQt(folder.path()), "Add Applications", "Kestrix Applications", {"*.kdt", "*.kdt6"}, true});
    }
    static QLineEdit& NameField(QFileDialog& dialog) {
        auto& field = Find<QLineEdit>(dialog, "fileNameEdit");
        field.clear();
        return field;
    }
};

TEST_F(OpenFilesTest, KindOfFilesIsNamedWithItsPatternsAsTheyAreWritten) {
    Ask([](QFileDialog& dialog) {
        const auto& kind = Find<QComboBox>(dialog, "fileTypeCombo");
        EXPECT_EQ(kind.currentText(), "Kestrix Applications (*.kdt *.kdt6)");
        EXPECT_EQ(kind.count(), 1);
        dialog.reject();
    });
}

TEST_F(OpenFilesTest, ColumnsAreAsWideAsTheirTextsAndTheDialogAsWideAs140Letters) {
    Ask([](QFileDialog& dialog) {
        const auto& details = Find<QTreeView>(dialog, "treeView");
        for (int section = 0; section < details.header()->count(); ++section) {
            EXPECT_EQ(details.header()->sectionResizeMode(section), QHeaderView::ResizeToContents) << section;
        }
        EXPECT_EQ(dialog.width(),
                  std::max(details.fontMetrics().averageCharWidth() * 140, dialog.sizeHint().width()));
        dialog.reject();
    });
}

TEST_F(OpenFilesTest, SeveralFilesCanBeMarked) {
    Ask([](QFileDialog& dialog) {
        for (const char* const list : {"listView", "treeView"}) {
            EXPECT_EQ(Find<QAbstractItemView>(dialog, list).selectionMode(),
                      QAbstractItemView::ExtendedSelection)
                << list;
        }
        dialog.reject();
    });
}

TEST_F(OpenFilesTest, ANameThatIsNotThereIsToldAndTheDialogStays) {
    Ask([](QFileDialog& dialog) {
        {
            NextModal box([](QWidget& shown) { ClickBoxButton(shown, QMessageBox::Ok); });
            QTest::keyClicks(&NameField(dialog), "nobody.kdt");
            QTest::keyClick(&Find(dialog, "fileNameEdit"), Qt::Key_Return);
        }
        EXPECT_TRUE(dialog.isVisible());
        dialog.reject();
    });
    EXPECT_FALSE(result.has_value());
}

TEST_F(OpenFilesTest, ATypedNameThatIsCancelledGivesNothing) {
    Ask([](QFileDialog& dialog) {
        QTest::keyClicks(&NameField(dialog), "a.kdt");
        EXPECT_FALSE(dialog.selectedFiles().isEmpty());
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    EXPECT_FALSE(result.has_value());
}

TEST_F(OpenFilesTest, ADialogThatEndsWellWithoutAFileGivesNothing) {
    Ask([](QFileDialog& dialog) {
        NameField(dialog);
        EXPECT_TRUE(dialog.selectedFiles().isEmpty());
        static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    });
    EXPECT_FALSE(result.has_value());
}

TEST(QtFileDialogKindTest, ADesktopThatTellsCasesApartIsGivenBothAndShowsTheDescriptionAlone) {
    QFileDialog dialog;
    const OpenFileRequest request{"", "", "Applications", {"*.kdt"}, true};
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    constexpr bool bothCases = false;
#else
    constexpr bool bothCases = true;
#endif
    QtFileDialog::SetKind(dialog, request, true);
    EXPECT_EQ(dialog.testOption(QFileDialog::HideNameFilterDetails), bothCases);
    EXPECT_EQ(dialog.nameFilters(), QStringList(QtFileDialog::NameFilter(request, bothCases)));
}

}  // namespace
}  // namespace kd
