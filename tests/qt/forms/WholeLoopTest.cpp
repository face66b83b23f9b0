#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "SourceFolder.h"
#include "guided/Commands.h"
#include "guided/MainJob.h"
#include "guided/Snapshot.h"
#include "qt/Application.h"
#include "qt/services/QtText.h"

namespace kd {
namespace {

/// A machine of one run: copies of an application's samples, and a settings file that lists it.
class Machine {
public:
    explicit Machine(const QString& base, const QString& extension) {
        EXPECT_TRUE(m_folder.isValid());
        QDir root(m_folder.path());
        EXPECT_TRUE(root.mkpath("apps") && root.mkpath("config") && root.mkpath("bin"));
        const QDir samples(QStringLiteral(KD_SOURCE_DIR "/samples"));
        for (const QString& name : samples.entryList({base + ".*"}, QDir::Files)) {
            EXPECT_TRUE(QFile::copy(samples.filePath(name), Apps() + "/" + name));
        }
        QFile list(m_folder.path() + "/config/KDLimitDesk.IKD");
        EXPECT_TRUE(list.open(QIODevice::WriteOnly));
        list.write("[FILES]\r\nFile=" + (Apps() + "/" + base + extension).toUtf8() + "\r\n");
    }
    QString Apps() const { return m_folder.path() + "/apps"; }
    ApplicationFolders Folders() const {
        const Text root = FromQt(m_folder.path());
        return {root + "/bin/KDLimitDesk",
                {root + "/config", root + "/apps", root + "/bin/help", root + "/bin"}};
    }

private:
    QTemporaryDir m_folder;
};

void RunLoop(const QString& base, const QString& extension, std::vector<LimitChange> changes) {
    qputenv("USERNAME", "anna");
    const Machine machine(base, extension);
    const std::string apps = machine.Apps().toStdString();
    const Snapshot before = TakeSnapshot(apps);
    std::string told;
    Application program(machine.Folders());
    Guide guide(program, {}, [&told](const std::string& line) { told += line + "\n"; });
    LoadAll(guide, program);
    DoMainJob(guide, program, changes);
    EXPECT_TRUE(guide.Run()) << told;
    for (const std::string& failure : CheckFiles(apps, before, changes).failures) {
        ADD_FAILURE() << failure;
    }
}

TEST(WholeLoopTest, AnApplicationOfGenerationFiveIsLoadedChangedAndCommitted) {
    RunLoop("diesel", ".kdt",
            {{"diesel.kdt", 0, "Density at 15 \xC2\xB0\x43", {}, "844.9", {}},
             {"diesel.kdt", 11, "Density at 15 \xC2\xB0\x43", {}, "844.8", "2000"}});
}

TEST(WholeLoopTest, AnApplicationOfGenerationSixIsLoadedChangedAndCommitted) {
    RunLoop("water", ".kdt6",
            {{"water.kdt6", 1, "Lead", {}, "4.5", "2000"},
             {"water.kdt6", 3, "Lead at 90th percentile", {}, ".014", {}}});
}

TEST(WholeLoopTest, EveryCommandIsTriedAndTakenBackWithoutATrace) {
    qputenv("USERNAME", "anna");
    const Machine machine("diesel", ".kdt");
    const std::string apps = machine.Apps().toStdString();
    const Snapshot before = TakeSnapshot(apps);
    std::string told;
    Application program(machine.Folders());
    Guide guide(program, {}, [&told](const std::string& line) { told += line + "\n"; });
    LoadAll(guide, program);
    TryCommands(guide, program, {"diesel.kdt", 0, "Density at 15 \xC2\xB0\x43", {}, "844.9", {}});
    guide.ExpectQuestionAtClosing("You have outstanding changes.");  // a view once marked stays so
    EXPECT_TRUE(guide.Run()) << told;
    EXPECT_EQ(TakeSnapshot(apps), before);
}

}  // namespace
}  // namespace kd
