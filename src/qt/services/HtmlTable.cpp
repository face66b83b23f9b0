#include "qt/services/HtmlTable.h"

#include <QHash>
#include <QString>
#include <QTextDocumentFragment>
#include <vector>

#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A few tags can claim any number of places by their spans. The largest grid has a fourth of these, so that
/// no table beyond them could be pasted anyway.
constexpr int MostPlaces = 1 << 22;

/// Walks through an HTML text once and gathers the first table's cells. A table inside a cell counts as the
/// cell's text.
class TableReader {
public:
    explicit TableReader(const QString& html) : m_html(html) {}

    std::optional<Text> Read() {
        while (m_at < m_html.size() && !m_done) {
            const QChar c = m_html[m_at];
            if (c == QLatin1Char('<')) {
                ReadTag();
            } else if (c == QLatin1Char('&')) {
                ReadEntity();
            } else {
                Put(m_html[m_at++]);
            }
        }
        EndRow();
        if (m_rows == 0 || m_places > MostPlaces) {
            return std::nullopt;
        }
        return FromQt(m_cells);
    }

private:
    void ReadTag() {
        if (m_html.mid(m_at, 4) == QLatin1String("<!--")) {
            const auto end = m_html.indexOf(QLatin1String("-->"), m_at + 2);  // "<!-->" is one too
            m_at = end < 0 ? m_html.size() : end + 3;
            return;
        }
        const auto end = TagEnd();
        const QString tag = m_html.mid(m_at + 1, end - m_at).toLower();  // with its ">"
        m_at = std::min(end + 1, m_html.size());
        const QString name = TagName(tag);
        if (name == QLatin1String("style") || name == QLatin1String("script")) {
            const auto close = m_html.indexOf(QLatin1String("</") + name, m_at, Qt::CaseInsensitive);
            m_at = close < 0 ? m_html.size() : close;
        } else {
            TakeTag(name, tag);
        }
    }

    /// Offset of the ">" that ends the tag; one inside quotation marks does not.
    qsizetype TagEnd() const {
        QChar quote;
        for (auto at = m_at; at < m_html.size(); ++at) {
            const QChar c = m_html[at];
            if (!quote.isNull()) {
                quote = c == quote ? QChar() : quote;
            } else if (c == QLatin1Char('"') || c == QLatin1Char('\'')) {
                quote = c;
            } else if (c == QLatin1Char('>')) {
                return at;
            }
        }
        return m_html.size();
    }

    static QString TagName(const QString& tag) {
        qsizetype length = 1;  // the "/" or the first letter
        while (length < tag.size() && tag[length].isLetterOrNumber()) {
            ++length;
        }
        return tag.left(length);
    }

    void TakeTag(const QString& name, const QString& tag) {
        if (name == QLatin1String("table")) {
            ++m_depth;
        } else if (name == QLatin1String("/table") && m_depth > 0) {
            m_done = --m_depth == 0;
        } else if (m_depth > 1 || name == QLatin1String("br") || name == QLatin1String("p") ||
                   name == QLatin1String("div")) {
            Put(QLatin1Char(' '));
        } else if (name == QLatin1String("tr") || name == QLatin1String("/tr")) {
            EndRow();
            m_inRow = name == QLatin1String("tr");
        } else if (m_depth == 1 && (name == QLatin1String("td") || name == QLatin1String("th"))) {
            EndCell();
            m_span = Span(tag, QStringLiteral("colspan="));
            m_rowSpan = Span(tag, QStringLiteral("rowspan="));
            m_inCell = true;
            m_inRow = true;
        } else if (name == QLatin1String("/td") || name == QLatin1String("/th")) {
            EndCell();
        }
    }

    static int Span(const QString& tag, const QString& name) {
        const auto at = tag.indexOf(name);
        if (at < 0) {
            return 1;
        }
        int span = 0;
        for (const QChar c : QStringView(tag).mid(at + name.size())) {
            if (c.isDigit()) {
                span = std::min(span * 10 + c.digitValue(), MostPlaces + 1);
            } else if (c != QLatin1Char('"') && c != QLatin1Char('\'')) {
                break;
            }
        }
        return std::max(1, span);
    }

    /// The entity that begins here, from its "&" to its ";", or nothing: between the two stand letters,
    /// digits and "#" alone, or else a lone "&" would take the tags behind it with it.
    QString Entity() const {
        // Looked for near by alone: a text of nothing but "&" would be gone through once for each of them.
        constexpr qsizetype Longest = 32;
        const QString ahead = m_html.mid(m_at, Longest);
        for (qsizetype at = 1; at < ahead.size(); ++at) {
            if (ahead[at] == QLatin1Char(';')) {
                return ahead.left(at + 1);
            }
            if (!ahead[at].isLetterOrNumber() && ahead[at] != QLatin1Char('#')) {
                break;
            }
        }
        return {};
    }

    void ReadEntity() {
        const QString name = Entity();
        if (name.isEmpty()) {
            Put(m_html[m_at++]);
            return;
        }
        if (!m_entities.contains(name)) {
            m_entities.insert(name,
                              QTextDocumentFragment::fromHtml(QLatin1Char('x') + name).toPlainText().mid(1));
        }
        for (const QChar c : m_entities.value(name)) {
            Put(c);
        }
        m_at += name.size();
    }

    void Put(QChar c) {
        if (!m_inCell) {
            return;
        }
        if (c.isSpace()) {
            m_blank = !m_cell.isEmpty();
            return;
        }
        if (m_blank) {
            m_cell += QLatin1Char(' ');
            m_blank = false;
        }
        m_cell += c;
    }

    void EndCell() {
        if (!m_inCell) {
            return;
        }
        PassCellsFromAbove();
        for (int column = 0; column < m_span && m_places <= MostPlaces; ++column) {
            AddCell(column == 0 ? m_cell : QString(), m_rowSpan - 1);
        }
        m_cell.clear();
        m_blank = false;
        m_inCell = false;
    }

    /// The places that a cell of an earlier row takes up in this one are empty cells.
    void PassCellsFromAbove() {
        while (m_column < m_rowsBelow.size() && m_rowsBelow[m_column] > 0 && m_places <= MostPlaces) {
            AddCell({}, m_rowsBelow[m_column] - 1);
        }
    }

    /// A cell in the next column, which takes that column up in `rowsBelow` further rows.
    void AddCell(const QString& text, int rowsBelow) {
        ++m_places;
        if (m_column > 0) {
            m_row += QLatin1Char('\t');
        }
        m_row += text;
        if (m_column == m_rowsBelow.size()) {
            m_rowsBelow.emplace_back();
        }
        m_rowsBelow[m_column++] = rowsBelow;
    }

    void EndRow() {
        EndCell();
        if (m_inRow) {
            PassCellsFromAbove();
        }
        if (m_column > 0) {
            if (m_rows++ > 0) {
                m_cells += QLatin1Char('\r');
            }
            m_cells += m_row;
        }
        m_row.clear();
        m_column = 0;
        m_inRow = false;
    }

    const QString& m_html;
    qsizetype m_at = 0;
    int m_depth = 0;
    bool m_done = false;
    bool m_inRow = false;
    bool m_inCell = false;
    bool m_blank = false;
    int m_span = 1;
    int m_rowSpan = 1;
    std::size_t m_column = 0;
    std::vector<int> m_rowsBelow;  // of each column, in how many further rows a cell takes it up
    int m_places = 0;
    int m_rows = 0;
    QString m_cell;
    QString m_row;
    QString m_cells;
    QHash<QString, QString> m_entities;
};

}  // namespace

QString CellsToHtml(std::string_view cells) {
    QString html = QStringLiteral("<html><head><meta charset=\"utf-8\"></head><body><table><tr><td>");
    const QString text = ToQt(cells);
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == QLatin1Char('\t')) {
            html += QLatin1String("</td><td>");
        } else if (c == QLatin1Char('\r') || c == QLatin1Char('\n')) {
            at += c == QLatin1Char('\r') && at + 1 < text.size() && text[at + 1] == QLatin1Char('\n') ? 1 : 0;
            html += QLatin1String("</td></tr><tr><td>");
        } else if (c == QLatin1Char('<')) {
            html += QLatin1String("&lt;");
        } else if (c == QLatin1Char('>')) {
            html += QLatin1String("&gt;");
        } else if (c == QLatin1Char('&')) {
            html += QLatin1String("&amp;");
        } else {
            html += c;
        }
    }
    return html + QLatin1String("</td></tr></table></body></html>");
}

std::optional<Text> CellsFromHtml(const QString& html) {
    return TableReader(html).Read();
}

}  // namespace kd
