#pragma once

#include <memory>
#include <string>

#include "platform/Files.h"

namespace kd {

/// A folder with nothing in it, behind one implementation of Files, and what the interface cannot do with it.
class FilesScene {
public:
    FilesScene() = default;
    virtual ~FilesScene() = default;
    FilesScene(const FilesScene&) = delete;
    FilesScene& operator=(const FilesScene&) = delete;

    virtual Files& GetFiles() = 0;
    virtual Text Folder() const = 0;
    /// Whether a name in another case may stand beside the file.
    virtual bool TellsCaseApart() const = 0;
    virtual void SetReadOnly(const Text& path) = 0;
    virtual bool IsReadOnly(const Text& path) const = 0;
    /// Puts what is neither a file nor a folder at the path, or gives the path of such a thing of its own.
    virtual Text MakeSpecial(const Text& path) = 0;
};

std::unique_ptr<FilesScene> SceneInMemory();
std::unique_ptr<FilesScene> SceneOnDisk();

}  // namespace kd
