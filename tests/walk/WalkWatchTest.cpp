#include "walk/WalkWatch.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QTimer>

#include "model/Columns.h"
#include "walk/WalkFolder.h"

namespace kd {
namespace {

/// A loaded program and a watch that has found nothing wrong with it.
class WalkWatchTest : public testing::Test {
protected:
    void SetUp() override {
        qputenv("USERNAME", "anna");
        // Manage Applications comes first, and Ok loads what is listed.
        QTimer user;
        QObject::connect(&user, &QTimer::timeout, &user, [] {
            if (QWidget* const modal = QApplication::activeModalWidget()) {
                modal->findChild<QPushButton*>(QStringLiteral("cmdOk"))->click();
            }
        });
        user.start(0);
        ASSERT_TRUE(program.Start());
        watch.Begin(program);
        watch.Look();
        ASSERT_THAT(found, testing::IsEmpty());
        ASSERT_GT(grid.Rows(), 100);
    }

    /// What the watch finds after one event.
    std::string Found() {
        watch.Event();
        watch.Look();
        return found.empty() ? "nothing" : found.front();
    }
    void Write(const char* name) const {
        QFile file(folder.Path() + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("x");
    }

    static constexpr std::int32_t Usl = cnUSL - 1;  // screen position
    const WalkFolder folder;
    Application program{folder.Folders()};
    Globals& g = program.Data();
    VSFlexGrid& grid = program.Form().Controls().Grid;
    std::vector<std::string> found;
    WalkWatch watch{folder.Path().toStdString(), [this](const std::string& what) { found.push_back(what); }};
};

TEST_F(WalkWatchTest, FindsACellThatDoesNotShowItsValue) {
    grid.SetTextMatrix(1, Usl, "7");
    EXPECT_THAT(Found(), testing::StartsWith("a cell does not show its value"));
}

TEST_F(WalkWatchTest, FindsAMarkThatItsViewKnowsNothingOf) {
    grid.SetBackColor(1, Usl, ChangedColour);
    EXPECT_THAT(Found(), testing::EndsWith("has a mark and knows of no change"));
}

TEST_F(WalkWatchTest, FindsAViewThatClaimsAChangeWithoutAMark) {
    g.gFiles->Ref(1).SetChangesMade(true);
    EXPECT_THAT(Found(), testing::EndsWith("claims a change that is nowhere"));
}

TEST_F(WalkWatchTest, FindsAChangeWithoutAMark) {
    g.gFields->Ref(1).SetName("Other");
    grid.SetTextMatrix(1, cnVariableName - 1, "Other");
    g.gFiles->Ref(1).SetChangesMade(true);
    EXPECT_THAT(Found(), testing::StartsWith("a change without a mark"));
}

TEST_F(WalkWatchTest, FindsAColourThatIsNoMarkAndAMarkWhereNothingCanChange) {
    grid.SetBackColor(2, Usl, 1);
    EXPECT_THAT(Found(), testing::StartsWith("a colour that is no mark"));
    found.clear();
    grid.SetBackColor(1, 2, ChangedColour);
    EXPECT_THAT(Found(), testing::StartsWith("a mark where nothing can change"));
}

TEST_F(WalkWatchTest, FindsAFunnelWithoutAFilter) {
    grid.SetCellPicture(Usl, HeaderPicture::FilterOn);
    EXPECT_EQ(Found(), "the funnel of position 9 does not tell its filter");
}

TEST_F(WalkWatchTest, FindsWhatAJobHasNotPutBack) {
    grid.SetRedraw(false);
    EXPECT_EQ(Found(), "the grid does not redraw");
    found.clear();
    grid.SetRedraw(true);
    program.Screen().SetMousePointer(Pointer::Hourglass);
    EXPECT_EQ(Found(), "the hourglass stays");
    found.clear();
    program.Screen().SetMousePointer(Pointer::Default);
    program.Form().Controls().ProgressBar1.SetValue(50);
    EXPECT_EQ(Found(), "the progress bar stays");
}

TEST_F(WalkWatchTest, FindsAFileThatNoCommandHadToWrite) {
    Write("/apps/primer.kdt6");
    EXPECT_THAT(Found(), testing::StartsWith("a file was written that no command had to write"));
    found.clear();
    watch.MayWrite(folder.Path().toStdString() + "/config/");
    Write("/config/KDLimitDesk.IKD");
    EXPECT_EQ(Found(), "nothing");
    Write("/config/KDLimitDesk.IKD");
    EXPECT_THAT(Found(), testing::StartsWith("a file was written that no command had to write"));
}

TEST_F(WalkWatchTest, FindsAFileThatIsGoneAndATemporaryFileThatWasLeft) {
    ASSERT_TRUE(QFile::remove(folder.Path() + "/apps/astmc150.V1"));
    EXPECT_THAT(Found(), testing::StartsWith("a file is gone"));
    found.clear();
    watch.MayWrite(folder.Path().toStdString() + "/apps/");
    Write("/apps/primer.temp");
    EXPECT_THAT(Found(), testing::StartsWith("a temporary file was left"));
}

}  // namespace
}  // namespace kd
