#pragma once

#include "model/Globals.h"

/// Small helpers that the rooms above use.
///
/// What stands in this namespace, here and in other headers: functions that work on the globals or a schema
/// file (start, settings, names of files, header, reader, writer, catalogue of columns, conversions). In kd
/// stand what works on the desk, all commands, all of base/, and what serves a record, the reader or the
/// load alone (FieldTexts.h, SchemaKeys.h, SchemaText.h, FileNumbers.h, LoadApplications.h). Where both would
/// do, a new function goes to kd.
namespace kd::modKDLimitDesk {

/// The suite's context: made, told the system code and opened on first use, the same object ever after.
KDSuiteContext& GetSuiteContext(Globals& g);

/// The path with its extension replaced, by the suite's path tools.
Text ChangeFileExtension(Globals& g, std::string_view path, std::string_view extension);

/// Whether any view has unsaved edits.
bool AnyChanges(const Globals& g);

/// Copies every property of a variable.
void CopyFieldValues(const cField& source, cField& target);

/// The parts with the delimiter between them. A part that ends in the delimiter gets no second one; an empty
/// part contributes one delimiter; one delimiter at the end is cut.
Text JoinPath(std::string_view delimiter, const std::vector<Text>& parts);

}  // namespace kd::modKDLimitDesk
