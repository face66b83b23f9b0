#include "grid/AutoFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fakes/GridDesk.h"
#include "grid/CellGate.h"
#include "grid/frmAutoFilter.h"

namespace kd {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What the user does in the dialog: leaves only these values ticked, and presses Ok.
std::function<void(frmAutoFilter&)> Tick(std::vector<Text> values) {
    return [values = std::move(values)](frmAutoFilter& form) {
        for (std::int32_t i = 0; i < form.lstAutoFilter.Count(); ++i) {
            const Text& text = form.lstAutoFilter.Entries()[static_cast<std::size_t>(i)].text;
            form.lstAutoFilter.UserSelect(i, std::find(values.begin(), values.end(), text) != values.end());
        }
        form.cmdOk.UserClick();
    };
}

/// Knows where the current cell stands, as a real screen does.
struct PlacedScreen : GridScreen {
    explicit PlacedScreen(const VSFlexGrid& shown) : grid(shown) {}
    std::int32_t CellLeft() const override { return grid.Col() * 10; }
    std::int32_t CellTop() const override { return grid.Row() * 20; }
    std::int32_t CellHeight() const override { return grid.Row() == 0 ? 30 : 20; }
    const VSFlexGrid& grid;
};

struct AutoFilterTest : testing::Test, GridDesk {
    void Press(ColumnNumber number, const std::function<void(frmAutoFilter&)>& user) {
        toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", user);
        ShowColumnFilter(desk, Position(number), Place{});
    }
    std::vector<Text> Offered(ColumnNumber number) {
        std::vector<Text> offered;
        Press(number, [&](frmAutoFilter& form) {
            for (const ListBox::Entry& entry : form.lstAutoFilter.Entries()) {
                offered.push_back((entry.selected ? "+" : "-") + entry.text);
            }
            form.UserClose();
        });
        return offered;
    }
    /// Sets a column's filter without the dialog.
    void SetFilter(ColumnNumber number, const std::vector<Text>& names) {
        cFilters& filters = *g.gLabels->Ref(number).Filters();
        filters.Clear();
        for (const Text& name : names) {
            filters.Add(name, true);
        }
    }
    std::vector<Text> Filter(ColumnNumber number) const {
        std::vector<Text> names;
        for (const auto& filter : *g.gLabels->Ref(number).Filters()) {
            EXPECT_TRUE(filter->Selected());
            names.push_back(filter->Name());
        }
        return names;
    }
    HeaderPicture Funnel(ColumnNumber number) const { return desk.Grid.CellPicture(Position(number)); }
    std::int32_t AddUnitAndCategory(const Text& unit, const Text& category, const Text& type = "N") {
        return AddRow([&](cField& field) {
            field.SetUnits(unit);
            field.SetCategory(category);
            field.SetFieldType(type);
        });
    }
};

// --- the header press
// ---------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, PressMakesTheHeaderCellCurrentAndNamesTheDialog) {
    AddUnits({"g"});
    Select(1, cnUSL, 1, cnUSL);
    Press(cnUnits, [&](frmAutoFilter& form) {
        EXPECT_EQ(form.FormCaption(), "Units");
        EXPECT_EQ(desk.Grid.Row(), 0);
        EXPECT_EQ(desk.Grid.Col(), Position(cnUnits));
        EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
        form.UserClose();
    });
}

TEST_F(AutoFilterTest, DialogStandsBelowTheHeaderCell) {
    AddUnits({"g"});
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", [](frmAutoFilter& form) {
        ASSERT_TRUE(form.OwnPlace().has_value());
        EXPECT_EQ(form.OwnPlace()->left, 30 + 100 + 10);
        EXPECT_EQ(form.OwnPlace()->top, 40 + 3 + 20 + 50);
        form.UserClose();
    });
    ShowColumnFilter(desk, Position(cnUnits), Place{30, 40});
    desk.Grid.SetScreen(nullptr);
}

TEST_F(AutoFilterTest, PlaceIsThatOfTheHeaderCellNotOfTheFormerCurrentOne) {
    AddUnits({"g"});
    PlacedScreen screen(desk.Grid);
    desk.Grid.SetScreen(&screen);
    Select(1, cnUSL, 1, cnUSL);
    Press(cnUnits, [](frmAutoFilter& form) {
        ASSERT_TRUE(form.OwnPlace().has_value());
        EXPECT_EQ(*form.OwnPlace(), (Place{Position(cnUnits) * 10 + 10, 30 + 50}));
        form.UserClose();
    });
    desk.Grid.SetScreen(nullptr);
}

TEST_F(AutoFilterTest, PlaceIsTakenBeforeThePassOfTheMessageLoop) {
    AddUnits({"g"});
    PlacedScreen screen(desk.Grid);
    desk.Grid.SetScreen(&screen);
    toolkit.onProcessEvents = [this] { Select(1, cnUSL, 1, cnUSL); };
    Press(cnUnits, [](frmAutoFilter& form) {
        ASSERT_TRUE(form.OwnPlace().has_value());
        EXPECT_EQ(*form.OwnPlace(), (Place{Position(cnUnits) * 10 + 10, 30 + 50}));
        form.UserClose();
    });
    toolkit.onProcessEvents = {};
    desk.Grid.SetScreen(nullptr);
}

TEST_F(AutoFilterTest, ValuesAreTakenAfterThePassOfTheMessageLoop) {
    AddUnits({"g"});
    toolkit.onProcessEvents = [this] { desk.Grid.SetTextMatrix(1, Position(cnUnits), "late"); };
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+late"));
    toolkit.onProcessEvents = {};
}

TEST_F(AutoFilterTest, EveryTickedValueIsOfferedTickedWithoutAFilter) {
    AddUnits({"kg", "g", "kg"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+g", "+kg"));
}

TEST_F(AutoFilterTest, TickingASubsetHidesTheOtherRowsAndTurnsTheFunnelRed) {
    AddUnits({"kg", "g", "l", "g"});
    Press(cnUnits, Tick({"g", "l"}));
    EXPECT_THAT(ShownRows(), ElementsAre(2, 3, 4));
    EXPECT_THAT(Filter(cnUnits), ElementsAre("g", "l"));
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOn);
    EXPECT_EQ(Funnel(cnCategory), HeaderPicture::FilterOff);
}

TEST_F(AutoFilterTest, FilterKeepsTheSortedOrderOfTheList) {
    AddUnits({"m", "kg", "g"});
    Press(cnUnits, Tick({"m", "g"}));
    EXPECT_THAT(Filter(cnUnits), ElementsAre("g", "m"));
}

TEST_F(AutoFilterTest, PressOnAFilteredColumnTicksItsEntriesAlone) {
    AddUnits({"kg", "g", "l"});
    Press(cnUnits, Tick({"l"}));
    EXPECT_THAT(Offered(cnUnits), ElementsAre("-g", "-kg", "+l"));
}

TEST_F(AutoFilterTest, EntriesAreComparedRegardlessOfCaseWhenOffered) {
    AddUnits({"kg", "L"});
    SetFilter(cnUnits, {"l"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("-kg", "+L"));
}

TEST_F(AutoFilterTest, AllValuesTickedRemovesTheFilterAndItsRedFunnel) {
    AddUnits({"kg", "g"});
    Press(cnUnits, Tick({"g"}));
    Press(cnUnits, Tick({"g", "kg"}));
    EXPECT_THAT(Filter(cnUnits), IsEmpty());
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOff);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
}

TEST_F(AutoFilterTest, CancelChangesNothing) {
    AddUnits({"kg", "g"});
    Press(cnUnits, Tick({"g"}));
    Press(cnUnits, [](frmAutoFilter& form) {
        form.chkSelectAll.UserClick();
        form.cmdCancel.UserClick();
    });
    EXPECT_THAT(Filter(cnUnits), ElementsAre("g"));
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOn);
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

TEST_F(AutoFilterTest, ClosingByTheFrameChangesNothing) {
    AddUnits({"kg", "g"});
    Press(cnUnits, [](frmAutoFilter& form) {
        form.lstAutoFilter.UserSelect(0, false);
        form.UserClose();
    });
    EXPECT_THAT(Filter(cnUnits), IsEmpty());
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
}

TEST_F(AutoFilterTest, RefusedOkLeavesTheDialogOpenForAnotherChoice) {
    AddUnits({"kg", "g"});
    toolkit.ExpectBox("Must have at least one selection!", BoxIcon::Exclamation, "KD LimitDesk");
    Press(cnUnits, [](frmAutoFilter& form) {
        form.chkSelectAll.UserClick();
        form.cmdOk.UserClick();
        form.lstAutoFilter.UserSelect(0, true);
        form.cmdOk.UserClick();
    });
    EXPECT_THAT(Filter(cnUnits), ElementsAre("g"));
}

TEST_F(AutoFilterTest, PointerAndMessageLoopFollowTheToldOrder) {
    AddUnits({"kg", "g"});
    Press(cnUnits, Tick({"g"}));
    EXPECT_THAT(toolkit.log, ElementsAre("hourglass", "events", "default", "form frmAutoFilter", "events",
                                         "hourglass", "events", "events", "default", "events"));
}

TEST_F(AutoFilterTest, CancelGivesNoFurtherPassOfTheMessageLoop) {
    AddUnits({"kg"});
    Press(cnUnits, [](frmAutoFilter& form) { form.UserClose(); });
    EXPECT_THAT(toolkit.log, ElementsAre("hourglass", "events", "default", "form frmAutoFilter"));
}

TEST_F(AutoFilterTest, GridIsNotRepaintedWhileRowsAreFiltered) {
    AddUnits({"kg", "g", "l", "m"});
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    Press(cnUnits, [&](frmAutoFilter& form) {
        Tick({"g"})(form);
        screen = {};
        toolkit.onProcessEvents = [&] {
            if (!desk.Grid.Redraw()) {
                EXPECT_EQ(screen.layouts, 0);
            }
        };
    });
    EXPECT_EQ(screen.layouts, 1);
    EXPECT_EQ(screen.cells, 0);
    EXPECT_TRUE(desk.Grid.Redraw());
    toolkit.onProcessEvents = {};
    desk.Grid.SetScreen(nullptr);
}

TEST_F(AutoFilterTest, FailureInTheMiddlePutsRedrawAndPointerBack) {
    AddUnits({"kg", "g"});
    toolkit.ExpectForm<frmAutoFilter>("frmAutoFilter", [&](frmAutoFilter& form) {
        Tick({"kg"})(form);
        toolkit.onProcessEvents = [&] {
            if (!desk.Grid.Redraw()) {
                throw cError(errOutOfMemory, "AutoFilterTest");
            }
        };
    });
    EXPECT_THROW(ShowColumnFilter(desk, Position(cnUnits), Place{}), cError);
    EXPECT_TRUE(desk.Grid.Redraw());
    EXPECT_EQ(toolkit.MousePointer(), Pointer::Default);
}

// --- blanks and case
// ----------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, BlankCellsAppearAsOneItemAndAreKeptByIt) {
    AddUnits({"", "g", ""});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+(Blank)", "+g"));
    Press(cnUnits, Tick({"(Blank)"}));
    EXPECT_THAT(Filter(cnUnits), ElementsAre(""));
    EXPECT_THAT(ShownRows(), ElementsAre(1, 3));
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+(Blank)", "-g"));
}

TEST_F(AutoFilterTest, EmptyCellAndCellOfBlanksAreTwoItemsAndOnlyTheEmptyOneComesBack) {
    AddUnits({"", "  ", "g"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+(Blank)", "+(Blank)", "+g"));
    Press(cnUnits, Tick({"(Blank)"}));
    EXPECT_THAT(Filter(cnUnits), ElementsAre("", ""));
    EXPECT_THAT(ShownRows(), ElementsAre(1));
}

TEST_F(AutoFilterTest, ValueThatReadsBlankCountsAsTheEmptyText) {
    AddUnits({" (Blank) ", "", "g"});
    Press(cnUnits, Tick({" (Blank) "}));
    EXPECT_THAT(Filter(cnUnits), ElementsAre(""));
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

TEST_F(AutoFilterTest, SpellingsOfOneValueAreOneItemWrittenAsInTheEarlierRow) {
    AddUnits({"abc", "x", "ABC"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+abc", "+x"));
    Press(cnUnits, Tick({"abc"}));
    EXPECT_THAT(ShownRows(), ElementsAre(1, 3));
}

TEST_F(AutoFilterTest, LettersOutsideAsciiMatchInEitherCase) {
    AddUnits({"k\u00E4se", "x", "K\u00C4SE"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+k\u00E4se", "+x"));
    Press(cnUnits, Tick({"k\u00E4se"}));
    EXPECT_THAT(ShownRows(), ElementsAre(1, 3));
}

TEST_F(AutoFilterTest, EntriesOfOtherLettersOutsideAsciiAreTickedInEitherCase) {
    AddUnits({"\u00C4", "x"});
    SetFilter(cnUnits, {"\u00E4"});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("-x", "+\u00C4"));
}

TEST_F(AutoFilterTest, WholeTextIsComparedUntrimmed) {
    AddUnits({"g", " g", "g "});
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+ g", "+g", "+g "));
    Press(cnUnits, Tick({"g"}));
    EXPECT_THAT(ShownRows(), ElementsAre(1));
}

// --- several columns
// ----------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, FiltersOfSeveralColumnsAddUp) {
    AddUnitAndCategory("g", "A");
    AddUnitAndCategory("g", "B");
    AddUnitAndCategory("kg", "A");
    Press(cnUnits, Tick({"g"}));
    Press(cnCategory, Tick({"A"}));
    EXPECT_THAT(ShownRows(), ElementsAre(1));
    EXPECT_EQ(CountActiveFilters(desk), 2);
}

TEST_F(AutoFilterTest, ListHoldsWhatTheOtherColumnsLeave) {
    AddUnitAndCategory("g", "A");
    AddUnitAndCategory("kg", "B");
    AddUnitAndCategory("l", "C");
    SetFilter(cnCategory, {"a", "C"});
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("g", "l"));
}

TEST_F(AutoFilterTest, ValueLeftOutByAnotherColumnInOneRowIsListedFromALaterRow) {
    AddUnitAndCategory("G", "B");
    AddUnitAndCategory("g", "A");
    SetFilter(cnCategory, {"A"});
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("g"));
}

TEST_F(AutoFilterTest, TheOnlyFilteredColumnOffersAllRowsThatTheNumericRuleLetsThrough) {
    AddUnitAndCategory("g", "A");
    AddUnitAndCategory("kg", "B");
    AddUnitAndCategory("t", "C", "T");
    Press(cnUnits, Tick({"g"}));
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("g", "kg"));
}

TEST_F(AutoFilterTest, OwnFilterDoesNotNarrowTheListBesideAnotherOne) {
    AddUnitAndCategory("g", "A");
    AddUnitAndCategory("kg", "A");
    AddUnitAndCategory("l", "B");
    SetFilter(cnUnits, {"g"});
    SetFilter(cnCategory, {"A"});
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("g", "kg"));
}

TEST_F(AutoFilterTest, AllThatAnotherColumnLeavesTickedRemovesTheFilter) {
    AddUnitAndCategory("a", "A");
    AddUnitAndCategory("b", "B");
    AddUnitAndCategory("c", "B");
    Press(cnUnits, Tick({"a", "b"}));
    Press(cnCategory, Tick({"A"}));
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+a"));
    Press(cnUnits, [](frmAutoFilter& form) { form.cmdOk.UserClick(); });
    EXPECT_THAT(Filter(cnUnits), IsEmpty());
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOff);
    EXPECT_EQ(Funnel(cnCategory), HeaderPicture::FilterOn);
    EXPECT_THAT(ShownRows(), ElementsAre(1));
}

TEST_F(AutoFilterTest, EntryThatIsNotOnOfferLeavesTheFilterAtOk) {
    AddUnitAndCategory("a", "A");
    AddUnitAndCategory("b", "B");
    AddUnitAndCategory("c", "A");
    Press(cnUnits, Tick({"a", "b"}));
    Press(cnCategory, Tick({"A"}));
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+a", "-c"));
    Press(cnUnits, [](frmAutoFilter& form) { form.cmdOk.UserClick(); });
    EXPECT_THAT(Filter(cnUnits), ElementsAre("a"));
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOn);
}

TEST_F(AutoFilterTest, FiltersOfTheFirstTwoPositionsAndOfTheLastCount) {
    AddUnits({"g", "kg", "l"});
    SetCellValue(desk, 2, Position(cnUCase), "Y");
    desk.Grid.SetTextMatrix(2, Position(cnFolder), "/b");
    const std::pair<ColumnNumber, Text> filters[] = {{cnID, "2"}, {cnFolder, "/B"}, {cnUCase, "y"}};
    for (const auto& [number, name] : filters) {
        SCOPED_TRACE(number);
        SetFilter(number, {name});
        EXPECT_EQ(CountActiveFilters(desk), 1);
        EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("kg"));
        ApplyFilters(desk);
        EXPECT_THAT(ShownRows(), ElementsAre(2));
        DropFilters(desk);
        EXPECT_EQ(CountActiveFilters(desk), 0);
        ApplyFilters(desk);
        EXPECT_THAT(ShownRows(), ElementsAre(1, 2, 3));
    }
}

TEST_F(AutoFilterTest, ValuesComeInTheOrderOfTheRowsHiddenOnesToo) {
    AddUnits({"m", "kg", "g"});
    Hide({1, 3});
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("m", "kg", "g"));
}

TEST_F(AutoFilterTest, WindowIsKeptAliveWhileTheListIsMade) {
    AddUnits({"kg", "g"});
    int asked = 0;
    toolkit.onKeepAlive = [&asked] { ++asked; };
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("kg", "g"));
    EXPECT_GT(asked, 0);
    toolkit.onKeepAlive = {};
}

TEST_F(AutoFilterTest, HiddenColumnKeepsItsFilter) {
    AddUnits({"kg", "g"});
    SetShown(cnUnits, false);
    SetFilter(cnUnits, {"g"});
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

// --- the numeric rule
// ---------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, NonNumericRowsAreOfferedOnlyWithoutTheTick) {
    AddUnitAndCategory("g", "");
    AddUnitAndCategory("t", "", "T");
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+g"));
    desk.mnuShowOnlyNumericVariables.SetChecked(false);
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+g", "+t"));
}

TEST_F(AutoFilterTest, EmptyTypeAndARunOfLettersCountAsNumericButASmallLetterDoesNot) {
    AddUnitAndCategory("empty", "", "");
    AddUnitAndCategory("run", "", "AR");
    AddUnitAndCategory("small", "", "n");
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("empty", "run"));
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
}

TEST_F(AutoFilterTest, RowThatFailsTheNumericRuleStaysHiddenThoughItsValuePasses) {
    AddUnitAndCategory("g", "");
    AddUnitAndCategory("g", "", "P");
    AddUnitAndCategory("kg", "");
    Press(cnUnits, Tick({"g"}));
    EXPECT_THAT(ShownRows(), ElementsAre(1));
    desk.mnuShowOnlyNumericVariables.SetChecked(false);
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
}

TEST_F(AutoFilterTest, NumericRuleGoesByTheRowsOwnVariable) {
    AddUnitAndCategory("g", "");
    AddUnitAndCategory("kg", "", "T");
    desk.Grid.SetRowData(1, 2);  // the two have changed places
    desk.Grid.SetRowData(2, 1);
    EXPECT_THAT(GetColumnValues(desk, Position(cnUnits)), ElementsAre("kg"));
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

TEST_F(AutoFilterTest, WithoutAFilterTheNumericRuleAloneDecides) {
    AddUnitAndCategory("g", "");
    AddUnitAndCategory("g", "", "L");
    Hide({1});
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1));
    EXPECT_THAT(toolkit.log, IsEmpty());
    desk.mnuShowOnlyNumericVariables.SetChecked(false);
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
}

TEST_F(AutoFilterTest, EachFilteredRowGivesTheMessageLoopOnePass) {
    AddUnits({"g", "kg", "g"});
    SetFilter(cnUnits, {"g"});
    ApplyFilters(desk);
    EXPECT_THAT(toolkit.log, ElementsAre("events", "events", "events"));
}

TEST_F(AutoFilterTest, NoRowAtAllOffersNothingAndTakesOk) {
    Press(cnUnits, [](frmAutoFilter& form) {
        EXPECT_EQ(form.lstAutoFilter.Count(), 0);
        EXPECT_EQ(form.chkSelectAll.Value(), csChecked);
        form.cmdOk.UserClick();
    });
    EXPECT_THAT(Filter(cnUnits), IsEmpty());
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOff);
}

TEST_F(AutoFilterTest, SingleRowAndLastRowAreFilteredLikeAnyOther) {
    AddUnits({"g"});
    SetFilter(cnUnits, {"kg"});
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), IsEmpty());
    AddUnits({"kg"});
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

// --- edits
// ------------------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, EditedValueIsOfferedNextAndItsRowStaysUntilTheNextChange) {
    AddUnits({"g", "g", "kg"});
    Press(cnUnits, Tick({"g"}));
    SetCellValue(desk, 1, Position(cnUnits), "mg");
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    EXPECT_THAT(Offered(cnUnits), ElementsAre("+g", "-kg", "-mg"));
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    Press(cnUnits, Tick({"g"}));
    EXPECT_THAT(ShownRows(), ElementsAre(2));
}

TEST_F(AutoFilterTest, FilterWorksOnTheShownTextNotOnTheValue) {
    AddLimits(cnUSL, {1.25, 1.5});
    locale.separator = ',';
    SetCellValue(desk, 2, Position(cnUSL), "1.25");
    EXPECT_THAT(GetColumnValues(desk, Position(cnUSL)), ElementsAre("1.250", "1,250"));
}

// --- tool tips
// ------------------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, TipWithoutAnyFilterInvites) {
    AddUnits({"g"});
    for (const ColumnNumber number : {cnID, cnUnits}) {
        EXPECT_EQ(GetFilterCaption(desk, Position(number)), " Click to Filter Column ") << number;
    }
}

TEST_F(AutoFilterTest, TipOfANegativeColumnIsEmpty) {
    EXPECT_EQ(GetFilterCaption(desk, -1), "");
}

TEST_F(AutoFilterTest, TipOfAnUnfilteredColumnBesideAFilteredOneSaysShowingAll) {
    AddUnits({"g"});
    SetFilter(cnUnits, {"g"});
    EXPECT_EQ(GetFilterCaption(desk, Position(cnCategory)), " (Showing All) ");
}

TEST_F(AutoFilterTest, TipOfAFilteredColumnNamesItsValues) {
    AddUnits({"A", "B", "C"});
    Press(cnUnits, Tick({"A", "B"}));
    EXPECT_EQ(GetFilterCaption(desk, Position(cnUnits)), " Equals \"A, B\" ");
}

TEST_F(AutoFilterTest, TipShowsAnEmptyNameAsNothingBetweenItsCommas) {
    SetFilter(cnUnits, {"", "g", "", "l"});
    EXPECT_EQ(GetFilterCaption(desk, Position(cnUnits)), " Equals \", g, , l\" ");
    SetFilter(cnUnits, {""});
    EXPECT_EQ(GetFilterCaption(desk, Position(cnUnits)), " Equals \"\" ");
}

TEST_F(AutoFilterTest, TipLeavesOutEntriesThatAreNotSelected) {
    SetFilter(cnUnits, {"a", "b"});
    g.gLabels->Ref(cnUnits).Filters()->Item(1)->SetSelected(false);
    EXPECT_EQ(GetFilterCaption(desk, Position(cnUnits)), " Equals \"b\" ");
}

TEST_F(AutoFilterTest, TipIsNotCutInTheLogic) {
    const Text name(600, 'x');
    SetFilter(cnUnits, {name + "1", name + "2"});
    EXPECT_EQ(GetFilterCaption(desk, Position(cnUnits)), " Equals \"" + name + "1, " + name + "2\" ");
}

// --- Clear All Filters
// ----------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, ClearAllFiltersDropsEveryFilterAndTurnsTheFunnelsGrey) {
    AddUnitAndCategory("g", "A");
    AddUnitAndCategory("kg", "B");
    Press(cnUnits, Tick({"g"}));
    Press(cnCategory, Tick({"A"}));
    toolkit.log.clear();
    ClearAllFilters(desk);
    EXPECT_EQ(CountActiveFilters(desk), 0);
    EXPECT_EQ(Funnel(cnUnits), HeaderPicture::FilterOff);
    EXPECT_EQ(Funnel(cnCategory), HeaderPicture::FilterOff);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    EXPECT_THAT(toolkit.log, ElementsAre("hourglass", "events", "default"));
}

TEST_F(AutoFilterTest, ClearAllFiltersShowsNonNumericRowsToo) {
    AddUnitAndCategory("g", "");
    AddUnitAndCategory("t", "", "T");
    EXPECT_THAT(ShownRows(), ElementsAre(1));
    SetFilter(cnUnits, {"g"});
    ClearAllFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1, 2));
    EXPECT_TRUE(desk.mnuShowOnlyNumericVariables.Checked());
    ApplyFilters(desk);
    EXPECT_THAT(ShownRows(), ElementsAre(1));
}

TEST_F(AutoFilterTest, ClearAllFiltersRepaintsOnce) {
    AddUnits({"g", "kg", "l"});
    Hide({1, 2, 3});
    CountingScreen screen;
    desk.Grid.SetScreen(&screen);
    ClearAllFilters(desk);
    EXPECT_EQ(screen.layouts, 1);
    desk.Grid.SetScreen(nullptr);
}

// --- at the limit
// ---------------------------------------------------------------------------------------------

TEST_F(AutoFilterTest, ThirtyTwoThousandDistinctValuesAreOfferedAndFiltered) {
    // With nested loops this takes minutes: the test would run into its time limit.
    constexpr std::int32_t rows = 32767;
    for (std::int32_t row = 1; row <= rows; ++row) {
        AddRow([row](cField& field) { field.SetUnits("unit " + std::to_string(row)); });
    }
    Press(cnUnits, [&](frmAutoFilter& form) {
        ASSERT_EQ(form.lstAutoFilter.Count(), rows);
        form.lstAutoFilter.UserSelect(0, false);
        form.cmdOk.UserClick();
    });
    EXPECT_EQ(static_cast<std::int32_t>(ShownRows().size()), rows - 1);
    EXPECT_TRUE(desk.Grid.RowHidden(1));
}

}  // namespace
}  // namespace kd
