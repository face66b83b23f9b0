#include <cerrno>
#include <functional>
#include <memory>

#include "base/Scope.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

/// One operation of which each call of the system fails in turn.
struct Attempt {
    const char* label;
    std::function<void()> prepare;
    std::function<void()> act;
    std::function<void(bool isDone)> expect;  // looks at what is left
};

TEST_F(SystemFilesTest, WhicheverCallFailsAnOperationIsDoneOrItsFailureIsToldAndNoTextIsLost) {
    const Text target = At("a.kdt");
    const Text source = At("a.temp");
    const auto oldOrNew = [&](bool isDone) {
        const std::string left = Get(target);
        EXPECT_TRUE(left == "new" || (!isDone && left == "old")) << left;
        EXPECT_TRUE(isDone || left == "new" || Get(source) == "new") << "the new text is somewhere";
    };
    FileState seen;
    std::unique_ptr<OutputFile> output;
    const auto put = [&] {
        Put("a.kdt", "old", 0640);
        Put("a.temp", "new", 0600);
        std::filesystem::remove(At("second name"));
    };
    const auto look = [&] { seen = posix::StateOf(Status(target)); };
    const Attempt attempts[] = {
        {"copy", put, [&] { files.CopyFile(source, target); },
         [&](bool isDone) {
             oldOrNew(isDone);
             EXPECT_EQ(Get(source), "new");
         }},
        {"move", put, [&] { files.MoveOver(source, target); }, oldOrNew},
        {"move of what is settled",
         [&] {
             put();
             look();
         },
         [&] { EXPECT_TRUE(files.MoveSettled(source, target, seen)); }, oldOrNew},
        {"move of what is settled, over a file with two names",
         [&] {
             put();
             std::filesystem::create_hard_link(target, At("second name"));
             look();
         },
         [&] { EXPECT_TRUE(files.MoveSettled(source, target, seen)); },
         [&](bool isDone) {
             oldOrNew(isDone);
             EXPECT_EQ(Get(At("second name")), Get(target));
         }},
        {"output over what was left",
         [&] {
             put();
             std::filesystem::create_hard_link(source, At("second name"));
         },
         [&] { output = files.OpenForOutput(source); },
         [&](bool isDone) {
             EXPECT_EQ(output != nullptr, isDone);
             output.reset();
             EXPECT_EQ(Get(At("second name")), "new") << "another name keeps its text";
         }},
        {"adding",
         [&] {
             put();
             std::filesystem::remove(At("a.KDL"));
         },
         [&] {
             for (const char* const record : {"first", " second"}) {
                 const auto log = files.OpenForAppend(At("a.KDL"));
                 log->Write(record);
                 log->CloseForSettling();
             }
             files.Settle();
         },
         [&](bool isDone) {
             const std::string left = Get(At("a.KDL"));
             EXPECT_TRUE(left == "first second" || (!isDone && (left.empty() || left == "first"))) << left;
         }},
        {"removal", put, [&] { files.DeleteFile(source); },
         [&](bool isDone) { EXPECT_EQ(Names().count("a.temp"), isDone ? 0U : 1U); }},
        {"an archive",
         [&] {
             put();
             std::filesystem::remove_all(At("archives"));
         },
         [&] {
             files.MakeKeptFolder(At("archives/unfinished"));
             files.CopyAllForArchive({target, source}, At("archives/unfinished"));
             files.Rename(At("archives/unfinished"), At("archives/done"));
             files.Settle();
         },
         [&](bool isDone) {
             EXPECT_EQ(Get(target), "old");
             EXPECT_EQ(Get(source), "new");
             const Text copy = At("archives/done/a.temp");
             EXPECT_EQ(Get(copy), isDone || std::filesystem::exists(At("archives/done")) ? "new" : "");
         }},
        {"removal of a folder",
         [&] {
             put();
             MakeFolderAt("archives/done/inner");
             Put("archives/done/a", "text");
             MakeLink("archives/done/link", target);
         },
         [&] { files.RemoveFolder(At("archives")); },
         [&](bool isDone) {
             EXPECT_EQ(Names().count("archives"), isDone ? 0U : 1U);
             EXPECT_EQ(Get(target), "old");
             std::filesystem::remove_all(At("archives"));
         }},
    };
    for (const Attempt& attempt : attempts) {
        bool isThrough = false;
        for (int failAt = 1; !isThrough; ++failAt) {
            SCOPED_TRACE(Text(attempt.label) + " " + std::to_string(failAt));
            attempt.prepare();
            std::size_t made = 0;
            const std::int32_t number = ErrorOf([&] {
                const FailingCalls calls(failAt, EIO);
                const Scope counted([&] { made = calls.Calls().size(); });
                attempt.act();
            });
            attempt.expect(number == 0);
            isThrough = made < static_cast<std::size_t>(failAt);
            EXPECT_TRUE(number == 0 || (number == errDevice && !isThrough)) << number;
            (void)ErrorOf([&] { files.Settle(); });
            ASSERT_LT(failAt, 100);
        }
    }
}

}  // namespace
}  // namespace kd
