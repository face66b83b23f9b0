#include "qt/services/BoxText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <algorithm>
#include <cmath>
#include <memory>

namespace kd {

namespace {

constexpr const char* LabelName = "qt_msgbox_label";  // Qt's own name of it

/// Qt makes no box wider than this, and cuts off what stands beyond.
int WidestBox(const QSize& screen) {
    return screen.width() <= 1024 ? screen.width() : std::min(screen.width() - 480, 1000);
}

/// What a box's text may take of the screen, so that icon, frame and buttons have room beside it.
QSize RoomForText(const QSize& screen) {
    return (screen * 6 / 10).boundedTo({WidestBox(screen) * 8 / 10, screen.height()});
}

/// Qt lets a text run on in lines no longer than this, though the screen be wide: at least half a screen or
/// 500 pixels, less icon and margins.
int LineOfBox(const QSize& screen) {
    return std::min(screen.width() / 2, 500) * 7 / 10;
}

/// How much a text takes when its lines are broken at `width`; a word that may not be broken stands out.
QSize WrappedSize(const QLabel& label, int width, QTextOption::WrapMode mode) {
    QTextDocument document;
    document.setDefaultFont(label.font());
    document.setDefaultTextOption([mode] {
        QTextOption wrap;
        wrap.setWrapMode(mode);
        return wrap;
    }());
    document.setPlainText(label.text());
    document.setTextWidth(width);
    return {static_cast<int>(std::ceil(document.idealWidth())),
            static_cast<int>(std::ceil(document.size().height()))};
}

bool FitsInBox(const QLabel& label, const QSize& screen) {
    const QSize room = RoomForText(screen);
    const QSize size = WrappedSize(label, LineOfBox(screen), QTextOption::WordWrap);
    return size.width() <= room.width() && size.height() <= room.height();
}

/// Leaves all shortcuts to the box: it knows what to copy when nothing is selected.
class MessageField : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    bool event(QEvent* event) override {
        return event->type() != QEvent::ShortcutOverride && QPlainTextEdit::event(event);
    }
};

/// The text of a label in a field that scrolls, is read by keyboard and breaks words that are longer than it
/// is wide: no size of a text makes it greater than `room`.
QPlainTextEdit* ScrollingText(const QLabel& label, const QSize& room, QWidget& parent) {
    auto* const text = new MessageField(label.text(), &parent);
    text->setObjectName(QStringLiteral("MessageText"));
    text->setAccessibleName(QMessageBox::tr("Message"));
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QPalette colours = text->palette();
    colours.setColor(QPalette::Base, colours.color(QPalette::Window));
    text->setPalette(colours);
    const QSize whole = WrappedSize(label, room.width(), text->wordWrapMode());
    const int beside = text->verticalScrollBar()->sizeHint().width() + 2 * text->frameWidth();
    text->setFixedSize(std::min(whole.width() + beside, room.width()),
                       std::min(whole.height() + beside, room.height()));
    return text;
}

/// A text that would push the buttons off the screen gives way to a field in which it scrolls.
void KeepOnScreen(QMessageBox& box, const QSize& screen) {
    auto* const label = box.findChild<QLabel*>(QLatin1String(LabelName));
    if (label == nullptr || FitsInBox(*label, screen)) {
        return;
    }
    const std::unique_ptr<QLayoutItem> replaced(
        box.layout()->replaceWidget(label, ScrollingText(*label, RoomForText(screen), box)));
    label->hide();
}

/// What the user has selected of a box's text, else all of it.
QString TextToCopy(const QMessageBox& box) {
    const auto* const field = box.findChild<QPlainTextEdit*>();
    const auto* const label = box.findChild<QLabel*>(QLatin1String(LabelName));
    const QString selected = field != nullptr   ? field->textCursor().selection().toPlainText()
                             : label != nullptr ? label->selectedText()
                                                : QString();
    return selected.isEmpty() ? box.text() : selected;
}

/// The text of any box can be taken along, to be looked up or sent on.
void LetCopy(QMessageBox& box) {
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const copy = new QShortcut(QKeySequence::Copy, &box);
    QObject::connect(copy, &QShortcut::activated, &box,
                     [&box] { QGuiApplication::clipboard()->setText(TextToCopy(box)); });
}

}  // namespace

void SettleBoxText(QMessageBox& box, const QSize& screen) {
    LetCopy(box);
    KeepOnScreen(box, screen);
}

}  // namespace kd
