#pragma once

#include "model/Globals.h"

/// Small helpers that all floors above use.
///
/// What stands in this namespace, here and in the headers of other folders: the functions that work on the
/// globals, on a schema file, on a variable or on names and paths, and belong to no form, record or control:
/// start, settings, names of files, header, reader and writer, catalogue of columns, conversions. What works
/// on the desk (commands, filters, view modes, the gate of a cell) stands in kd itself, beside the type that
/// it takes; base/ has no globals to work on, and so nothing in here.
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
