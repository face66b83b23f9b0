#pragma once

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "fakes/ErrorOf.h"
#include "system/SystemFiles.h"
#include "system/Waiting.h"
#include "system/posix/DrivePosix.h"
#include "system/posix/FilesPosix.h"

namespace kd {

/// The files of the system over a fresh temporary folder. No test waits: what stands between two attempts is
/// counted instead.
class SystemFilesTest : public testing::Test {
protected:
    SystemFilesTest() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kd-system-XXXXXX").string();
        folder = mkdtemp(pattern.data());
        (void)::chmod(folder.c_str(), 0755);
        pauses = 0;
        waiting::Pause = [](std::uint32_t) { ++pauses; };
    }
    ~SystemFilesTest() override {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, ignored)) {
            if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) {
                (void)::chmod(entry.path().c_str(), 0755);
            }
        }
        std::filesystem::remove_all(folder, ignored);
    }

    Text At(const Text& name) const { return folder + "/" + name; }
    Text Put(const Text& name, const std::string& bytes, mode_t mode = 0644) const {
        const Text path = At(name);
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        return path;
    }
    static std::string Get(const Text& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static struct stat Status(const Text& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status;
    }
    static mode_t Mode(const Text& path) { return Status(path).st_mode & 07777U; }
    /// Names in the folder; what a failed operation left behind is seen here.
    std::set<Text> Names() const {
        std::set<Text> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }
    /// Whether the drive of the folder is one that a single flush is enough for.
    bool IsFlushedAtOnce() const {
        const posix::Descriptor open(posix::Open(folder, O_RDONLY | O_DIRECTORY));
        return posix::OneFlushIsEnough(open.Get());
    }
    /// Whether the drive of the folder is one whose locks hold for all.
    bool IsOfThisMachine() const {
        const posix::Descriptor open(posix::Open(folder, O_RDONLY | O_DIRECTORY));
        return posix::LocksReachEverybody(open.Get());
    }
    Text MakeFifo(const Text& name) const {
        EXPECT_EQ(::mkfifo(At(name).c_str(), 0666), 0);
        return At(name);
    }
    Text MakeFolderAt(const Text& name) const {
        std::filesystem::create_directories(At(name));
        return At(name);
    }
    Text MakeLink(const Text& name, const Text& target) const {
        std::filesystem::create_symlink(target, At(name));
        return At(name);
    }

    static inline int pauses = 0;
    Text folder;
    SystemFiles files{CodePage::Of(1252)};
};

/// The process as a user without special rights, for the length of a scope. An ordinary user stays who he is.
class OrdinaryUser {
public:
    static constexpr uid_t Id = 65534;
    static bool CanSwitch() { return ::geteuid() == 0; }
    OrdinaryUser() {
        if (m_switched) {
            EXPECT_EQ(::setegid(Id), 0);
            EXPECT_EQ(::seteuid(Id), 0);
        }
    }
    ~OrdinaryUser() {
        if (m_switched) {
            EXPECT_EQ(::seteuid(0), 0);
            EXPECT_EQ(::setegid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    bool m_switched = CanSwitch();
};

/// The groups that a privileged process has besides its first one, for the length of a scope.
class FurtherGroups {
public:
    explicit FurtherGroups(const std::vector<gid_t>& groups)
        : m_before(static_cast<std::size_t>(::getgroups(0, nullptr))) {
        EXPECT_GE(::getgroups(static_cast<int>(m_before.size()), m_before.data()), 0);
        EXPECT_EQ(::setgroups(groups.size(), groups.data()), 0);
    }
    ~FurtherGroups() { EXPECT_EQ(::setgroups(m_before.size(), m_before.data()), 0); }
    FurtherGroups(const FurtherGroups&) = delete;
    FurtherGroups& operator=(const FurtherGroups&) = delete;

private:
    std::vector<gid_t> m_before;
};

}  // namespace kd
