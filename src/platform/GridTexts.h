#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kd {

/// Back colours are 0xBBGGRR; 0 stands for the default colour.
using BackColour = std::uint32_t;
/// The mark of a changed cell: red FF, green FF, blue C0.
inline constexpr BackColour ChangedColour = 0xC0FFFF;

/// The texts of one row, cell behind cell, to be handed to the grid at once.
class RowText {
public:
    /// Makes room ahead, for that many bytes in all.
    void Reserve(std::size_t bytes, std::size_t cells) {
        m_bytes.reserve(bytes);
        m_ends.reserve(cells);
    }
    /// Adds the next cell.
    void Add(std::string_view text) {
        m_bytes += text;
        EndCell();
    }
    /// For text that is appended in place: append to Bytes(), then end the cell.
    std::string& Bytes() noexcept { return m_bytes; }
    void EndCell() { m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size())); }

    const std::string& Bytes() const noexcept { return m_bytes; }
    const std::vector<std::uint32_t>& Ends() const noexcept { return m_ends; }

private:
    std::string m_bytes;
    std::vector<std::uint32_t> m_ends;
};

/// Texts and back colours of a table of cells, stored row by row. Rows and columns count from 0.
/// @throws cError(errSubscript) for a row or column outside, in every operation that takes one.
class GridTexts {
public:
    std::int32_t Rows() const noexcept { return static_cast<std::int32_t>(m_bytes.size()); }
    std::int32_t Cols() const noexcept { return m_cols; }
    /// New rows are empty. `rows` is not below 0.
    void SetRows(std::int32_t rows);
    /// Empties all cells, and takes their colours. `cols` is not below 0.
    void SetCols(std::int32_t cols);
    void RemoveRow(std::int32_t row);
    /// Makes room for that many rows beforehand.
    void Reserve(std::int32_t rows);

    /// Good until the row changes.
    std::string_view At(std::int32_t row, std::int32_t col) const;
    void Set(std::int32_t row, std::int32_t col, std::string_view text);
    /// All texts of a row at once.
    /// @throws cError(errInvalidArgument) unless `texts` has one for each column.
    void SetRow(std::int32_t row, const RowText& texts);
    BackColour Colour(std::int32_t row, std::int32_t col) const;
    /// Returns whether the cell had another colour.
    /// @throws cError(errOverflow) for the 257th colour.
    bool SetColour(std::int32_t row, std::int32_t col, BackColour colour);

    /// The row and the column as indices.
    std::size_t RowIndex(std::int32_t row) const;
    std::size_t ColIndex(std::int32_t col) const;

private:
    std::size_t CellIndex(std::int32_t row, std::int32_t col) const;

    std::vector<std::string>
        m_bytes;  // a row's texts, one behind the other; where each ends stands in m_ends
    std::vector<std::uint32_t> m_ends;  // row by row: offset behind each cell's text
    std::vector<std::uint8_t>
        m_colours;  // row by row: index into m_palette; empty while no cell has a colour
    std::vector<BackColour> m_palette{0};
    std::int32_t m_cols = 0;
};

}  // namespace kd
