#include "qt/services/ReadableStyle.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QSettings>
#include <QStyleOption>
#include <algorithm>

#include "qt/services/Frame.h"

namespace kd {

namespace {

constexpr int ButtonMargin = 12;  // beside the text of a button
constexpr int HalfLight = 128;
constexpr QColor LinkOnDark(0x7f, 0xb8, 0xde);

bool IsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < HalfLight;
}
bool OnDarkGround(const QStyleOption& option) {
    return IsDark(option.palette);
}

/// Midway between ground and text: three times as bright as a dark ground, and quieter than the text.
QColor EdgeColour(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    return {(ground.red() + text.red()) / 2, (ground.green() + text.green()) / 2,
            (ground.blue() + text.blue()) / 2};
}

enum class Shape { Box, Round };

/// A line of one pixel along the inside of the place's edges.
void DrawOutline(QPainter& painter, const QRect& place, const QColor& colour, Shape shape) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour);
    painter.setBrush(Qt::NoBrush);
    const QRectF middle = QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5);
    if (shape == Shape::Round) {
        painter.drawEllipse(middle);
    } else {
        painter.drawRoundedRect(middle, 2, 2);
    }
    painter.restore();
}

void DrawEdge(const QStyleOption& option, QPainter& painter, Shape shape) {
    DrawOutline(painter, option.rect, EdgeColour(option.palette), shape);
}

}  // namespace

void ReadableStyle::AskForDarkColours() {
#ifdef Q_OS_WIN
    const QSettings colours(QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion"
                                           "\\Themes\\Personalize"),
                            QSettings::NativeFormat);
    // A desktop that turns dark later is not followed: its light parts would stand on dark ground.
    const bool dark = colours.value(QStringLiteral("AppsUseLightTheme"), 1).toInt() == 0;
    if (dark && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
    }
#endif
}

void ReadableStyle::Settle(const QString& desktopStyle) {
    QPalette colours = QApplication::palette();
    const QString name = NameFor(desktopStyle, colours);
    QApplication::setStyle(new ReadableStyle(name));  // the application owns it
    if (name != desktopStyle) {
        // The desktop's dark colours are not all to be read: its links are of a deep blue, and the grounds of
        // its check boxes and options look as if they were chosen.
        colours.setColor(QPalette::Link, LinkOnDark);
        QApplication::setPalette(colours);
        for (const char* const widget : {"QCheckBox", "QRadioButton"}) {
            QApplication::setPalette(colours, widget);
        }
    }
}

QString ReadableStyle::NameFor(const QString& desktopStyle, const QPalette& colours) {
    const bool lightAlone = desktopStyle.compare(QLatin1String("windowsvista"), Qt::CaseInsensitive) == 0;
    return lightAlone && IsDark(colours) ? QStringLiteral("Fusion") : desktopStyle;
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_PanelButtonCommand && option->state.testFlag(State_HasFocus) &&
        option->state.testFlag(State_KeyboardFocusChange)) {
        // A marked button looks the same with the keyboard and without.
        DrawOutline(*painter, option->rect.adjusted(3, 3, -3, -3), option->palette.color(QPalette::Highlight),
                    Shape::Box);
    }
    if (element == PE_Frame && option->state.testFlag(State_HasFocus) &&
        qobject_cast<const QAbstractScrollArea*>(widget) != nullptr &&
        qobject_cast<const QDialog*>(widget->window()) != nullptr) {
        // A list without a current entry would not show that it has the keyboard.
        DrawFrame(*painter, option->rect, 1, option->palette.color(QPalette::Highlight));
    }
    if (!OnDarkGround(*option)) {
        return;
    }
    // NOLINTNEXTLINE(bugprone-branch-clone): box after box, each with a reason of its own
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck) {
        DrawEdge(*option, *painter, Shape::Box);
    } else if (element == PE_IndicatorRadioButton) {
        DrawEdge(*option, *painter, Shape::Round);
    } else if (element == PE_FrameLineEdit && !option->state.testFlag(State_HasFocus)) {
        DrawEdge(*option, *painter, Shape::Box);  // with the focus it has the highlight's colour
    }
}

void ReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox && OnDarkGround(*option) && !option->state.testFlag(State_HasFocus)) {
        DrawEdge(*option, *painter, Shape::Box);
    }
}

QSize ReadableStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                      const QWidget* widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
        type == CT_PushButton && button != nullptr) {
        const int text = button->fontMetrics.size(Qt::TextShowMnemonic, button->text).width();
        size.setWidth(std::max(size.width(), text + 2 * ButtonMargin));
    }
    return size;
}

int ReadableStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* returned) const {
    // Disabled texts with a second, brighter print below look enabled on a dark ground.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons || hint == SH_EtchDisabledText) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

}  // namespace kd
