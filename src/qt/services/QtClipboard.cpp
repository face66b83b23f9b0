#include "qt/services/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <memory>
#include <utility>

#include "qt/services/HtmlTable.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// Marks what this program has put there: its own plain text keeps every blank, which a table would not.
constexpr char OwnFormat[] = "application/x-kdlimitdesk-cells";

/// The table is made only when somebody asks for it: most copies are pasted here.
class CellsData : public QMimeData {
public:
    explicit CellsData(Text text) : m_text(std::move(text)) {}

    bool hasFormat(const QString& format) const override { return formats().contains(format); }
    QStringList formats() const override {
        return {QStringLiteral("text/plain"), QStringLiteral("text/html"), QLatin1String(OwnFormat)};
    }

protected:
    QVariant retrieveData(const QString& format, QMetaType /*type*/) const override {
        if (format == QLatin1String("text/plain")) {
            return ToQt(m_text);
        }
        if (format == QLatin1String("text/html")) {
            return CellsToHtml(m_text);
        }
        return format == QLatin1String(OwnFormat) ? QVariant(QByteArray("1")) : QVariant();
    }

private:
    Text m_text;
};

}  // namespace

Text QtClipboard::GetText() {
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr) {
        return {};
    }
    if (!data->hasFormat(QLatin1String(OwnFormat))) {
        if (const auto cells = CellsFromHtml(data->html())) {
            return *cells;
        }
    }
    return data->hasText() ? FromQt(data->text()) : Text();
}

void QtClipboard::SetText(std::string_view text) {
    auto data = std::make_unique<CellsData>(Text(text));
    QGuiApplication::clipboard()->setMimeData(data.release());  // the clipboard owns it
}

}  // namespace kd
