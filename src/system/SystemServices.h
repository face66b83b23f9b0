#pragma once

#include <cstdint>

#include "platform/Services.h"

namespace kd {

class SystemClock : public Clock {
public:
    DateTime Now() override;
};

/// The environment of the process.
class SystemEnvironment : public Environment {
public:
    /// An empty path is found out from the system.
    explicit SystemEnvironment(Text programPath = {});
    Text Variable(std::string_view name) const override;
    Text ProgramPath() const override { return m_programPath; }

private:
    Text m_programPath;
};

/// The user's locale. The code page stays what it was when this was made. So does the separator where it
/// comes from the environment, which cannot change under a running process; on Windows, where the user may
/// choose another one at any time, the system is asked for it.
class SystemLocale : public Locale {
public:
    SystemLocale();
#ifdef _WIN32
    char DecimalSeparator() const override;
#else
    char DecimalSeparator() const override {
        return m_separator;
    }
#endif
    const kd::CodePage& CodePage() const override {
        return *m_page;
    }

private:
#ifdef _WIN32
    mutable char m_separator = '.';
    mutable std::uint64_t m_asked = 0;  // the tick of the system's clock in which it was asked
#else
    char m_separator = '.';
#endif
    const kd::CodePage* m_page;
};

/// Number of the code page that a language ("pl", "ru", ...) is written with.
int CodePageNumberOf(std::string_view language) noexcept;

/// Sets the variable "USERNAME" from the account's name where it is not set at all; one that is set and empty
/// stays.
void ProvideUserName();

}  // namespace kd
