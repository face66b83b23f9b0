#pragma once

#include "base/Text.h"

/// Paths as text. Both "\" and "/" end a folder on every platform; `delimiter` is the one that is written.
namespace kd::paths {

/// Everything before the last delimiter; empty when there is none. No delimiter at its end.
std::string_view Folder(std::string_view path) noexcept;
/// The same for a folder that is listed or flushed: "." for a path without one. The root stays empty.
Text FolderToList(std::string_view path);
/// Everything behind the last delimiter.
std::string_view FileName(std::string_view path) noexcept;
/// The file name without its extension.
std::string_view BaseName(std::string_view path) noexcept;
/// The path with the extension of its file name replaced by `extension` (with its leading dot; it may hold
/// further dots), or with it added where there is none. The extension begins at the last "." of the file
/// name; a name such as ".kdt" is all extension.
Text ChangeExtension(std::string_view path, std::string_view extension);
/// The path of `name` in `folder`: the two with one delimiter between. A folder that ends in a delimiter gets
/// no second one.
Text InFolder(std::string_view folder, std::string_view name, char delimiter);

}  // namespace kd::paths
