#include <array>
#include <string>
#include <utility>

#include "system/SystemServices.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {

using windows::Narrow;
using windows::Wide;

namespace {

/// A number that the system tells of the user's locale; 0 on failure.
DWORD LocaleNumber(LCTYPE what) noexcept {
    DWORD number = 0;
    (void)::GetLocaleInfoW(LOCALE_USER_DEFAULT, what | LOCALE_RETURN_NUMBER,
                           reinterpret_cast<LPWSTR>(&number), sizeof number / sizeof(wchar_t));
    return number;
}

char UsersSeparator() noexcept {
    std::array<wchar_t, 8> separator{};
    const int size = ::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator.data(),
                                      static_cast<int>(separator.size()));
    return size == 2 && separator[0] == L',' ? ',' : '.';
}

}  // namespace

DateTime SystemClock::Now() {
    SYSTEMTIME now{};
    ::GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

SystemEnvironment::SystemEnvironment(Text programPath) : m_programPath(std::move(programPath)) {
    if (!m_programPath.empty()) {
        return;
    }
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (size < path.size()) {
            m_programPath = Narrow(std::wstring_view(path).substr(0, size));
            return;
        }
        path.resize(path.size() * 2);
    }
}

Text SystemEnvironment::Variable(std::string_view name) const {
    const std::wstring wide = Wide(name);
    std::wstring value(MAX_PATH, L'\0');
    for (;;) {
        const DWORD size =
            ::GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size()));
        if (size < value.size()) {
            return Narrow(std::wstring_view(value).substr(0, size));
        }
        value.resize(size);
    }
}

SystemLocale::SystemLocale() : m_separator(UsersSeparator()), m_asked(windows::Ticks()) {
    // Where the machine is set to UTF-8 throughout, the language still has the page that its files came with.
    const UINT page = ::GetACP();
    m_page =
        &CodePage::Of(static_cast<int>(page != CP_UTF8 ? page : LocaleNumber(LOCALE_IDEFAULTANSICODEPAGE)));
}

char SystemLocale::DecimalSeparator() const {
    // A load reads it for each of some hundred thousand cells. Within a tick, which is a matter of
    // milliseconds, no user can have chosen another one.
    if (const std::uint64_t now = windows::Ticks(); now != m_asked) {
        m_asked = now;
        m_separator = UsersSeparator();
    }
    return m_separator;
}

void ProvideUserName() {
    ::SetLastError(0);
    if (::GetEnvironmentVariableW(L"USERNAME", nullptr, 0) != 0 ||
        ::GetLastError() != ERROR_ENVVAR_NOT_FOUND) {
        return;
    }
    std::array<wchar_t, 257> name{};  // the longest name of an account, and an end
    auto size = static_cast<DWORD>(name.size());
    if (::GetUserNameW(name.data(), &size) != 0) {
        (void)::SetEnvironmentVariableW(L"USERNAME", name.data());  // fails for want of memory only
    }
}

}  // namespace kd
