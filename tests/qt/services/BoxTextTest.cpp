#include "qt/services/BoxText.h"

#include <QClipboard>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>
#include <cmath>

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
        EXPECT_FALSE(Find<QLabel>(box, "qt_msgbox_label").isVisible()) << "it stands there once";
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
        EXPECT_EQ(text->accessibleName(), "Message");
        EXPECT_FALSE(text->testAttribute(Qt::WA_InputMethodEnabled)) << "nothing is typed there";
        Press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), box.button(QMessageBox::Ok)) << "Tab leads on";
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

// --- on a screen of any size ------------------------------------------------------------------------------

class SettledBoxTest : public testing::Test {
protected:
    QMessageBox box{QMessageBox::Warning, QString(), QString(), QMessageBox::Ok};

    void SetUp() override {
        box.setTextFormat(Qt::PlainText);
        box.setDefaultButton(QMessageBox::Ok);
    }
    QLabel& Label() { return Find<QLabel>(box, "qt_msgbox_label"); }
    QPlainTextEdit* Field() { return box.findChild<QPlainTextEdit*>("MessageText"); }

    /// Whether a box of this text has it in a label as ever.
    static bool StaysALabel(const QString& text, const QFont& font, const QSize& screen) {
        QMessageBox asked;
        asked.setFont(font);
        asked.setText(text);
        SettleBoxText(asked, screen);
        return asked.findChild<QPlainTextEdit*>() == nullptr;
    }
    /// What a text takes whose lines are not broken.
    static QSizeF Whole(const QString& text, const QFont& font) {
        QTextDocument document;
        document.setDefaultFont(font);
        document.setPlainText(text);
        return {document.idealWidth(), document.size().height()};
    }
    /// The least length of a screen, six tenths of which are that long.
    static int ScreenFor(qreal length) {
        int screen = 0;
        while (qRound(screen * 6 / 10.0) < length) {
            ++screen;
        }
        return screen;
    }
    static QFont Large() {
        QFont font = QApplication::font();
        font.setPixelSize(40);
        return font;
    }
};

constexpr int Ample = 4000;

TEST_F(SettledBoxTest, ATextStaysALabelUpToSixTenthsOfTheScreensHeight) {
    const QString text = QStringLiteral("line\n").repeated(30);
    const int height = ScreenFor(Whole(text, Large()).height());
    EXPECT_TRUE(StaysALabel(text, Large(), {Ample, height}));
    EXPECT_FALSE(StaysALabel(text, Large(), {Ample, height - 1}));
}

TEST_F(SettledBoxTest, AWordStaysALabelUpToSixTenthsOfTheScreensWidth) {
    const QString word(10, QLatin1Char('W'));
    const int width = ScreenFor(std::ceil(Whole(word, Large()).width()));
    EXPECT_TRUE(StaysALabel(word, Large(), {width, Ample}));
    EXPECT_FALSE(StaysALabel(word, Large(), {width - 1, Ample}));
}

TEST_F(SettledBoxTest, ATextIsReckonedInTheLinesThatABoxBreaksItInto) {
    struct Case {
        int screen;
        int line;  // seven tenths of half the screen, and of 500 pixels at most
    };
    for (const Case& c : {Case{600, 210}, Case{800, 280}, Case{998, 349}, Case{1000, 350}, Case{1900, 350}}) {
        const QString line = QStringLiteral("ii ii");
        const QString text = QStringList(20, line).join(QLatin1Char('\n'));
        QFont font = QApplication::font();
        const auto spread = [&](int width) {
            font.setWordSpacing(0);
            font.setWordSpacing(width - Whole(line, font).width());
            return font;
        };
        ASSERT_EQ(Whole(line, spread(c.line)).width(), c.line);
        const QSize screen(c.screen, ScreenFor(Whole(text, font).height()));
        EXPECT_TRUE(StaysALabel(text, spread(c.line), screen)) << c.screen;
        EXPECT_FALSE(StaysALabel(text, spread(c.line + 1), screen)) << c.screen << ": each line is broken";
    }
}

TEST_F(SettledBoxTest, ALongTextTakesSixTenthsOfTheScreenEachWay) {
    box.setText(QString(20'000, QLatin1Char('i')));
    SettleBoxText(box, {1000, 800});
    ASSERT_NE(Field(), nullptr);
    EXPECT_EQ(Field()->minimumSize(), QSize(600, 480));
    EXPECT_EQ(Field()->maximumSize(), QSize(600, 480));
}

TEST_F(SettledBoxTest, NoTextIsWiderThanABoxShowsOfIt) {
    struct Case {
        int screen;
        int box;  // the widest that the toolkit makes
        int text;
    };
    for (const Case& c :
         {Case{640, 640, 384}, Case{1024, 1024, 614}, Case{1025, 545, 436}, Case{1280, 800, 640},
          Case{1481, 1000, 800}, Case{1920, 1000, 800}, Case{3840, 1000, 800}}) {
        QMessageBox wide(QMessageBox::Warning, QString(), QString(20'000, QLatin1Char('i')), QMessageBox::Ok);
        SettleBoxText(wide, {c.screen, 1000});
        const auto* const field = wide.findChild<QPlainTextEdit*>();
        ASSERT_NE(field, nullptr) << c.screen;
        EXPECT_EQ(field->minimumWidth(), c.text) << c.screen;
        EXPECT_LE(wide.layout()->totalMinimumSize().width(), c.box) << c.screen;
        EXPECT_FALSE(StaysALabel(QString(200, QLatin1Char('W')), Large(), {c.screen, Ample})) << c.screen;
    }
}

class StyledBoxTest : public SettledBoxTest, public testing::WithParamInterface<const char*> {
protected:
    const QString before = QApplication::style()->objectName();

    void SetUp() override {
        SettledBoxTest::SetUp();
        QApplication::setStyle(QLatin1String(GetParam()));
    }
    void TearDown() override { QApplication::setStyle(before); }
};

TEST_P(StyledBoxTest, AFieldOfManyShortLinesIsAsWideAsTheLongestOfThemAndBreaksNone) {
    QFont font = QApplication::font();
    font.setHintingPreference(QFont::PreferNoHinting);  // lines end between pixels too
    box.setFont(font);
    box.setText(QStringLiteral("Application number 7\n").repeated(100));
    SettleBoxText(box, {1000, 300});
    ShowActive(box);
    ASSERT_NE(Field(), nullptr);
    ASSERT_GT(Field()->verticalScrollBar()->maximum(), 0);
    const QTextDocument& document = *Field()->document();
    const QTextLayout& layout = *document.firstBlock().layout();
    ASSERT_EQ(layout.lineCount(), 1);
    const qreal line = layout.lineAt(0).naturalTextWidth() + 2 * document.documentMargin();
    EXPECT_EQ(Field()->viewport()->width(), static_cast<int>(std::ceil(line)));
}

INSTANTIATE_TEST_SUITE_P(Styles, StyledBoxTest, testing::Values("Fusion", "Windows"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(SettledBoxTest, ALongTextStandsOnTheGroundOfTheBox) {
    QPalette colours = box.palette();
    colours.setColor(QPalette::Window, Qt::yellow);
    colours.setColor(QPalette::Base, Qt::white);
    box.setPalette(colours);
    box.setText(QString(20'000, QLatin1Char('i')));
    SettleBoxText(box, {1000, 800});
    ASSERT_NE(Field(), nullptr);
    EXPECT_EQ(Field()->palette().color(Field()->viewport()->backgroundRole()), QColor(Qt::yellow));
}

TEST_F(SettledBoxTest, WhatIsSelectedOfAShortTextIsCopiedAlone) {
    box.setTextInteractionFlags(Qt::NoTextInteraction);
    box.setText("Permission denied");
    SettleBoxText(box, {1000, 800});
    ShowActive(box);
    EXPECT_EQ(Field(), nullptr);
    Label().setSelection(0, 10);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Permission");
}

TEST_F(SettledBoxTest, ABoxThatTheToolkitMakesOtherwiseKeepsItsTextAndCopiesIt) {
    Label().setObjectName("other");
    box.setText(QStringLiteral("line\n").repeated(40));
    SettleBoxText(box, {300, 200});
    EXPECT_EQ(Field(), nullptr);
    ShowActive(box);
    QGuiApplication::clipboard()->clear();
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), box.text());
}

}  // namespace
}  // namespace kd
