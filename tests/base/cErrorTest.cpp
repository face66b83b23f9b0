#include "base/cError.h"

#include <gtest/gtest.h>

namespace kd {
namespace {

TEST(cErrorTest, NumbersHaveTheirUsualWords) {
    struct Case {
        std::int32_t number;
        const char* words;
    };
    const Case cases[] = {{5, "Invalid procedure call or argument"},
                          {6, "Overflow"},
                          {7, "Out of memory"},
                          {9, "Subscript out of range"},
                          {13, "Type mismatch"},
                          {53, "File not found"},
                          {55, "File already open"},
                          {57, "Device I/O error"},
                          {61, "Disk full"},
                          {70, "Permission denied"},
                          {76, "Path not found"},
                          {1000, "Application-defined or object-defined error"},
                          {0, "Application-defined or object-defined error"}};
    for (const Case& c : cases) {
        EXPECT_EQ(ErrorText(c.number), c.words) << c.number;
        EXPECT_EQ(cError(c.number, "x").Description(), c.words) << c.number;
    }
}

TEST(cErrorTest, CarriesWhatItWasGiven) {
    const cError error(errTypeMismatch, "cField.ParseGridDouble", "Invalid decimal format", "a.kdt");
    EXPECT_EQ(error.Number(), 13);
    EXPECT_EQ(error.Source(), "cField.ParseGridDouble");
    EXPECT_EQ(error.Description(), "Invalid decimal format");
    EXPECT_EQ(error.Path(), "a.kdt");
    EXPECT_STREQ(error.what(), "cField.ParseGridDouble: Invalid decimal format");
}

TEST(cErrorTest, KnownPathStays) {
    const cError without(errDiskFull, "Files.Write");
    EXPECT_EQ(without.Path(), "");
    EXPECT_EQ(without.WithPath("a.kdt").Path(), "a.kdt");
    EXPECT_EQ(without.WithPath("a.kdt").WithPath("b.kdt").Path(), "a.kdt");
    EXPECT_EQ(without.WithPath("a.kdt").Number(), errDiskFull);
    EXPECT_EQ(without.WithPath("a.kdt").Description(), "Disk full");
}

TEST(cErrorTest, AnyFailureCountsAsOneOfTheProgramsOwn) {
    const cError own(errDiskFull, "Files.Write", {}, "a.kdt");
    EXPECT_EQ(AsError(own, "x").Source(), "Files.Write");
    EXPECT_EQ(AsError(own, "x").Path(), "a.kdt");
    EXPECT_EQ(AsError(std::bad_alloc(), "x").Number(), errOutOfMemory);
    EXPECT_EQ(AsError(std::bad_alloc(), "x").Source(), "x");
    EXPECT_EQ(AsError(std::runtime_error("words"), "x").Number(), errInvalidArgument);
    EXPECT_EQ(AsError(std::runtime_error("words"), "x").Description(), "words");
}

}  // namespace
}  // namespace kd
