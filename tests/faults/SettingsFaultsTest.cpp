#include <gtest/gtest.h>

#include "admin/frmApplicationAdmin.h"
#include "fakes/FailingFiles.h"
#include "fakes/TestMachine.h"
#include "lifecycle/FirstStart.h"
#include "lifecycle/Settings.h"
#include "lifecycle/frmKDLimitDesk.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;
using Kind = FailingFiles::Kind;

constexpr const char* SettingsFile = "/home/anna/kd6/KDLimitDesk.IKD";

/// The program over a disk with a fault.
struct FaultyDesk : TestMachine {
    FaultyDesk() {
        files.MakeFolder("/home/anna/kd6");
        WriteSettings(g, SettingsFile);
        oldBytes = files.Get(SettingsFile);
        (void)faulty.gMasterFiles->Add("/apps/a.kdt", true);
        faulty.gRecents->Add("criterion");
    }
    FailingFiles failing{files};
    Platform faultyPlatform{failing, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals faulty{faultyPlatform};
    std::string oldBytes;
};

class SettingsFaultsTest : public testing::TestWithParam<std::tuple<Kind, bool>> {};

TEST_P(SettingsFaultsTest, AWriteThatFailsLeavesTheOldListOrTheNewOneAndSaysNothing) {
    const auto [kind, forGood] = GetParam();
    bool untouched = false;
    int failAt = 1;
    for (; !untouched; ++failAt) {
        FaultyDesk t;
        t.failing.FailAt(failAt, kind, forGood);
        WriteSettings(t.faulty, SettingsFile);  // the toolkit fails the test at any box
        untouched = t.failing.Steps().size() < static_cast<std::size_t>(failAt);
        const std::string left = t.files.Get(SettingsFile);
        const bool isNew = left.find("   File   = /apps/a.kdt\r\n") != std::string::npos;
        EXPECT_TRUE(isNew || left == t.oldBytes) << left;
        EXPECT_EQ(isNew, untouched || kind == Kind::DoneAndDevice);

        t.failing.FailNoMore();
        WriteSettings(t.faulty, SettingsFile);
        ReadSettings(t.g, SettingsFile);
        EXPECT_EQ(t.g.gMasterFiles->Count(), 1);
        EXPECT_EQ(t.g.gRecents->Count(), 1);
        ASSERT_LT(failAt, 20);
    }
    RecordProperty("operations", failAt - 2);
}

TEST_P(SettingsFaultsTest, AStartOverADiskThatFailsNeverReplacesTheUsersList) {
    const auto [kind, forGood] = GetParam();
    bool untouched = false;
    int failAt = 1;
    for (; !untouched; ++failAt) {
        FaultyDesk t;
        WriteSettings(t.faulty, SettingsFile);
        const std::string list = t.files.Get(SettingsFile);
        t.files.Put("/usr/share/samples/sample.kdt", "");
        t.failing.FailAt(failAt, kind, forGood);
        ProvideSampleApplications(t.faulty, "/usr/share/samples", "/home/anna/samples");
        frmKDLimitDesk form(t.faulty);
        t.toolkit.ExpectForm<frmApplicationAdmin>(
            "frmApplicationAdmin", [](frmApplicationAdmin& admin) { admin.cmdCancel.UserClick(); });
        (void)form.Form_Load(1);
        untouched = t.failing.Steps().size() < static_cast<std::size_t>(failAt);
        // A disk that says twice, and says "not found", has no such file.
        const bool saysMissing = forGood && (kind == Kind::NotFound || kind == Kind::PathNotFound);
        EXPECT_TRUE(t.files.Get(SettingsFile) == list || saysMissing)
            << failAt << " " << t.failing.Steps()[static_cast<std::size_t>(failAt - 1)].operation;
        ASSERT_LT(failAt, 40);
    }
    RecordProperty("operations", failAt - 2);
}

INSTANTIATE_TEST_SUITE_P(Each, SettingsFaultsTest,
                         testing::Combine(testing::ValuesIn(FailingFiles::Kinds), testing::Bool()));

}  // namespace
}  // namespace kd
