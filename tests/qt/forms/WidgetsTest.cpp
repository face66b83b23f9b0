#include "qt/forms/Widgets.h"

#include <QDialog>
#include <QImage>
#include <QPainter>
#include <QVBoxLayout>

#include "base/Scope.h"
#include "qt/Screen.h"

namespace kd {
namespace {

// --- progress ---------------------------------------------------------------------------------------------

TEST(ProgressWidgetTest, ItsShareIsFilledFromWhereLinesBeginWithinAnEdgeOfOnePixel) {
    struct Case {
        const char* label;
        int minimum;
        int maximum;
        int value;
        int filled;  // of 200 columns
        Qt::LayoutDirection direction;
    };
    for (const Case& c :
         {Case{"nothing", 0, 100, 0, 0, Qt::LeftToRight}, Case{"a quarter", 0, 100, 25, 50, Qt::LeftToRight},
          Case{"a quarter from the right", 0, 100, 25, 50, Qt::RightToLeft},
          Case{"all", 0, 100, 100, 200, Qt::LeftToRight},
          Case{"half of what begins at 50", 50, 150, 100, 100, Qt::LeftToRight},
          Case{"the only step", 0, 1, 1, 200, Qt::LeftToRight},
          Case{"no steps at all", 0, 0, 0, 0, Qt::LeftToRight}}) {
        ProgressWidget widget;
        widget.setLayoutDirection(c.direction);
        widget.resize(202, 16);
        widget.setRange(c.minimum, c.maximum);
        widget.setValue(c.value);
        const QImage picture = widget.grab().toImage();
        QImage wanted(picture.size(), picture.format());
        {
            QPainter painter(&wanted);
            painter.fillRect(0, 0, 202, 16, widget.palette().color(QPalette::Mid));
            painter.fillRect(1, 1, 200, 14, widget.palette().color(QPalette::Base));
            painter.fillRect(c.direction == Qt::LeftToRight ? 1 : 201 - c.filled, 1, c.filled, 14,
                             widget.palette().color(QPalette::Highlight));
        }
        EXPECT_EQ(picture, wanted) << c.label;
    }
}

// --- link -------------------------------------------------------------------------------------------------

TEST(LinkWidgetTest, IsAnUnderlinedTextInTheColourOfLinksThatShowsWhenItHasTheKeyboard) {
    QWidget window;
    LinkWidget link(&window);
    QLineEdit other(&window);
    link.setText("www.example.org");
    link.setGeometry(0, 0, 200, 30);
    other.move(0, 30);
    EXPECT_TRUE(link.font().underline());
    EXPECT_EQ(link.foregroundRole(), QPalette::Link);
    ShowActive(window);
    window.setAttribute(Qt::WA_KeyboardFocusChange);
    other.setFocus();
    const QImage without = link.grab().toImage();
    QImage blank = without;
    blank.fill(window.palette().color(QPalette::Window));
    EXPECT_NE(without, blank);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), &link);
    EXPECT_NE(link.grab().toImage(), without);
    other.setFocus();
    Click(link);
    EXPECT_EQ(Focused(), &link);
    EXPECT_EQ(link.cursor().shape(), Qt::PointingHandCursor);
}

// --- combo box --------------------------------------------------------------------------------------------

TEST(ComboBoxWidgetTest, EnterThatIsNotUsedUpIsTheWindowsAndLeavesTheList) {
    QDialog dialog;
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const combo = new ComboBoxWidget(&dialog);
    auto* const ok = new QPushButton(&dialog);
    layout->addWidget(combo);
    layout->addWidget(ok);
    ok->setDefault(true);
    int oks = 0;
    QObject::connect(ok, &QPushButton::clicked, [&oks] { ++oks; });
    combo->addItem("Milk");
    combo->setEditText("milk");
    ShowActive(dialog);
    combo->setFocus();
    struct Case {
        const char* label;
        std::function<bool()> pressed;
        int oks;
    };
    for (const Case& c : {Case{"nobody asks", {}, 1}, Case{"not used up", [] { return false; }, 1},
                          Case{"used up", [] { return true; }, 0}}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
            combo->EnterPressed = c.pressed;
            oks = 0;
            Press(key);
            EXPECT_EQ(oks, c.oks) << c.label;
            EXPECT_FALSE(combo->view()->isVisible()) << c.label;
            EXPECT_EQ(combo->count(), 1) << c.label;
            EXPECT_EQ(combo->currentText(), "milk") << c.label;
        }
    }
}

// --- status panel -----------------------------------------------------------------------------------------

TEST(StatusPanelTest, TextStandsInTheMiddleOfItsHeightAndFourPixelsInsideItsFrame) {
    const Qt::LayoutDirection before = QGuiApplication::layoutDirection();
    const Scope putBack([before] { QGuiApplication::setLayoutDirection(before); });
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        QGuiApplication::setLayoutDirection(direction);
        for (const int higher : {0, 1, 8}) {
            StatusPanel panel;
            panel.resize(200, panel.sizeHint().height() + higher);
            QPixmap wanted = panel.grab();
            {
                QPainter painter(&wanted);
                painter.setFont(panel.font());
                painter.setLayoutDirection(direction);
                painter.setPen(panel.palette().color(QPalette::WindowText));
                const int frame = panel.frameWidth();
                painter.drawText(panel.rect().adjusted(frame + 4, frame, -frame - 4, -frame),
                                 Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, "Ready");
            }
            panel.setText("Ready");
            EXPECT_EQ(panel.grab().toImage(), wanted.toImage()) << direction << " " << higher;
        }
    }
}

TEST(StatusPanelTest, TextThatJustFitsIsShownWholeAndIsCutWhereThePanelIsAPixelNarrower) {
    StatusPanel panel;
    const QString text("Ready for whatever comes next");
    int room = 0;
    while (panel.fontMetrics().elidedText(text, Qt::ElideMiddle, room) != text) {
        ++room;
    }
    panel.setText(text);
    const int around = 2 * (panel.frameWidth() + 4);
    panel.resize(room + around, panel.sizeHint().height());
    EXPECT_EQ(panel.ShownText(), text);
    panel.resize(room + around - 1, panel.height());
    EXPECT_EQ(panel.ShownText(), panel.fontMetrics().elidedText(text, Qt::ElideMiddle, room - 1));
}

TEST(StatusPanelTest, LinesStandBehindEachOtherWithABlankBetween) {
    StatusPanel panel;
    panel.resize(400, panel.sizeHint().height());
    panel.setText("one\ntwo#\nthree");
    EXPECT_EQ(panel.ShownText(), "one two# three");
}

TEST(StatusPanelTest, IsOneLineHighWithTwoPixelsAroundItAndAsWideAsItsWindowGivesIt) {
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const panel = new StatusPanel(&window);
    layout->addWidget(panel);
    panel->setText(QString(300, 'x') + "\n\n");
    const QMargins around = layout->contentsMargins();
    EXPECT_EQ(window.sizeHint().width(), around.left() + around.right());
    EXPECT_EQ(window.minimumSizeHint().width(), around.left() + around.right());
    window.resize(300, 200);
    window.show();
    EXPECT_EQ(panel->width(), 300 - around.left() - around.right());
    EXPECT_EQ(panel->height(), panel->fontMetrics().height() + 2 * (panel->frameWidth() + 2));
}

}  // namespace
}  // namespace kd
