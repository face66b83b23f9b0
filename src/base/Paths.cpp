#include "base/Paths.h"

namespace kd::paths {

namespace {

constexpr std::string_view Delimiters = "\\/";

/// Offset of the file name in a path.
std::size_t NameOffset(std::string_view path) noexcept {
    const auto last = path.find_last_of(Delimiters);
    return last == std::string_view::npos ? 0 : last + 1;
}

/// Offset of the extension's dot, or the path's size where there is none.
std::size_t ExtensionOffset(std::string_view path) noexcept {
    const auto dot = path.find_last_of('.');
    return dot == std::string_view::npos || dot < NameOffset(path) ? path.size() : dot;
}

}  // namespace

std::string_view Folder(std::string_view path) noexcept {
    const auto name = NameOffset(path);
    return name == 0 ? std::string_view() : path.substr(0, name - 1);
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

Text Join(std::string_view folder, std::string_view name, char delimiter) {
    Text result(folder);
    if (result.empty() || Delimiters.find(result.back()) == std::string_view::npos) {
        result += delimiter;
    }
    result += name;
    return result;
}

}  // namespace kd::paths
