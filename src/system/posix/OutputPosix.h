#pragma once

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/Files.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/OwnOutputs.h"
#include "system/posix/ReplacePosix.h"
#include "system/posix/UnsettledPosix.h"

namespace kd::posix {

/// What a file that is written anew has beside itself.
struct KeptOutput {
    Descriptor lock;  // a second one of a file that is kept from others as long as it is open here
    OwnOutput own;
    OtherName otherName;  // for the path of TakeRightsOf
};

/// A file of the system, open for writing.
class PosixOutput : public OutputFile {
public:
    enum class Kind { Fresh, Appended, MadeToAppend };

    /// `kept` is for a fresh one, which is kept as long as the object lives or until it lets others in.
    PosixOutput(Unsettled& unsettled, Descriptor file, Text path, Kind kind, KeptOutput kept = KeptOutput())
        : m_unsettled(unsettled),
          m_file(std::move(file)),
          m_kept(std::move(kept)),
          m_path(std::move(path)),
          m_kind(kind) {}

    void Write(std::string_view bytes) override {
        std::size_t written = 0;
        if (const int code = WriteAll(m_file.Get(), bytes, written); code != 0) {
            if (m_kind != Kind::Fresh && written > 0) {
                CutOff(written);
            }
            Raise("Write", m_path, code);
        }
    }
    void Flush() override {
        if (const int code = posix::Flush(m_file.Get()); code != 0) {
            Raise("Flush", m_path, code);
        }
    }
    void Close() override {
        if (const int code = m_file.Close(); code != 0) {
            Raise("Close", m_path, code);
        }
    }

    void CloseForSettling() override {
        if (m_kind == Kind::Fresh) {
            m_unsettled.AddInFolder(m_file.Get(), m_path);  // no link is ever written through
        } else {
            m_unsettled.AddOnce(m_file.Get(), m_path);
            if (m_kind == Kind::MadeToAppend) {
                m_unsettled.AddName(m_file.Get(), m_path);
            }
        }
        Close();
    }
    FileState TakeRightsOf(std::string_view path) noexcept override {
        return TakeOverRightsOf(m_file.Get(), path, m_kept.otherName);
    }

    void Unlock() noexcept override {
        struct stat left {};
        if (m_kept.lock.IsOpen()) {
            m_kept.own.LetGo(::fstat(m_kept.lock.Get(), &left) == 0 ? StateOf(left) : FileState());
            (void)::flock(m_kept.lock.Get(), LOCK_UN);  // fails for a descriptor that is none only
        }
    }

private:
    /// Takes half a record away again, which would spoil the next one, but nothing that another program has
    /// added behind it. The failure that left it is the one to tell.
    void CutOff(std::size_t written) const noexcept {
        struct stat status {};
        const off_t end = ::lseek(m_file.Get(), 0, SEEK_CUR);
        if (::fstat(m_file.Get(), &status) == 0 && status.st_size == end) {
            (void)CutAt(m_file.Get(), end - static_cast<off_t>(written));
        }
    }

    Unsettled& m_unsettled;
    Descriptor m_file;
    KeptOutput m_kept;
    Text m_path;
    Kind m_kind;
};

}  // namespace kd::posix
