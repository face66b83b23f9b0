#include "platform/GridOnScreen.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/VSFlexGrid.h"

namespace kd {
namespace {

class GridOnScreenTest : public testing::Test, public GridScreen {
protected:
    GridOnScreenTest() {
        grid.SetCols(2);
        grid.SetRows(3);
        grid.SetScreen(this);
    }
    void CellChanged(std::int32_t, std::int32_t) override { log.emplace_back("cell"); }
    void LayoutChanged() override { log.emplace_back("layout"); }
    void SelectionChanged() override { log.emplace_back("selection"); }

    VSFlexGrid grid{"Grid"};
    std::vector<std::string> log;
};

TEST_F(GridOnScreenTest, AChangeOfAnyKindWithRedrawOffIsToldOnceItIsOn) {
    struct Case {
        const char* label;
        std::function<void()> change;
    };
    const Case cases[] = {{"cell", [this] { grid.SetTextMatrix(1, 1, "x"); }},
                          {"layout", [this] { grid.SetColWidth(1, 50); }},
                          {"selection", [this] { grid.Select(2, 1); }}};
    for (const Case& c : cases) {
        log.clear();
        grid.SetRedraw(false);
        c.change();
        EXPECT_TRUE(log.empty()) << c.label;
        grid.SetRedraw(true);
        EXPECT_EQ(log, (std::vector<std::string>{"layout", "selection"})) << c.label;
    }
}

}  // namespace
}  // namespace kd
