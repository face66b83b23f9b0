#include "base/Scope.h"
#include "system/windows/WindowsFixture.h"

namespace kd {
namespace {

/// Two programs at the files of one folder: `files` is ours, `other` is another's.
class TwoAtAFileTest : public SystemFilesTest {
protected:
    std::unique_ptr<OutputFile> WrittenByOther(const Text& path, std::string_view bytes) {
        auto output = other.OpenForOutput(path);
        output->Write(bytes);
        output->Close();
        return output;
    }

    SystemFiles other{CodePage::Of(1252)};
};

TEST_F(TwoAtAFileTest, OutputThatAnotherHasInHandIsWaitedForAsLongAsASaveTakes) {
    const Text path = At("a.temp");
    const auto held = other.OpenForOutput(path);
    held->Write("another's");
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    EXPECT_EQ(pauses, waiting::PausesForASave);
    EXPECT_EQ(Get(path), "another's");
}

TEST_F(TwoAtAFileTest, OutputThatIsUnlockedIsTaken) {
    const Text path = At("a.temp");
    for (const bool isClosed : {false, true}) {
        SCOPED_TRACE(isClosed ? "closed" : "open");
        const auto held = other.OpenForOutput(path);
        held->Write("another's");
        if (isClosed) {
            held->Close();
        }
        held->Unlock();
        EXPECT_EQ(Get(path), "another's");
        EXPECT_EQ(ErrorOf([&] { files.OpenForOutput(path)->Write("ours"); }), 0);
        EXPECT_EQ(Get(path), "ours");
        held->Unlock();
        held->Close();
    }
    EXPECT_EQ(pauses, 0);
}

TEST_F(TwoAtAFileTest, OutputWaitsUntilTheOtherHasSaved) {
    const Text path = At("a.temp");
    auto held = WrittenByOther(path, "another's");
    duringPause = [&] {
        if (pauses == 30) {
            held.reset();
        }
    };
    files.OpenForOutput(path)->Write("ours");
    EXPECT_EQ(pauses, 30);
    EXPECT_EQ(Get(path), "ours");
}

TEST_F(TwoAtAFileTest, AFileThatSomebodyHasOpenIsNotEmptied) {
    const Text path = Put("a.temp", "old");
    {
        const windows::Handle reader = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_DELETE);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    }
    {
        const windows::Handle writer =
            HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, GENERIC_WRITE);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    }
    EXPECT_EQ(Get(path), "old");
}

TEST_F(TwoAtAFileTest, NobodyComesBetweenTheClosingAndTheOverwrite) {
    const Text path = At("a.temp");
    const Text target = Put("a.kdt", "old");
    auto held = WrittenByOther(path, "whole");
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    other.CopyFile(path, target);
    EXPECT_EQ(Get(target), "whole");
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    other.DeleteFile(path);
    held.reset();
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    EXPECT_EQ(Get(target), "whole");
}

TEST_F(TwoAtAFileTest, TheOneThatKeepsAFileMovesItOverItsTarget) {
    const Text path = At("a.temp");
    for (const Text& target : {Put("there", "old"), At("new")}) {
        SCOPED_TRACE(target);
        auto held = WrittenByOther(path, "whole");
        pauses = 0;
        other.MoveOver(path, target);
        EXPECT_EQ(pauses, 0);
        EXPECT_EQ(Get(target), "whole");
        held.reset();
        EXPECT_FALSE(files.Exists(path));
    }
    EXPECT_EQ(Names(), (std::set<Text>{"there", "new"}));
}

TEST_F(TwoAtAFileTest, ASettledTextIsFlushedOnceAndTakesItsPlaceItselfWhileItIsKept) {
    static int flushes;
    const auto number = [&](const Text& path) {
        BY_HANDLE_FILE_INFORMATION information{};
        EXPECT_NE(
            ::GetFileInformationByHandle(
                HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE).Get(), &information),
            0);
        return information.nFileIndexLow;
    };
    const Text path = At("a.temp");
    const Text target = Put("a.kdt", "old", FILE_ATTRIBUTE_HIDDEN);
    const auto flush = std::exchange(windows::FlushBuffers, [](windows::RawHandle) {
        ++flushes;
        return 1;
    });
    flushes = 0;
    auto text = files.OpenForOutput(path);
    text->Write("new");
    EXPECT_TRUE(text->TakeRightsOf(target) == text->TakeRightsOf(At("A.KDT")));
    EXPECT_TRUE(text->TakeRightsOf(target).file.IsKnown());
    EXPECT_FALSE(text->TakeRightsOf(target) == text->TakeRightsOf(path));
    EXPECT_FALSE(text->TakeRightsOf(At("none")).file.IsKnown());
    const FileState seen = text->TakeRightsOf(target);
    text->CloseForSettling();
    EXPECT_EQ(flushes, 0);
    files.Settle();
    EXPECT_EQ(flushes, 1);
    EXPECT_EQ(ErrorOf([&] { (void)other.OpenForOutput(path, Patience::None); }), errFileAlreadyOpen);
    EXPECT_EQ(pauses, 0);
    const auto before = number(path);
    EXPECT_TRUE(files.MoveSettled(path, target, seen));
    EXPECT_EQ(number(target), before);
    text.reset();
    files.Settle();
    EXPECT_EQ(flushes, 1);
    windows::FlushBuffers = flush;
    EXPECT_EQ(Get(target), "new");
    EXPECT_EQ(AttributesOf(target) & FILE_ATTRIBUTE_HIDDEN, DWORD{FILE_ATTRIBUTE_HIDDEN});
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

// As on a share that lets its users change files but no rights.
TEST_F(TwoAtAFileTest, ASettledTextTakesItsPlaceItselfAlsoWhereItsOwnerAndItsRightsCannotBeChanged) {
    static DWORD refused;
    static int flushes;
    static windows::RawHandle (*open)(const wchar_t*, const windows::OpenMode&);
    open = std::exchange(windows::OpenByName,
                         [](const wchar_t* path, const windows::OpenMode& mode) -> windows::RawHandle {
                             if ((mode.access & refused) != 0) {
                                 ::SetLastError(ERROR_ACCESS_DENIED);
                                 return INVALID_HANDLE_VALUE;
                             }
                             return open(path, mode);
                         });
    const auto flush = std::exchange(windows::FlushBuffers, [](windows::RawHandle) {
        ++flushes;
        return 1;
    });
    const Scope restored([&] {
        windows::OpenByName = open;
        windows::FlushBuffers = flush;
    });
    for (const DWORD right : {DWORD{WRITE_OWNER}, DWORD{WRITE_OWNER | WRITE_DAC}}) {
        SCOPED_TRACE(right);
        refused = right;
        const Text target = Put("a.kdt", "old");
        auto text = files.OpenForOutput(At("a.temp"));
        text->Write("new");
        const FileState seen = text->TakeRightsOf(target);
        text->CloseForSettling();
        files.Settle();
        flushes = 0;
        const FileIdentity file = windows::StateOf(At("a.temp")).file;
        EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, seen));
        EXPECT_TRUE(windows::StateOf(target).file == file);
        EXPECT_EQ(flushes, 0);
        text.reset();
        files.ReplaceFile(target, "newer");
        EXPECT_FALSE(windows::StateOf(target).file == file) << "written over in place";
        EXPECT_EQ(Get(target), "newer");
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(TwoAtAFileTest, ASettledTextIsNotPutInThePlaceOfAFileWithSeveralNamesOrOfOneThatMayNotBeWritten) {
    const auto settled = [&](const Text& path) {
        auto text = files.OpenForOutput(path);
        text->Write("new");
        text->CloseForSettling();
        files.Settle();
        return text;
    };
    const Text refused = Put("refused", "old", FILE_ATTRIBUTE_READONLY);
    auto text = settled(At("a.temp"));
    const FileState readOnly = text->TakeRightsOf(refused);
    EXPECT_EQ(ErrorOf([&] { (void)files.MoveSettled(At("a.temp"), refused, readOnly); }),
              errPermissionDenied);
    EXPECT_EQ(Get(refused), "old");
    text.reset();
    const Text target = Put("several", "old");
    if (::CreateHardLinkW(Wide(At("second")).c_str(), Wide(target).c_str(), nullptr) != 0) {
        text = settled(At("a.temp"));
        EXPECT_TRUE(files.MoveSettled(At("a.temp"), target, text->TakeRightsOf(target)));
        EXPECT_EQ(Get(At("second")), "new");
        text.reset();
    }
    text = settled(At("a.temp"));
    EXPECT_TRUE(files.MoveSettled(At("a.temp"), At("missing"), FileState()));
    EXPECT_EQ(Get(At("missing")), "new");
}

TEST_F(TwoAtAFileTest, ATextThatIsNotToHaveItsTurnIsLetGoBeforeItIsSettled) {
    auto text = files.OpenForOutput(At("a.temp"));
    text->Write("new");
    text->CloseForSettling();
    text->Unlock();
    text.reset();
    files.DeleteAbandoned(At("a.temp"));
    EXPECT_EQ(Names(), std::set<Text>{});
    files.Settle();
}

// Somebody looks at it at first, as a scanner does.
TEST_F(TwoAtAFileTest, WhatTheOtherTakesInHandWhileItIsBeingDeletedStays) {
    const Text path = Put("a.temp", "left behind");
    auto looking = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE);
    std::unique_ptr<OutputFile> held;
    duringPause = [&] {
        if (pauses == 1) {
            (void)looking.Close();
            held = WrittenByOther(path, "another's");
        }
    };
    files.DeleteAbandoned(path);
    EXPECT_GE(pauses, 1);
    EXPECT_EQ(Get(path), "another's");
    held.reset();
    looking = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE);
    duringPause = [&] { (void)looking.Close(); };
    files.DeleteAbandoned(path);
    EXPECT_EQ(Names(), std::set<Text>{}) << "whoever looks is waited for";
}

TEST_F(TwoAtAFileTest, AFileThatTheOtherIsAboutToBeDoneWithIsMadeAnew) {
    const Text path = At("a.temp");
    const Text target = Put("a.kdt", "old");
    auto held = WrittenByOther(path, "another's");
    other.MoveOver(path, target);
    duringPause = [&] { held.reset(); };  // a system may keep the name until then
    auto ours = files.OpenForOutput(path);
    held.reset();
    ours->Write("ours");
    ours->Close();
    EXPECT_EQ(Get(path), "ours");
    EXPECT_EQ(Get(target), "another's");
}

TEST_F(TwoAtAFileTest, ARecordIsAddedBehindTheOneThatAnotherIsAdding) {
    const Text path = Put("a.KDL", "old,");
    const windows::Handle another =
        HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, GENERIC_WRITE);
    auto turn = std::make_unique<windows::AppendTurn>(another.Get(), true);
    duringPause = [&] {
        if (pauses == 30) {
            EXPECT_EQ(windows::AppendAll(another.Get(), "another's,"), 0U);
            turn.reset();
        }
    };
    const auto file = files.OpenForAppend(path);
    file->Write("ours,");
    EXPECT_EQ(pauses, 30);
    EXPECT_EQ(files.Read(path), "old,another's,ours,");
    other.OpenForAppend(path)->Write("another's");
    EXPECT_EQ(pauses, 30) << "the turn is given back though the file is still open";
}

TEST_F(TwoAtAFileTest, ATurnThatDoesNotComeIsDoneWithout) {
    const Text path = Put("a.KDL", "old,");
    const windows::Handle another =
        HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, GENERIC_WRITE);
    const windows::AppendTurn turn(another.Get(), true);
    const auto file = files.OpenForAppend(path);
    file->Write("ours,");
    EXPECT_EQ(pauses, waiting::PausesForASave);
    file->Write("more");
    EXPECT_EQ(pauses, waiting::PausesForASave) << "and is not waited for at every record";
    EXPECT_EQ(files.Read(path), "old,ours,more");
}

TEST_F(TwoAtAFileTest, OutputThatFailsKeepsNothing) {
    const Text path = Put("a.temp", "old", FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errPermissionDenied);
    EXPECT_EQ(pauses, 0) << "what may not be written is not waited for";
    ASSERT_NE(::SetFileAttributesW(Wide(path).c_str(), FILE_ATTRIBUTE_NORMAL), 0);
    EXPECT_EQ(Get(path), "old");
    other.OpenForOutput(path)->Write("new");
    EXPECT_EQ(Get(path), "new");
}

}  // namespace
}  // namespace kd
