#include "base/Numbers.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

TEST(Numbers, PlainTextOfTheEverydayAndTheEdges) {
    struct Case {
        double value;
        const char* text;
    };
    const Case cases[] = {{0, "0"},
                          {0.5, ".5"},
                          {-0.25, "-.25"},
                          {12.5, "12.5"},
                          {1e15, "1E+15"},
                          {1.5e-16, "1.5E-16"},
                          {1e-15, ".000000000000001"},
                          {123456789012345, "123456789012345"},
                          {999999999999999.9, "1E+15"},
                          {1e100, "1E+100"},
                          {-3e20, "-3E+20"},
                          {0.1 + 0.2, ".3"}};
    for (const Case& c : cases) {
        EXPECT_EQ(PlainText(c.value), c.text);
    }
}

}  // namespace
}  // namespace kd
