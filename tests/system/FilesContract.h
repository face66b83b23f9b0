#pragma once

#include <gtest/gtest.h>

#include <set>

#include "base/Paths.h"
#include "fakes/ErrorOf.h"
#include "system/FilesScene.h"

namespace kd {

/// Each implementation of Files, so that the fake in memory keeps what the real ones do.
struct Implementation {
    const char* name;
    std::unique_ptr<FilesScene> (*newScene)();
};

/// The contract of platform/Files.h; what one system alone has stands in the tests beside its sources.
class FilesContractTest : public testing::TestWithParam<Implementation> {
protected:
    /// A path below the scene's folder; `name` has slashes.
    Text At(Text name) const {
        for (char& c : name) {
            c = c == '/' ? files.Delimiter() : c;
        }
        return paths::InFolder(scene->Folder(), name, files.Delimiter());
    }
    Text Put(const Text& name, std::string_view bytes) const {
        const auto file = files.OpenForOutput(At(name));
        file->Write(bytes);
        file->Close();
        return At(name);
    }
    Text PutReadOnly(const Text& name, std::string_view bytes) const {
        scene->SetReadOnly(Put(name, bytes));
        return At(name);
    }
    Text MakeFolderAt(const Text& name) const {
        files.MakeFolder(At(name));
        return At(name);
    }
    std::string Get(const Text& name) const { return files.Read(At(name)); }
    std::set<Text> Names(const Text& folder) const {
        const auto names = files.FolderEntries(folder);
        EXPECT_EQ(std::set<Text>(names.begin(), names.end()).size(), names.size()) << "a name twice";
        return {names.begin(), names.end()};
    }
    std::set<Text> Names() const { return Names(scene->Folder()); }
    /// The number, where the failure names that path.
    template <typename Action>
    static std::int32_t ErrorAt(const Text& path, Action action) {
        try {
            action();
        } catch (const cError& error) {
            EXPECT_EQ(error.Path(), path);
            return error.Number();
        }
        return 0;
    }

    std::unique_ptr<FilesScene> scene = GetParam().newScene();
    Files& files = scene->GetFiles();
};

}  // namespace kd
