#include "qt/Views.h"

#include <QPainter>
#include <QStyle>

namespace kd {

StatusPanel::StatusPanel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setMargin(2);
}

QSize StatusPanel::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

QSize StatusPanel::sizeHint() const {
    const int around = 2 * (margin() + frameWidth());
    return {fontMetrics().averageCharWidth() * 20 + around, fontMetrics().height() + around};
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
