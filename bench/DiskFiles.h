#pragma once

#include "platform/Files.h"

namespace kd::bench {

/// What a load and a save need of the disk, and no more: the benchmark owns its files, so that nobody else's
/// rights, links or case of names matter. Every other operation throws.
class DiskFiles : public Files {
public:
    using Files::Read;

    char Delimiter() const override { return '/'; }
    bool Exists(std::string_view path) override;
    bool IsRegularFile(std::string_view path) override;
    std::string Read(std::string_view path) override;
    void Read(std::string_view path, std::string& bytes) override;
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path) override;
    void CopyFile(std::string_view source, std::string_view target) override;
    void DeleteFile(std::string_view path) override;

    std::unique_ptr<OutputFile> OpenForAppend(std::string_view path) override;
    void ReplaceFile(std::string_view path, std::string_view bytes) override;
    std::vector<Text> FolderEntries(std::string_view folder) override;
    void MakeFolder(std::string_view folder) override;
    void CopyForArchive(std::string_view source, std::string_view target) override;
    void Rename(std::string_view from, std::string_view to) override;
    void FlushFolder(std::string_view folder) override;
    void RemoveFolder(std::string_view folder) override;
};

}  // namespace kd::bench
