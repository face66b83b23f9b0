#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Paths.h"
#include "base/cError.h"
#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// The suite's services from plain data; calls that have an order are written to `log`.
class FakeSuite : public Suite {
public:
    struct View {
        Text name;
        std::int32_t number;
    };
    struct Application {
        Text title;
        std::vector<View> views;
    };

    // --- what the services know
    // -----------------------------------------------------------------------------

    Text settingsFolder = "/home/anna/kd6";
    Text applicationsFolder = "/home/anna/Documents";
    Text helpFolder = "/opt/kd/help";
    bool loginRequired = false;
    std::optional<std::pair<Text, bool>> login;  // name and whether authenticated; nothing when dismissed
    std::vector<Text> rules{"Point beyond limit", "Run of nine"};
    std::map<Text, Application> applications;  // by template path; any other path fails to open
    std::map<Text, Text> archiveErrors;        // by template path
    bool hasArchiver = true;
    Text clipboard;
    std::map<Text, int> helpTopics;  // name to number of times opened
    bool helpIndexMissing = false;
    std::int32_t failLogWith = 0;  // error number that WriteRecord raises
    int failLogAtRecord = 0;       // from 1; 0 for none

    std::vector<Text> log;              // calls in order
    std::vector<ChangeRecord> records;  // handed to all change logs
    std::vector<Text> contextCalls;
    int clipboardsMade = 0;

    // --- Suite
    // ----------------------------------------------------------------------------------------------

    std::unique_ptr<KDSuiteContext> NewSuiteContext() override { return std::make_unique<Context>(*this); }
    std::unique_ptr<KDLogin> NewLogin() override { return std::make_unique<Login>(*this); }
    std::unique_ptr<KDPathTools> NewPathTools() override { return std::make_unique<PathTools>(); }
    std::unique_ptr<KDApplicationFile> NewApplicationFile() override {
        return std::make_unique<AppFile>(*this);
    }
    std::unique_ptr<KDArchiver> NewArchiver() override {
        if (!hasArchiver) {
            throw cError(errDevice, "KDArchiver");
        }
        return std::make_unique<Archiver>(*this);
    }
    std::unique_ptr<KDArchiveContext> NewArchiveContext() override {
        return std::make_unique<ArchiveContext>(*this);
    }
    std::unique_ptr<KDChangeLog> NewChangeLog() override { return std::make_unique<ChangeLog>(*this); }
    std::unique_ptr<KDChangeMemo> NewChangeMemo() override { return std::make_unique<ChangeMemo>(*this); }
    std::unique_ptr<KDClipboard> NewClipboard() override {
        ++clipboardsMade;
        return std::make_unique<Clipboard>(*this);
    }
    std::unique_ptr<KDHelpIndex> NewHelpIndex() override { return std::make_unique<HelpIndex>(*this); }

private:
    class Context : public KDSuiteContext {
    public:
        explicit Context(FakeSuite& suite) : m_suite(suite) { m_suite.contextCalls.emplace_back("create"); }
        void SetSystemCode(std::string_view code) override {
            m_suite.contextCalls.push_back("SetSystemCode " + Text(code));
        }
        void OpenContext() override { m_suite.contextCalls.emplace_back("OpenContext"); }
        Text SettingsFolder() override { return m_suite.settingsFolder; }
        Text ApplicationsFolder() override { return m_suite.applicationsFolder; }
        Text HelpFolder() override { return m_suite.helpFolder; }

    private:
        FakeSuite& m_suite;
    };
    class LoginUser : public KDLoginUser {
    public:
        LoginUser(Text name, bool authenticated) : m_name(std::move(name)), m_authenticated(authenticated) {}
        bool IsAuthenticated() const override { return m_authenticated; }
        Text LoginUserName() const override { return m_name; }

    private:
        Text m_name;
        bool m_authenticated;
    };
    class Login : public KDLogin {
    public:
        explicit Login(FakeSuite& suite) : m_suite(suite) {}
        bool LoginRequired() override { return m_suite.loginRequired; }
        std::unique_ptr<KDLoginUser> PromptLogin(std::uintptr_t window, std::string_view title,
                                                 std::string_view prompt) override {
            m_suite.log.push_back("PromptLogin " + std::to_string(window) + "|" + Text(title) + "|" +
                                  Text(prompt));
            if (!m_suite.login) {
                return nullptr;
            }
            return std::make_unique<LoginUser>(m_suite.login->first, m_suite.login->second);
        }

    private:
        FakeSuite& m_suite;
    };
    class PathTools : public KDPathTools {
    public:
        Text ChangeExtension(std::string_view path, std::string_view extension) override {
            return paths::ChangeExtension(path, extension);
        }
        Text GetFolderPart(std::string_view path) override { return Text(paths::Folder(path)); }
        Text GetFileNamePart(std::string_view path) override { return Text(paths::FileName(path)); }
    };
    class ViewEntry : public KDViewEntry {
    public:
        explicit ViewEntry(View view) : m_view(std::move(view)) {}
        Text ViewEntryName() const override { return m_view.name; }
        std::int32_t ViewEntryNumber() const override { return m_view.number; }

    private:
        View m_view;
    };
    class RuleEntry : public KDRuleEntry {
    public:
        explicit RuleEntry(Text name) : m_name(std::move(name)) {}
        Text RuleEntryName() const override { return m_name; }

    private:
        Text m_name;
    };
    template <typename Entry, typename Made>
    class List : public KDList<Entry> {
    public:
        std::vector<Made> entries;
        const Entry& Item(std::int32_t position) const override {
            if (position < 1 || position > Count()) {
                throw cError(errInvalidArgument, "FakeSuite.List");
            }
            return entries[static_cast<std::size_t>(position - 1)];
        }
        std::int32_t Count() const override { return static_cast<std::int32_t>(entries.size()); }
    };
    class AppFile : public KDApplicationFile {
    public:
        explicit AppFile(FakeSuite& suite) : m_suite(suite) {
            m_suite.log.emplace_back("NewApplicationFile");
            for (const Text& rule : suite.rules) {
                m_rules.entries.emplace_back(rule);
            }
        }
        const KDList<KDViewEntry>& Views() override { return m_views; }
        const KDList<KDRuleEntry>& RuleList() override { return m_rules; }
        Text ApplicationTitle() override { return m_open->title; }
        void OpenFile(std::string_view path) override {
            m_suite.log.push_back("OpenFile " + Text(path));
            const auto found = m_suite.applications.find(Text(path));
            if (found == m_suite.applications.end()) {
                throw cError(errFileNotFound, "FakeSuite.OpenFile", {}, Text(path));
            }
            m_open = &found->second;
        }
        void LoadViews() override {
            m_suite.log.emplace_back("LoadViews");
            m_views.entries.clear();
            for (const View& view : m_open->views) {
                m_views.entries.emplace_back(view);
            }
        }
        void CloseFile() override {
            m_suite.log.emplace_back("CloseFile");
            m_open = nullptr;
        }

    private:
        FakeSuite& m_suite;
        const Application* m_open = nullptr;
        List<KDViewEntry, ViewEntry> m_views;
        List<KDRuleEntry, RuleEntry> m_rules;
    };
    class Archiver : public KDArchiver {
    public:
        explicit Archiver(FakeSuite& suite) : m_suite(suite) { m_suite.log.emplace_back("NewArchiver"); }
        ~Archiver() override { m_suite.log.emplace_back("~Archiver"); }
        Archiver(const Archiver&) = delete;
        Archiver& operator=(const Archiver&) = delete;
        Text ArchiveApplication(std::string_view path) override {
            m_suite.log.push_back("ArchiveApplication " + Text(path));
            const auto found = m_suite.archiveErrors.find(Text(path));
            return found == m_suite.archiveErrors.end() ? Text() : found->second;
        }

    private:
        FakeSuite& m_suite;
    };
    class ArchiveContext : public KDArchiveContext {
    public:
        explicit ArchiveContext(FakeSuite& suite) : m_suite(suite) {
            m_suite.log.emplace_back("NewArchiveContext");
        }
        ~ArchiveContext() override { m_suite.log.emplace_back("~ArchiveContext"); }
        ArchiveContext(const ArchiveContext&) = delete;
        ArchiveContext& operator=(const ArchiveContext&) = delete;

    private:
        FakeSuite& m_suite;
    };
    class ChangeLog : public KDChangeLog {
    public:
        explicit ChangeLog(FakeSuite& suite) : m_suite(suite) { m_suite.log.emplace_back("NewChangeLog"); }
        void SetDelimiter(std::string_view delimiter) override {
            m_suite.log.push_back("Delimiter " + Text(delimiter));
        }
        void OpenLog(std::string_view path) override {
            EXPECT_FALSE(m_open) << "OpenLog of an open log";
            m_open = true;
            m_suite.log.push_back("OpenLog " + Text(path));
        }
        void WriteRecord(const ChangeRecord& record) override {
            EXPECT_TRUE(m_open) << "WriteRecord without OpenLog";
            if (m_suite.failLogWith != 0 &&
                static_cast<int>(m_suite.records.size()) + 1 == m_suite.failLogAtRecord) {
                throw cError(m_suite.failLogWith, "KDChangeLog.WriteRecord");
            }
            m_suite.log.push_back("WriteRecord " + record.variable + "|" + record.property + "|" +
                                  record.oldValue + "|" + record.newValue);
            m_suite.records.push_back(record);
        }
        void CloseLog() override {
            m_open = false;
            m_suite.log.emplace_back("CloseLog");
        }

    private:
        FakeSuite& m_suite;
        bool m_open = false;
    };
    class ChangeMemo : public KDChangeMemo {
    public:
        explicit ChangeMemo(FakeSuite& suite) : m_suite(suite) { m_suite.log.emplace_back("NewChangeMemo"); }
        void OpenMemo(std::string_view path) override {
            EXPECT_FALSE(m_open) << "OpenMemo of an open report";
            m_open = true;
            m_suite.log.push_back("OpenMemo " + Text(path));
        }
        void BeginEntry(std::string_view view, std::string_view user, std::string_view date,
                        std::string_view time) override {
            EXPECT_TRUE(m_open) << "BeginEntry without OpenMemo";
            m_begun = true;
            m_suite.log.push_back("BeginEntry " + Text(view) + "|" + Text(user) + "|" + Text(date) + "|" +
                                  Text(time));
        }
        void WriteItem(std::string_view variable, std::string_view property, std::string_view oldValue,
                       std::string_view newValue) override {
            EXPECT_TRUE(m_begun) << "WriteItem without BeginEntry";
            m_suite.log.push_back("WriteItem " + Text(variable) + "|" + Text(property) + "|" +
                                  Text(oldValue) + "|" + Text(newValue));
        }
        void CloseMemo() override {
            m_open = m_begun = false;
            m_suite.log.emplace_back("CloseMemo");
        }

    private:
        FakeSuite& m_suite;
        bool m_open = false;
        bool m_begun = false;
    };
    class Clipboard : public KDClipboard {
    public:
        explicit Clipboard(FakeSuite& suite) : m_suite(suite) {}
        Text GetText() override { return m_suite.clipboard; }
        void SetText(std::string_view text) override { m_suite.clipboard = Text(text); }

    private:
        FakeSuite& m_suite;
    };
    class HelpTopic : public KDHelpTopic {
    public:
        HelpTopic(FakeSuite& suite, Text name) : m_suite(suite), m_name(std::move(name)) {}
        void OpenTopic() override {
            m_suite.log.push_back("OpenTopic " + m_name);
            ++m_suite.helpTopics[m_name];
        }

    private:
        FakeSuite& m_suite;
        Text m_name;
    };
    class HelpIndex : public KDHelpIndex {
    public:
        explicit HelpIndex(FakeSuite& suite) : m_suite(suite) {}
        void SetFileName(std::string_view path) override {
            m_suite.log.push_back("SetFileName " + Text(path));
        }
        std::unique_ptr<KDHelpTopic> FindTopic(std::string_view name) override {
            m_suite.log.push_back("FindTopic " + Text(name));
            if (m_suite.helpTopics.count(Text(name)) == 0) {
                return nullptr;
            }
            return std::make_unique<HelpTopic>(m_suite, Text(name));
        }
        void LoadIndex() override {
            m_suite.log.emplace_back("LoadIndex");
            if (m_suite.helpIndexMissing) {
                throw cError(errFileNotFound, "KDHelpIndex.LoadIndex");
            }
        }

    private:
        FakeSuite& m_suite;
    };
};

}  // namespace kd
