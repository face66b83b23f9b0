#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "admin/frmApplicationAdmin.h"
#include "fakes/Builders.h"
#include "fakes/TestMachine.h"
#include "lifecycle/frmKDLimitDesk.h"
#include "model/Columns.h"

namespace kd {

/// Writes what is asked of the file system to the toolkit's log, so that one log holds the order of all.
class OrderedFiles : public MemoryFiles {
public:
    explicit OrderedFiles(ScriptedToolkit& toolkit) : m_toolkit(toolkit) {}
    bool Exists(std::string_view path) override {
        m_toolkit.log.push_back("exists " + Text(path));
        return MemoryFiles::Exists(path);
    }
    using MemoryFiles::Read;
    std::string Read(std::string_view path) override {
        m_toolkit.log.push_back("read " + Text(path));
        return MemoryFiles::Read(path);
    }
    void ReplaceFile(std::string_view path, std::string_view bytes) override {
        m_toolkit.log.push_back("write " + Text(path));
        MemoryFiles::ReplaceFile(path, bytes);
    }

private:
    ScriptedToolkit& m_toolkit;
};

class OrderedSuite : public FakeSuite {
public:
    explicit OrderedSuite(ScriptedToolkit& toolkit) : m_toolkit(toolkit) {}
    std::unique_ptr<KDSuiteContext> NewSuiteContext() override {
        m_toolkit.log.emplace_back("suite context");
        return FakeSuite::NewSuiteContext();
    }
    std::unique_ptr<KDLogin> NewLogin() override {
        m_toolkit.log.emplace_back("login");
        return FakeSuite::NewLogin();
    }
    std::unique_ptr<KDApplicationFile> NewApplicationFile() override {
        m_toolkit.log.emplace_back("application file");
        return FakeSuite::NewApplicationFile();
    }

private:
    ScriptedToolkit& m_toolkit;
};

class OrderedEnvironment : public FakeEnvironment {
public:
    explicit OrderedEnvironment(ScriptedToolkit& toolkit) : m_toolkit(toolkit) {}
    Text Variable(std::string_view name) const override {
        m_toolkit.log.push_back("variable " + Text(name));
        return FakeEnvironment::Variable(name);
    }

private:
    ScriptedToolkit& m_toolkit;
};

/// The main form over fakes that share one log.
struct MainFormDesk : TestMachine {
    static constexpr const char* Settings = "/home/anna/kd6/KDLimitDesk.IKD";
    static constexpr const char* Fallback = "/opt/kd/KDLimitDesk.ini";

    OrderedFiles disk{toolkit};
    OrderedSuite orderedSuite{toolkit};
    OrderedEnvironment machine{toolkit};
    Platform orderedPlatform{disk, toolkit, locale, clock, machine, shell, fileDialog, orderedSuite};
    Globals globals{orderedPlatform};
    frmKDLimitDesk form{globals};
    Desk& desk = form.Controls();

    MainFormDesk() { disk.MakeFolder("/home/anna/kd6"); }

    static std::string SettingsText(const std::vector<Text>& applications) {
        std::string text = "[KDLIMITDESK]\r\n\r\n[RECENTS]\r\n\r\n[FILES]\r\n";
        for (const Text& path : applications) {
            text += "   File   = " + path + "\r\n";
        }
        return text;
    }
    /// An application of one variable whose files lie on the disk; its path.
    Text Install(const Text& path, const FieldBuilder& field = aField()) {
        TestMachine shelf;
        const auto application = anApplication(path).Title("Plant").Field(field);
        application.PutInto(shelf);
        for (const Text& file : shelf.files.Paths()) {
            disk.Put(file, shelf.files.Get(file));
        }
        orderedSuite.applications[path] = shelf.suite.applications[path];
        return path;
    }
    /// The same, listed and loaded.
    void Load(const FieldBuilder& field = aField()) {
        globals.gMasterFiles->Add(Install("/apps/plant.kdt", field), true);
        form.LoadAndShowApplications();
        toolkit.log.clear();
    }
    void ExpectAdmin(std::function<void(frmApplicationAdmin&)> user) {
        toolkit.ExpectForm<frmApplicationAdmin>("frmApplicationAdmin", std::move(user));
    }
    static void Ok(frmApplicationAdmin& admin) { admin.cmdOk.UserClick(); }
    static void CancelIt(frmApplicationAdmin& admin) { admin.cmdCancel.UserClick(); }

    /// The user opens the editor on "USL" of the first row and types.
    void TypeUsl(std::string_view text) {
        desk.Grid.Select(1, cnUSL - 1);
        ASSERT_TRUE(desk.Grid.StartEdit());
        desk.Grid.SetEditText(text);
    }
};

}  // namespace kd
