#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

#include "base/CodePage.h"
#include "base/Scope.h"
#include "system/SystemServices.h"
#include "system/windows/FilesWindows.h"
#include "system/windows/WindowsApi.h"

namespace kd {
namespace {

/// The text that the system makes of one byte; empty where it has none.
Text SystemText(int page, char byte) {
    wchar_t wide[4] = {};
    const int size = ::MultiByteToWideChar(static_cast<UINT>(page), MB_ERR_INVALID_CHARS, &byte, 1, wide, 4);
    return windows::Narrow(std::wstring_view(wide, static_cast<std::size_t>(size > 0 ? size : 0)));
}

TEST(CodePageTest, EveryByteIsTheLetterThatTheSystemMakesOfIt) {
    for (const int number : {874, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258}) {
        const CodePage& page = CodePage::Of(number);
        ASSERT_EQ(page.Number(), number);
        for (int value = 0; value < 256; ++value) {
            const char byte = static_cast<char>(value);
            const Text own = page.Decode(std::string_view(&byte, 1));
            const Text system = SystemText(number, byte);
            // Where a page leaves a byte undefined, the system has no letter, or one that nobody can type.
            const bool isPrivate = own.size() == 3 && own[0] == '\xEF';
            if (!system.empty() && !isPrivate) {
                EXPECT_EQ(own, system) << number << " byte " << value;
            }
        }
    }
}

TEST(SystemLocaleTest, TheCodePageIsTheSystemsWhereItIsASingleByteOne) {
    const int expected = static_cast<int>(::GetACP());
    if (expected == CP_UTF8) {
        GTEST_SKIP() << "this machine is set to UTF-8 throughout";
    }
    EXPECT_EQ(SystemLocale().CodePage().Number(), expected);
    if (const char* asked = std::getenv("KD_EXPECTED_CODE_PAGE"); asked != nullptr) {
        EXPECT_EQ(std::to_string(expected), asked);
    }
}

TEST(SystemLocaleTest, TheSeparatorIsTheUsers) {
    char separator[8] = {};
    ASSERT_GT(::GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator, 8), 0);
    EXPECT_EQ(SystemLocale().DecimalSeparator(), separator[0]);
    if (const char* asked = std::getenv("KD_EXPECTED_SEPARATOR"); asked != nullptr) {
        EXPECT_EQ(SystemLocale().DecimalSeparator(), asked[0]);
    }
}

/// The decimal separator that the user has chosen, and his own again at the end of the scope.
class ChosenSeparator {
public:
    ChosenSeparator() { EXPECT_GT(::GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, m_own, 8), 0); }
    ~ChosenSeparator() { Set(m_own); }
    ChosenSeparator(const ChosenSeparator&) = delete;
    ChosenSeparator& operator=(const ChosenSeparator&) = delete;

    static void Set(const wchar_t* separator) {
        EXPECT_NE(::SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, separator), 0);
    }

private:
    wchar_t m_own[8] = {};
};

TEST(SystemLocaleTest, AnotherSeparatorThatTheUserChoosesIsSeenAtOnceAndTheCodePageStays) {
    static std::uint64_t now = 1;
    const auto real = std::exchange(windows::Ticks, [] { return now; });
    const Scope restored([&] { windows::Ticks = real; });
    const ChosenSeparator chosen;
    const SystemLocale locale;
    const CodePage* const page = &locale.CodePage();
    struct Case {
        const wchar_t* chosen;
        char expected;
    };
    for (const Case& c : {Case{L",", ','}, {L".", '.'}, {L",", ','}, {L"'", '.'}, {L",,", '.'}}) {
        chosen.Set(c.chosen);
        ++now;
        EXPECT_EQ(locale.DecimalSeparator(), c.expected) << windows::Narrow(c.chosen);
        EXPECT_EQ(locale.DecimalSeparator(), c.expected) << "read again";
        EXPECT_EQ(&locale.CodePage(), page);
    }
}

TEST(SystemLocaleTest, TheClockThatSaysWhenToAskAgainGoesOn) {
    const std::uint64_t start = windows::Ticks();
    while (windows::Ticks() == start) {
        (void)::SwitchToThread();
    }
    EXPECT_GT(windows::Ticks(), start);
}

TEST(SystemClockTest, NowIsTheWallClock) {
    const auto text = [](const DateTime& moment) { return DateText(moment) + " " + TimeText(moment); };
    const auto system = [&] {
        SYSTEMTIME now{};
        ::GetLocalTime(&now);
        return text({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
    };
    const Text before = system();
    const Text now = text(SystemClock().Now());
    EXPECT_LE(before, now);
    EXPECT_GE(system(), now);
}

TEST(SystemEnvironmentTest, AVariableIsTextWhateverTheCodePage) {
    EXPECT_EQ(SystemEnvironment().Variable("KD_NOT_SET"), "");
    const Text value = "Łódź Проба";
    ASSERT_NE(::SetEnvironmentVariableW(L"KD_TEST_VARIABLE", windows::Wide(value).c_str()), 0);
    EXPECT_EQ(SystemEnvironment().Variable("KD_TEST_VARIABLE"), value);
    const std::wstring large(2000, L'x');
    ASSERT_NE(::SetEnvironmentVariableW(L"KD_TEST_VARIABLE", large.c_str()), 0);
    EXPECT_EQ(SystemEnvironment().Variable("KD_TEST_VARIABLE"), Text(2000, 'x'));
}

TEST(SystemEnvironmentTest, TheProgramsPathIsGivenOrFoundOut) {
    EXPECT_EQ(SystemEnvironment("C:\\KD\\KDLimitDesk.exe").ProgramPath(), "C:\\KD\\KDLimitDesk.exe");
    const Text found = SystemEnvironment().ProgramPath();
    EXPECT_NE(found.find(":\\"), Text::npos) << found;
    EXPECT_NE(::GetFileAttributesW(windows::Wide(found).c_str()), INVALID_FILE_ATTRIBUTES) << found;
}

TEST(SystemEnvironmentTest, TheUsersNameIsTheAccountsWhereNoneIsSet) {
    ASSERT_NE(::SetEnvironmentVariableW(L"USERNAME", L"anna"), 0);
    ProvideUserName();
    EXPECT_EQ(SystemEnvironment().Variable("USERNAME"), "anna");
    ASSERT_NE(::SetEnvironmentVariableW(L"USERNAME", nullptr), 0);
    ProvideUserName();
    wchar_t account[257] = {};
    DWORD size = 257;
    ASSERT_NE(::GetUserNameW(account, &size), 0);
    EXPECT_EQ(SystemEnvironment().Variable("USERNAME"), windows::Narrow(account));
}

}  // namespace
}  // namespace kd
