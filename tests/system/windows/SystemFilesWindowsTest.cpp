#include "system/windows/WindowsFixture.h"

namespace kd {
namespace {

TEST_F(SystemFilesTest, TheDelimiterIsTheBackslash) {
    EXPECT_EQ(files.Delimiter(), '\\');
}

TEST_F(SystemFilesTest, ReadOfADeviceAPipeAndANameThatCannotBeIsToldWithNumberAndPath) {
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"device", "NUL", errPermissionDenied},
                          {"device in a folder", At("NUL"), errPermissionDenied},
                          {"pipe", "\\\\.\\pipe\\kd-none", errPermissionDenied},
                          {"name too long", At(Text(300, 'a')), errDevice},
                          {"name that cannot be", At("a?b"), errDevice}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        try {
            (void)files.Read(c.path);
            ADD_FAILURE() << "nothing raised";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), c.number);
            EXPECT_EQ(error.Source(), "SystemFiles.Read");
            EXPECT_EQ(error.Path(), c.path);
        }
    }
}

TEST_F(SystemFilesTest, NamesOutsideTheCodePageAndInAnotherCaseAreTheFileMeant) {
    const Text name = "Prüfung Łódź Проба.kdt";
    Put(name, "old");
    EXPECT_EQ(files.Read(At(name)), "old");
    files.ReplaceFile(At("PRÜFUNG ŁÓDŹ ПРОБА.KDT"), "new");
    EXPECT_EQ(Get(At(name)), "new");
    EXPECT_EQ(Names(), std::set<Text>{name});
    EXPECT_EQ(files.FolderEntries(folder), std::vector<Text>{name});
}

TEST_F(SystemFilesTest, BothDelimitersLeadToAFile) {
    MakeFolderAt("folder");
    Put("folder\\a.kdt", "text");
    EXPECT_EQ(files.Read(folder + "/folder/a.kdt"), "text");
    files.ReplaceFile(folder + "/folder/a.kdt", "new");
    EXPECT_EQ(Get(At("folder\\a.kdt")), "new");
}

TEST_F(SystemFilesTest, PathsBeyondTheOldLimitWork) {
    Text deep = folder;
    while (deep.size() < 400) {
        deep += "\\a folder with quite a long name";
    }
    files.MakeFolder(deep);
    const Text path = deep + "\\a.kdt";
    files.ReplaceFile(path, "old");
    files.CopyFile(path, deep + "\\b.kdt");
    files.OpenForAppend(path)->Write("er");
    EXPECT_EQ(files.Read(path), "older");
    EXPECT_TRUE(files.IsRegularFile(path));
    EXPECT_EQ(files.FolderEntries(deep).size(), 2U);
    files.CopyForArchive(path, deep + "\\c.kdt");
    files.Rename(deep, deep + " again");
    EXPECT_EQ(files.Read(deep + " again\\c.kdt"), "older");
    files.DeleteFile(deep + " again\\c.kdt");
    files.RemoveFolder(folder + "\\a folder with quite a long name");
    EXPECT_EQ(Names(), std::set<Text>{});
}

TEST_F(SystemFilesTest, ReplaceLeavesNothingBesideAndKeepsAttributesAndTheTimeOfCreation) {
    const Text path = Put("a.kdt", "old and longer", FILE_ATTRIBUTE_HIDDEN);
    FILETIME made{0x12345678, 0x01C00000};
    {
        const windows::Handle file = HeldOpen(path, 0, GENERIC_WRITE);
        ASSERT_NE(::SetFileTime(file.Get(), &made, nullptr, nullptr), 0);
    }
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(AttributesOf(path) & FILE_ATTRIBUTE_HIDDEN, DWORD{FILE_ATTRIBUTE_HIDDEN});
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    FILETIME kept{};
    const windows::Handle file = HeldOpen(path, 0);
    ASSERT_NE(::GetFileTime(file.Get(), &kept, nullptr, nullptr), 0);
    if (::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") == nullptr) {
        EXPECT_EQ(::CompareFileTime(&kept, &made), 0);  // wine has nowhere to keep it
    }
}

TEST_F(SystemFilesTest, ReplacePutsAWholeNewFileInPlaceOfTheOldOne) {
    const Text path = Put("a.kdt", "old");
    const auto number = [&] {
        BY_HANDLE_FILE_INFORMATION information{};
        EXPECT_NE(::GetFileInformationByHandle(HeldOpen(path, 0).Get(), &information), 0);
        return information.nFileIndexLow;
    };
    const auto before = number();
    files.ReplaceFile(path, "new");
    EXPECT_NE(number(), before);
    EXPECT_EQ(Get(path), "new");
}

TEST_F(SystemFilesTest, AFileThatSomebodyReadsIsReplaced) {
    const Text path = Put("a.kdt", "old");
    const windows::Handle reader = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileThatIsBusyForAMomentIsReplacedInTheEnd) {
    const Text path = Put("a.kdt", "old");
    windows::Handle scanner = HeldOpen(path, 0);
    duringPause = [&] {
        if (pauses == 3) {
            (void)scanner.Close();
        }
    };
    files.ReplaceFile(path, "new");
    EXPECT_EQ(Get(path), "new");
    EXPECT_EQ(pauses, 3);
    EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
}

TEST_F(SystemFilesTest, AFileThatStaysBusyIsRefusedAfterAFewAttempts) {
    const Text path = Put("a.kdt", "old");
    {
        const windows::Handle holder = HeldOpen(path, 0);
        EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errPermissionDenied);
        EXPECT_EQ(pauses, AllPauses);
        EXPECT_EQ(ErrorOf([&] { (void)files.Read(path); }), errPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { files.DeleteFile(path); }), errPermissionDenied);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(path); }), errPermissionDenied);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
    EXPECT_EQ(Get(path), "old");
}

TEST_F(SystemFilesTest, AFileThatMayNotBeReplacedWhileItIsOpenIsWrittenInPlace) {
    const Text path = Put("a.kdt", "old");
    for (const char* content : {"new and longer than before", "new", ""}) {
        const windows::Handle reader = HeldOpen(path, FILE_SHARE_READ | FILE_SHARE_WRITE);
        files.ReplaceFile(path, content);
        EXPECT_EQ(Get(path), content);
        EXPECT_EQ(Names(), std::set<Text>{"a.kdt"});
    }
}

TEST_F(SystemFilesTest, AllNamesOfAFileSeeTheNewContent) {
    const Text path = Put("a.kdt", "old");
    if (::CreateHardLinkW(Wide(At("b.kdt")).c_str(), Wide(path).c_str(), nullptr) == 0) {
        GTEST_SKIP() << "this file system has no second names";
    }
    for (const char* content : {"new and longer than before", "new", ""}) {
        files.ReplaceFile(path, content);
        EXPECT_EQ(Get(path), content);
        EXPECT_EQ(Get(At("b.kdt")), content);
    }
    files.OpenForOutput(path)->Write("own");
    EXPECT_EQ(Get(path), "own");
    EXPECT_EQ(Get(At("b.kdt")), "");
}

TEST_F(SystemFilesTest, TheRootOfADiskExistsAndADeviceIsNoRegularFile) {
    EXPECT_TRUE(files.Exists("C:\\"));
    EXPECT_FALSE(files.IsRegularFile(At("NUL")));
}

TEST_F(SystemFilesTest, ANameTooLongIsNotWritten) {
    const Text path = At(Text(300, 'a'));
    EXPECT_EQ(ErrorOf([&] { files.ReplaceFile(path, "new"); }), errDevice);
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(Put("source", "new"), path); }), errDevice);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errDevice);
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForAppend(path); }), errDevice);
    EXPECT_EQ(Names(), std::set<Text>{"source"});
}

TEST_F(SystemFilesTest, AHiddenFileIsListed) {
    Put("hidden", "", FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ(files.FolderEntries(folder), std::vector<Text>{"hidden"});
}

TEST_F(SystemFilesTest, MakeFolderTakesBothDelimitersAndTheRoot) {
    files.MakeFolder(At("a\\b/c"));
    EXPECT_TRUE(std::filesystem::is_directory(Wide(At("a\\b\\c"))));
    files.MakeFolder("C:\\");
}

TEST_F(SystemFilesTest, ArchiveCopyKeepsBytesTimesAndTheReadOnlyMark) {
    const Text source = Put("a.kdt", "text");
    FILETIME written{0x12345600, 0x01C00000};
    {
        const windows::Handle file = HeldOpen(source, 0, GENERIC_WRITE);
        ASSERT_NE(::SetFileTime(file.Get(), nullptr, nullptr, &written), 0);
    }
    ASSERT_NE(::SetFileAttributesW(Wide(source).c_str(), FILE_ATTRIBUTE_READONLY), 0);
    files.CopyForArchive(source, At("copy"));
    EXPECT_EQ(Get(At("copy")), "text");
    EXPECT_NE(AttributesOf(At("copy")) & FILE_ATTRIBUTE_READONLY, 0U);
    const windows::Handle copy = HeldOpen(At("copy"), FILE_SHARE_READ);
    FILETIME kept{};
    ASSERT_NE(::GetFileTime(copy.Get(), nullptr, nullptr, &kept), 0);
    EXPECT_EQ(::CompareFileTime(&kept, &written), 0);
}

TEST_F(SystemFilesTest, TheRootAndTheFolderWhereTheProgramStandsCanBeFlushed) {
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder(""); }), 0);
    EXPECT_EQ(ErrorOf([&] { files.FlushFolder("."); }), 0);
}

}  // namespace
}  // namespace kd
