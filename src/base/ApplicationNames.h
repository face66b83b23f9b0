#pragma once

#include <cstdint>

#include "base/CodePage.h"
#include "base/Text.h"

/// Names of the files of an application, its archives, and the files and folders that wait to become one.
/// What is its template's name with another extension stands here as that extension, for whoever changes it
/// by a service and whoever does it by himself.
namespace kd::names {

/// Whether the application is one of generation 6: its template's path or name ends in "6".
bool IsGeneration6(std::string_view templatePath) noexcept;

/// Extension of a view's schema file, for a view from number 1 on.
Text ViewExtension(std::string_view templatePath, std::int32_t number);
/// Extension of the temporary file of a save, put in the place of the schema file's own.
inline constexpr std::string_view TemporaryExtension = ".temp";
/// Extensions of the two change files.
Text ChangeLogExtension(std::string_view templatePath);
Text ChangeReportExtension(std::string_view templatePath);

/// Number of the view that a file is, by its name; 0 when it is no view file of the template. Both are file
/// names without their folder.
std::int32_t ViewNumberOf(std::string_view fileName, std::string_view templateName, const CodePage& page);

/// Folder of an application's archives.
Text ArchivesOf(std::string_view templatePath, char delimiter);

/// Name for a folder that may become an archive, and is none yet; nobody can foresee it.
Text UnfinishedArchiveName();
/// Whether a folder has such a name.
bool IsUnfinishedArchive(std::string_view folderName) noexcept;
/// Name for a new text that waits for the turn of its file, beside it; nobody can foresee it.
Text WaitingName(std::string_view fileName);
/// Name of the file that a file of such a name waits for; empty for any other name.
std::string_view WaitsFor(std::string_view fileName) noexcept;

}  // namespace kd::names
