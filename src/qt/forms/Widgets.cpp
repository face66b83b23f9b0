#include "qt/forms/Widgets.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <algorithm>

namespace kd {

void ProgressWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect inside = rect().adjusted(1, 1, -1, -1);
    const int span = std::max(maximum() - minimum(), 1);
    const int filled = inside.width() * (value() - minimum()) / span;
    const QRect done(layoutDirection() == Qt::RightToLeft ? inside.right() + 1 - filled : inside.left(),
                     inside.top(), filled, inside.height());
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    painter.fillRect(inside, palette().color(QPalette::Base));
    painter.fillRect(done, palette().color(QPalette::Highlight));
}

LinkWidget::LinkWidget(QWidget* parent) : QLabel(parent) {
    QFont underlined = font();
    underlined.setUnderline(true);
    setFont(underlined);
    setForegroundRole(QPalette::Link);  // on a dark ground a blue that can be read there
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

void LinkWidget::paintEvent(QPaintEvent* event) {
    QLabel::paintEvent(event);
    if (!hasFocus()) {
        return;
    }
    QPainter painter(this);
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

StatusPanel::StatusPanel(QWidget* parent) : QLabel(parent) {
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setMargin(2);
}

QSize StatusPanel::minimumSizeHint() const {
    return sizeHint();
}

QSize StatusPanel::sizeHint() const {
    const int around = 2 * (margin() + frameWidth());
    return {0, fontMetrics().height() + around};  // as wide as the window gives it
}

QString StatusPanel::ShownText() const {
    QString line = text();
    line.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return fontMetrics().elidedText(line, Qt::ElideMiddle, contentsRect().width() - 2 * margin() - 4);
}

void StatusPanel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    drawFrame(&painter);
    const int inset = margin() + 2;
    style()->drawItemText(&painter, contentsRect().adjusted(inset, 0, -inset, 0),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(), isEnabled(),
                          ShownText(), foregroundRole());
}

}  // namespace kd
