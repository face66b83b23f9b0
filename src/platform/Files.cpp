#include "platform/Files.h"

#include <algorithm>

#include "base/Paths.h"

namespace kd {

std::string Files::ReadEnd(std::string_view path, std::size_t count) {
    std::string bytes = Read(path);
    bytes.erase(0, bytes.size() - std::min(bytes.size(), count));
    return bytes;
}

void Files::MoveOver(std::string_view source, std::string_view target) {
    CopyFile(source, target);
    DeleteFile(source);
}

void Files::Settle() {
    if (const std::vector<cError> failures = TrySettle(); !failures.empty()) {
        throw cError(failures.front());
    }
}

void Files::CopyAllForArchive(const std::vector<Text>& sources, std::string_view folder) {
    for (const Text& source : sources) {
        try {
            CopyForArchive(source, paths::InFolder(folder, paths::FileName(source), Delimiter()));
        } catch (const cError& error) {
            throw cError(error.Number(), error.Source(), error.Description(), source);
        }
        LiveOn();
    }
}

}  // namespace kd
