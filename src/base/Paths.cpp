#include "base/Paths.h"

namespace kd::paths {

namespace {

bool IsDelimiter(char c) noexcept {
    return c == '/' || c == '\\';
}

/// Offset of the file name in a path.
std::size_t NameOffset(std::string_view path) noexcept {
    std::size_t offset = path.size();
    while (offset > 0 && !IsDelimiter(path[offset - 1])) {
        --offset;
    }
    return offset;
}

/// Offset of the extension's dot; npos where there is none.
std::size_t ExtensionOffset(std::string_view path) noexcept {
    const auto dot = path.find_last_of('.');
    return dot < NameOffset(path) ? std::string_view::npos : dot;
}

}  // namespace

std::string_view Folder(std::string_view path) noexcept {
    const auto name = NameOffset(path);
    return name == 0 ? std::string_view() : path.substr(0, name - 1);
}

Text FolderToList(std::string_view path) {
    return NameOffset(path) == 0 ? Text(1, '.') : Text(Folder(path));
}

std::string_view FileName(std::string_view path) noexcept {
    return path.substr(NameOffset(path));
}

std::string_view BaseName(std::string_view path) noexcept {
    return FileName(path.substr(0, ExtensionOffset(path)));
}

Text ChangeExtension(std::string_view path, std::string_view extension) {
    Text result(path.substr(0, ExtensionOffset(path)));
    result += extension;
    return result;
}

Text InFolder(std::string_view folder, std::string_view name, char delimiter) {
    Text result(folder);
    if (result.empty() || !IsDelimiter(result.back())) {
        result += delimiter;
    }
    result += name;
    return result;
}

}  // namespace kd::paths
