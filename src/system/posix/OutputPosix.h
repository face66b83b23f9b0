#pragma once

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/Files.h"
#include "system/posix/FilesPosix.h"
#include "system/posix/ReplacePosix.h"
#include "system/posix/UnsettledPosix.h"

namespace kd::posix {

/// A file of the system, open for writing.
class PosixOutput : public OutputFile {
public:
    enum class Kind { Fresh, Appended };

    /// `lock` is a second descriptor of a file that is kept from others as long as the object lives or until
    /// it lets them in. `otherName` is for the path of TakeRightsOf.
    PosixOutput(Unsettled& unsettled, Descriptor file, Text path, Kind kind, Descriptor lock = Descriptor(),
                OtherName otherName = {})
        : m_unsettled(unsettled),
          m_file(std::move(file)),
          m_lock(std::move(lock)),
          m_path(std::move(path)),
          m_kind(kind),
          m_otherName(std::move(otherName)) {}

    void Write(std::string_view bytes) override {
        std::size_t written = 0;
        if (const int code = WriteAll(m_file.Get(), bytes, written); code != 0) {
            if (m_kind == Kind::Appended && written > 0) {
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
        }
        Close();
    }
    FileState TakeRightsOf(std::string_view path) noexcept override {
        return TakeOverRightsOf(m_file.Get(), path, m_otherName);
    }

    void Unlock() noexcept override {
        if (m_lock.IsOpen()) {
            (void)::flock(m_lock.Get(), LOCK_UN);  // fails for a descriptor that is none only
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
    Descriptor m_lock;
    Text m_path;
    Kind m_kind;
    OtherName m_otherName;
};

}  // namespace kd::posix
