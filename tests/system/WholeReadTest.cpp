#include "system/WholeRead.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kd {
namespace {

/// A file that hands out so many bytes at a time, and fails at that read, from 1.
struct Source {
    std::string bytes;
    std::size_t most;
    int failAt;

    int operator()(char* into, std::size_t room, std::size_t& got) {
        if (++reads == failAt) {
            return 5;
        }
        got = bytes.copy(into, std::min(room, most), at);
        at += got;
        return 0;
    }

    std::size_t at = 0;
    int reads = 0;
};

TEST(WholeReadTest, AFileIsReadToItsEndWhateverItsSizeWasSaidToBe) {
    for (const std::size_t length : {0U, 1U, 3U, 4U, 7U, 8U, 20U, 1000U}) {
        for (const std::size_t told : {0U, 1U, 3U, 7U, 20U, 5000U}) {
            for (const std::size_t most : {1U, 3U, 4U, 10000U}) {
                if (most < length && told != length) {
                    continue;  // less than there is room for is given at the end alone, or by a signal
                }
                Source source{std::string(length, 'x'), most, 0};
                std::string bytes = "before";
                const auto read = [&](char* into, std::size_t room, std::size_t& got) {
                    return source(into, room, got);
                };
                EXPECT_EQ(ReadWhole(read, told, bytes), 0);
                EXPECT_EQ(bytes, source.bytes) << length << " of " << told << " by " << most;
            }
        }
    }
}

TEST(WholeReadTest, AFileThatGrowsAndComesInPortionsIsReadToItsEnd) {
    for (const std::size_t most : {1U, 2U, 3U, 4U, 5U}) {
        Source source{std::string(40, 'x'), most, 0};
        std::string bytes;
        const auto read = [&](char* into, std::size_t room, std::size_t& got) {
            return source(into, room, got);
        };
        // A portion must not end where the file was said to end: that one would be taken for its end.
        EXPECT_EQ(ReadWhole(read, most - 1, bytes), 0);
        EXPECT_EQ(bytes, source.bytes) << most;
    }
}

TEST(WholeReadTest, AFileOfItsSizeThatComesAtOnceIsReadOnce) {
    Source source{"limits", 100, 0};
    std::string bytes;
    const auto read = [&](char* into, std::size_t room, std::size_t& got) { return source(into, room, got); };
    EXPECT_EQ(ReadWhole(read, 6, bytes), 0);
    EXPECT_EQ(bytes, "limits");
    EXPECT_EQ(source.reads, 1);
}

TEST(WholeReadTest, AReadThatFailsLeavesNoBytes) {
    for (const int failAt : {1, 2, 3}) {
        Source source{"limits", 3, failAt};
        std::string bytes = "before";
        const auto read = [&](char* into, std::size_t room, std::size_t& got) {
            return source(into, room, got);
        };
        EXPECT_EQ(ReadWhole(read, 7, bytes), 5);
        EXPECT_EQ(bytes, "");
    }
}

}  // namespace
}  // namespace kd
