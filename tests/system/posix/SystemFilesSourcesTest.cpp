#include <cerrno>
#include <functional>

#include "fakes/ErrorOf.h"
#include "system/posix/FailingCalls.h"
#include "system/posix/SystemFilesFixture.h"

namespace kd {
namespace {

/// A call of the system that fails each time, if any, and what fails with it.
struct Refused {
    const char* call;
    const char* source;
    std::function<void()> act;
};

TEST_F(SystemFilesTest, AFailureTellsTheOperationThatItIsOf) {
    const Text there = At("a.kdt");
    const Text other = At("b.kdt");
    const Text none = At("none");
    const Text inner = At("folder");
    const Text inAnotherCase = At("A.KDT");
    const auto state = [&] { return posix::StateOf(Status(other)); };
    const Refused cases[] = {
        {"write", "Write", [&] { files.OpenForOutput(At("new"))->Write("x"); }},
        {"fsync", "Flush", [&] { files.OpenForOutput(At("new"))->Flush(); }},
        {"close", "Close", [&] { files.OpenForOutput(At("new"))->Close(); }},
        {"close", "Close", [&] { files.OpenForOutput(At("new"))->CloseForSettling(); }},
        {"open", "Settle", [&] { files.Rename(there, none); }},
        {"", "CopyForArchive", [&] { files.CopyForArchive(inner, none); }},
        {"", "CopyForArchive", [&] { files.CopyForArchive(there, other); }},
        {"read", "CopyForArchive", [&] { files.CopyForArchive(there, none); }},
        {"fchmod", "CopyForArchive", [&] { files.CopyForArchive(there, none); }},
        {"futimens", "CopyForArchive", [&] { files.CopyForArchive(there, none); }},
        {"fsync", "CopyForArchive", [&] { files.CopyForArchive(there, none); }},
        {"close", "CopyForArchive", [&] { files.CopyForArchive(there, none); }},
        {"readdir", "CopyForArchive", [&] { files.CopyForArchive(inAnotherCase, none); }},
        {"open", "CopyForArchive", [&] { files.CopyAllForArchive({there}, inner); }},
        {"", "FlushFolder", [&] { files.FlushFolder(none); }},
        {"fsync", "FlushFolder", [&] { files.FlushFolder(folder); }},
        {"", "FolderEntries", [&] { (void)files.FolderEntries(none); }},
        {"", "FolderEntries", [&] { (void)files.FolderEntries(there); }},
        {"readdir", "FolderEntries", [&] { (void)files.FolderEntries(folder); }},
        {"", "MakeFolder", [&] { files.MakeFolder(there); }},
        {"open", "MakeFolder", [&] { files.MakeKeptFolder(none); }},
        {"lstat", "RemoveFolder", [&] { files.RemoveFolder(there); }},
        {"unlink", "RemoveFolder", [&] { files.RemoveFolder(there); }},
        {"rmdir", "RemoveFolder", [&] { files.RemoveFolder(inner); }},
        {"", "Rename", [&] { files.Rename(none, At("new")); }},
        {"renameat2", "Rename", [&] { files.Rename(there, none); }},
        {"", "Read", [&] { (void)files.Read(none); }},
        {"read", "Read", [&] { (void)files.Read(there); }},
        {"read", "Read", [&] { (void)files.ReadEnd(there, 2); }},
        {"lseek", "Read", [&] { (void)files.ReadEnd(there, 2); }},
        {"", "OpenForOutput", [&] { (void)files.OpenForOutput(inner); }},
        {"ftruncate", "OpenForOutput", [&] { (void)files.OpenForOutput(Put("left", "x", 0600)); }},
        {"fcntl", "OpenForOutput", [&] { (void)files.OpenForOutput(none); }},
        {"", "OpenForOutput",
         [&] {
             const auto held = files.OpenForOutput(none);
             (void)files.OpenForOutput(none);
         }},
        {"", "OpenForAppend", [&] { (void)files.OpenForAppend(inner); }},
        {"readdir", "OpenForAppend", [&] { (void)files.OpenForAppend(inAnotherCase); }},
        {"", "CopyFile", [&] { files.CopyFile(none, other); }},
        {"read", "CopyFile", [&] { files.CopyFile(there, other); }},
        {"write", "CopyFile", [&] { files.CopyFile(there, other); }},
        {"readdir", "CopyFile", [&] { files.CopyFile(inAnotherCase, other); }},
        {"readdir", "CopyFile", [&] { files.CopyFile(other, inAnotherCase); }},
        {"rename", "MoveOver", [&] { files.MoveOver(Put("new", "new"), there); }},
        {"readdir", "MoveOver", [&] { files.MoveOver(inAnotherCase, other); }},
        {"readdir", "MoveOver", [&] { files.MoveOver(other, inAnotherCase); }},
        {"read", "MoveSettled", [&] { (void)files.MoveSettled(there, other, state()); }},
        {"write", "MoveSettled", [&] { (void)files.MoveSettled(there, other, state()); }},
        {"readdir", "MoveSettled", [&] { (void)files.MoveSettled(other, inAnotherCase, FileState()); }},
        {"write", "ReplaceFile", [&] { files.ReplaceFile(there, "new"); }},
        {"close", "ReplaceFile", [&] { files.ReplaceFile(there, "new"); }},
        {"close", "ReplaceFile", [&] { files.ReplaceFile(other, "new"); }},
        {"rename", "ReplaceFile", [&] { files.ReplaceFile(there, "new"); }},
        {"readdir", "ReplaceFile", [&] { files.ReplaceFile(inAnotherCase, "new"); }},
        {"", "DeleteFile", [&] { files.DeleteFile(none); }},
        {"", "DeleteFile", [&] { files.DeleteFile(inner); }},
        {"unlink", "DeleteFile", [&] { files.DeleteFile(there); }},
    };
    int number = 0;
    for (const Refused& c : cases) {
        SCOPED_TRACE(Text(c.source) + " " + c.call + ", case " + std::to_string(++number));
        for (const Text& name : Names()) {
            std::filesystem::remove_all(At(name));
        }
        Put("a.kdt", "text");
        std::filesystem::create_hard_link(Put("b.kdt", "other"), At("second name"));
        MakeFolderAt("folder");
        {
            FailingCalls calls;
            calls.FailEach(c.call, EIO);
            EXPECT_EQ(SourceOf(c.act), Text("SystemFiles.") + c.source);
        }
        EXPECT_FALSE(std::filesystem::exists(At("none")) && c.source == Text("CopyForArchive"))
            << "half a copy";
        (void)ErrorOf([&] { files.Settle(); });
    }
}

}  // namespace
}  // namespace kd
