#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/cError.h"
#include "platform/Files.h"

namespace kd {

/// Any file service with a fault in it: counts every operation, the questions that never raise too, and makes
/// the n-th fail in a chosen way. A question that fails answers no.
class FailingFiles : public Files {
public:
    enum class Kind : std::uint8_t {
        NotFound,
        PathNotFound,
        PermissionDenied,
        DiskFull,
        ShortWrite,  // half of what is written arrives, then the disk is full
        Device,
        DoneAndDevice,  // the work is done, and its failure told all the same
    };
    static constexpr Kind Kinds[] = {Kind::NotFound,     Kind::PathNotFound, Kind::PermissionDenied,
                                     Kind::DiskFull,     Kind::ShortWrite,   Kind::Device,
                                     Kind::DoneAndDevice};

    static std::int32_t NumberOf(Kind kind) {
        switch (kind) {
            case Kind::NotFound:
                return errFileNotFound;
            case Kind::PathNotFound:
                return errPathNotFound;
            case Kind::PermissionDenied:
                return errPermissionDenied;
            case Kind::DiskFull:
            case Kind::ShortWrite:
                return errDiskFull;
            case Kind::Device:
            case Kind::DoneAndDevice:
                break;
        }
        return errDevice;
    }

    struct Step {
        Text operation;
        Text path;
        bool failed = false;
    };

    explicit FailingFiles(Files& disk) : m_disk(disk) {}

    /// The operation with that number, from 1 and counted from now on, fails; later ones work unless
    /// `forGood`.
    void FailAt(int operation, Kind kind, bool forGood) {
        m_steps.clear();
        m_failAt = operation;
        m_kind = kind;
        m_forGood = forGood;
    }
    void FailNoMore() { m_failAt = 0; }
    /// Since the last FailAt, in order.
    const std::vector<Step>& Steps() const { return m_steps; }
    /// Runs after each operation.
    std::function<void(const Step&)> OnDone;
    /// Runs before each operation.
    std::function<void()> OnBegin;

    // --- Files
    // ----------------------------------------------------------------------------------------------

    char Delimiter() const override { return m_disk.Delimiter(); }
    bool Exists(std::string_view path) override {
        return Ask("Exists", path, [&] { return m_disk.Exists(path); });
    }
    bool IsRegularFile(std::string_view path) override {
        return Ask("IsRegularFile", path, [&] { return m_disk.IsRegularFile(path); });
    }
    using Files::Read;
    std::string Read(std::string_view path) override {
        std::string bytes;
        Do("Read", path, [&] { bytes = m_disk.Read(path); });
        return bytes;
    }
    using Files::OpenForOutput;
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path, Patience patience) override {
        std::unique_ptr<OutputFile> file;
        Do("OpenForOutput", path, [&] { file = m_disk.OpenForOutput(path, patience); });
        return std::make_unique<Output>(*this, std::move(file), Text(path));
    }
    std::unique_ptr<OutputFile> OpenForAppend(std::string_view path) override {
        std::unique_ptr<OutputFile> file;
        Do("OpenForAppend", path, [&] { file = m_disk.OpenForAppend(path); });
        return std::make_unique<Output>(*this, std::move(file), Text(path));
    }
    void CopyFile(std::string_view source, std::string_view target) override {
        Do("CopyFile", target, [&] { m_disk.CopyFile(source, target); });
    }
    void DeleteAbandoned(std::string_view path) noexcept override {
        (void)Ask("DeleteAbandoned", path, [&] {
            m_disk.DeleteAbandoned(path);
            return true;
        });
    }
    [[nodiscard]] std::vector<cError> TrySettle() override {
        std::vector<cError> failures;
        try {
            Do("Settle", "", [&] { failures = m_disk.TrySettle(); });
        } catch (const cError& error) {
            failures.push_back(error);
        }
        return failures;
    }
    bool SettlesTogether() const noexcept override { return m_disk.SettlesTogether(); }
    void DeleteFile(std::string_view path) override {
        Do("DeleteFile", path, [&] { m_disk.DeleteFile(path); });
    }
    void ReplaceFile(std::string_view path, std::string_view bytes) override {
        Do("ReplaceFile", path, [&] { m_disk.ReplaceFile(path, bytes); });
    }
    std::vector<Text> FolderEntries(std::string_view folder) override {
        std::vector<Text> names;
        Do("FolderEntries", folder, [&] { names = m_disk.FolderEntries(folder); });
        return names;
    }
    void MakeFolder(std::string_view folder) override {
        Do("MakeFolder", folder, [&] { m_disk.MakeFolder(folder); });
    }
    void CopyForArchive(std::string_view source, std::string_view target) override {
        Do("CopyForArchive", source, [&] { m_disk.CopyForArchive(source, target); });
    }
    void Rename(std::string_view from, std::string_view to) override {
        Do("Rename", from, [&] { m_disk.Rename(from, to); });
    }
    void FlushFolder(std::string_view folder) override {
        Do("FlushFolder", folder, [&] { m_disk.FlushFolder(folder); });
    }
    void RemoveEmptyFolder(std::string_view folder) noexcept override { m_disk.RemoveEmptyFolder(folder); }
    void DeleteAbandonedFolder(std::string_view folder) noexcept override {
        m_disk.DeleteAbandonedFolder(folder);
    }
    void MakeKeptFolder(std::string_view folder) override {
        Do("MakeFolder", folder, [&] { m_disk.MakeKeptFolder(folder); });
    }
    void RemoveFolder(std::string_view folder) override {
        Do("RemoveFolder", folder, [&] { m_disk.RemoveFolder(folder); });
    }

private:
    class Output : public OutputFile {
    public:
        Output(FailingFiles& files, std::unique_ptr<OutputFile> file, Text path)
            : m_files(files), m_file(std::move(file)), m_path(std::move(path)) {}
        void Write(std::string_view bytes) override {
            m_files.Do(
                "Write", m_path, [&] { m_file->Write(bytes); },
                [&] { m_file->Write(bytes.substr(0, bytes.size() / 2)); });
        }
        void Flush() override {
            m_files.Do("Flush", m_path, [&] { m_file->Flush(); });
        }
        void Close() override {
            // A close that fails has closed all the same.
            const auto close = [&] { m_file->Close(); };
            m_files.Do("Close", m_path, close, close);
        }
        void CloseForSettling() override {
            const auto close = [&] { m_file->CloseForSettling(); };
            m_files.Do("Close", m_path, close, close);
        }
        FileState TakeRightsOf(std::string_view path) noexcept override { return m_file->TakeRightsOf(path); }
        void Unlock() noexcept override { m_file->Unlock(); }

    private:
        FailingFiles& m_files;
        std::unique_ptr<OutputFile> m_file;
        Text m_path;
    };

    /// Begins a step; whether it fails.
    bool Begin(const char* operation, std::string_view path) {
        if (OnBegin) {
            OnBegin();
        }
        const int number = static_cast<int>(m_steps.size()) + 1;
        const bool fails = m_failAt > 0 && (number == m_failAt || (m_forGood && number > m_failAt));
        m_steps.push_back({operation, Text(path), fails});
        return fails;
    }
    void End() const {
        if (OnDone) {
            OnDone(m_steps.back());
        }
    }
    template <typename Action>
    bool Ask(const char* operation, std::string_view path, Action action) {
        const bool fails = Begin(operation, path);
        const bool answer = !fails && action();
        End();
        return answer;
    }
    template <typename Action>
    void Do(const char* operation, std::string_view path, Action action) {
        Do(operation, path, action, [] {});
    }
    /// `half` is what a failing one still does of it where it breaks off in the middle.
    template <typename Action, typename Half>
    void Do(const char* operation, std::string_view path, Action action, Half half) {
        if (!Begin(operation, path)) {
            action();
            End();
            return;
        }
        if (m_kind == Kind::DoneAndDevice) {
            action();
        } else if (m_kind == Kind::ShortWrite) {
            half();
        }
        End();
        throw cError(NumberOf(m_kind), Text("FailingFiles.") + operation, {}, Text(path));
    }

    Files& m_disk;
    std::vector<Step> m_steps;
    int m_failAt = 0;
    Kind m_kind = Kind::Device;
    bool m_forGood = false;
};

}  // namespace kd
