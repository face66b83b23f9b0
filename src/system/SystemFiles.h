#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/CodePage.h"
#include "platform/Files.h"

#ifndef _WIN32
struct stat;
#endif

namespace kd {

#ifdef _WIN32
namespace windows {
class Unsettled;
}
#else
namespace posix {
class Descriptor;
struct KeptFolders;
class OwnOutputs;
class Unsettled;
}  // namespace posix
#endif

/// The files of the operating system. Paths are UTF-8.
class SystemFiles : public Files {
public:
    /// `page` tells which letters are the same but for their case. From the first one on, a file beyond the
    /// user's limit of size is a failure (errDiskFull), no longer the end of the process, unless the program
    /// has an answer of its own to that signal.
    explicit SystemFiles(const CodePage& page);
    ~SystemFiles() override;

    char Delimiter() const override;
    bool Exists(std::string_view path) override;
    bool IsRegularFile(std::string_view path) override;
    std::string Read(std::string_view path) override;
    void Read(std::string_view path, std::string& bytes) override;
    using Files::OpenForOutput;
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path, Patience patience) override;
    std::unique_ptr<OutputFile> OpenForAppend(std::string_view path) override;
    void CopyFile(std::string_view source, std::string_view target) override;
#ifndef _WIN32
    std::string ReadEnd(std::string_view path, std::size_t count) override;
    void MoveOver(std::string_view source, std::string_view target) override;
#endif
    [[nodiscard]] bool MoveSettled(std::string_view source, std::string_view target,
                                   const FileState& seen) override;
    [[nodiscard]] std::vector<cError> TrySettle() override;
#ifdef _WIN32
    bool SettlesTogether() const noexcept override {
        return false;
    }  // a plain user cannot flush a volume
#endif
    void DeleteFile(std::string_view path) override;
    void DeleteAbandoned(std::string_view path) noexcept override;
#ifndef _WIN32
    void DeleteLeftover(std::string_view path) noexcept override;
#endif
    void ReplaceFile(std::string_view path, std::string_view bytes) override;
    std::vector<Text> FolderEntries(std::string_view folder) override;
    void MakeFolder(std::string_view folder) override;
#ifdef _WIN32  // no lock tells there whether a folder is kept: every one stays
    void MakeKeptFolder(std::string_view folder) override {
        MakeFolder(folder);
    }
    void DeleteAbandonedFolder(std::string_view /*folder*/) noexcept override {}
#else
    void MakeKeptFolder(std::string_view folder) override;
    void DeleteAbandonedFolder(std::string_view folder) noexcept override;
#endif
    void CopyForArchive(std::string_view source, std::string_view target) override;
#ifndef _WIN32
    void CopyAllForArchive(const std::vector<Text>& sources, std::string_view folder) override;
#endif
    void Rename(std::string_view from, std::string_view to) override;
    void FlushFolder(std::string_view folder) override;
    void RemoveFolder(std::string_view folder) override;
    void RemoveEmptyFolder(std::string_view folder) noexcept override;

private:
#ifndef _WIN32  // there the file system itself looks regardless of case
    /// The path as it stands where it exists; else that of the file in its folder whose name differs only in
    /// case; else the path as it stands.
    /// @throws cError of `operation` where the folder could not be looked through.
    Text Resolved(const char* operation, std::string_view path) const;
    /// What is known of the file that is meant, and whether anything is.
    bool StatusOf(std::string_view path, struct stat& status) const;
    /// The regular file that is meant, open for reading; `status` tells about it.
    posix::Descriptor OpenToRead(std::string_view path, struct stat& status) const;
#endif

    [[maybe_unused]] const CodePage& m_page;
#ifdef _WIN32
    std::unique_ptr<windows::Unsettled> m_unsettled;
#else
    std::unique_ptr<posix::Unsettled> m_unsettled;
    std::unique_ptr<posix::KeptFolders> m_keptFolders;
    std::shared_ptr<posix::OwnOutputs> m_ownOutputs;
#endif
};

}  // namespace kd
