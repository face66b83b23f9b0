#include "qt/services/ReadableStyle.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QCommonStyle>
#include <QDialog>
#include <QDialogButtonBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "base/Scope.h"

namespace kd {
namespace {

QPalette Dark() {
    const QColor ground(0x20, 0x23, 0x28);
    QPalette palette(ground.lighter(130));
    palette.setColor(QPalette::Window, ground.lighter(130));
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::WindowText, QColor(0xe6, 0xe8, 0xea));
    return palette;
}

double Luminance(const QColor& colour) {
    const auto part = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const double one = Luminance(a) + 0.05;
    const double other = Luminance(b) + 0.05;
    return one > other ? one / other : other / one;
}

/// The best contrast to the ground that a widget shows, along its middle line from its left end inwards.
double EdgeContrast(QWidget& widget, const QColor& ground) {
    const QImage image = widget.grab().toImage();
    double best = 0;
    for (int x = 0; x < 12; ++x) {
        best = std::max(best, Contrast(image.pixelColor(x, image.height() / 2), ground));
    }
    return best;
}

class ReadableStyleTest : public testing::Test {
protected:
    ReadableStyle style{QStringLiteral("Fusion")};

    template <typename W>
    double EdgeOnDark() {
        W widget;
        widget.setStyle(&style);
        widget.setPalette(Dark());
        widget.resize(120, 26);
        return EdgeContrast(widget, Dark().color(QPalette::Window));
    }
};

constexpr double Discernible = 3.0;

/// A style that fills the place of what it draws, gives everything one size and answers every hint with 7.
class FlatStyle : public QCommonStyle {
public:
    void drawPrimitive(PrimitiveElement /*element*/, const QStyleOption* option, QPainter* painter,
                       const QWidget* /*widget*/) const override {
        painter->fillRect(option->rect, Qt::cyan);
    }
    void drawComplexControl(ComplexControl /*control*/, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* /*widget*/) const override {
        painter->fillRect(option->rect, Qt::cyan);
    }
    QSize sizeFromContents(ContentsType /*type*/, const QStyleOption* /*option*/, const QSize& /*contents*/,
                           const QWidget* /*widget*/) const override {
        return {60, 20};
    }
    int styleHint(StyleHint /*hint*/, const QStyleOption* /*option*/, const QWidget* /*widget*/,
                  QStyleHintReturn* /*returned*/) const override {
        return 7;
    }
};

enum class Line { None, Box, Round, InnerBox, Sharp };

/// What is drawn over a flat style: nothing, or a line of one pixel.
class ReadableStyleDrawingTest : public testing::Test {
protected:
    ReadableStyle style{new FlatStyle};  // which it owns
    const QRect Place{2, 3, 24, 20};

    /// A picture that a painter of other colours has drawn; it keeps them.
    static QImage Drawn(const std::function<void(QPainter&)>& draw) {
        QImage image(28, 26, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        painter.setPen(Qt::green);
        painter.setBrush(Qt::red);
        draw(painter);
        EXPECT_TRUE(painter.pen() == QPen(Qt::green));
        EXPECT_TRUE(painter.brush() == QBrush(Qt::red));
        EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
        painter.end();
        return image;
    }
    template <typename Option>
    Option OptionOf(const QPalette& palette, QStyle::State state) const {
        Option option;
        option.rect = Place;
        option.palette = palette;
        option.state = QStyle::State_Enabled | state;
        return option;
    }
    QImage Part(QStyle::PrimitiveElement element, const QPalette& palette, QStyle::State state,
                const QWidget* widget = nullptr) const {
        const auto option = OptionOf<QStyleOption>(palette, state);
        return Drawn([&](QPainter& painter) { style.drawPrimitive(element, &option, &painter, widget); });
    }
    QImage Expected(Line line, const QColor& colour) const {
        return Drawn([&](QPainter& painter) {
            painter.fillRect(Place, Qt::cyan);
            painter.save();
            painter.setPen(colour);
            painter.setBrush(Qt::NoBrush);
            painter.setRenderHint(QPainter::Antialiasing, line != Line::Sharp);
            const QRectF middle = QRectF(Place).adjusted(0.5, 0.5, -0.5, -0.5);
            if (line == Line::Box) {
                painter.drawRoundedRect(middle, 2, 2);
            } else if (line == Line::InnerBox) {
                painter.drawRoundedRect(middle.adjusted(3, 3, -3, -3), 2, 2);
            } else if (line == Line::Round) {
                painter.drawEllipse(middle);
            } else if (line == Line::Sharp) {
                painter.drawRect(Place.adjusted(0, 0, -1, -1));
            }
            painter.restore();
        });
    }
    /// In the colour midway between ground and text of the dark palette.
    QImage Edge(Line line) const {
        const QColor ground = Dark().color(QPalette::Window);
        const QColor text = Dark().color(QPalette::WindowText);
        return Expected(line, {(ground.red() + text.red()) / 2, (ground.green() + text.green()) / 2,
                               (ground.blue() + text.blue()) / 2});
    }
};

TEST_F(ReadableStyleDrawingTest, OnADarkGroundMarksAndTextBoxesHaveAnEdgeMidwayBetweenGroundAndText) {
    struct Case {
        const char* label;
        QStyle::PrimitiveElement element;
        QStyle::State state;
        Line dark;
    };
    for (const Case& each :
         {Case{"check box", QStyle::PE_IndicatorCheckBox, {}, Line::Box},
          Case{"check box with the keyboard", QStyle::PE_IndicatorCheckBox, QStyle::State_HasFocus,
               Line::Box},
          Case{"check box of a list", QStyle::PE_IndicatorItemViewItemCheck, {}, Line::Box},
          Case{"option", QStyle::PE_IndicatorRadioButton, {}, Line::Round},
          Case{"text box", QStyle::PE_FrameLineEdit, {}, Line::Box},
          Case{"text box with the keyboard", QStyle::PE_FrameLineEdit, QStyle::State_HasFocus, Line::None},
          Case{"anything else", QStyle::PE_FrameGroupBox, {}, Line::None},
          Case{"anything else with the keyboard", QStyle::PE_FrameMenu, QStyle::State_HasFocus,
               Line::None}}) {
        EXPECT_TRUE(Part(each.element, Dark(), each.state) == Edge(each.dark)) << each.label;
        EXPECT_TRUE(Part(each.element, QPalette(Qt::lightGray), each.state) == Edge(Line::None))
            << each.label << " on a light ground";
    }
}

TEST_F(ReadableStyleDrawingTest, OnADarkGroundAComboBoxWithoutTheKeyboardHasAnEdge) {
    for (const QStyle::ComplexControl control : {QStyle::CC_ComboBox, QStyle::CC_SpinBox}) {
        for (const bool dark : {true, false}) {
            for (const bool focus : {true, false}) {
                const auto option =
                    OptionOf<QStyleOptionComboBox>(dark ? Dark() : QPalette(Qt::lightGray),
                                                   focus ? QStyle::State_HasFocus : QStyle::State());
                const bool edged = control == QStyle::CC_ComboBox && dark && !focus;
                EXPECT_TRUE(Drawn([&](QPainter& painter) {
                                style.drawComplexControl(control, &option, &painter, nullptr);
                            }) == Edge(edged ? Line::Box : Line::None))
                    << control << (dark ? " dark" : " light") << (focus ? " with the keyboard" : "");
            }
        }
    }
}

TEST_F(ReadableStyleDrawingTest, AButtonWithTheKeyboardHasAHighlightedFrameInsideItsEdge) {
    const QPalette light(Qt::lightGray);
    const auto both = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    EXPECT_TRUE(Part(QStyle::PE_PanelButtonCommand, light, both) ==
                Expected(Line::InnerBox, light.color(QPalette::Highlight)));
}

TEST_F(ReadableStyleDrawingTest, OnlyADialogsListWithTheKeyboardHasAHighlightedFrame) {
    QDialog dialog;
    const QListView list(&dialog);
    const QLabel label(&dialog);
    QWidget window;
    const QListView outside(&window);
    const QPalette light(Qt::lightGray);
    struct Case {
        const char* label;
        QStyle::PrimitiveElement element;
        QStyle::State state;
        const QWidget* widget;
        Line line;
    };
    constexpr auto Focus = QStyle::State_HasFocus;
    for (const Case& each : {Case{"list", QStyle::PE_Frame, Focus, &list, Line::Sharp},
                             Case{"without the keyboard", QStyle::PE_Frame, {}, &list, Line::None},
                             Case{"other part", QStyle::PE_FrameMenu, Focus, &list, Line::None},
                             Case{"other part without", QStyle::PE_FrameMenu, {}, &list, Line::None},
                             Case{"label", QStyle::PE_Frame, Focus, &label, Line::None},
                             Case{"no dialog's", QStyle::PE_Frame, Focus, &outside, Line::None},
                             Case{"no widget", QStyle::PE_Frame, Focus, nullptr, Line::None}}) {
        EXPECT_TRUE(Part(each.element, light, each.state, each.widget) ==
                    Expected(each.line, light.color(QPalette::Highlight)))
            << each.label;
    }
}

TEST_F(ReadableStyleDrawingTest, AButtonHasTwelvePixelsBesideEachEndOfItsText) {
    auto option = OptionOf<QStyleOptionButton>(QPalette(), {});
    const auto width = [&](QStyle::ContentsType type, const QStyleOption& of) {
        const QSize size = style.sizeFromContents(type, &of, {1, 1}, nullptr);
        EXPECT_EQ(size.height(), 20);
        return size.width();
    };
    EXPECT_EQ(width(QStyle::CT_PushButton, option), 60);
    option.text = QStringLiteral("&Remove Applications(s)");
    EXPECT_EQ(width(QStyle::CT_PushButton, option),
              option.fontMetrics.size(Qt::TextSingleLine, QStringLiteral("Remove Applications(s)")).width() +
                  2 * 12);
    EXPECT_EQ(width(QStyle::CT_CheckBox, option), 60);
    EXPECT_EQ(width(QStyle::CT_PushButton, QStyleOption()), 60);
}

TEST_F(ReadableStyleDrawingTest, ButtonsBearNoPicturesDisabledTextsNoSecondPrintAndAllElseIsTheDesktops) {
    const auto answer = [&](QStyle::StyleHint hint) {
        return style.styleHint(hint, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(answer(QStyle::SH_DialogButtonBox_ButtonsHaveIcons), 0);
    EXPECT_EQ(answer(QStyle::SH_EtchDisabledText), 0);
    EXPECT_EQ(answer(QStyle::SH_ItemView_ShowDecorationSelected), 7);
}

TEST_F(ReadableStyleTest, AnEmptyCheckBoxStandsOutOnADarkGround) {
    EXPECT_GE(EdgeOnDark<QCheckBox>(), Discernible);
}

TEST_F(ReadableStyleTest, AnOptionStandsOutOnADarkGround) {
    EXPECT_GE(EdgeOnDark<QRadioButton>(), Discernible);
}

TEST_F(ReadableStyleTest, ATextBoxStandsOutOnADarkGround) {
    EXPECT_GE(EdgeOnDark<QLineEdit>(), Discernible);
}

TEST_F(ReadableStyleTest, AButtonIsWiderThanItsText) {
    QPushButton button(QStringLiteral("Remove Applications(s)"));
    button.setStyle(&style);
    EXPECT_GE(button.sizeHint().width(), button.fontMetrics().horizontalAdvance(button.text()) + 24);
}

TEST_F(ReadableStyleTest, AButtonShowsThatItHasTheKeyboardAndNoOtherDoes) {
    constexpr auto Focused = QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange;
    for (const QStyle::State state : {QStyle::State(Focused), QStyle::State(QStyle::State_HasFocus),
                                      QStyle::State(QStyle::State_KeyboardFocusChange), QStyle::State()}) {
        const auto drawn = [&](const QStyle& with, QStyle::PrimitiveElement element) {
            QStyleOptionButton option;
            option.rect = QRect(0, 0, 80, 24);
            option.palette = QPalette(Qt::lightGray);
            option.state = QStyle::State_Enabled | state;
            QImage image(80, 24, QImage::Format_RGB32);
            image.fill(Qt::lightGray);
            QPainter painter(&image);
            with.drawPrimitive(element, &option, &painter, nullptr);
            painter.end();
            return image;
        };
        const std::unique_ptr<QStyle> plain(QStyleFactory::create(QStringLiteral("Fusion")));
        EXPECT_EQ(drawn(style, QStyle::PE_PanelButtonCommand) != drawn(*plain, QStyle::PE_PanelButtonCommand),
                  state == QStyle::State(Focused))
            << static_cast<int>(state);
        EXPECT_EQ(drawn(style, QStyle::PE_FrameMenu), drawn(*plain, QStyle::PE_FrameMenu));
    }
}

TEST_F(ReadableStyleTest, TheButtonsOfABoxBearNoPictures) {
    QDialogButtonBox box(QDialogButtonBox::Ok);
    box.setStyle(&style);
    EXPECT_EQ(style.styleHint(QStyle::SH_DialogButtonBox_ButtonsHaveIcons, nullptr, &box, nullptr), 0);
}

TEST_F(ReadableStyleTest, AStyleOfLightPartsAloneGivesWayOnADarkGround) {
    EXPECT_EQ(ReadableStyle::NameFor(QStringLiteral("windowsvista"), Dark()), QStringLiteral("Fusion"));
    EXPECT_EQ(ReadableStyle::NameFor(QStringLiteral("windowsvista"), QPalette(Qt::lightGray)),
              QStringLiteral("windowsvista"));
}

TEST_F(ReadableStyleTest, AnyOtherStyleStaysInLightAndDark) {
    EXPECT_EQ(ReadableStyle::NameFor(QStringLiteral("breeze"), Dark()), QStringLiteral("breeze"));
    EXPECT_EQ(ReadableStyle::NameFor(QStringLiteral("breeze"), QPalette(Qt::lightGray)),
              QStringLiteral("breeze"));
}

TEST_F(ReadableStyleTest, AGroundIsDarkBelowHalfOfTheLight) {
    const QString windows = QStringLiteral("windowsvista");
    EXPECT_EQ(ReadableStyle::NameFor(windows, QPalette(QColor(127, 127, 127))), QStringLiteral("Fusion"));
    EXPECT_EQ(ReadableStyle::NameFor(windows, QPalette(QColor(128, 128, 128))), windows);
}

TEST_F(ReadableStyleTest, ADesktopsStyleThatStaysIsTheApplicationsWithItsOwnColours) {
    const Scope putBack([style = QApplication::style()->name()] { QApplication::setStyle(style); });
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QColor link = QApplication::palette().color(QPalette::Link);
    ReadableStyle::Settle(QStringLiteral("Fusion"));
    EXPECT_NE(dynamic_cast<ReadableStyle*>(QApplication::style()), nullptr);
    EXPECT_EQ(QApplication::palette().color(QPalette::Link), link);
}

TEST_F(ReadableStyleTest, WhereAStyleOfLightPartsGivesWayLinksReadAndMarksHaveTheApplicationsColours) {
    const Scope putBack([style = QApplication::style()->name(), before = QApplication::palette(),
                         box = QApplication::palette("QCheckBox"),
                         option = QApplication::palette("QRadioButton")] {
        QApplication::setStyle(style);
        QApplication::setPalette(before);
        QApplication::setPalette(box, "QCheckBox");
        QApplication::setPalette(option, "QRadioButton");
    });
    QApplication::setPalette(Dark());
    for (const char* const widget : {"QCheckBox", "QRadioButton"}) {
        QApplication::setPalette(QPalette(Qt::blue), widget);
    }
    ReadableStyle::Settle(QStringLiteral("windowsvista"));
    const QColor ground = Dark().color(QPalette::Window);
    EXPECT_GE(Contrast(QApplication::palette().color(QPalette::Link), ground), 4.5);
    for (const char* const widget : {"QCheckBox", "QRadioButton"}) {
        EXPECT_EQ(QApplication::palette(widget).color(QPalette::Base), Dark().color(QPalette::Base))
            << widget;
    }
}

}  // namespace
}  // namespace kd
