#pragma once

#include <optional>

#include "base/Text.h"

class QString;

/// Cells as an HTML table, the form in which spreadsheets and word processors exchange them.
namespace kd {

/// A table of the cells of a text, with TAB between cells and CR, LF or CR LF between rows.
QString CellsToHtml(std::string_view cells);

/// The cells of the first table of an HTML text, with TAB between cells and CR between rows; nothing when it
/// has no table. A line break, TAB or hard blank inside a cell becomes a blank, blanks in a row become one,
/// and those at a cell's ends go; a cell over several columns or rows leaves the
/// further places empty. A table of more than 4,194,304 places counts as none, so that whatever spans it
/// claims, no more than 100 MB are taken beyond what the text itself needs.
std::optional<Text> CellsFromHtml(const QString& html);

}  // namespace kd
