#pragma once

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

/// The user's locale as the environment tells it. It cannot change under a running process here; Refresh is
/// for systems that tell of a change.
class SystemLocale : public Locale {
public:
    SystemLocale() { Refresh(); }
    void Refresh();
    char DecimalSeparator() const override { return m_separator; }
    const kd::CodePage& CodePage() const override { return *m_page; }

private:
    char m_separator = '.';
    const kd::CodePage* m_page = &CodePage::Of(1252);
};

/// Number of the code page that a language ("pl", "ru", ...) is written with.
int CodePageNumberOf(std::string_view language) noexcept;

/// Sets the variable "USERNAME" from the account's name where it is not set at all; one that is set and empty
/// stays.
void ProvideUserName();

}  // namespace kd
