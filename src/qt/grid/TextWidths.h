#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>
#include <array>
#include <limits>
#include <string_view>
#include <unordered_map>

class QPaintDevice;

namespace kd {

/// The text as a cell draws it: one line, a blank for each character below the blank.
QString ShownText(std::string_view text);

/// Widths of texts in one font on one device, in pixels. Shaping a text costs a hundred times what adding up
/// the widths of its characters does, so that the sum goes first and the exact width is asked for only where
/// the sum leaves a doubt.
class TextWidths {
public:
    TextWidths();

    /// Takes a font, without its kerning and its ligatures: pairs that are pushed apart, and an "ffi" that is
    /// a pixel wider than its letters, would outgrow the sum of characters.
    /// To be called again when the font, the style or the screen changes.
    void SetFont(const QFont& font, QPaintDevice* device);
    /// The font to draw with.
    const QFont& Font() const noexcept { return m_font; }
    const QFontMetricsF& Metrics() const noexcept { return m_metrics; }

    /// Never below Exact. Infinity for a text whose characters may shape each other, or that is no UTF-8.
    double AtMost(std::string_view text) const;
    /// The width that the text takes on the screen.
    double Exact(std::string_view text) const;
    /// The same of a text as it is drawn.
    double ExactOf(const QString& shown) const { return m_metrics.horizontalAdvance(shown); }
    /// The text, with an ellipsis at its end where it is wider than `width`.
    QString Fitted(std::string_view text, double width) const;

private:
    double AdvanceOf(char32_t character) const;

    QFont m_font;
    QFontMetricsF m_metrics;
    std::array<double, 128> m_ascii{};
    mutable std::unordered_map<char32_t, double> m_others;
};

}  // namespace kd
