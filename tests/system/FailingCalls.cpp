#include "system/FailingCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace kd {

namespace {

FailingCalls* active = nullptr;

}  // namespace

FailingCalls::FailingCalls(int failAt, int code) : m_failAt(failAt), m_code(code) {
    active = this;
}

FailingCalls::~FailingCalls() {
    active = nullptr;
}

void FailingCalls::FailEach(const std::string& name, int code) {
    m_failing = name;
    m_failingCode = code;
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
    if (asked == calls.m_failing) {
        return calls.m_failingCode;
    }
    return static_cast<int>(calls.m_calls.size()) == calls.m_failAt ? calls.m_code : 0;
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

/// Part of what was asked for: every second transfer is cut short.
std::size_t Portion(std::size_t size) {
    return kd::FailingCalls::Stutters() ? std::min<std::size_t>(size, 7) : size;
}

}  // namespace

extern "C" {

ssize_t write(int fd, const void* bytes, size_t size) {
    static const auto real = Real<ssize_t(int, const void*, size_t)>("write");
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
    return Fails("fsync") ? -1 : real(fd);
}

#ifdef __linux__
int syncfs(int fd) noexcept {
    static const auto real = Real<int(int)>("syncfs");
    return Fails("syncfs") ? -1 : real(fd);
}
#endif

int ftruncate(int fd, off_t size) noexcept {
    static const auto real = Real<int(int, off_t)>("ftruncate");
    return Fails("ftruncate") ? -1 : real(fd, size);
}

int posix_fallocate(int fd, off_t offset, off_t size) {
    static const auto real = Real<int(int, off_t, off_t)>("posix_fallocate");
    const int code = kd::FailingCalls::Ask("posix_fallocate");
    return code != 0 ? code : real(fd, offset, size);
}

int fchmod(int fd, mode_t mode) noexcept {
    static const auto real = Real<int(int, mode_t)>("fchmod");
    return Fails("fchmod") ? -1 : real(fd, mode);
}

int futimens(int fd, const struct timespec* times) noexcept {
    static const auto real = Real<int(int, const struct timespec*)>("futimens");
    return Fails("futimens") ? -1 : real(fd, times);
}

int mkostemp(char* pattern, int flags) {
    static const auto real = Real<int(char*, int)>("mkostemp");
    return Fails("mkostemp") ? -1 : real(pattern, flags);
}

int rename(const char* from, const char* to) noexcept {
    static const auto real = Real<int(const char*, const char*)>("rename");
    return Fails("rename") ? -1 : real(from, to);
}

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
