#include "system/FilesContract.h"

namespace kd {
namespace {

std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(Each, FilesContractTest,
                         testing::Values(Implementation{"InMemory", &SceneInMemory},
                                         Implementation{"OnDisk", &SceneOnDisk}),
                         [](const auto& implementation) { return Text(implementation.param.name); });

TEST_P(FilesContractTest, BytesAreReadAndWrittenAsTheyStand) {
    EXPECT_EQ(files.Read(Put("output", AllBytes())), AllBytes());
    EXPECT_EQ(files.Read(Put("empty", "")), "");
    files.ReplaceFile(At("replaced"), AllBytes());
    EXPECT_EQ(Get("replaced"), AllBytes());
    files.ReplaceFile(At("replaced"), "");
    EXPECT_EQ(Get("replaced"), "");
    files.CopyFile(At("output"), At("replaced"));
    EXPECT_EQ(Get("replaced"), AllBytes());
}

TEST_P(FilesContractTest, ReadTakesLargeFilesWholeAndReplacesWhatIsInTheBuffer) {
    std::string large;
    while (large.size() < 3000000) {
        large += "line " + std::to_string(large.size()) + "\r\n";
    }
    std::string bytes = "something else";
    files.Read(Put("large.kdt", large), bytes);
    EXPECT_EQ(bytes, large);
}

TEST_P(FilesContractTest, ReadEndGivesTheLastBytes) {
    const Text path = Put("a.kdt", "one\r\ntwo\r\n");
    EXPECT_EQ(files.ReadEnd(path, 2), "\r\n");
    EXPECT_EQ(files.ReadEnd(path, 5), "two\r\n");
    EXPECT_EQ(files.ReadEnd(path, 10), "one\r\ntwo\r\n");
    EXPECT_EQ(files.ReadEnd(path, 1000), "one\r\ntwo\r\n");
    EXPECT_EQ(files.ReadEnd(path, 0), "");
    EXPECT_EQ(files.ReadEnd(Put("empty.kdt", ""), 2), "");
    EXPECT_EQ(files.ReadEnd(At("A.KDT"), 2), "\r\n");
    EXPECT_EQ(ErrorOf([&] { (void)files.ReadEnd(At("none"), 2); }), errFileNotFound);
    EXPECT_EQ(ErrorOf([&] { (void)files.ReadEnd(scene->Folder(), 2); }), errPermissionDenied);
}

TEST_P(FilesContractTest, ReadOfAFailureNamesItsNumberAndPath) {
    Put("a.kdt", "text");
    MakeFolderAt("folder");
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"missing", At("b.kdt"), errFileNotFound},
                          {"folder missing", At("none/b.kdt"), errPathNotFound},
                          {"a file in the folder's place", At("a.kdt/b.kdt"), errPathNotFound},
                          {"folder", At("folder"), errPermissionDenied},
                          {"no file", scene->MakeSpecial(At("special")), errPermissionDenied},
                          {"empty path", "", errFileNotFound}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorAt(c.path, [&] { (void)files.Read(c.path); }), c.number);
    }
}

TEST_P(FilesContractTest, ExistsSeesFilesAndFoldersButOnlyFilesAreRegular) {
    Put("a.kdt", "");
    MakeFolderAt("folder");
    const Text special = scene->MakeSpecial(At("special"));
    EXPECT_TRUE(files.Exists(At("a.kdt")));
    EXPECT_TRUE(files.Exists(At("folder")));
    EXPECT_TRUE(files.Exists(At("folder/")));
    EXPECT_FALSE(files.Exists(At("b.kdt")));
    EXPECT_FALSE(files.Exists(At("none/b.kdt")));
    EXPECT_FALSE(files.Exists(""));
    EXPECT_TRUE(files.IsRegularFile(At("a.kdt")));
    EXPECT_FALSE(files.IsRegularFile(At("folder")));
    EXPECT_FALSE(files.IsRegularFile(special));
    EXPECT_FALSE(files.IsRegularFile(At("b.kdt")));
    EXPECT_FALSE(files.IsRegularFile(""));
}

TEST_P(FilesContractTest, ANameThatDiffersInCaseAloneIsTheFileMeant) {
    struct Case {
        const char* label;
        const char* present;
        const char* asked;
    };
    const Case cases[] = {{"extension", "plant.v3", "plant.V3"},
                          {"all of it", "PLANT.KDT", "plant.kdt"},
                          {"mixed", "Plant.Kdv6.V3", "plant.KDV6.v3"},
                          {"letters of the code page", "Prüfung.kdt", "PRÜFUNG.KDT"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        Put(c.present, "old");
        EXPECT_TRUE(files.Exists(At(c.asked)));
        EXPECT_TRUE(files.IsRegularFile(At(c.asked)));
        EXPECT_EQ(Get(c.asked), "old");
        files.ReplaceFile(At(c.asked), "new");
        EXPECT_EQ(Get(c.present), "new");
        files.OpenForAppend(At(c.asked))->Write("er");
        EXPECT_EQ(Get(c.present), "newer");
        Put("source", "copied");
        files.CopyFile(At("SOURCE"), At(c.asked));
        EXPECT_EQ(Get(c.present), "copied");
        files.CopyForArchive(At(c.asked), At("copy"));
        EXPECT_EQ(Get("copy"), "copied");
        files.DeleteFile(At("COPY"));
        EXPECT_EQ(Names(), (std::set<Text>{c.present, "source"}));
        files.MoveOver(At("Source"), At(c.asked));
        EXPECT_EQ(Names(), std::set<Text>{c.present});
        files.DeleteFile(At(c.asked));
        EXPECT_EQ(Names(), std::set<Text>{});
    }
}

TEST_P(FilesContractTest, OutputAndTheTargetOfAnArchiveCopyAreNotFoundInAnotherCase) {
    if (!scene->TellsCaseApart()) {
        GTEST_SKIP() << "the file system itself takes one for the other";
    }
    Put("A.TEMP", "other");
    Put("a.temp", "new");
    EXPECT_EQ(Get("A.TEMP"), "other");
    EXPECT_EQ(Get("a.temp"), "new");
    files.CopyForArchive(At("a.temp"), At("A.Temp"));
    EXPECT_EQ(Names(), (std::set<Text>{"A.TEMP", "a.temp", "A.Temp"}));
    EXPECT_EQ(Get("a.temp"), "new") << "the exact name goes before one in another case";
}

TEST_P(FilesContractTest, WritingRefusesWhatMayNotBeWrittenOrIsNoFile) {
    const Text source = Put("source", "new");
    Put("plain", "");
    PutReadOnly("readonly", "old");
    MakeFolderAt("folder");
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"read-only", At("readonly"), errPermissionDenied},
                          {"folder", At("folder"), errPermissionDenied},
                          {"no file", scene->MakeSpecial(At("special")), errPermissionDenied},
                          {"folder missing", At("none/a"), errPathNotFound},
                          {"a file in the folder's place", At("plain/a"), errPathNotFound}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorAt(c.path, [&] { files.ReplaceFile(c.path, "new"); }), c.number);
        EXPECT_EQ(ErrorOf([&] { files.CopyFile(source, c.path); }), c.number);
        EXPECT_EQ(ErrorOf([&] { files.MoveOver(source, c.path); }), c.number);
        EXPECT_EQ(ErrorAt(c.path, [&] { (void)files.OpenForOutput(c.path); }), c.number);
        EXPECT_EQ(ErrorAt(c.path, [&] { (void)files.OpenForAppend(c.path); }), c.number);
        EXPECT_EQ(Names(), names);
    }
    EXPECT_EQ(Get("readonly"), "old");
    EXPECT_EQ(Get("source"), "new");
}

TEST_P(FilesContractTest, ACopyMakesOrReplacesItsTargetAndAMoveTakesTheSourceAway) {
    Put("there", "old and longer");
    for (const char* const target : {"there", "new"}) {
        SCOPED_TRACE(target);
        Put("source", target);
        files.CopyFile(At("source"), At(target));
        EXPECT_EQ(Get(target), target);
        EXPECT_TRUE(files.Exists(At("source")));
        Put("source", "moved");
        files.MoveOver(At("source"), At(target));
        EXPECT_EQ(Get(target), "moved");
        EXPECT_FALSE(files.Exists(At("source")));
    }
    EXPECT_EQ(Names(), (std::set<Text>{"there", "new"}));
}

TEST_P(FilesContractTest, CopyOfAMissingSourceLeavesTheTarget) {
    const Text target = Put("a.kdt", "old");
    const Text special = scene->MakeSpecial(At("special"));
    const auto names = Names();
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(At("a.temp"), target); }), errFileNotFound);
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(At("none/a.temp"), target); }), errPathNotFound);
    EXPECT_EQ(ErrorOf([&] { files.CopyFile(special, target); }), errPermissionDenied);
    EXPECT_EQ(Get("a.kdt"), "old");
    EXPECT_EQ(Names(), names);
}

TEST_P(FilesContractTest, OutputReplacesWhatStoodThereAndOthersMayReadIt) {
    const Text path = Put("a.temp", "something longer");
    const auto file = files.OpenForOutput(path);
    EXPECT_EQ(files.Read(path), "");
    file->Write("new");
    file->Write(" text");
    file->Flush();
    EXPECT_EQ(files.Read(path), "new text");
    file->Close();
    file->Close();
    EXPECT_EQ(files.Read(path), "new text");
}

TEST_P(FilesContractTest, OutputThatAnotherHasInHandIsNotTaken) {
    const Text path = At("a.temp");
    auto held = files.OpenForOutput(path);
    held->Write("another's");
    EXPECT_EQ(ErrorAt(path, [&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen);
    held->Close();
    EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), errFileAlreadyOpen) << "closed or not";
    EXPECT_EQ(files.Read(path), "another's");
    held.reset();
    Put("a.temp", "ours");
    EXPECT_EQ(files.Read(path), "ours");
    for (const bool isClosed : {false, true}) {
        SCOPED_TRACE(isClosed ? "closed" : "open");
        held = files.OpenForOutput(path);
        if (isClosed) {
            held->Close();
        }
        held->Unlock();
        EXPECT_EQ(ErrorOf([&] { (void)files.OpenForOutput(path); }), 0);
        held.reset();
    }
}

TEST_P(FilesContractTest, AppendAddsAtTheEndWhereverThatIsByThen) {
    const Text path = Put("a.KDL", "old\r\n");
    const auto first = files.OpenForAppend(path);
    const auto second = files.OpenForAppend(path);
    first->Write("one\r\n");
    second->Write("two\r\n");
    first->Write("three\r\n");
    first->Flush();
    first->Close();
    second->Close();
    EXPECT_EQ(Get("a.KDL"), "old\r\none\r\ntwo\r\nthree\r\n");
    files.OpenForAppend(At("new.KDL"))->Write("made");
    EXPECT_EQ(Get("new.KDL"), "made");
}

TEST_P(FilesContractTest, DeleteTakesAFileAwayAndRefusesOthers) {
    files.DeleteFile(Put("a.kdt", "old"));
    struct Case {
        const char* label;
        Text path;
        std::int32_t number;
    };
    const Case cases[] = {{"missing", At("none"), errFileNotFound},
                          {"folder missing", At("none/a"), errPathNotFound},
                          {"read-only", PutReadOnly("readonly", "old"), errPermissionDenied},
                          {"folder", MakeFolderAt("folder"), errPermissionDenied},
                          {"no file", scene->MakeSpecial(At("special")), errPermissionDenied}};
    const auto names = Names();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(ErrorAt(c.path, [&] { files.DeleteFile(c.path); }), c.number);
    }
    EXPECT_EQ(Names(), names);
}

TEST_P(FilesContractTest, AFileThatIsAbandonedIsDeletedAndOneInHandStays) {
    files.DeleteAbandoned(Put("left", "by somebody"));
    EXPECT_EQ(Names(), std::set<Text>{});
    auto held = files.OpenForOutput(At("held"));
    files.DeleteAbandoned(At("held"));
    EXPECT_EQ(Names(), std::set<Text>{"held"});
    held.reset();
    files.DeleteAbandoned(At("held"));
    MakeFolderAt("folder");
    const Text special = scene->MakeSpecial(At("special"));
    const auto names = Names();
    files.DeleteAbandoned(At("folder"));
    files.DeleteAbandoned(special);
    files.DeleteAbandoned(At("none"));
    EXPECT_EQ(Names(), names);
}

}  // namespace
}  // namespace kd
