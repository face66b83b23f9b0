#include "base/Paths.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

TEST(PathsTest, PartsOfAPath) {
    struct Case {
        const char* path;
        const char* folder;
        const char* fileName;
        const char* baseName;
    };
    const Case cases[] = {{"/plant/line.kdt", "/plant", "line.kdt", "line"},
                          {"C:\\plant\\line.kdt", "C:\\plant", "line.kdt", "line"},
                          {"C:\\plant/line.kdt", "C:\\plant", "line.kdt", "line"},
                          {"/plant.d\\line", "/plant.d", "line", "line"},
                          {"line.kdt", "", "line.kdt", "line"},
                          {"/line.kdt", "", "line.kdt", "line"},
                          {"/plant/line.KDV6.V3", "/plant", "line.KDV6.V3", "line.KDV6"},
                          {"/plant.d/line", "/plant.d", "line", "line"},
                          {"/plant/.kdt", "/plant", ".kdt", ""},
                          {"/plant/line.", "/plant", "line.", "line"},
                          {"/plant/", "/plant", "", ""},
                          {"/plant//line.kdt", "/plant/", "line.kdt", "line"},
                          {"", "", "", ""}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(paths::Folder(c.path), c.folder);
        EXPECT_EQ(paths::FileName(c.path), c.fileName);
        EXPECT_EQ(paths::BaseName(c.path), c.baseName);
    }
}

TEST(PathsTest, AFolderToListIsNamedForAPathWithoutOneToo) {
    EXPECT_EQ(paths::FolderToList("plant.kdt"), ".");
    EXPECT_EQ(paths::FolderToList("/plant.kdt"), "");
    EXPECT_EQ(paths::FolderToList("\\plant.kdt"), "");
    EXPECT_EQ(paths::FolderToList("/a/plant.kdt"), "/a");
    EXPECT_EQ(paths::FolderToList("C:\\plant.kdt"), "C:");
}

TEST(PathsTest, ChangeExtensionReplacesTheLastOneOfTheFileNameOrAddsOne) {
    struct Case {
        const char* path;
        const char* extension;
        const char* changed;
    };
    const Case cases[] = {{"/plant/line.kdt", ".V3", "/plant/line.V3"},
                          {"/plant/line.kdt6", ".KDV6.V3", "/plant/line.KDV6.V3"},
                          {"/plant/line.KDV6.V3", ".temp", "/plant/line.KDV6.temp"},
                          {"/plant/line.kdt", "", "/plant/line"},
                          {"/plant/line", ".KDL", "/plant/line.KDL"},
                          {"/plant.d/line", ".KDL", "/plant.d/line.KDL"},
                          {"C:\\plant.d\\line", ".KDL", "C:\\plant.d\\line.KDL"},
                          {"/plant/.kdt", ".V1", "/plant/.V1"},
                          {"/plant/a.b.kdt", ".V1", "/plant/a.b.V1"},
                          {"/plant/line.", ".V1", "/plant/line.V1"},
                          {"/plant.d/", ".V1", "/plant.d/.V1"},
                          {"", ".V1", ".V1"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(paths::ChangeExtension(c.path, c.extension), c.changed);
    }
}

TEST(PathsTest, InFolderPutsOneDelimiterBetween) {
    EXPECT_EQ(paths::InFolder("/plant", "line.kdt", '/'), "/plant/line.kdt");
    EXPECT_EQ(paths::InFolder("C:\\plant", "line.kdt", '\\'), "C:\\plant\\line.kdt");
}

TEST(PathsTest, InFolderAddsNoSecondDelimiter) {
    EXPECT_EQ(paths::InFolder("/plant/", "line.kdt", '/'), "/plant/line.kdt");
    EXPECT_EQ(paths::InFolder("C:\\", "line.kdt", '\\'), "C:\\line.kdt");
    EXPECT_EQ(paths::InFolder("C:/", "line.kdt", '\\'), "C:/line.kdt");
    EXPECT_EQ(paths::InFolder("/plant\\", "line.kdt", '/'), "/plant\\line.kdt");
}

TEST(PathsTest, AFileInTheFolderOfARootFileIsInTheRoot) {
    EXPECT_EQ(paths::InFolder(paths::Folder("/line.kdt"), "line.V1", '/'), "/line.V1");
}

}  // namespace
}  // namespace kd
