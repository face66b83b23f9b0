#include "qt/services/ReadableStyle.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>
#include <cmath>
#include <memory>

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

}  // namespace
}  // namespace kd
