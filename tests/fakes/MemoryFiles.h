#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/CodePage.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// A file system in memory, which keeps the contract of Files (FilesContractTest). The root always exists,
/// and what a test puts somewhere makes the folders above it. Names are told apart by case. Every operation
/// that can fail counts; FailAt makes the n-th one fail.
class MemoryFiles : public Files {
public:
    struct Entry {
        std::string bytes;
        bool readOnly = false;
        bool unreadable = false;
        bool special = false;              // a FIFO or device in a file's place
        const OutputFile* lock = nullptr;  // who keeps it from another OpenForOutput
    };

    // --- for tests
    // ------------------------------------------------------------------------------------------

    void Put(const Text& path, std::string bytes) {
        AddFolder(paths::Folder(path));
        m_files[path] = Entry{std::move(bytes)};
    }
    void PutSpecial(const Text& path) {
        Put(path, {});
        m_files[path].special = true;
    }
    bool IsReadOnly(const Text& path) const { return m_files.at(path).readOnly; }
    void SetReadOnly(const Text& path, bool value = true) { m_files[path].readOnly = value; }
    void SetUnreadable(const Text& path) { m_files[path].unreadable = true; }
    bool Has(const Text& path) const { return m_files.count(path) != 0; }
    std::string Get(const Text& path) const {
        const auto found = m_files.find(path);
        return found == m_files.end() ? std::string() : found->second.bytes;
    }
    void Erase(const Text& path) { m_files.erase(path); }
    std::vector<Text> Paths() const {
        std::vector<Text> paths;
        for (const auto& [path, entry] : m_files) {
            paths.push_back(path);
        }
        return paths;
    }
    /// The operation with that number, from 1 and counted from now on, fails; later ones work unless
    /// `forGood`.
    void FailAt(int operation, std::int32_t number = errDevice, bool forGood = false) {
        m_failAt = operation;
        m_failNumber = number;
        m_failForGood = forGood;
        m_operations = 0;
    }
    /// Every operation of that name ("CopyFile", "Write", ...) on a path that ends in `ending` fails.
    void FailOn(const Text& operation, const Text& ending, std::int32_t number) {
        m_failOn.push_back({operation, ending, number});
    }
    /// What a TrySettle that fails tells besides.
    std::vector<cError> alsoUnsettled;
    bool settlesTogether = true;
    /// Called with "Operation path" before each operation; what it throws is the operation's failure.
    std::function<void(const Text&)> onStep;
    void FailNoMore() {
        m_failAt = 0;
        m_failOn.clear();
    }
    /// Operations since the last FailAt.
    int Operations() const { return m_operations; }
    /// "Operation path", in order.
    const std::vector<Text>& Log() const { return m_log; }
    void ClearLog() { m_log.clear(); }
    int OpenFiles() const { return m_open; }
    /// Files that were closed for settling since the last Settle.
    const std::set<Text>& Unsettled() const { return m_unsettled; }

    // --- Files
    // ----------------------------------------------------------------------------------------------

    char Delimiter() const override { return '/'; }
    bool Exists(std::string_view path) override {
        return !path.empty() && (Find(path) != m_files.end() || IsFolder(path));
    }
    bool IsRegularFile(std::string_view path) override {
        const auto found = Find(path);
        return found != m_files.end() && !found->second.special;
    }
    using Files::Read;
    std::string Read(std::string_view path) override {
        Step("Read", path);
        return Readable("Read", path)->second.bytes;
    }
    using Files::OpenForOutput;
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path, Patience) override {
        Step("OpenForOutput", path);
        CheckFolder(path);
        const auto found = m_files.find(Text(path));
        CheckWritable("OpenForOutput", found, path);
        if (found != m_files.end() && found->second.lock != nullptr) {
            throw cError(errFileAlreadyOpen, "MemoryFiles.OpenForOutput", {}, Text(path));
        }
        auto output = std::make_unique<Output>(*this, Text(path));
        Entry emptied;
        emptied.lock = output.get();
        m_files[Text(path)] = std::move(emptied);
        return output;
    }
    std::unique_ptr<OutputFile> OpenForAppend(std::string_view path) override {
        Step("OpenForAppend", path);
        const auto found = Find(path);
        CheckWritable("OpenForAppend", found, path);
        if (found == m_files.end()) {
            CheckFolder(path);
            m_files[Text(path)] = Entry{};
            return std::make_unique<Output>(*this, Text(path));
        }
        return std::make_unique<Output>(*this, found->first);
    }
    void CopyFile(std::string_view source, std::string_view target) override {
        Step("CopyFile", target);
        const auto from = Readable("CopyFile", source);
        ReplaceWhole("CopyFile", target, from->second.bytes);
    }
    void DeleteFile(std::string_view path) override {
        Step("DeleteFile", path);
        const auto found = Existing("DeleteFile", path);
        CheckWritable("DeleteFile", found, path);
        m_files.erase(found);
    }
    void ReplaceFile(std::string_view path, std::string_view bytes) override {
        Step("ReplaceFile", path);
        ReplaceWhole("ReplaceFile", path, std::string(bytes));
    }
    std::vector<Text> FolderEntries(std::string_view folder) override {
        Step("FolderEntries", folder);
        NeedFolder("FolderEntries", folder);
        std::set<Text> names;
        const Text prefix = Text(Bare(folder)) + "/";
        const auto take = [&](const Text& path) {
            if (path.rfind(prefix, 0) == 0) {
                names.insert(path.substr(prefix.size(), path.find('/', prefix.size()) - prefix.size()));
            }
        };
        for (const auto& [path, entry] : m_files) {
            take(path);
        }
        for (const Text& path : m_folders) {
            take(path);
        }
        return {names.begin(), names.end()};
    }
    void MakeFolder(std::string_view folder) override {
        Step("MakeFolder", folder);
        for (std::string_view at = Bare(folder); !at.empty(); at = paths::Folder(at)) {
            if (m_files.count(Text(at)) != 0) {
                throw cError(errPermissionDenied, "MemoryFiles.MakeFolder", {}, Text(folder));
            }
        }
        AddFolder(Bare(folder));
    }
    void MakeKeptFolder(std::string_view folder) override {
        MakeFolder(folder);
        m_kept.insert(Text(folder));
    }
    void CopyForArchive(std::string_view source, std::string_view target) override {
        Step("CopyForArchive", target);
        const auto from = Readable("CopyForArchive", source);
        CheckFolder(target);
        if (m_files.count(Text(target)) != 0 || IsFolder(target)) {
            throw cError(errDevice, "MemoryFiles.CopyForArchive", {}, Text(target));
        }
        m_files[Text(target)] = Entry{from->second.bytes, from->second.readOnly};
    }
    void Rename(std::string_view from, std::string_view to) override {
        Step("Rename", from);
        const Text oldName(from);
        const Text newName(to);
        if (m_files.count(oldName) == 0 && !IsFolder(oldName)) {
            throw cError(errFileNotFound, "MemoryFiles.Rename", {}, oldName);
        }
        CheckFolder(newName);
        if (m_files.count(newName) != 0 || !IsEmptyBelow(newName)) {
            throw cError(errPermissionDenied, "MemoryFiles.Rename", {}, newName);
        }
        std::map<Text, Entry> files;
        for (auto& [path, entry] : m_files) {
            files[Renamed(path, oldName, newName)] = std::move(entry);
        }
        m_files = std::move(files);
        std::set<Text> folders;
        for (const Text& path : m_folders) {
            folders.insert(Renamed(path, oldName, newName));
        }
        m_folders = std::move(folders);
        m_kept.erase(oldName);
    }
    void FlushFolder(std::string_view folder) override {
        Step("FlushFolder", folder);
        NeedFolder("FlushFolder", folder);
    }
    [[nodiscard]] std::vector<cError> TrySettle() override {
        m_unsettled.clear();
        try {
            Step("Settle", "");
            return {};
        } catch (const cError& error) {
            std::vector<cError> failures{error};
            failures.insert(failures.end(), alsoUnsettled.begin(), alsoUnsettled.end());
            return failures;
        }
    }
    [[nodiscard]] bool MoveSettled(std::string_view source, std::string_view target,
                                   const FileState& seen) override {
        return StateOf(target) == seen && Files::MoveSettled(source, target, seen);
    }
    bool SettlesTogether() const noexcept override { return settlesTogether; }
    void DeleteAbandoned(std::string_view path) noexcept override {
        const auto found = m_files.find(Text(path));
        if (found != m_files.end() && !found->second.special && !found->second.readOnly &&
            found->second.lock == nullptr) {
            m_files.erase(found);
        }
    }
    void RemoveEmptyFolder(std::string_view folder) noexcept override {
        if (const Text path(folder); IsEmptyBelow(path)) {
            m_folders.erase(path);
        }
    }
    void DeleteAbandonedFolder(std::string_view folder) noexcept override {
        if (m_kept.count(Text(folder)) != 0) {
            return;
        }
        const Text prefix = Text(folder) + "/";
        std::erase_if(m_files, [&](const auto& file) { return file.first.starts_with(prefix); });
        std::erase_if(m_folders,
                      [&](const Text& path) { return path == folder || path.starts_with(prefix); });
    }
    void RemoveFolder(std::string_view folder) override {
        Step("RemoveFolder", folder);
        m_kept.erase(Text(folder));
        const Text prefix = Text(folder) + "/";
        std::erase_if(m_files, [&](const auto& file) {
            return file.first == folder || file.first.rfind(prefix, 0) == 0;
        });
        std::erase_if(m_folders,
                      [&](const Text& path) { return path == folder || path.rfind(prefix, 0) == 0; });
    }

private:
    using Iterator = std::map<Text, Entry>::iterator;

    class Output final : public OutputFile {
    public:
        Output(MemoryFiles& files, Text path) : m_memory(files), m_path(std::move(path)) {
            ++m_memory.m_open;
        }
        ~Output() override {
            Unlock();
            if (m_isOpen) {
                --m_memory.m_open;
            }
        }
        void Write(std::string_view bytes) override {
            m_memory.Step("Write", m_path);
            if (const auto file = m_memory.m_files.find(m_path); file != m_memory.m_files.end()) {
                file->second.bytes += bytes;
            }
        }
        void Flush() override { m_memory.Step("Flush", m_path); }
        FileState TakeRightsOf(std::string_view path) noexcept override { return m_memory.StateOf(path); }
        void CloseForSettling() override {
            m_memory.m_unsettled.insert(m_path);
            Close();
        }
        void Close() override {
            if (m_isOpen) {
                m_isOpen = false;
                --m_memory.m_open;
                m_memory.Step("Close", m_path);
            }
        }
        void Unlock() noexcept override {
            for (auto& [path, entry] : m_memory.m_files) {
                if (entry.lock == this) {
                    entry.lock = nullptr;
                }
            }
        }

    private:
        MemoryFiles& m_memory;
        Text m_path;
        bool m_isOpen = true;
    };

    struct Failing {
        Text operation;
        Text ending;
        std::int32_t number;
    };

    void Step(const Text& operation, std::string_view path) {
        m_log.push_back(operation + " " + Text(path));
        if (onStep) {
            onStep(m_log.back());
        }
        ++m_operations;
        if (m_failAt > 0 && (m_operations == m_failAt || (m_failForGood && m_operations > m_failAt))) {
            throw cError(m_failNumber, "MemoryFiles." + operation, {}, Text(path));
        }
        for (const Failing& failing : m_failOn) {
            if (failing.operation == operation && path.ends_with(failing.ending)) {
                throw cError(failing.number, "MemoryFiles." + operation, {}, Text(path));
            }
        }
    }
    Iterator Find(std::string_view path) {
        const auto found = m_files.find(Text(path));
        if (found != m_files.end()) {
            return found;
        }
        const CodePage& page = CodePage::Of(1252);
        const Text upper = page.Upper(path);
        return std::find_if(m_files.begin(), m_files.end(), [&](const auto& file) {
            return file.first.size() == path.size() && paths::Folder(file.first) == paths::Folder(path) &&
                   page.Upper(file.first) == upper;
        });
    }
    FileState StateOf(std::string_view path) {
        const auto found = Find(path);
        if (found == m_files.end()) {
            return {};
        }
        const std::string& bytes = found->second.bytes;
        return {{1, std::hash<Text>()(found->first)},
                bytes.size(),
                static_cast<std::int64_t>(std::hash<std::string>()(bytes))};
    }
    Iterator Existing(const Text& operation, std::string_view path) {
        const auto found = Find(path);
        if (found == m_files.end()) {
            const bool isFolder = !path.empty() && IsFolder(path);
            throw cError(isFolder                        ? errPermissionDenied
                         : IsFolder(paths::Folder(path)) ? errFileNotFound
                                                         : errPathNotFound,
                         "MemoryFiles." + operation, {}, Text(path));
        }
        return found;
    }
    Iterator Readable(const Text& operation, std::string_view path) {
        const auto found = Existing(operation, path);
        if (found->second.special || found->second.unreadable) {
            throw cError(errPermissionDenied, "MemoryFiles." + operation, {}, Text(path));
        }
        return found;
    }
    /// The path without a delimiter at its end.
    static std::string_view Bare(std::string_view path) {
        return path.ends_with('/') ? path.substr(0, path.size() - 1) : path;
    }
    /// The folder and all above it.
    void AddFolder(std::string_view folder) {
        for (; !folder.empty(); folder = paths::Folder(folder)) {
            m_folders.insert(Text(folder));
        }
    }
    bool IsFolder(std::string_view path) const {
        return Bare(path).empty() || m_folders.count(Text(Bare(path))) != 0;
    }
    bool IsEmptyBelow(const Text& folder) const {
        const auto isBelow = [&](const Text& path) { return path.starts_with(folder + "/"); };
        return std::none_of(m_files.begin(), m_files.end(),
                            [&](const auto& file) { return isBelow(file.first); }) &&
               std::none_of(m_folders.begin(), m_folders.end(), isBelow);
    }
    void NeedFolder(const Text& operation, std::string_view folder) const {
        if (!IsFolder(folder)) {
            throw cError(errPathNotFound, "MemoryFiles." + operation, {}, Text(folder));
        }
    }
    void CheckFolder(std::string_view path) const {
        if (!IsFolder(paths::Folder(path))) {
            throw cError(errPathNotFound, "MemoryFiles.CheckFolder", {}, Text(path));
        }
    }
    void CheckWritable(const Text& operation, Iterator file, std::string_view path) const {
        const bool isRefused = file == m_files.end() ? !path.empty() && IsFolder(path)
                                                     : file->second.readOnly || file->second.special;
        if (isRefused) {
            throw cError(errPermissionDenied, "MemoryFiles." + operation, {}, Text(path));
        }
    }
    void ReplaceWhole(const Text& operation, std::string_view target, std::string bytes) {
        const auto found = Find(target);
        CheckWritable(operation, found, target);
        if (found == m_files.end()) {
            CheckFolder(target);
            Put(Text(target), std::move(bytes));
            return;
        }
        found->second.bytes = std::move(bytes);
    }
    static Text Renamed(const Text& path, const Text& from, const Text& to) {
        return path == from || path.rfind(from + "/", 0) == 0 ? to + path.substr(from.size()) : path;
    }

    std::map<Text, Entry> m_files;
    std::set<Text> m_folders;
    std::set<Text> m_kept;  // folders that are being filled
    std::set<Text> m_unsettled;
    std::vector<Text> m_log;
    std::vector<Failing> m_failOn;
    int m_operations = 0;
    int m_failAt = 0;
    std::int32_t m_failNumber = errDevice;
    bool m_failForGood = false;
    int m_open = 0;
};

}  // namespace kd
