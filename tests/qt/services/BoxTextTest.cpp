#include "qt/services/BoxText.h"

#include <QClipboard>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>

#include "qt/Screen.h"

namespace kd {
namespace {

class BoxTextTest : public testing::Test {
protected:
    QtToolkit toolkit;

    /// The toolkit's box with this text, answered by `user`.
    void Box(const Text& text, const std::function<void(QMessageBox&)>& user) {
        NextModal next([&](QWidget& window) { user(dynamic_cast<QMessageBox&>(window)); });
        EXPECT_EQ(toolkit.MessageBox(text, BoxIcon::Exclamation, BoxButtons::Ok, DefaultTitle),
                  BoxAnswer::Ok);
    }
    static void PressOk(QMessageBox& box) { ClickBoxButton(box, QMessageBox::Ok); }
};

TEST_F(BoxTextTest, NoLengthOfATextPutsABoxOrItsButtonsOffTheScreen) {
    Text lines;
    for (int i = 0; i < 400; ++i) {
        lines += "/home/anna/applications/file" + std::to_string(i) + ".kdt\r\n";
    }
    Text words;
    for (int i = 0; i < 800; ++i) {
        words += "word ";
    }
    struct Case {
        const char* label;
        Text text;
    };
    for (const Case& c :
         {Case{"hundreds of lines", lines}, Case{"a word of 4,000 characters", Text(4000, 'W')},
          Case{"4,000 characters of words", words}, Case{"a word wider than the screen", Text(200, 'W')},
          Case{"a word of 32,767 characters",
               "Invalid value '" + Text(32767, 'i') + "' entered for cell!"}}) {
        Box(c.text, [&](QMessageBox& box) {
            const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
            EXPECT_TRUE(room.contains(box.frameGeometry())) << c.label;
            const QWidget& ok = *box.button(QMessageBox::Ok);
            EXPECT_TRUE(box.rect().contains(QRect(ok.mapTo(&box, QPoint()), ok.size()))) << c.label;
            const auto* const text = box.findChild<QPlainTextEdit*>("MessageText");
            ASSERT_NE(text, nullptr) << c.label;
            EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0) << c.label;
            EXPECT_TRUE(text->verticalScrollBar()->maximum() == 0 || text->height() >= room.height() / 3)
                << c.label << ": it scrolls only where there is no room";
            EXPECT_TRUE(text->isReadOnly()) << c.label;
            PressOk(box);
        });
    }
}

TEST_F(BoxTextTest, ALongTextStandsBesideTheBoxsPictureAndAboveItsButton) {
    Box(Text(4000, 'W'), [](QMessageBox& box) {
        const auto* const text = box.findChild<QPlainTextEdit*>("MessageText");
        const auto* const icon = box.findChild<QLabel*>("qt_msgboxex_icon_label");
        const QWidget& ok = *box.button(QMessageBox::Ok);
        ASSERT_NE(text, nullptr);
        ASSERT_NE(icon, nullptr);
        EXPECT_GE(text->geometry().left(), icon->geometry().right());
        EXPECT_LT(text->geometry().bottom(), ok.mapTo(&box, QPoint()).y());
        PressOk(box);
    });
}

TEST_F(BoxTextTest, ALongTextIsReadToItsEndByKeyboardAndEnterStillPressesTheButton) {
    Text lines;
    for (int i = 0; i < 400; ++i) {
        lines += "line\r\n";
    }
    Box(lines, [](QMessageBox& box) {
        auto* const text = box.findChild<QPlainTextEdit*>("MessageText");
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(QApplication::focusWidget(), box.button(QMessageBox::Ok));
        Press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), text);
        const QScrollBar& bar = *text->verticalScrollBar();
        EXPECT_EQ(bar.value(), 0);
        for (int pages = 0; pages < 100 && bar.value() < bar.maximum(); ++pages) {
            Press(Qt::Key_PageDown);
        }
        EXPECT_GT(bar.maximum(), 0);
        EXPECT_EQ(bar.value(), bar.maximum());
        Press(Qt::Key_Return);
        EXPECT_FALSE(box.isVisible());
    });
}

TEST_F(BoxTextTest, AShortTextStaysALabelAndAnyTextCanBeCopied) {
    const Text longWord(4000, 'W');
    for (const Text& text : {Text("Error 70: Permission denied\r\n/srv/a.kdt"), longWord}) {
        QGuiApplication::clipboard()->clear();
        Box(text, [&](QMessageBox& box) {
            EXPECT_EQ(box.findChild<QPlainTextEdit*>("MessageText") == nullptr, text != longWord);
            EXPECT_TRUE(box.textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
            Press(Qt::Key_C, Qt::ControlModifier);
            EXPECT_EQ(QGuiApplication::clipboard()->text(), box.text());
            PressOk(box);
        });
    }
    Box(longWord, [&](QMessageBox& box) {
        QGuiApplication::clipboard()->clear();
        Press(Qt::Key_Tab);
        ASSERT_NE(qobject_cast<QPlainTextEdit*>(QApplication::focusWidget()), nullptr);
        Press(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), box.text()) << "all where nothing is selected";
        Press(Qt::Key_Right, Qt::ShiftModifier);
        Press(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), "W") << "what is selected alone";
        PressOk(box);
    });
}

}  // namespace
}  // namespace kd
