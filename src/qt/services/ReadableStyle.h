#pragma once

#include <QPalette>
#include <QProxyStyle>
#include <QString>

namespace kd {

/// The desktop's own style, with what it leaves hard to see set right: on a dark ground the edges of check
/// boxes, options and text boxes stand out; a dialog's list and a button with the keyboard have a coloured
/// frame; buttons keep a margin around their text, and bear no pictures.
class ReadableStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    /// Windows hands its dark colours only to programs that ask before their application object is made. A
    /// platform that the user names stays.
    static void AskForDarkColours();
    /// Makes the desktop's style, given by its name, the application's own.
    static void Settle(const QString& desktopStyle);
    /// Name of the style to draw with, given the desktop's own: one that knows light parts alone gives way on
    /// a dark ground.
    static QString NameFor(const QString& desktopStyle, const QPalette& colours);

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;
};

}  // namespace kd
