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
                Put(c);
                ++m_at;
            }
        }
        EndRow();
        if (!m_seen || m_rows == 0 || m_places > MostPlaces) {
            return std::nullopt;
        }
        return FromQt(m_cells);
    }

private:
    void ReadTag() {
        if (m_html.mid(m_at, 4) == QLatin1String("<!--")) {
            const auto end = m_html.indexOf(QLatin1String("-->"), m_at + 4);
            m_at = end < 0 ? m_html.size() : end + 3;
            return;
        }
        const auto end = TagEnd();
        const QString tag = m_html.mid(m_at + 1, end - m_at - 1);
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
        for (auto at = m_at + 1; at < m_html.size(); ++at) {
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
        qsizetype length = tag.startsWith(QLatin1Char('/')) ? 1 : 0;
        while (length < tag.size() && tag[length].isLetterOrNumber()) {
            ++length;
        }
        return tag.left(length).toLower();
    }

    void TakeTag(const QString& name, const QString& tag) {
        if (name == QLatin1String("table")) {
            m_seen = true;
            ++m_depth;
        } else if (name == QLatin1String("/table") && m_depth > 0) {
            m_done = --m_depth == 0;
        } else if (m_depth > 1 || name == QLatin1String("br") || name == QLatin1String("p") ||
                   name == QLatin1String("div")) {
            Put(QLatin1Char(' '));
        } else if (m_depth == 1 && name == QLatin1String("tr")) {
            EndRow();
            m_inRow = true;
        } else if (m_depth == 1 && (name == QLatin1String("td") || name == QLatin1String("th"))) {
            m_inRow = true;
            EndCell();
            m_inCell = true;
            m_span = Span(tag, QLatin1String("colspan="));
            m_rowSpan = Span(tag, QLatin1String("rowspan="));
        } else if (m_depth == 1 && (name == QLatin1String("/td") || name == QLatin1String("/th"))) {
            EndCell();
        } else if (m_depth == 1 && name == QLatin1String("/tr")) {
            EndRow();
        }
    }

    static int Span(const QString& tag, QLatin1String name) {
        const auto at = tag.indexOf(name, 0, Qt::CaseInsensitive);
        if (at < 0) {
            return 1;
        }
        QString digits;
        for (auto i = at + name.size(); i < tag.size() && digits.size() < 3; ++i) {
            if (tag[i].isDigit()) {
                digits += tag[i];
            } else if (!digits.isEmpty() || (tag[i] != QLatin1Char('"') && tag[i] != QLatin1Char('\''))) {
                break;
            }
        }
        return std::max(1, digits.toInt());
    }

    /// Offset of the ";" that ends the entity here, or -1 when no entity begins here: between "&" and ";"
    /// stand letters and digits alone, or else a lone "&" would take the tags behind it with it.
    qsizetype EntityEnd() const {
        // Looked for near by alone: a text of nothing but "&" would be gone through once for each of them.
        constexpr qsizetype Longest = 32;
        const auto last = std::min(m_at + Longest, m_html.size() - 1);
        for (auto at = m_at + 1; at <= last; ++at) {
            const QChar c = m_html[at];
            if (c == QLatin1Char(';')) {
                return at > m_at + 1 ? at : -1;
            }
            if (c.unicode() > 0x7E || !(c.isLetterOrNumber() || (c == QLatin1Char('#') && at == m_at + 1))) {
                return -1;
            }
        }
        return -1;
    }

    void ReadEntity() {
        const auto end = EntityEnd();
        if (end < 0) {
            Put(m_html[m_at++]);
            return;
        }
        const QString name = m_html.mid(m_at, end - m_at + 1);
        if (!m_entities.contains(name)) {
            m_entities.insert(name,
                              QTextDocumentFragment::fromHtml(QLatin1Char('x') + name).toPlainText().mid(1));
        }
        for (const QChar c : m_entities.value(name)) {
            Put(c);
        }
        m_at = end + 1;
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
        if (++m_places > MostPlaces) {
            m_done = true;
            return;
        }
        if (m_column > 0) {
            m_row += QLatin1Char('\t');
        }
        m_row += text;
        if (m_column == m_rowsBelow.size()) {
            m_rowsBelow.push_back(0);
        }
        m_rowsBelow[m_column++] = rowsBelow;
    }

    void EndRow() {
        EndCell();
        if (m_column > 0 || m_inRow) {
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
    bool m_seen = false;
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
