#include <langinfo.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): newlocale is not in <clocale>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <ctime>

#include "system/SystemServices.h"

namespace kd {

namespace {

/// The first of the variables that is set and not empty.
Text FirstVariable(std::initializer_list<const char*> names) {
    for (const char* name : names) {
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

}  // namespace

DateTime SystemClock::Now() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    (void)::localtime_r(&now, &local);  // fails for years beyond an int only
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

SystemEnvironment::SystemEnvironment(Text programPath) : m_programPath(std::move(programPath)) {
    if (m_programPath.empty()) {
        std::array<char, PATH_MAX> path{};
        const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
        m_programPath.assign(path.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    }
}

Text SystemEnvironment::Variable(std::string_view name) const {
    const char* value = std::getenv(Text(name).c_str());
    return value == nullptr ? Text() : Text(value);
}

SystemLocale::SystemLocale() {
    if (const locale_t locale = ::newlocale(LC_NUMERIC_MASK, "", nullptr); locale != nullptr) {
        const char* point = ::nl_langinfo_l(RADIXCHAR, locale);
        if (point != nullptr && point[0] == ',' && point[1] == '\0') {
            m_separator = ',';
        }
        ::freelocale(locale);
    }
    const Text language = FirstVariable({"LC_ALL", "LC_CTYPE", "LANG"});
    m_page = &CodePage::Of(CodePageNumberOf(language.substr(0, language.find_first_of("_.@"))));
}

void ProvideUserName() {
    if (std::getenv("USERNAME") != nullptr) {
        return;
    }
    if (const passwd* account = ::getpwuid(::getuid()); account != nullptr) {
        (void)::setenv("USERNAME", account->pw_name, 0);  // fails for want of memory only
    }
}

}  // namespace kd
