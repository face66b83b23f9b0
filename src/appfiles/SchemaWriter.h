#pragma once

#include "model/Globals.h"

namespace kd::modKDLimitDesk {

/// One key line of a schema file, without its line end: the "=" stands in column 17.
Text FormatSchemaLine(std::string_view key, std::string_view value);

/// Writes a view of gFiles back to its schema file: the old header with its revision raised and its rules
/// replaced by the catalogue, then all variables of gFields. Nothing changes in memory. A failure shows a
/// box; up to the last step, the overwriting, the target is then untouched, and the temporary file stays on
/// the disk and counts as open for the rest of the run.
/// @returns whether the text was written and the overwriting was tried. A failed overwriting has shown its
/// own box and counts as saved.
[[nodiscard]] bool SaveSchema(Globals& g, std::int32_t fileIndex);

/// Copies a file over another and, if wanted, deletes the source. A failure shows a box.
/// @returns whether all of it worked.
bool OverwriteFile(Globals& g, std::string_view source, std::string_view target, bool deleteSource);

}  // namespace kd::modKDLimitDesk
