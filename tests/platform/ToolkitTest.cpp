#include "platform/Toolkit.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/ScriptedToolkit.h"
#include "platform/Hourglass.h"

namespace kd {
namespace {

TEST(WindowGeometryTest, AWindowOfWhichNothingIsKnownHasNoSizeAndStandsInTheCorner) {
    EXPECT_EQ(WindowGeometry(), (WindowGeometry{{0, 0}, 0, 0}));
}

TEST(FormTest, WhereTheWindowLastStoodIsKeptUntilItGetsAPlaceOfItsOwnOrIsUnloaded) {
    const WindowGeometry last{{5, 6}, 300, 200};
    Form form("frmAutoFilter");
    form.SetLastGeometry(last);
    EXPECT_EQ(form.LastGeometry(), last);
    form.SetOwnPlace({7, 8});
    EXPECT_EQ(form.OwnPlace(), (Place{7, 8}));
    EXPECT_FALSE(form.LastGeometry().has_value());
    form.SetLastGeometry(last);
    form.SetFocusedControl("txtFind");
    form.Destroy();
    EXPECT_FALSE(form.LastGeometry().has_value());
    EXPECT_EQ(form.FocusedControl(), "");
}

TEST(ToolkitTest, APassInAJobIsOneLikeAnyOtherWhereTheScreenLeavesNoneOut) {
    ScriptedToolkit toolkit;
    toolkit.ProcessEventsInJob();
    EXPECT_EQ(toolkit.log, std::vector<std::string>{"events"});
}

TEST(HourglassTest, TheHourglassIsShownUntilTheEndOfTheScope) {
    ScriptedToolkit toolkit;
    {
        const Hourglass hourglass(toolkit);
        EXPECT_EQ(toolkit.MousePointer(), Pointer::Hourglass);
    }
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
}

}  // namespace
}  // namespace kd
