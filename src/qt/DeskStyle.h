#pragma once

#include <QProxyStyle>

namespace kd {

/// The desktop's own style, with what it leaves hard to see set right: on a dark ground the edges of check
/// boxes, options and text boxes stand out; a dialog's list and a button with the keyboard have a coloured
/// frame; buttons keep a margin around their text, and bear no pictures.
class DeskStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

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
