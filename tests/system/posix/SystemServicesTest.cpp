#include "system/SystemServices.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <pwd.h>
#include <unistd.h>

#ifdef KD_SANITIZED
#include <sanitizer/lsan_interface.h>
#endif

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <optional>

#include "system/posix/FailingCalls.h"

namespace kd {
namespace {

/// Variables of the environment that are put back at the end of the scope; all that tell the locale are unset
/// to begin with.
class Variables {
public:
    Variables() {
        for (const char* name :
             {"LC_ALL", "LC_NUMERIC", "LC_CTYPE", "LANG", "LANGUAGE", "LOCPATH", "USERNAME", "TZ"}) {
            const char* value = std::getenv(name);
            m_before[name] = value == nullptr ? std::nullopt : std::optional<Text>(value);
            Unset(name);
        }
    }
    ~Variables() {
        for (const auto& [name, value] : m_before) {
            if (value) {
                Set(name, *value);
            } else {
                Unset(name);
            }
        }
        ::tzset();
    }
    Variables(const Variables&) = delete;
    Variables& operator=(const Variables&) = delete;
    static void Set(const Text& name, const Text& value) { (void)::setenv(name.c_str(), value.c_str(), 1); }
    static void Unset(const Text& name) { (void)::unsetenv(name.c_str()); }

private:
    std::map<Text, std::optional<Text>> m_before;
};

/// A locale with a decimal comma, made in a folder of its own for the length of a scope.
class CommaLocale {
public:
    CommaLocale() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kd-locale-XXXXXX").string();
        m_folder = mkdtemp(pattern.data());
        const Text command = "localedef -i de_DE -f UTF-8 '" + m_folder + "/de_DE.UTF-8' >/dev/null 2>&1";
        m_made = std::system(command.c_str()) == 0;
        Variables::Set("LOCPATH", m_folder);
    }
    ~CommaLocale() {
        Variables::Unset("LOCPATH");
        std::filesystem::remove_all(m_folder);
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    bool IsMade() const { return m_made; }

private:
#ifdef KD_SANITIZED
    __lsan::ScopedDisabler m_leaksUnseen;  // the C library loses a few bytes when it looks where LOCPATH says
#endif
    Text m_folder;
    bool m_made = false;
};

TEST(SystemLocaleTest, CodePagesOfTheLanguages) {
    const std::map<int, std::vector<const char*>> pages{
        {1250, {"pl", "cs", "sk", "hu", "sl", "hr", "ro", "sq", "bs"}},
        {1251, {"ru", "uk", "be", "bg", "mk", "sr"}},
        {1253, {"el"}},
        {1254, {"tr", "az"}},
        {1255, {"he"}},
        {1256, {"ar", "fa", "ur"}},
        {1257, {"et", "lv", "lt"}},
        {1258, {"vi"}},
        {874, {"th"}},
        {1252,
         {"en", "de", "fr", "es", "it", "nl", "sv", "da", "fi", "pt", "is", "C", "POSIX", "", " ", "xx",
          "pl ", "cs hr", "p"}}};
    for (const auto& [page, languages] : pages) {
        for (const char* language : languages) {
            EXPECT_EQ(CodePageNumberOf(language), page) << language;
        }
    }
}

TEST(SystemLocaleTest, TheCodePageIsTheFirstVariablesThatSaysSomething) {
    const Variables variables;
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1252);
    Variables::Set("LANG", "pl_PL.UTF-8");
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1250);
    Variables::Set("LC_CTYPE", "ru_RU");
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1251);
    Variables::Set("LC_ALL", "el@euro");
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1253);
    Variables::Set("LC_ALL", "");
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1251);
    Variables::Set("LC_ALL", "pl#PL");
    EXPECT_EQ(SystemLocale().CodePage().Number(), 1252) << "no language stands there";
}

TEST(SystemLocaleTest, TheSeparatorIsAPointWithoutALocale) {
    const Variables variables;
    EXPECT_EQ(SystemLocale().DecimalSeparator(), '.');
    Variables::Set("LC_ALL", "no_such_locale");
    EXPECT_EQ(SystemLocale().DecimalSeparator(), '.');
}

TEST(SystemLocaleTest, TheSeparatorIsThatOfTheEnvironmentAtTheStart) {
    const Variables variables;
    const CommaLocale made;
    if (!made.IsMade()) {
        GTEST_SKIP() << "this machine cannot make a locale with a decimal comma";
    }
    const Text comma = "de_DE.UTF-8";
    Variables::Set("LANG", comma);
    const SystemLocale first;
    EXPECT_EQ(first.DecimalSeparator(), ',');
    Variables::Set("LC_NUMERIC", "C");
    EXPECT_EQ(SystemLocale().DecimalSeparator(), '.');
    EXPECT_EQ(first.DecimalSeparator(), ',');
    Variables::Set("LC_ALL", comma);
    EXPECT_EQ(SystemLocale().DecimalSeparator(), ',');
    // The process's own locale stays what it was.
    EXPECT_STREQ(::localeconv()->decimal_point, ".");
}

TEST(SystemClockTest, NowIsTheWallClockOfTheUsersZone) {
    const Variables variables;
    Variables::Set("TZ", "UTC-5:30");
    ::tzset();
    // Either side of the reading: the clock may pass a second between.
    const auto at = [](std::time_t moment) {
        const std::time_t local = moment + 5 * 3600 + 30 * 60;
        std::tm parts{};
        (void)::gmtime_r(&local, &parts);
        return DateTime{parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                        parts.tm_hour,        parts.tm_min,     parts.tm_sec};
    };
    const auto text = [](const DateTime& moment) { return DateText(moment) + " " + TimeText(moment); };
    const std::time_t before = std::time(nullptr);
    const Text now = text(SystemClock().Now());
    const std::time_t after = std::time(nullptr);
    EXPECT_LE(text(at(before)), now);
    EXPECT_GE(text(at(after)), now);
}

TEST(SystemEnvironmentTest, AVariableThatIsMissingIsEmpty) {
    const Variables variables;
    EXPECT_EQ(SystemEnvironment().Variable("USERNAME"), "");
    Variables::Set("USERNAME", "anna");
    EXPECT_EQ(SystemEnvironment().Variable("USERNAME"), "anna");
}

TEST(SystemEnvironmentTest, TheProgramsPathIsGivenOrFoundOut) {
    EXPECT_EQ(SystemEnvironment("/opt/kd/KDLimitDesk").ProgramPath(), "/opt/kd/KDLimitDesk");
    EXPECT_EQ(SystemEnvironment().ProgramPath(), std::filesystem::read_symlink("/proc/self/exe").string());
}

TEST(SystemEnvironmentTest, AProgramsPathThatTheSystemDoesNotTellIsEmpty) {
    FailingCalls calls;
    calls.FailEach("readlink", ENOENT);
    EXPECT_EQ(SystemEnvironment().ProgramPath(), "");
}

TEST(SystemEnvironmentTest, TheUsersNameIsTheAccountsWhereNoneIsSet) {
    const Variables variables;
    const passwd* account = ::getpwuid(::getuid());
    ASSERT_NE(account, nullptr);
    const Text name = account->pw_name;
    ProvideUserName();
    EXPECT_EQ(SystemEnvironment().Variable("USERNAME"), name);
}

TEST(SystemEnvironmentTest, AUsersNameThatIsSetStaysAlsoWhenEmpty) {
    const Variables variables;
    Variables::Set("USERNAME", "anna");
    ProvideUserName();
    EXPECT_STREQ(std::getenv("USERNAME"), "anna");
    Variables::Set("USERNAME", "");
    ProvideUserName();
    EXPECT_STREQ(std::getenv("USERNAME"), "");
}

}  // namespace
}  // namespace kd
