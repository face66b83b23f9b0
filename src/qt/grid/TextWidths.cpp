#include "qt/grid/TextWidths.h"

#include <QChar>

#include "base/Text.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// Characters that join, reorder or sit on their neighbours, those beyond the basic plane, and what is no
/// character: the width of such a text is no sum.
bool ShapesNeighbours(char32_t character) noexcept {
    return (character >= 0x0300 && character <= 0x036F) || (character >= 0x0590 && character <= 0x10FF) ||
           (character >= 0x200B && character <= 0x200F) || (character >= 0x202A && character <= 0x202E) ||
           character >= 0xD800;
}

}  // namespace

QString ShownText(std::string_view text) {
    QString shown = ToQt(text);
    for (QChar& character : shown) {
        if (character < QChar(' ')) {
            character = QChar(' ');
        }
    }
    return shown;
}

TextWidths::TextWidths() : m_metrics(m_font) {}

void TextWidths::SetFont(const QFont& font, QPaintDevice* device) {
    m_font = font;
    m_font.setKerning(false);
    m_font.setStyleStrategy(QFont::PreferNoShaping);
    m_metrics = QFontMetricsF(m_font, device);
    m_others.clear();
    for (std::size_t code = 0; code < m_ascii.size(); ++code) {
        const char character = static_cast<char>(code);
        m_ascii[code] = Exact({&character, 1});
    }
}

double TextWidths::AdvanceOf(char32_t character) const {
    if (ShapesNeighbours(character)) {
        return std::numeric_limits<double>::infinity();
    }
    const auto known = m_others.find(character);
    if (known != m_others.end()) {
        return known->second;
    }
    const double advance = m_metrics.horizontalAdvance(QString(QChar(static_cast<char16_t>(character))));
    m_others.emplace(character, advance);
    return advance;
}

double TextWidths::AtMost(std::string_view text) const {
    double sum = 0;
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte < m_ascii.size()) {
            sum += m_ascii[byte];
            ++at;
        } else {
            sum += AdvanceOf(NextCharacter(text, at));
        }
    }
    return sum;
}

double TextWidths::Exact(std::string_view text) const {
    return m_metrics.horizontalAdvance(ShownText(text));
}

QString TextWidths::Fitted(std::string_view text, double width) const {
    QString shown = ShownText(text);
    return AtMost(text) <= width ? shown : m_metrics.elidedText(shown, Qt::ElideRight, width);
}

}  // namespace kd
