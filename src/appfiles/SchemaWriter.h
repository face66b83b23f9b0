#pragma once

#include <memory>

#include "base/cError.h"
#include "model/Globals.h"

namespace kd::modKDLimitDesk {

/// One key line of a schema file, without its line end: the "=" stands in column 17. Called by tests; a save
/// appends with AppendSchemaKey, which this goes through too.
Text FormatSchemaLine(std::string_view key, std::string_view value);

/// Writes a view of gFiles back to its schema file: the old header with its revision raised and its rules
/// replaced by the catalogue, then all variables of gFields. Nothing changes in memory. A failure shows a
/// box; up to the last step, the overwriting, the target is then untouched, and the temporary file stays on
/// the disk and counts as open for the rest of the run.
/// @returns whether the text was written and the overwriting was tried. A failed overwriting has shown its
/// own box and counts as saved. Called by tests; a commit takes TrySaveSchema.
[[nodiscard]] bool SaveSchema(Globals& g, std::int32_t fileIndex);

/// What has come of a save: its text was not written, or did not take its target's place, or did.
enum class Saving { Failed, NotOverwritten, Done };
/// SaveSchema for whoever has to know that; the first is its false.
[[nodiscard]] Saving TrySaveSchema(Globals& g, std::int32_t fileIndex);

/// A view's new text, whole in its temporary file. As long as the object lives, no other program takes that
/// file for a save of its own.
struct WrittenSchema {
    Text target;
    FileState seen;  // the target's when the text was made from it; unknown where there is none yet
    Text temporary;
    std::unique_ptr<OutputFile> file;
};

/// What a failed writing leaves: the temporary file as after a failed SaveSchema, or nothing, so that the
/// same save can be tried again. One that is tried again waits for nobody the first time.
enum class AfterFailure : bool { Blocked, MayBeTriedAgain };

/// The first part of SaveSchema, for a view that is saved beside others: its text is left to Files::Settle,
/// and takes its target's place by Files::MoveSettled behind that.
/// @throws cError with nothing told.
WrittenSchema WriteSchema(Globals& g, std::int32_t fileIndex, AfterFailure afterFailure);

/// The boxes of a failed SaveSchema and of a failed OverwriteFile.
void TellSaveFailure(Globals& g, const cError& error);
void TellOverwriteFailure(Globals& g, const cError& error);

/// Copies a file over another and, if wanted, deletes the source. A failure shows a box.
/// @returns whether all of it worked.
bool OverwriteFile(Globals& g, std::string_view source, std::string_view target, bool deleteSource);

}  // namespace kd::modKDLimitDesk
