#pragma once

#include <utility>

#include "platform/Files.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/UnsettledWindows.h"

namespace kd::windows {

/// A file of the system, open for writing.
class WindowsOutput : public OutputFile {
public:
    enum class Kind { Fresh, Appended };

    /// `lock` is a second handle of a file that is kept from others as long as the object lives or until it
    /// lets them in.
    WindowsOutput(Unsettled& unsettled, Handle file, Text path, Kind kind, Handle lock = Handle())
        : m_unsettled(unsettled),
          m_file(std::move(file)),
          m_lock(std::move(lock)),
          m_path(std::move(path)),
          m_kind(kind) {}

    void Write(std::string_view bytes) override {
        if (m_kind == Kind::Fresh) {
            Check("Write", WriteAll(m_file.Get(), bytes));
            return;
        }
        const AppendTurn turn(m_file.Get(), m_waits);
        m_waits = turn.IsTaken();  // one that has not come once would be waited for at every record
        FileStatus before;
        Check("Write", StatusOf(m_file.Get(), before));
        const Code code = AppendAll(m_file.Get(), bytes);
        if (code != 0) {
            // Half a record would spoil the next one that is added.
            (void)CutAt(m_file.Get(), before.size);  // the first failure is the one to tell
        }
        Check("Write", code);
    }
    void Flush() override { Check("Flush", windows::Flush(m_file.Get())); }
    void Close() override { Check("Close", m_file.Close()); }
    void CloseForSettling() override {
        if (m_kind == Kind::Appended) {
            m_unsettled.AddOnce(m_file.Get(), m_path);
        } else {
            m_ticket = m_unsettled.Add(m_file.Get(), m_path);
        }
        Close();
    }
    FileState TakeRightsOf(std::string_view path) noexcept override { return StateOf(path); }
    void Unlock() noexcept override {
        // Each handle keeps the file, and what was not written or settled by now never will be.
        m_unsettled.Forget(m_ticket);
        (void)m_lock.Close();
        (void)m_file.Close();
    }

private:
    void Check(const char* operation, Code code) const {
        if (code != 0) {
            Raise(operation, m_path, code);
        }
    }

    Unsettled& m_unsettled;
    Handle m_file;
    Handle m_lock;
    Text m_path;
    Kind m_kind;
    Unsettled::Ticket m_ticket = 0;
    bool m_waits = true;
};

}  // namespace kd::windows
