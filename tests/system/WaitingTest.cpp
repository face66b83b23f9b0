#include "system/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace kd::waiting {
namespace {

/// What is asked gives these codes one after the other, the last one for good. No test waits.
class WaitingTest : public testing::Test {
protected:
    ~WaitingTest() override { Pause = m_before; }

    int Ask() {
        order += "?";
        return codes[std::min(asked++, codes.size() - 1)];
    }
    static bool MayPass(int code) { return code == 5; }

    static inline std::vector<std::uint32_t> pauses;
    static inline std::string order;  // of questions and pauses
    std::vector<int> codes;
    std::size_t asked = 0;

private:
    void SetUp() override {
        pauses.clear();
        order.clear();
        Pause = [](std::uint32_t milliseconds) {
            pauses.push_back(milliseconds);
            order += ".";
        };
    }

    void (*m_before)(std::uint32_t) = Pause;
};

TEST_F(WaitingTest, WhatWorksIsAskedOnce) {
    codes = {0};
    EXPECT_EQ(Glance([&] { return Ask(); }, [](int) { return true; }), 0);
    EXPECT_EQ(ASave([&] { return Ask(); }, [](int) { return true; }), 0);
    EXPECT_EQ(asked, 2U);
    EXPECT_TRUE(pauses.empty());
}

TEST_F(WaitingTest, WhatDoesNotPassIsAskedOnce) {
    codes = {3};
    EXPECT_EQ(Glance([&] { return Ask(); }, MayPass), 3);
    EXPECT_EQ(ASave([&] { return Ask(); }, MayPass), 3);
    EXPECT_EQ(asked, 2U);
    EXPECT_TRUE(pauses.empty());
}

TEST_F(WaitingTest, WhatPassesIsAskedUntilItWorks) {
    codes = {5, 5, 0, 5};
    EXPECT_EQ(Glance([&] { return Ask(); }, MayPass), 0);
    EXPECT_EQ(pauses.size(), 2U);
    asked = 0;
    EXPECT_EQ(ASave([&] { return Ask(); }, MayPass), 0);
    EXPECT_EQ(asked, 3U);
    EXPECT_EQ(pauses.size(), 4U);
    EXPECT_EQ(pauses.back(), PauseForASaveInMilliseconds);
    EXPECT_EQ(order, "?.?.??.?.?") << "the pause comes first, and another question then";
}

TEST_F(WaitingTest, WhatDoesNotEndIsGivenUpAfterAGlanceOrASave) {
    codes = {5};
    EXPECT_EQ(Glance([&] { return Ask(); }, MayPass), 5);
    EXPECT_EQ(pauses,
              std::vector<std::uint32_t>(std::begin(GlanceInMilliseconds), std::end(GlanceInMilliseconds)));
    pauses.clear();
    EXPECT_EQ(ASave([&] { return Ask(); }, MayPass), 5);
    EXPECT_EQ(pauses, std::vector<std::uint32_t>(PausesForASave, PauseForASaveInMilliseconds));
}

}  // namespace
}  // namespace kd::waiting
