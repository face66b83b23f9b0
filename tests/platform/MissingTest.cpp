#include "platform/Missing.h"

#include <gtest/gtest.h>

#include <vector>

#include "fakes/ErrorOf.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

/// A disk that says what it is told to when it is asked whether a file is there.
class AnsweringFiles : public MemoryFiles {
public:
    bool exists = false;
    bool Exists(std::string_view /*path*/) override { return exists; }
};

TEST(SaysMissingTest, AFileIsMissingWhereTheDiskSaysSoAndARefusalCountsWhereItIsToldTo) {
    struct Case {
        std::int32_t number;
        bool saysSo;
        bool withRefusals;
    };
    for (const Case& c : {Case{errFileNotFound, true, true}, Case{errPathNotFound, true, true},
                          Case{errPermissionDenied, false, true}, Case{errDevice, false, false}}) {
        const cError error(c.number, "Files.Read");
        EXPECT_EQ(SaysMissing(error, Refusal::SaysNothing), c.saysSo) << c.number;
        EXPECT_EQ(SaysMissing(error, Refusal::CountsAsMissing), c.withRefusals) << c.number;
    }
}

TEST(ReadUnlessMissingTest, AFileIsReadUntilItIsThereOrTwiceMissing) {
    struct Case {
        const char* label;
        std::vector<std::int32_t> failures;  // of the first readings; later ones work
        bool exists;
        Refusal refusal;
        bool isRead;
        std::int32_t raised;
        int readings;
    };
    const Case cases[] = {
        {"read at once", {}, false, Refusal::SaysNothing, true, 0, 1},
        {"missing", {errFileNotFound}, false, Refusal::SaysNothing, false, 0, 1},
        {"missing for a moment", {errFileNotFound}, true, Refusal::SaysNothing, true, 0, 2},
        {"there, but not readable",
         {errPathNotFound, errDevice},
         true,
         Refusal::SaysNothing,
         false,
         errDevice,
         2},
        {"in trouble", {errDevice}, false, Refusal::CountsAsMissing, false, errDevice, 1},
        {"refused", {errPermissionDenied}, false, Refusal::SaysNothing, false, errPermissionDenied, 1},
        {"refused and not listed", {errPermissionDenied}, false, Refusal::CountsAsMissing, false, 0, 1},
        {"refused for a moment", {errPermissionDenied}, true, Refusal::CountsAsMissing, true, 0, 2}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        AnsweringFiles files;
        files.exists = c.exists;
        int readings = 0;
        bool isRead = false;
        const auto read = [&] {
            const auto reading = static_cast<std::size_t>(readings++);
            if (reading < c.failures.size()) {
                throw cError(c.failures[reading], "Files.Read");
            }
        };
        EXPECT_EQ(ErrorOf([&] { isRead = ReadUnlessMissing(files, "/a.kdt", c.refusal, read); }), c.raised);
        EXPECT_EQ(isRead, c.isRead);
        EXPECT_EQ(readings, c.readings);
    }
}

TEST(PresenceOfTest, AFileIsMissingWhereThatIsSaidTwiceAndUnknownWhereTheDiskOnlyDeniesIt) {
    struct Case {
        const char* label;
        bool exists;
        bool stands;
        std::int32_t failure;  // of reading it; 0 for none
        Presence presence;
    };
    const Case cases[] = {{"there", true, true, 0, Presence::Here},
                          {"there, but not readable", true, true, errDevice, Presence::Here},
                          {"there, denied for a moment", false, true, 0, Presence::Here},
                          {"missing", false, false, 0, Presence::Missing},
                          {"refused", false, true, errPermissionDenied, Presence::Unknown},
                          {"in trouble", false, true, errDevice, Presence::Unknown}};
    for (const Case& c : cases) {
        AnsweringFiles files;
        files.exists = c.exists;
        if (c.stands) {
            files.Put("/a.ini", "x");
        }
        if (c.failure != 0) {
            files.FailOn("Read", "a.ini", c.failure);
        }
        EXPECT_EQ(static_cast<int>(PresenceOf(files, "/a.ini")), static_cast<int>(c.presence)) << c.label;
    }
}

}  // namespace
}  // namespace kd
