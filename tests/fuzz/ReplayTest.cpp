#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "SourceFolder.h"
#include "fuzz/FuzzTargets.h"

namespace kd::fuzz {
namespace {

class ReplayTest : public testing::TestWithParam<Target> {};

/// Every input that was ever found worth keeping, findings among them.
TEST_P(ReplayTest, EveryKeptInputKeepsThePromises) {
    const std::filesystem::path folder =
        std::filesystem::path(KD_SOURCE_DIR "/tests/fuzz/corpus") / GetParam().name;
    int inputs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string input{std::istreambuf_iterator<char>(file), {}};
        EXPECT_NO_THROW(GetParam().run(input)) << entry.path();
        ++inputs;
    }
    EXPECT_GT(inputs, 0) << folder;
    EXPECT_NO_THROW(GetParam().run({}));
}

INSTANTIATE_TEST_SUITE_P(Each, ReplayTest, testing::ValuesIn(Targets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
}  // namespace kd::fuzz
