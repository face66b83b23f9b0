#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigaction is the system's, not the language's
#include <sys/resource.h>

#include <utility>

#include "base/Scope.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

/// Files grow to that size and no further, for the length of a scope.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t bytes) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_before), 0);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~SizeLimit() { EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &m_before), 0); }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;

private:
    rlimit m_before{};
};

TEST_F(SystemFilesTest, AFileBeyondTheLimitEndsTheProcessNoMoreAndNobodysOwnAnswerIsTakenAway) {
    const auto own = [](int) {};
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGXFSZ, nullptr, &before), 0);
    const Scope restored([&] { EXPECT_EQ(::sigaction(SIGXFSZ, &before, nullptr), 0); });
    void (*const ofItsOwn)(int) = own;
    for (const auto& [answer, left] :
         {std::pair{SIG_DFL, SIG_IGN}, std::pair{SIG_IGN, SIG_IGN}, std::pair{ofItsOwn, ofItsOwn}}) {
        struct sigaction action {};
        action.sa_handler = answer;
        ASSERT_EQ(::sigaction(SIGXFSZ, &action, nullptr), 0);
        const SystemFiles made(CodePage::Of(1252));
        ASSERT_EQ(::sigaction(SIGXFSZ, nullptr, &action), 0);
        EXPECT_EQ(action.sa_handler, left);
    }
}

TEST_F(SystemFilesTest, AFileBeyondTheLimitIsAFullDisk) {
    const auto file = files.OpenForOutput(At("a.temp"));
    const SizeLimit limit(100);
    file->Write(std::string(60, 'x'));
    EXPECT_EQ(ErrorOf([&] { file->Write(std::string(60, 'y')); }), errDiskFull);
    file->Close();
}

TEST_F(SystemFilesTest, ARecordThatDoesNotFitLeavesNoHalf) {
    for (const std::size_t size : {60U, 99U, 100U}) {
        const Text path = Put("a.KDL", std::string(size, 'x'));
        {
            const SizeLimit limit(100);
            const auto file = files.OpenForAppend(path);
            EXPECT_EQ(ErrorOf([&] { file->Write(std::string(60, 'y')); }), errDiskFull);
            file->Close();
        }
        EXPECT_EQ(Get(path), std::string(size, 'x'));
    }
}

TEST_F(SystemFilesTest, ReplaceBeyondTheLimitLeavesTheOldFile) {
    const Text path = Put("a.kdt", "old");
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, std::string(200, 'x')); }), errDiskFull);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, ReplaceInPlaceBeyondTheLimitLeavesTheOldFile) {
    const Text path = Put("a.kdt", "old");
    std::filesystem::create_hard_link(path, At("b.kdt"));
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, std::string(200, 'x')); }), errDiskFull);
    EXPECT_EQ(Get(path), "old");
    EXPECT_EQ(Names(), (std::set<Text>{"a.kdt", "b.kdt"}));
}

TEST_F(SystemFilesTest, ArchiveCopyBeyondTheLimitLeavesNone) {
    const Text path = Put("a.kdt", std::string(200, 'x'));
    const SizeLimit limit(100);
    EXPECT_EQ(ErrorOf([&] { files.CopyForArchive(path, At("copy")); }), errDiskFull);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

}  // namespace
}  // namespace kd
