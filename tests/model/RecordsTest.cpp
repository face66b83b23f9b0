#include "model/Records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace kd {
namespace {

// --- cFile
// ---------------------------------------------------------------------------------------------------

TEST(cFileTest, NewRecordIsEmpty) {
    const cFile file;
    EXPECT_EQ(file.Filename() + file.Title() + file.ViewName() + file.Rules(), "");
    EXPECT_EQ(file.ViewNo(), 0);
    EXPECT_EQ(file.BegFieldPtr(), 0);
    EXPECT_EQ(file.EndFieldPtr(), 0);
    EXPECT_FALSE(file.ChangesMade());
    EXPECT_FALSE(file.Selected());
}

TEST(cFileTest, PairsKeepWhatTheyAreGiven) {
    cFile file;
    file.SetFilename("a.kdt");
    file.SetTitle("t");
    file.SetViewName("v");
    file.SetViewNo(-7);
    file.SetRules("X,Y");
    file.SetBegFieldPtr(70000);
    file.SetEndFieldPtr(69999);
    file.SetChangesMade(true);
    EXPECT_FALSE(file.Selected());
    file.SetSelected(true);
    EXPECT_EQ(file.Filename(), "a.kdt");
    EXPECT_EQ(file.Title(), "t");
    EXPECT_EQ(file.ViewName(), "v");
    EXPECT_EQ(file.ViewNo(), -7);
    EXPECT_EQ(file.Rules(), "X,Y");
    EXPECT_EQ(file.BegFieldPtr(), 70000);
    EXPECT_EQ(file.EndFieldPtr(), 69999);
    EXPECT_TRUE(file.ChangesMade());
    EXPECT_TRUE(file.Selected());
}

TEST(cFilesTest, AddTakesFourPropertiesAndDeselects) {
    cFiles files;
    const auto file = files.Add("a.kdt", "Plant", "Line", 3);
    EXPECT_EQ(file, files.Item(files.Count()));
    EXPECT_EQ(file->Filename(), "a.kdt");
    EXPECT_EQ(file->Title(), "Plant");
    EXPECT_EQ(file->ViewName(), "Line");
    EXPECT_EQ(file->ViewNo(), 3);
    EXPECT_FALSE(file->Selected());
    EXPECT_FALSE(file->ChangesMade());
}

// --- small lists
// ---------------------------------------------------------------------------------------------

TEST(cFiltersTest, AddTakesNameAndMark) {
    cFilters filters;
    const auto first = filters.Add("12.5", true);
    EXPECT_EQ(first, filters.Item("1"));
    (void)filters.Add("", false);  // read back below
    EXPECT_EQ(filters.Item(1)->Name(), "12.5");
    EXPECT_TRUE(filters.Item(1)->Selected());
    EXPECT_EQ(filters.Item(2)->Name(), "");
    EXPECT_FALSE(filters.Item(2)->Selected());
    filters.Item(2)->SetName("x");
    filters.Item(2)->SetSelected(true);
    EXPECT_EQ(filters.Item(2)->Name(), "x");
    EXPECT_TRUE(filters.Item(2)->Selected());
    EXPECT_FALSE(cFilter().Selected());
}

TEST(cRecentsTest, AddTakesTheCriterionAndAllowsDuplicates) {
    cRecents recents;
    (void)recents.Add("plant");  // read back below
    const auto second = recents.Add("plant");
    EXPECT_EQ(recents.Count(), 2);
    EXPECT_NE(recents.Item(1), second);
    EXPECT_EQ(recents.Item(1)->Criteria(), "plant");
    second->SetCriteria("x=y");
    EXPECT_EQ(recents.Item(2)->Criteria(), "x=y");
    EXPECT_EQ(recents.Item(1)->Criteria(), "plant");
}

TEST(cLabelsTest, AddGivesEachLabelFiltersOfItsOwn) {
    cLabels labels;
    const auto first = labels.Add("USL", "R", true, false);
    const auto second = labels.Add("Title", "L", false, true);
    EXPECT_EQ(first->Name(), "USL");
    EXPECT_EQ(first->Alignment(), "R");
    EXPECT_TRUE(first->Editable());
    EXPECT_FALSE(first->Visible());
    EXPECT_FALSE(second->Editable());
    EXPECT_TRUE(second->Visible());
    EXPECT_EQ(first->Filters()->Count(), 0);
    EXPECT_NE(first->Filters(), second->Filters());
    (void)first->Filters()->Add("1", true);  // counted below
    EXPECT_EQ(first->Filters()->Count(), 1);
    EXPECT_EQ(second->Filters()->Count(), 0);
    EXPECT_FALSE(cLabel().Editable());
    EXPECT_FALSE(cLabel().Visible());
}

TEST(cLabelTest, FiltersAreNeverNull) {
    cLabel label;
    const auto made = label.Filters();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(label.Filters(), made) << "made once";
    label.SetFilters(nullptr);
    ASSERT_NE(label.Filters(), nullptr);
    EXPECT_NE(label.Filters(), made);
    label.SetFilters(made);
    EXPECT_EQ(label.Filters(), made);
}

// --- cMasterFiles
// --------------------------------------------------------------------------------------------

std::vector<std::pair<Text, bool>> Entries(const cMasterFiles& files) {
    std::vector<std::pair<Text, bool>> entries;
    for (const auto& file : files) {
        entries.emplace_back(file->Filename(), file->Enabled());
    }
    return entries;
}

std::vector<Text> Names(const cMasterFiles& files) {
    std::vector<Text> names;
    for (const auto& file : files) {
        names.push_back(file->Filename());
    }
    return names;
}

void AddAll(cMasterFiles& files, const std::vector<Text>& names) {
    for (const Text& name : names) {
        (void)files.Add(name, true);  // read back by the tests
    }
}

TEST(cMasterFilesTest, AddTakesPathAndMark) {
    cMasterFiles files;
    const auto file = files.Add("a.kdt", true);
    EXPECT_EQ(file, files.Item(1));
    EXPECT_EQ(file->Filename(), "a.kdt");
    EXPECT_TRUE(file->Enabled());
    EXPECT_FALSE(files.Add("b.kdt", false)->Enabled());
    EXPECT_FALSE(cMasterFile().Enabled());
}

TEST(cMasterFilesTest, ClearLeavesHandedOutRecordsValid) {
    cMasterFiles files;
    const auto file = files.Add("a.kdt", true);
    files.Clear();
    EXPECT_EQ(file->Filename(), "a.kdt");
    EXPECT_EQ(files.Count(), 0);
}

TEST(cMasterFilesTest, SortComparesByExactCodeUnits) {
    cMasterFiles files;
    AddAll(files, {"c:\\b", "D:\\a", "c:\\B", "c:\\a_", "c:\\aZ", "", "c:\\\u00E4", "c:\\z", "c:\\a"});
    files.Sort("A");
    EXPECT_EQ(Names(files), (std::vector<Text>{"", "D:\\a", "c:\\B", "c:\\a", "c:\\aZ", "c:\\a_", "c:\\b",
                                               "c:\\z", "c:\\\u00E4"}));
}

TEST(cMasterFilesTest, FirstLetterOfTheDirectionDecides) {
    struct Case {
        const char* direction;
        bool ascending;
    };
    for (const Case& c :
         {Case{"A", true}, Case{"a", true}, Case{"ascending", true}, Case{"Any", true}, Case{"D", false},
          Case{"d", false}, Case{"", false}, Case{" A", false}, Case{"x", false}}) {
        cMasterFiles files;
        AddAll(files, {"b", "c", "a"});
        files.Sort(c.direction);
        EXPECT_EQ(Names(files),
                  c.ascending ? (std::vector<Text>{"a", "b", "c"}) : (std::vector<Text>{"c", "b", "a"}))
            << "'" << c.direction << "'";
    }
}

TEST(cMasterFilesTest, SortOfNothingAndOfOne) {
    cMasterFiles files;
    files.Sort("A");
    EXPECT_EQ(files.Count(), 0);
    const auto old = files.Add("a", false);
    files.Sort("D");
    EXPECT_EQ(Entries(files), (std::vector<std::pair<Text, bool>>{{"a", false}}));
    EXPECT_NE(files.Item(1), old) << "rebuilt";
}

TEST(cMasterFilesTest, SortMakesNewRecords) {
    cMasterFiles files;
    const auto b = files.Add("b", true);
    const auto a = files.Add("a", false);
    files.Sort("A");
    for (const auto& file : files) {
        EXPECT_NE(file, a);
        EXPECT_NE(file, b);
    }
    a->SetEnabled(true);
    EXPECT_FALSE(files.Item(1)->Enabled());
    EXPECT_EQ(b->Filename(), "b") << "an old record stays valid";
}

TEST(cMasterFilesTest, EntriesKeepTheirMarkAndTwoOfOnePathRemainTwo) {
    cMasterFiles files;
    (void)files.Add("c", false);  // read back below
    (void)files.Add("a", true);
    (void)files.Add("b", false);
    (void)files.Add("a", true);
    files.Sort("A");
    EXPECT_EQ(Entries(files),
              (std::vector<std::pair<Text, bool>>{{"a", true}, {"a", true}, {"b", false}, {"c", false}}));
}

TEST(cMasterFilesTest, EntriesOfOneNameComeOutAsTheGapsLeaveThem) {
    // With a gap of 2, "b" (off) passes over "b" (on): no stable sort.
    cMasterFiles files;
    (void)files.Add("b", false);  // read back below
    (void)files.Add("b", true);
    (void)files.Add("a", true);
    (void)files.Add("c", true);
    files.Sort("A");
    EXPECT_EQ(Entries(files),
              (std::vector<std::pair<Text, bool>>{{"a", true}, {"b", true}, {"b", false}, {"c", true}}));
}

TEST(cMasterFilesTest, GapsOfAnOddCountAreHalvesCutToWholeNumbers) {
    // Three entries have the gap 1 alone, which keeps the order; five begin with the gap 2, as four do.
    cMasterFiles three;
    (void)three.Add("b", false);  // read back below
    (void)three.Add("b", true);
    (void)three.Add("a", true);
    three.Sort("A");
    EXPECT_EQ(Entries(three), (std::vector<std::pair<Text, bool>>{{"a", true}, {"b", false}, {"b", true}}));
    cMasterFiles five;
    (void)five.Add("b", false);  // read back below
    (void)five.Add("b", true);
    (void)five.Add("a", true);
    (void)five.Add("c", true);
    (void)five.Add("d", true);
    five.Sort("A");
    EXPECT_EQ(Entries(five), (std::vector<std::pair<Text, bool>>{
                                 {"a", true}, {"b", true}, {"b", false}, {"c", true}, {"d", true}}));
}

TEST(cMasterFilesTest, SortOfManyIsInOrder) {
    std::mt19937 random(7);
    for (const int count : {2, 3, 5, 8, 33, 1000}) {
        cMasterFiles files;
        std::vector<Text> names;
        names.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            names.push_back("p" + std::to_string(random() % 500));
        }
        AddAll(files, names);
        std::sort(names.begin(), names.end());
        files.Sort("A");
        EXPECT_EQ(Names(files), names) << count;
        std::reverse(names.begin(), names.end());
        files.Sort("D");
        EXPECT_EQ(Names(files), names) << count;
    }
}

TEST(cMasterFilesTest, TotalFilesEnabledCountsTheEnabledOnes) {
    cMasterFiles files;
    EXPECT_EQ(files.TotalFilesEnabled(), 0);
    AddAll(files, {"a", "b", "c"});
    EXPECT_EQ(files.TotalFilesEnabled(), 3);
    files.Item(2)->SetEnabled(false);
    EXPECT_EQ(files.TotalFilesEnabled(), 2);
    files.Item(1)->SetEnabled(false);
    files.Item(3)->SetEnabled(false);
    EXPECT_EQ(files.TotalFilesEnabled(), 0);
    EXPECT_EQ(files.Count(), 3);
}

}  // namespace
}  // namespace kd
