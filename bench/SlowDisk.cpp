// A library that is loaded before all others (LD_PRELOAD) and makes a disk or a drive of the network slow:
// each flush waits KD_SLOW_FLUSH_MS, each call that names a file at or below the folder KD_SLOW_BELOW waits
// KD_SLOW_NAME_MS. KdSlowCounts tells how many there were of both.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio.h>  // NOLINT(modernize-deprecated-headers): the system's own names
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <time.h>  // NOLINT(modernize-deprecated-headers)
#include <unistd.h>
#include <utime.h>

#include <chrono>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

long flushes = 0;
long names = 0;

/// The function that stands behind ours.
template <typename F>
F* Next(const char* name) {
    return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

long Setting(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? 0 : std::strtol(value, nullptr, 10);
}

/// A sleeper wakes late, by up to half a millisecond: the last of the time is waited for awake.
void Wait(long ms) {
    if (ms <= 0) {
        return;
    }
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(ms);
    const timespec most{(ms - 1) / 1000, (ms - 1) % 1000 * 1000000 + 500000};
    (void)nanosleep(&most, nullptr);
    while (Clock::now() < end) {
    }
}

void Flushed() {
    static const long delay = Setting("KD_SLOW_FLUSH_MS");
    ++flushes;
    Wait(delay);
}

bool IsBelow(std::string_view path) {
    static const char* const given = std::getenv("KD_SLOW_BELOW");
    const std::string_view folder = given == nullptr ? std::string_view() : given;
    return !folder.empty() && path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/');
}

void Named(const char* path, int folder = AT_FDCWD) {
    static const long delay = Setting("KD_SLOW_NAME_MS");
    if (path == nullptr || *path == '\0') {
        return;  // the open file itself is asked
    }
    if (*path == '/' || folder == AT_FDCWD) {
        if (!IsBelow(path)) {
            return;
        }
    } else {
        char link[64];
        char target[4096];
        (void)snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
        const long length = syscall(SYS_readlink, link, target, sizeof target);
        if (length < 0 || !IsBelow({target, static_cast<std::size_t>(length)})) {
            return;
        }
    }
    ++names;
    Wait(delay);
}

mode_t ModeOf(int flags, va_list& more) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
}

}  // namespace

extern "C" {

void KdSlowCounts(long* flushed, long* named) {
    *flushed = flushes;
    *named = names;
}

// --- flushes
// --------------------------------------------------------------------------------------------------

int fsync(int fd) {
    Flushed();
    return Next<decltype(fsync)>("fsync")(fd);
}
int fdatasync(int fd) {
    Flushed();
    return Next<decltype(fdatasync)>("fdatasync")(fd);
}
int syncfs(int fd) noexcept {
    Flushed();
    return Next<decltype(syncfs)>("syncfs")(fd);
}
void sync() noexcept {
    Flushed();
    Next<decltype(sync)>("sync")();
}
int sync_file_range(int fd, off64_t from, off64_t count, unsigned flags) {
    if ((flags & SYNC_FILE_RANGE_WAIT_AFTER) != 0) {
        Flushed();
    }
    return Next<decltype(sync_file_range)>("sync_file_range")(fd, from, count, flags);
}

// --- names that are opened
// ------------------------------------------------------------------------------------

int open(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = ModeOf(flags, more);
    va_end(more);
    Named(path);
    return Next<decltype(open)>("open")(path, flags, mode);
}
int open64(const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = ModeOf(flags, more);
    va_end(more);
    Named(path);
    return Next<decltype(open64)>("open64")(path, flags, mode);
}
int openat(int folder, const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = ModeOf(flags, more);
    va_end(more);
    Named(path, folder);
    return Next<decltype(openat)>("openat")(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) {
    va_list more;
    va_start(more, flags);
    const mode_t mode = ModeOf(flags, more);
    va_end(more);
    Named(path, folder);
    return Next<decltype(openat64)>("openat64")(folder, path, flags, mode);
}
FILE* fopen(const char* path, const char* mode) {
    Named(path);
    return Next<decltype(fopen)>("fopen")(path, mode);
}
FILE* fopen64(const char* path, const char* mode) {
    Named(path);
    return Next<decltype(fopen64)>("fopen64")(path, mode);
}
DIR* opendir(const char* path) {
    Named(path);
    return Next<decltype(opendir)>("opendir")(path);
}

// --- names that are asked
// -------------------------------------------------------------------------------------

int stat(const char* path, struct stat* status) noexcept {
    Named(path);
    return Next<int(const char*, struct stat*)>("stat")(path, status);
}
int stat64(const char* path, struct stat64* status) noexcept {
    Named(path);
    return Next<int(const char*, struct stat64*)>("stat64")(path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
    Named(path);
    return Next<decltype(lstat)>("lstat")(path, status);
}
int lstat64(const char* path, struct stat64* status) noexcept {
    Named(path);
    return Next<decltype(lstat64)>("lstat64")(path, status);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(fstatat)>("fstatat")(folder, path, status, flags);
}
int fstatat64(int folder, const char* path, struct stat64* status, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(fstatat64)>("fstatat64")(folder, path, status, flags);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
    Named(path, folder);
    return Next<int(int, const char*, int, unsigned, struct statx*)>("statx")(folder, path, flags, mask,
                                                                              status);
}
int access(const char* path, int mode) noexcept {
    Named(path);
    return Next<decltype(access)>("access")(path, mode);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(faccessat)>("faccessat")(folder, path, mode, flags);
}
ssize_t readlink(const char* path, char* buffer, size_t size) noexcept {
    Named(path);
    return Next<decltype(readlink)>("readlink")(path, buffer, size);
}
char* realpath(const char* path, char* buffer) noexcept {
    Named(path);
    return Next<decltype(realpath)>("realpath")(path, buffer);
}
ssize_t getxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    Named(path);
    return Next<decltype(getxattr)>("getxattr")(path, name, value, size);
}
ssize_t lgetxattr(const char* path, const char* name, void* value, size_t size) noexcept {
    Named(path);
    return Next<decltype(lgetxattr)>("lgetxattr")(path, name, value, size);
}
ssize_t listxattr(const char* path, char* list, size_t size) noexcept {
    Named(path);
    return Next<decltype(listxattr)>("listxattr")(path, list, size);
}
int statfs(const char* path, struct statfs* status) noexcept {
    Named(path);
    return Next<int(const char*, struct statfs*)>("statfs")(path, status);
}
int statvfs(const char* path, struct statvfs* status) noexcept {
    Named(path);
    return Next<int(const char*, struct statvfs*)>("statvfs")(path, status);
}

// --- names that are changed
// -----------------------------------------------------------------------------------

int rename(const char* from, const char* to) noexcept {
    Named(from);
    return Next<decltype(rename)>("rename")(from, to);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    Named(from, fromFolder);
    return Next<decltype(renameat)>("renameat")(fromFolder, from, toFolder, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    Named(from, fromFolder);
    return Next<decltype(renameat2)>("renameat2")(fromFolder, from, toFolder, to, flags);
}
int link(const char* from, const char* to) noexcept {
    Named(to);
    return Next<decltype(link)>("link")(from, to);
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
    Named(to, toFolder);
    return Next<decltype(linkat)>("linkat")(fromFolder, from, toFolder, to, flags);
}
int symlink(const char* from, const char* to) noexcept {
    Named(to);
    return Next<decltype(symlink)>("symlink")(from, to);
}
int unlink(const char* path) noexcept {
    Named(path);
    return Next<decltype(unlink)>("unlink")(path);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(unlinkat)>("unlinkat")(folder, path, flags);
}
int remove(const char* path) noexcept {
    Named(path);
    return Next<decltype(remove)>("remove")(path);
}
int mkdir(const char* path, mode_t mode) noexcept {
    Named(path);
    return Next<decltype(mkdir)>("mkdir")(path, mode);
}
int mkdirat(int folder, const char* path, mode_t mode) noexcept {
    Named(path, folder);
    return Next<decltype(mkdirat)>("mkdirat")(folder, path, mode);
}
int rmdir(const char* path) noexcept {
    Named(path);
    return Next<decltype(rmdir)>("rmdir")(path);
}
int truncate(const char* path, off_t size) noexcept {
    Named(path);
    return Next<decltype(truncate)>("truncate")(path, size);
}
int chmod(const char* path, mode_t mode) noexcept {
    Named(path);
    return Next<decltype(chmod)>("chmod")(path, mode);
}
int chown(const char* path, uid_t user, gid_t group) noexcept {
    Named(path);
    return Next<decltype(chown)>("chown")(path, user, group);
}
int lchown(const char* path, uid_t user, gid_t group) noexcept {
    Named(path);
    return Next<decltype(lchown)>("lchown")(path, user, group);
}
int fchmodat(int folder, const char* path, mode_t mode, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(fchmodat)>("fchmodat")(folder, path, mode, flags);
}
int fchownat(int folder, const char* path, uid_t user, gid_t group, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(fchownat)>("fchownat")(folder, path, user, group, flags);
}
int utimensat(int folder, const char* path, const timespec* times, int flags) noexcept {
    Named(path, folder);
    return Next<decltype(utimensat)>("utimensat")(folder, path, times, flags);
}

}  // extern "C"
