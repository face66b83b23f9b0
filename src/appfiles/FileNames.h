#pragma once

#include "model/Globals.h"

/// Paths of the files of an application; all come from the path of its template by the extensions of
/// base/ApplicationNames.h.
namespace kd::modKDLimitDesk {

/// Path of a view's schema file: the template itself for view 0.
Text SchemaPath(Globals& g, const cFile& file);

/// Path of the temporary file of a save, beside the schema file.
Text TemporaryPath(Globals& g, std::string_view schemaPath);

/// Paths of the two change files beside the template, which all views of the application share.
Text ChangeLogPath(Globals& g, std::string_view templatePath);
Text ChangeReportPath(Globals& g, std::string_view templatePath);

/// Whether a file or folder is there. Errors count as false. Called by tests alone: a load and
/// a save open a file and see.
bool FileExists(Globals& g, std::string_view path);

}  // namespace kd::modKDLimitDesk
