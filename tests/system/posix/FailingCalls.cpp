#include "system/posix/FailingCalls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>  // NOLINT(modernize-deprecated-headers): nanosleep is not in <ctime>
#ifdef __linux__
#include <sys/utsname.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace kd {

namespace {

FailingCalls* active = nullptr;

}  // namespace

FailingCalls::FailingCalls(int failAt, int code, bool forGood)
    : m_failAt(failAt), m_code(code), m_forGood(forGood) {
    active = this;
}

FailingCalls::~FailingCalls() {
    active = nullptr;
}

void FailingCalls::FailEach(const std::string& name, int code) {
    m_failing = name;
    m_failingCode = code;
}

void FailingCalls::Before(int call, std::function<void()> action) {
    m_actionAt = call;
    m_action = std::move(action);
}

void FailingCalls::Before(const std::string& name, std::function<void()> action) {
    m_actionBefore = name;
    m_action = std::move(action);
}

void FailingCalls::Act() {
    active = nullptr;
    m_actionBefore.clear();
    m_action();
    active = this;
}

int FailingCalls::Ask(const char* name) {
    if (active == nullptr) {
        return 0;
    }
    FailingCalls& calls = *active;
    const std::string asked = name;
    if (calls.m_stutters &&
        (asked == "read" || asked == "write" || asked == "fsync" || asked == "ftruncate")) {
        calls.m_interrupted = !calls.m_interrupted;
        if (calls.m_interrupted) {
            return EINTR;
        }
    }
    calls.m_calls.push_back(asked);
    if (static_cast<int>(calls.m_calls.size()) == calls.m_actionAt || asked == calls.m_actionBefore) {
        calls.Act();
    }
    if (asked == calls.m_failing) {
        return calls.m_failingCode;
    }
    const int number = static_cast<int>(calls.m_calls.size());
    const bool fails = number == calls.m_failAt || (calls.m_forGood && number > calls.m_failAt);
    return calls.m_failAt > 0 && fails ? calls.m_code : 0;
}

int FailingCalls::FailureOf(const std::string& name) {
    if (active != nullptr && active->m_actionBefore == name) {
        active->Act();
    }
    return active != nullptr && active->m_failing == name ? active->m_failingCode : 0;
}

void FailingCalls::NoteFlush(int fd) {
    std::string path(4096, '\0');
    const ssize_t size = active == nullptr ? -1
                                           : ::readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(),
                                                        path.data(), path.size());
    if (size > 0) {
        path.resize(static_cast<std::size_t>(size));
        active->m_flushed.push_back(std::move(path));
    }
}

bool FailingCalls::Stutters() {
    return active != nullptr && active->m_stutters;
}

}  // namespace kd

namespace {

template <typename Call>
Call* Real(const char* name) {
    return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

/// Whether the call has to fail; errno then says with what.
bool Fails(const char* name) {
    const int code = kd::FailingCalls::Ask(name);
    if (code != 0) {
        errno = code;
    }
    return code != 0;
}

/// The same for a call that is not counted.
bool FailsByName(const char* name) {
    const int code = kd::FailingCalls::FailureOf(name);
    if (code != 0) {
        errno = code;
    }
    return code != 0;
}

/// Part of what was asked for: every second transfer is cut short.
std::size_t Portion(std::size_t size) {
    return kd::FailingCalls::Stutters() ? std::min<std::size_t>(size, 7) : size;
}

}  // namespace

extern "C" {

ssize_t write(int fd, const void* bytes, size_t size) {
    static const auto real = Real<ssize_t(int, const void*, size_t)>("write");
    if (FailsByName("write nothing")) {  // no failure, and no byte either
        return 0;
    }
    return Fails("write") ? -1 : real(fd, bytes, Portion(size));
}

ssize_t read(int fd, void* bytes, size_t size) {
    static const auto real = Real<ssize_t(int, void*, size_t)>("read");
    return Fails("read") ? -1 : real(fd, bytes, Portion(size));
}

ssize_t pread(int fd, void* bytes, size_t size, off_t offset) {
    static const auto real = Real<ssize_t(int, void*, size_t, off_t)>("pread");
    return Fails("read") ? -1 : real(fd, bytes, Portion(size), offset);
}

int fsync(int fd) {
    static const auto real = Real<int(int)>("fsync");
    kd::FailingCalls::NoteFlush(fd);
    return Fails("fsync") ? -1 : real(fd);
}

#ifdef __linux__
// Not counted: it asks for the kind of file system, and touches none of its files.
int fstatfs(int fd, struct statfs* system) noexcept {
    static const auto real = Real<int(int, struct statfs*)>("fstatfs");
    return FailsByName("fstatfs") ? -1 : real(fd, system);
}

// Not counted either.
int uname(struct utsname* machine) noexcept {
    static const auto real = Real<int(struct utsname*)>("uname");
    return FailsByName("uname") ? -1 : real(machine);
}

int syncfs(int fd) noexcept {
    static const auto real = Real<int(int)>("syncfs");
    return Fails("syncfs") ? -1 : real(fd);
}
#endif

// Not counted: a drive has locks or has none.
int flock(int fd, int operation) noexcept {
    static const auto real = Real<int(int, int)>("flock");
    return FailsByName("flock") ? -1 : real(fd, operation);
}

#ifdef __linux__
// Not counted: a drive has lists of access rights or has none.
ssize_t fgetxattr(int fd, const char* name, void* value, size_t size) noexcept {
    static const auto real = Real<ssize_t(int, const char*, void*, size_t)>("fgetxattr");
    return FailsByName("fgetxattr") ? -1 : real(fd, name, value, size);
}

ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    static const auto real = Real<ssize_t(const char*, const char*, void*, size_t)>("getxattr");
    return FailsByName("getxattr") ? -1 : real(path, name, value, size);
}

int fremovexattr(int fd, const char* name) noexcept {
    static const auto real = Real<int(int, const char*)>("fremovexattr");
    return FailsByName("fremovexattr") ? -1 : real(fd, name);
}
#endif

// Not counted: a drive gives files away or does not.
int fchown(int fd, uid_t owner, gid_t group) noexcept {
    static const auto real = Real<int(int, uid_t, gid_t)>("fchown");
    return FailsByName("fchown") ? -1 : real(fd, owner, group);
}

// Not counted: it asks for the program's own path.
ssize_t readlink(const char* path, char* target, size_t size) noexcept {
    static const auto real = Real<ssize_t(const char*, char*, size_t)>("readlink");
    return FailsByName("readlink") ? -1 : real(path, target, size);
}

// Not counted: it touches no file.
int nanosleep(const struct timespec* wanted, struct timespec* left) {
    static const auto real = Real<int(const struct timespec*, struct timespec*)>("nanosleep");
    return FailsByName("nanosleep") ? -1 : real(wanted, left);
}

// Not counted: whatever these tests open can be read from any place.
off_t lseek(int fd, off_t offset, int whence) noexcept {
    static const auto real = Real<off_t(int, off_t, int)>("lseek");
    return FailsByName("lseek") ? -1 : real(fd, offset, whence);
}

// Not counted: a second descriptor is to be had until the program has too many.
int fcntl(int fd, int command, ...) {
    static const auto real = Real<int(int, int, long)>("fcntl");
    va_list rest;
    va_start(rest, command);
    const long argument = va_arg(rest, long);
    va_end(rest);
    return FailsByName("fcntl") ? -1 : real(fd, command, argument);
}

int ftruncate(int fd, off_t size) noexcept {
    static const auto real = Real<int(int, off_t)>("ftruncate");
    return Fails("ftruncate") ? -1 : real(fd, size);
}

int fallocate(int fd, int mode, off_t offset, off_t size) {
    static const auto real = Real<int(int, int, off_t, off_t)>("fallocate");
    return Fails("fallocate") ? -1 : real(fd, mode, offset, size);
}

int fchmod(int fd, mode_t mode) noexcept {
    static const auto real = Real<int(int, mode_t)>("fchmod");
    return Fails("fchmod") ? -1 : real(fd, mode);
}

int futimens(int fd, const struct timespec* times) noexcept {
    static const auto real = Real<int(int, const struct timespec*)>("futimens");
    return Fails("futimens") ? -1 : real(fd, times);
}

int open(const char* path, int flags, ...) {
    static const auto real = Real<int(const char*, int, mode_t)>("open");
    mode_t mode = 0;
    if ((static_cast<unsigned>(flags) & static_cast<unsigned>(O_CREAT)) != 0) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    // What is open already and is opened once more is no name of a file.
    const bool isAgain = std::string_view(path).starts_with("/proc/self/fd/");
    return Fails(isAgain ? "reopen" : "open") ? -1 : real(path, flags, mode);
}

int stat(const char* path, struct stat* status) noexcept {
    static const auto real = Real<int(const char*, struct stat*)>("stat");
    return Fails("stat") ? -1 : real(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    static const auto real = Real<int(const char*, struct stat*)>("lstat");
    return Fails("lstat") ? -1 : real(path, status);
}

int fstat(int fd, struct stat* status) noexcept {
    static const auto real = Real<int(int, struct stat*)>("fstat");
    return Fails("fstat") ? -1 : real(fd, status);
}

int mkdir(const char* path, mode_t mode) noexcept {
    static const auto real = Real<int(const char*, mode_t)>("mkdir");
    return Fails("mkdir") ? -1 : real(path, mode);
}

int unlink(const char* path) noexcept {
    static const auto real = Real<int(const char*)>("unlink");
    return Fails("unlink") ? -1 : real(path);
}

int rmdir(const char* path) noexcept {
    static const auto real = Real<int(const char*)>("rmdir");
    return Fails("rmdir") ? -1 : real(path);
}

DIR* opendir(const char* path) {
    static const auto real = Real<DIR*(const char*)>("opendir");
    return Fails("opendir") ? nullptr : real(path);
}

// Not counted: a folder has as many as it likes.
dirent* readdir(DIR* listing) {
    static const auto real = Real<dirent*(DIR*)>("readdir");
    const int code = kd::FailingCalls::FailureOf("readdir");
    if (code != 0) {
        errno = code;
        return nullptr;
    }
    return real(listing);
}

int rename(const char* from, const char* to) noexcept {
    static const auto real = Real<int(const char*, const char*)>("rename");
    return Fails("rename") ? -1 : real(from, to);
}

#ifdef __linux__
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    static const auto real = Real<int(int, const char*, int, const char*, unsigned)>("renameat2");
    // By its own name too: not every file system has it.
    return FailsByName("renameat2") || Fails("rename") ? -1 : real(fromFolder, from, toFolder, to, flags);
}
#endif

// A close that fails has closed all the same.
int close(int fd) {
    static const auto real = Real<int(int)>("close");
    const bool fails = Fails("close");
    const int code = errno;
    const int result = real(fd);
    if (fails) {
        errno = code;
        return -1;
    }
    return result;
}
}
