#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <set>

#include "platform/GridManner.h"
#include "qt/grid/GridLayout.h"
#include "qt/grid/TextWidths.h"

namespace kd {

/// Where a grid's cells stand in its scroll area now: keeps layout, text widths and scroll bars in step with
/// the grid, the font and the size. Vertical scroll bars count shown rows, horizontal ones pixels.
class GridScroll {
public:
    /// All three outlive it.
    GridScroll(QAbstractScrollArea& area, VSFlexGrid& grid, const GridManner& manner);
    GridScroll(const GridScroll&) = delete;
    GridScroll& operator=(const GridScroll&) = delete;

    /// Runs when cells may have moved: after a relayout (`anew`), and after scrolling.
    std::function<void(bool anew)> Moved;

    const GridLayout& Layout() const;
    const TextWidths& Widths() const noexcept { return m_widths; }
    /// Measures the area's font; the layout follows.
    void MeasureFont();
    /// The same after a change of font, style or screen: the columns that AutoSize was last asked for are
    /// sized again, while the grid has all of them.
    void MeasureAnew();
    void AutoSize(std::int32_t first, std::int32_t last);
    /// A width that the user gave the column: it stays, whatever the font, until AutoSize or FitColumn. One
    /// that would leave the column nothing to press, or the scrolling columns less than some ten characters
    /// beside the frozen ones, is the nearest that does not.
    void SizeColumn(std::int32_t screenCol, int pixels);
    /// Fits one column to its texts, within the same bounds.
    void FitColumn(std::int32_t screenCol);

    /// The grid has other rows, columns or widths: one relayout follows when the events are through.
    void LayoutChanged();
    /// Whether that relayout is still to come: everything will be painted anew.
    bool Queued() const noexcept { return m_queued; }
    /// Takes the new size at once.
    void Resized();
    /// A scroll bar has moved.
    void Scrolled();

    void ShowCell(std::int32_t row, std::int32_t screenCol);
    void SetTopRow(std::int32_t row);

private:
    void FitColumns(std::int32_t first, std::int32_t last);
    /// The width up to which a column may be brought by hand: a frozen one leaves room for those that scroll.
    int RoomFor(std::int32_t screenCol) const;
    int WidthByHand(int pixels, int most) const;
    void TakeWidth(std::int32_t screenCol, int pixels);
    void BuildLayout() const;
    void Queue();
    void Relayout();
    void SetScrollBars();
    void KeepTopRow();

    QAbstractScrollArea& m_area;
    VSFlexGrid& m_grid;
    const GridManner& m_manner;
    TextWidths m_widths;
    mutable GridLayout m_layout;
    mutable bool m_layoutStale = true;
    bool m_queued = false;
    bool m_relayouting = false;
    std::int32_t m_topRow = 0;      // stays the first one below the header when rows are hidden
    std::int32_t m_sizedFirst = 0;  // the columns that AutoSize was last asked for
    std::int32_t m_sizedLast = -1;
    std::set<std::int32_t> m_byHand;  // the columns that the user has sized since
};

}  // namespace kd
