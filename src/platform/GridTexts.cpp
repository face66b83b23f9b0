#include "platform/GridTexts.h"

#include <algorithm>

#include "base/cError.h"

namespace kd {

std::size_t GridTexts::RowIndex(std::int32_t row) const {
    if (row < 0 || row >= Rows()) {
        throw cError(errSubscript, "VSFlexGrid.Row");
    }
    return static_cast<std::size_t>(row);
}

std::size_t GridTexts::ColIndex(std::int32_t col) const {
    if (col < 0 || col >= m_cols) {
        throw cError(errSubscript, "VSFlexGrid.Col");
    }
    return static_cast<std::size_t>(col);
}

std::size_t GridTexts::CellIndex(std::int32_t row, std::int32_t col) const {
    return RowIndex(row) * static_cast<std::size_t>(m_cols) + ColIndex(col);
}

void GridTexts::SetRows(std::int32_t rows) {
    m_bytes.resize(static_cast<std::size_t>(rows));
    const auto cells = m_bytes.size() * static_cast<std::size_t>(m_cols);
    m_ends.resize(cells, 0);
    if (!m_colours.empty()) {
        m_colours.resize(cells, 0);
    }
}

void GridTexts::SetCols(std::int32_t cols) {
    m_cols = cols;
    for (std::string& bytes : m_bytes) {
        bytes.clear();
    }
    m_ends.assign(m_bytes.size() * static_cast<std::size_t>(cols), 0);
    m_colours.clear();
}

void GridTexts::RemoveRow(std::int32_t row) {
    const auto index = static_cast<std::ptrdiff_t>(RowIndex(row));
    const std::ptrdiff_t cols = m_cols;
    m_bytes.erase(m_bytes.begin() + index);
    m_ends.erase(m_ends.begin() + index * cols, m_ends.begin() + (index + 1) * cols);
    if (!m_colours.empty()) {
        m_colours.erase(m_colours.begin() + index * cols, m_colours.begin() + (index + 1) * cols);
    }
}

void GridTexts::Reserve(std::int32_t rows) {
    m_bytes.reserve(static_cast<std::size_t>(rows));
    m_ends.reserve(static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_cols));
}

std::string_view GridTexts::At(std::int32_t row, std::int32_t col) const {
    const auto cell = CellIndex(row, col);
    const std::uint32_t begin = col == 0 ? 0 : m_ends[cell - 1];
    return std::string_view(m_bytes[static_cast<std::size_t>(row)]).substr(begin, m_ends[cell] - begin);
}

void GridTexts::Set(std::int32_t row, std::int32_t col, std::string_view text) {
    const auto cell = CellIndex(row, col);
    const std::uint32_t begin = col == 0 ? 0 : m_ends[cell - 1];
    const std::uint32_t end = m_ends[cell];
    std::string& bytes = m_bytes[static_cast<std::size_t>(row)];
    bytes.replace(begin, end - begin, std::string(text));  // a copy: the text may be a view of this very row
    const std::uint32_t shift =
        begin + static_cast<std::uint32_t>(text.size()) - end;  // modulo 2^32 when shorter
    const auto rowEnd = static_cast<std::size_t>(row + 1) * static_cast<std::size_t>(m_cols);
    for (std::size_t at = cell; at < rowEnd; ++at) {
        m_ends[at] += shift;
    }
}

void GridTexts::SetRow(std::int32_t row, const RowText& texts) {
    const auto index = RowIndex(row);
    if (texts.Ends().size() != static_cast<std::size_t>(m_cols)) {
        throw cError(errInvalidArgument, "VSFlexGrid.SetRowTexts");
    }
    m_bytes[index] = texts.Bytes();
    std::copy(texts.Ends().begin(), texts.Ends().end(),
              m_ends.begin() + static_cast<std::ptrdiff_t>(index) * static_cast<std::ptrdiff_t>(m_cols));
}

BackColour GridTexts::Colour(std::int32_t row, std::int32_t col) const {
    const auto cell = CellIndex(row, col);
    return m_colours.empty() ? 0 : m_palette[m_colours[cell]];
}

bool GridTexts::SetColour(std::int32_t row, std::int32_t col, BackColour colour) {
    const auto cell = CellIndex(row, col);
    if (m_colours.empty()) {
        if (colour == 0) {
            return false;
        }
        m_colours.resize(m_ends.size(), 0);
    }
    auto known = std::find(m_palette.begin(), m_palette.end(), colour);
    if (known == m_palette.end()) {
        if (m_palette.size() > 0xFFU) {
            throw cError(errOverflow, "VSFlexGrid.BackColor");
        }
        m_palette.push_back(colour);
        known = m_palette.end() - 1;
    }
    const auto entry = static_cast<std::uint8_t>(known - m_palette.begin());
    const bool differs = m_colours[cell] != entry;
    m_colours[cell] = entry;
    return differs;
}

}  // namespace kd
