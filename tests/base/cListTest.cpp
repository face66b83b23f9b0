#include "base/cList.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "base/Text.h"
#include "fakes/ErrorOf.h"

namespace kd {
namespace {

struct Entry {
    int number = 0;
};

class Entries : public cList<Entry> {
public:
    Record Add(int number) { return Append(std::make_shared<Entry>(Entry{number})); }
};

void Fill(Entries& list, int count) {
    list.Reserve(count);
    for (int i = 1; i <= count; ++i) {
        (void)list.Add(i);  // the record is not needed
    }
}

TEST(cListTest, PositionsCountFromOne) {
    Entries list;
    EXPECT_EQ(list.Count(), 0);
    Fill(list, 3);
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Item(1)->number, 1);
    EXPECT_EQ(list.Item(3)->number, 3);
    EXPECT_EQ(list.Ref(2).number, 2);
}

TEST(cListTest, AddReturnsTheRecordAtTheEnd) {
    Entries list;
    Fill(list, 2);
    const auto added = list.Add(9);
    EXPECT_EQ(added, list.Item(list.Count()));
    added->number = 10;
    EXPECT_EQ(list.Item(3)->number, 10);
}

TEST(cListTest, PositionOutsideIsAnInvalidArgument) {
    Entries empty;
    EXPECT_EQ(ErrorOf([&] { (void)empty.Item(1); }), errInvalidArgument);
    EXPECT_EQ(ErrorOf([&] { empty.Remove(1); }), errInvalidArgument);
    Entries list;
    Fill(list, 3);
    for (const std::int32_t position : {0, -1, 4, 32767, -32768}) {
        EXPECT_EQ(ErrorOf([&] { (void)list.Item(position); }), errInvalidArgument) << position;
        EXPECT_EQ(ErrorOf([&] { (void)list.Ref(position); }), errInvalidArgument) << position;
        EXPECT_EQ(ErrorOf([&] { list.Remove(position); }), errInvalidArgument) << position;
        EXPECT_EQ(SourceOf([&] { (void)list.Item(position); }), "cList.Item") << position;
    }
    EXPECT_EQ(list.Count(), 3);
}

TEST(cListTest, PositionAboveSixteenBitsOverflowsEvenIfTheRecordIsThere) {
    Entries list;
    Fill(list, 32769);
    EXPECT_EQ(list.Item(32767)->number, 32767);
    for (const std::int32_t position : {32768, 32769, 2147483647, -32769}) {
        EXPECT_EQ(ErrorOf([&] { (void)list.Item(position); }), errOverflow) << position;
        EXPECT_EQ(ErrorOf([&] { (void)list.Ref(position); }), errOverflow) << position;
        EXPECT_EQ(SourceOf([&] { (void)list.Item(position); }), "cList.Item") << position;
    }
    EXPECT_EQ(ErrorOf([&] { (void)list.Item("32768"); }), errOverflow);
    EXPECT_EQ(ErrorOf([&] { (void)list.Item("1E9"); }), errOverflow);
}

TEST(cListTest, RemoveTakesAnyPosition) {
    Entries list;
    Fill(list, 32769);
    list.Remove(32769);
    EXPECT_EQ(list.Count(), 32768);
    EXPECT_EQ(ErrorOf([&] { list.Remove(32769); }), errInvalidArgument);
    list.Remove(1);
    EXPECT_EQ(list.Item(1)->number, 2);
    EXPECT_EQ(list.Item(32767)->number, 32768);
}

TEST(cListTest, TextThatIsANumberIsAPosition) {
    Entries list;
    Fill(list, 3);
    for (const char* const text : {"3", " 3 ", "+3", "3.0", "2.5000001", "3E0"}) {
        EXPECT_EQ(list.Item(text)->number, 3) << text;
    }
    EXPECT_EQ(list.Item("2.5")->number, 2) << "a tie goes to the even one";
    for (const char* const text : {"", "x", "3x", "0", "4", "-1"}) {
        EXPECT_EQ(ErrorOf([&] { (void)list.Item(text); }), errInvalidArgument) << text;
        EXPECT_EQ(SourceOf([&] { (void)list.Item(text); }), "cList.Item") << text;
    }
}

TEST(cListTest, RemoveTakesATextForAKeyThatNoRecordHas) {
    Entries list;
    Fill(list, 3);
    for (const char* const text : {"3", "x", ""}) {
        EXPECT_EQ(ErrorOf([&] { list.Remove(std::string_view(text)); }), errInvalidArgument) << text;
        EXPECT_EQ(SourceOf([&] { list.Remove(std::string_view(text)); }), "cList.Remove") << text;
    }
    EXPECT_EQ(list.Count(), 3);
}

TEST(cListTest, RemoveClosesTheGap) {
    Entries list;
    Fill(list, 3);
    list.Remove(2);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Item(1)->number, 1);
    EXPECT_EQ(list.Item(2)->number, 3);
}

TEST(cListTest, ClearLeavesHandedOutRecordsValid) {
    Entries list;
    Fill(list, 2);
    const auto second = list.Item(2);
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(second->number, 2);
    const auto added = list.Add(5);
    EXPECT_EQ(added, list.Item(1));
}

TEST(cListTest, RecordOutlivesItsList) {
    std::shared_ptr<Entry> kept;
    {
        Entries list;
        kept = list.Add(4);
    }
    EXPECT_EQ(kept->number, 4);
}

TEST(cListTest, WalkGoesInOrderAndMayMeetTheSameRecordTwice) {
    Entries list;
    Fill(list, 3);
    list.Remove(1);
    (void)list.Add(2);  // a second one with this number
    std::vector<int> seen;
    for (const auto& record : list) {
        seen.push_back(record->number);
    }
    EXPECT_EQ(seen, (std::vector<int>{2, 3, 2}));
}

static_assert(!std::is_copy_constructible_v<Entries>, "a list has identity");

}  // namespace
}  // namespace kd
