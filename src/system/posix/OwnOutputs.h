#pragma once

#include <memory>
#include <vector>

#include "platform/Files.h"

namespace kd::posix {

/// The files that this program has open for output. A drive without locks keeps nothing, and then nothing
/// else tells that one of them comes by a second name: what waits in it would be written over.
class OwnOutputs {
public:
    bool IsOpen(const FileIdentity& file) const noexcept;
    /// Whether a file is one that this program has let go, and in the state in which it has: nobody has
    /// written it since.
    bool IsLetGo(const FileState& file) const noexcept;
    /// It is gone, and another file may be given its identity.
    void Forget(const FileIdentity& file) noexcept;

private:
    friend class OwnOutput;
    std::vector<FileIdentity> m_open;
    std::vector<FileState> m_letGo;
};

/// One of them, until the end of the scope.
class OwnOutput {
public:
    /// No file.
    OwnOutput() = default;
    OwnOutput(std::shared_ptr<OwnOutputs> all, const FileIdentity& file);
    ~OwnOutput();
    OwnOutput(const OwnOutput&) = delete;
    OwnOutput& operator=(const OwnOutput&) = delete;
    OwnOutput(OwnOutput&&) = default;
    OwnOutput& operator=(OwnOutput&&) = delete;

    /// Open for output no longer, and left in that state.
    void LetGo(const FileState& left) noexcept;

private:
    std::shared_ptr<OwnOutputs> m_all;  // which may outlive the files that it is of
    FileIdentity m_file;
};

}  // namespace kd::posix
