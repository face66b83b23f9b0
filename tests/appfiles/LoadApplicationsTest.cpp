#include "appfiles/LoadApplications.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "appfiles/SchemaWriter.h"
#include "base/NumberTexts.h"
#include "fakes/Builders.h"
#include "model/Columns.h"

namespace kd {
namespace {

/// "view number|name|first..last" of each view, one behind the other.
Text Views(const Globals& g) {
    Text all;
    for (const auto& file : *g.gFiles) {
        all += Digits(file->ViewNo()) + "|" + file->ViewName() + "|" + Digits(file->BegFieldPtr()) + ".." +
               Digits(file->EndFieldPtr()) + ";";
    }
    return all;
}

std::int32_t ErrorOf(LoadedDesk& t, Text* path = nullptr) {
    try {
        t.Load();
    } catch (const cError& error) {
        if (path != nullptr) {
            *path = error.Path();
        }
        return error.Number();
    }
    return 0;
}

TEST(LoadApplicationsTest, ATemplateWithoutViewsIsOneEntryAndCountsNoViews) {
    LoadedDesk t;
    t.Put(anApplication().Title("Mill").Field(aField()));
    t.Load();
    ASSERT_EQ(t.g.gFiles->Count(), 1);
    const cFile& file = t.g.gFiles->Ref(1);
    EXPECT_EQ(file.Filename(), "/apps/plant.kdt");
    EXPECT_EQ(file.Title(), "Mill");
    EXPECT_EQ(Views(t.g), "0||1..1;");
    EXPECT_FALSE(file.Selected());
    EXPECT_FALSE(file.ChangesMade());
    EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 0, Variables: 1");
}

TEST(LoadApplicationsTest, EachViewIsReadFromItsOwnFileInTheOrderOfTheList) {
    for (const Text path : {"/apps/plant.kdt", "/apps/plant.kdt6"}) {
        LoadedDesk t;
        t.Put(anApplication(path)
                  .Field(aField().Name("a"))
                  .Field(aField().Name("b"))
                  .View("Outlet", 7)
                  .Field(aField().Name("c"))
                  .View("Empty", 2)
                  .View("Inlet", 3)
                  .Field(aField().Name("d")));
        t.Load();
        EXPECT_EQ(Views(t.g), "0||1..2;7|Outlet|3..3;2|Empty|4..3;3|Inlet|4..4;") << path;
        EXPECT_EQ(t.g.gFields->Ref(3).Name(), "c");
        EXPECT_EQ(t.g.gFields->Ref(4).Name(), "d");
        EXPECT_EQ(t.g.gFields->Ref(4).FileID(), 4);
        EXPECT_EQ(t.g.gSavedFields->Ref(4).FileID(), 4);
        EXPECT_EQ(t.g.gFiles->Ref(4).Filename(), path);
        EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 3, Variables: 4");
    }
}

TEST(LoadApplicationsTest, EachViewBearsTheTitleOfItsApplication) {
    LoadedDesk t;
    t.Put(anApplication("/a.kdt").Title("Mill").View("Inlet", 1).View("Outlet", 2));
    t.Put(anApplication("/b.kdt").Title("Dairy").View("Tank", 1));
    t.Load();
    std::vector<Text> titles;
    for (const auto& file : *t.g.gFiles) {
        titles.push_back(file->ViewName() + " of " + file->Title());
    }
    EXPECT_EQ(titles, (std::vector<Text>{" of Mill", "Inlet of Mill", "Outlet of Mill", " of Dairy",
                                         "Tank of Dairy"}));
}

TEST(LoadApplicationsTest, ARowIsAppendedForEachVariable) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField().Name("a")).View("Inlet", 1).Field(aField().Name("b").Type("T")));
    t.Load();
    ASSERT_EQ(t.desk.Grid.Rows(), 3);
    EXPECT_EQ(t.desk.Grid.TextMatrix(1, cnVariableName - 1), "a");
    EXPECT_EQ(t.desk.Grid.TextMatrix(2, cnVariableName - 1), "b");
    EXPECT_EQ(t.desk.Grid.RowData(2), 2);
}

TEST(LoadApplicationsTest, AMissingViewFileHasNoVariablesAndNoMessage) {
    LoadedDesk t;
    const auto application = anApplication().Field(aField()).View("Gone", 1).Field(aField()).View("B", 2);
    t.Put(application);
    t.files.Erase(application.FilePath(1));
    t.Load();
    EXPECT_EQ(Views(t.g), "0||1..1;1|Gone|2..1;2|B|2..1;");
}

TEST(LoadApplicationsTest, AListedViewBelowNumberOneIsNotTaken) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField()).View("Inlet", 1));
    t.suite.applications["/apps/plant.kdt"].views = {{"Zero", 0}, {"Minus", -3}, {"Inlet", 1}};
    t.Load();
    EXPECT_EQ(Views(t.g), "0||1..1;1|Inlet|2..1;");
    EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 1, Variables: 1");
}

TEST(LoadApplicationsTest, AViewNumberOutsideSixteenBitsOverflows) {
    LoadedDesk t;
    t.Put(anApplication());
    t.suite.applications["/apps/plant.kdt"].views = {{"Far", 32768}};
    try {
        t.Load();
        ADD_FAILURE() << "loaded";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOverflow);
        EXPECT_EQ(error.Path(), "/apps/plant.kdt");
    }
}

TEST(LoadApplicationsTest, ATemplateThatCannotBeOpenedIsDisabledSilentlyAndStaysInTheList) {
    LoadedDesk t;
    t.g.gMasterFiles->Add("/apps/broken.kdt", true);
    t.Put(anApplication().Field(aField()));
    t.Load();
    ASSERT_EQ(t.g.gMasterFiles->Count(), 2);
    EXPECT_FALSE(t.g.gMasterFiles->Ref(1).Enabled());
    EXPECT_TRUE(t.g.gMasterFiles->Ref(2).Enabled());
    EXPECT_EQ(t.g.gFiles->Count(), 1);
    EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 2, Views: 0, Variables: 1");
    EXPECT_EQ(t.desk.ProgressBar1.Value(), 50);
}

TEST(LoadApplicationsTest, ADisabledEntryAddsToNothing) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField()));
    t.Put(anApplication("/apps/mill.kdt").Field(aField()));
    t.g.gMasterFiles->Ref(1).SetEnabled(false);
    t.Load();
    EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 1, Views: 0, Variables: 1");
    EXPECT_EQ(t.g.gFiles->Ref(1).Filename(), "/apps/mill.kdt");
    EXPECT_EQ(t.desk.ProgressBar1.Value(), 100);
}

TEST(LoadApplicationsTest, WithoutEnabledApplicationsTheGridKeepsItsHeaderRowAlone) {
    LoadedDesk t;
    t.Load();
    EXPECT_EQ(t.desk.Grid.Rows(), 1);
    EXPECT_EQ(t.desk.Panel2.Caption(), "Done ... , Applications: 0, Views: 0, Variables: 0");
    EXPECT_TRUE(t.desk.Grid.Redraw());
}

TEST(LoadApplicationsTest, OneReaderOpensAndClosesOneApplicationAfterTheOther) {
    LoadedDesk t;
    t.Put(anApplication("/a.kdt"));
    t.g.gMasterFiles->Add("/broken.kdt", true);
    t.Put(anApplication("/b.kdt"));
    t.Load();
    EXPECT_EQ(t.suite.log,
              (std::vector<Text>{"NewApplicationFile", "OpenFile /a.kdt", "LoadViews", "CloseFile",
                                 "OpenFile /broken.kdt", "OpenFile /b.kdt", "LoadViews", "CloseFile"}));
}

TEST(LoadApplicationsTest, StatusAndProgressMoveOnceForEachApplicationWithOnePassOfTheMessageLoop) {
    LoadedDesk t;
    t.Put(anApplication("/a.kdt").Field(aField()).View("V", 1));
    t.g.gMasterFiles->Add("/broken.kdt", true);
    t.Put(anApplication("/b.kdt").Field(aField()));
    t.Put(anApplication("/c.kdt").Field(aField()));
    std::vector<Text> seen;
    t.toolkit.onProcessEvents = [&] {
        seen.push_back(t.desk.Panel2.Caption() + "|" + PlainText(t.desk.ProgressBar1.Value()) + "|" +
                       (t.desk.Grid.Redraw() ? "redraw" : "still"));
    };
    t.Load();
    EXPECT_EQ(seen, (std::vector<Text>{"Loading: /a.kdt|25|still", "Loading: /b.kdt|50|still",
                                       "Loading: /c.kdt|75|still"}));
    EXPECT_EQ(t.desk.ProgressBar1.Value(), 75);
    EXPECT_TRUE(t.desk.Grid.Redraw());
}

/// The passes of a load of three applications, of which one may fail to open: whether they may be left out,
/// and what stood in the status then.
std::vector<Text> PassesOfALoad(std::string_view failing) {
    class Passes : public ScriptedToolkit {
    public:
        std::vector<Text> seen;
        std::function<Text()> status;
        void ProcessEvents() override { seen.push_back("always " + status()); }
        void ProcessEventsInJob() override { seen.push_back("in job " + status()); }
    };
    TestMachine t;
    Passes passes;
    Platform platform{t.files, passes, t.locale, t.clock, t.environment, t.shell, t.fileDialog, t.suite};
    Globals g(platform);
    Desk desk(g);
    passes.status = [&] { return desk.Panel2.Caption(); };
    for (const char* path : {"/a.kdt", "/b.kdt", "/c.kdt"}) {
        if (path != failing) {
            anApplication(path).PutInto(t);
        }
        g.gMasterFiles->Add(path, true);
    }
    modKDLimitDesk::BuildColumnCatalogue(g);
    SetupGridColumns(desk);
    LoadApplications(desk);
    return passes.seen;
}

TEST(LoadApplicationsTest, OnlyThePassAfterTheLastApplicationMayNeverBeLeftOut) {
    EXPECT_EQ(PassesOfALoad({}), (std::vector<Text>{"in job Loading: /a.kdt", "in job Loading: /b.kdt",
                                                    "always Loading: /c.kdt"}));
}

TEST(LoadApplicationsTest, TheLastStateIsShownAlsoWhereATemplateFailed) {
    EXPECT_EQ(PassesOfALoad("/a.kdt"),
              (std::vector<Text>{"in job Loading: /b.kdt", "always Loading: /c.kdt"}));
    EXPECT_EQ(PassesOfALoad("/c.kdt"), (std::vector<Text>{"in job Loading: /a.kdt", "in job Loading: /b.kdt",
                                                          "always Loading: /c.kdt"}));
}

TEST(LoadApplicationsTest, TheWindowIsKeptAliveAfterEachViewWhoseRowsAreThere) {
    LoadedDesk t;
    t.Put(anApplication("/a.kdt").Field(aField()).View("V", 1).View("W", 2));
    std::vector<Text> seen;
    t.toolkit.onKeepAlive = [&] {
        seen.push_back(Digits(t.g.gFiles->Count()) + "|" + Digits(t.g.gFields->Count()) + "|" +
                       Digits(t.desk.Grid.Rows()));
    };
    t.Load();
    EXPECT_EQ(seen, (std::vector<Text>{"1|1|2", "2|1|2", "3|1|2"}));
}

TEST(LoadApplicationsTest, ThePathStandsInTheStatusBeforeItsApplicationIsOpenedAlsoIfItFailsTo) {
    LoadedDesk t;
    t.g.gMasterFiles->Add("/broken.kdt", true);
    t.Put(anApplication("/a.kdt"));
    t.desk.Panel2.OnChanged = [&] { t.suite.log.push_back(t.desk.Panel2.Caption()); };
    t.Load();
    EXPECT_EQ(t.suite.log,
              (std::vector<Text>{"NewApplicationFile", "Loading: /broken.kdt", "OpenFile /broken.kdt",
                                 "Loading: /a.kdt", "OpenFile /a.kdt", "LoadViews", "CloseFile",
                                 "Done ... , Applications: 2, Views: 0, Variables: 0"}));
}

TEST(LoadApplicationsTest, EachLoadStartsFromNewLists) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField().Name("a")));
    t.Load();
    const auto files = t.g.gFiles;
    const auto fields = t.g.gFields;
    const auto saved = t.g.gSavedFields;
    t.Load();
    EXPECT_NE(t.g.gFiles, files);
    EXPECT_NE(t.g.gFields, fields);
    EXPECT_NE(t.g.gSavedFields, saved);
    EXPECT_EQ(t.g.gFields->Count(), 1);
    EXPECT_EQ(fields->Ref(1).Name(), "a");
}

TEST(LoadApplicationsTest, EachSchemaFileIsReadInOneOperation) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField()).View("Inlet", 1).Field(aField()));
    t.Load();
    EXPECT_EQ(t.files.Log(), (std::vector<Text>{"Read /apps/plant.kdt", "Read /apps/plant.V1"}));
}

/// The suite with a reader that has read some of an application's files itself.
class HandingSuite : public FakeSuite {
public:
    std::map<Text, std::string, std::less<>> bytes;  // by path
    std::unique_ptr<KDApplicationFile> NewApplicationFile() override {
        return std::make_unique<Reader>(*this, FakeSuite::NewApplicationFile());
    }

private:
    class Reader : public KDApplicationFile {
    public:
        Reader(HandingSuite& suite, std::unique_ptr<KDApplicationFile> other)
            : m_suite(suite), m_other(std::move(other)) {}
        const KDList<KDViewEntry>& Views() override { return m_other->Views(); }
        const KDList<KDRuleEntry>& RuleList() override { return m_other->RuleList(); }
        Text ApplicationTitle() override { return m_other->ApplicationTitle(); }
        void OpenFile(std::string_view path) override { m_other->OpenFile(path); }
        void LoadViews() override { m_other->LoadViews(); }
        void CloseFile() override { m_other->CloseFile(); }
        std::optional<std::string> TakeBytes(std::string_view path) override {
            const auto read = m_suite.bytes.find(path);
            return read == m_suite.bytes.end() ? std::nullopt : std::optional(read->second);
        }

    private:
        HandingSuite& m_suite;
        std::unique_ptr<KDApplicationFile> m_other;
    };
};

TEST(LoadApplicationsTest, BytesThatTheReaderHandsOverAreNotReadAgain) {
    TestMachine t;
    HandingSuite suite;
    Platform platform{t.files, t.toolkit, t.locale, t.clock, t.environment, t.shell, t.fileDialog, suite};
    Globals g(platform);
    Desk desk(g);
    struct {
        MemoryFiles& files;
        FakeSuite& suite;
        Globals& g;
    } machine{t.files, suite, g};
    anApplication().View("Inlet", 1).View("Outlet", 2).Field(aField().Name("on the disk")).PutInto(machine);
    suite.bytes = {{"/apps/plant.kdt", aField().Name("handed").Block()},
                   {"/apps/plant.V1", aField().Name("handed too").Block()}};
    modKDLimitDesk::BuildColumnCatalogue(g);
    SetupGridColumns(desk);
    LoadApplications(desk);
    ASSERT_EQ(Views(g), "0||1..1;1|Inlet|2..2;2|Outlet|3..3;");
    EXPECT_EQ(g.gFields->Ref(1).Name(), "handed");
    EXPECT_EQ(g.gFields->Ref(2).Name(), "handed too");
    EXPECT_EQ(g.gFields->Ref(3).Name(), "on the disk");
    EXPECT_EQ(t.files.Log(), std::vector<Text>{"Read /apps/plant.V2"});
}

TEST(LoadApplicationsTest, TheTemplatesOwnVariablesAreReadBeforeItsViewsAreAskedFor) {
    LoadedDesk t;
    t.Put(anApplication("/a.kdt").Field(aField()).View("V", 1));
    t.toolkit.onKeepAlive = [&] { t.suite.log.push_back("a view is read"); };
    t.Load();
    EXPECT_EQ(t.suite.log, (std::vector<Text>{"NewApplicationFile", "OpenFile /a.kdt", "a view is read",
                                              "LoadViews", "a view is read", "CloseFile"}));
}

TEST(LoadApplicationsTest, BoundsAreDerivedOnlyForNumericVariablesOfWhichBothAreZero) {
    struct Case {
        const char* label;
        FieldBuilder field;
        double max;
        double min;
    };
    const Case cases[] = {
        {"both zero", aField().Length(6).Max(0), 999.99, -99.99},
        {"no room for a sign", aField().Length(3).Max(0), .99, 0},
        {"maximum given", aField().Max(5), 5, 0},
        {"minimum given", aField().Max(0).Min(-5), 0, -5},
        {"text variable", aField().Type("T").Max(0), 0, 0},
        {"small letter", aField().Type("n").Max(0), 0, 0},
        {"empty type counts as numeric", aField().Type("").Length(6).Max(0), 999.99, -99.99},
        {"run of letters counts as numeric", aField().Type("AR").Length(6).Max(0), 999.99, -99.99},
    };
    for (const Case& c : cases) {
        LoadedDesk t;
        t.Put(anApplication().Field(c.field));
        t.Load();
        for (const cField* field : {&t.g.gFields->Ref(1), &t.g.gSavedFields->Ref(1)}) {
            EXPECT_EQ(field->Maximum(), c.max) << c.label;
            EXPECT_EQ(field->Minimum(), c.min) << c.label;
        }
        EXPECT_EQ(t.desk.Grid.BackColor(1, cnMax - 1), 0U) << c.label;
        EXPECT_FALSE(t.g.gFiles->Ref(1).ChangesMade()) << c.label;
    }
}

TEST(LoadApplicationsTest, RuleLettersBecomeTheCataloguesAndTheBaselineKeepsTheFiles) {
    LoadedDesk t;
    SetCatalogue(t.g, {"Y", "Z"});
    t.Put(anApplication()
              .Header("[RULES]\r\nRULE=X\r\nRULE=Y\r\n\r\n")
              .Field(aField().Rules("AB"))
              .Field(aField().Max(0).Rules("b")));
    t.Load();
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "X,Y");
    EXPECT_EQ(t.g.gFields->Ref(1).Rules(), "A");
    EXPECT_EQ(t.g.gSavedFields->Ref(1).Rules(), "AB");
    EXPECT_EQ(t.g.gFields->Ref(2).Rules(), "A");
    EXPECT_EQ(t.g.gSavedFields->Ref(2).Rules(), "b");
    EXPECT_EQ(t.desk.Grid.TextMatrix(1, cnRules - 1), "A");
}

TEST(LoadApplicationsTest, EachFilesLettersGoByItsOwnRules) {
    LoadedDesk t;
    SetCatalogue(t.g, {"X", "Y"});
    const Text there = "[RULES]\r\nRULE=X\r\nRULE=Y\r\n\r\n";
    const Text turned = "[RULES]\r\nRULE=Y\r\nRULE=X\r\n\r\n";
    const Text variable = aField().Rules("A").Block();
    t.Put(anApplication().View("Turned", 1).View("As the first", 2).View("Without rules", 3));
    t.files.Put("/apps/plant.kdt", there + variable);
    t.files.Put("/apps/plant.V1", turned + variable);
    t.files.Put("/apps/plant.V2", there + variable);
    t.files.Put("/apps/plant.V3", variable);
    t.Load();
    ASSERT_EQ(t.g.gFields->Count(), 4);
    const char* const letters[] = {"A", "B", "A", ""};
    for (std::int32_t row = 1; row <= 4; ++row) {
        EXPECT_EQ(t.g.gFields->Ref(row).Rules(), letters[row - 1]) << row;
        EXPECT_EQ(t.desk.Grid.TextMatrix(row, cnRules - 1), letters[row - 1]) << row;
        EXPECT_EQ(t.g.gSavedFields->Ref(row).Rules(), "A") << row;
    }
}

TEST(LoadApplicationsTest, ANumberThatDoesNotFitStopsTheLoadAndItsViewCannotBeSavedHalfRead) {
    LoadedDesk t;
    t.Put(anApplication()
              .Field(aField())
              .View("Bad", 1)
              .Field(aField())
              .Field(aField().Length(40000))
              .View("Never", 2)
              .Field(aField()));
    Text path;
    EXPECT_EQ(ErrorOf(t, &path), errOverflow);
    EXPECT_EQ(path, "/apps/plant.V1");
    EXPECT_EQ(Views(t.g), "0||1..1;1|Bad|2..1;");
    EXPECT_EQ(t.g.gFields->Count(), 3);
    EXPECT_EQ(t.g.gSavedFields->Count(), 3);
    EXPECT_EQ(t.g.gFiles->Ref(2).Rules(), "");
    EXPECT_EQ(t.desk.Grid.Rows(), 2);
    EXPECT_TRUE(t.desk.Grid.Redraw());
}

TEST(LoadApplicationsTest, AMaskWithoutPlaceForThePointStopsTheLoad) {
    LoadedDesk t;
    const auto application = anApplication().Field(aField()).Field(aField().Length(2).Max(0)).Field(aField());
    t.Put(application);
    Text path;
    EXPECT_EQ(ErrorOf(t, &path), errInvalidArgument);
    EXPECT_EQ(path, "/apps/plant.kdt");
    EXPECT_EQ(t.desk.Grid.Rows(), 2);
    EXPECT_TRUE(t.desk.Grid.Redraw());

    // The row that is there may be edited; a save of it must not shorten the file.
    t.toolkit.ExpectBox("Error 5: Invalid procedure call or argument occurred in SaveSchema.",
                        BoxIcon::Exclamation);
    EXPECT_FALSE(modKDLimitDesk::SaveSchema(t.g, 1));
    EXPECT_EQ(t.files.Get("/apps/plant.kdt"), application.FileText(0));
}

TEST(LoadApplicationsTest, AViewWhoseRowsEndEarlyIsSavedWithTheCataloguesLettersThroughout) {
    struct Case {
        const char* label;
        FieldBuilder field;
        std::int32_t error;
    };
    const Case cases[] = {
        {"bounds beyond a double", aField().Length(400).Max(0), errOverflow},
        {"a mask that the file does not write", aField().Type("AR").Length(2), errInvalidArgument},
        {"the same without given bounds", aField().Type("AR").Length(2).Max(0), errInvalidArgument},
    };
    for (const Case& c : cases) {
        LoadedDesk t;
        SetCatalogue(t.g, {"Y", "X"});
        FieldBuilder bad = c.field;
        t.Put(anApplication()
                  .Header("[RULES]\r\nRULE=X\r\nRULE=Y\r\n\r\n")
                  .Field(aField())
                  .Field(bad.Rules("A"))
                  .Field(aField().Rules("A")));
        EXPECT_EQ(ErrorOf(t), c.error) << c.label;
        EXPECT_EQ(t.g.gFields->Ref(2).Rules(), "B") << c.label;
        EXPECT_EQ(t.g.gFields->Ref(3).Rules(), "B") << c.label;
        EXPECT_EQ(t.g.gSavedFields->Ref(3).Rules(), "A") << c.label;
        EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1)) << c.label;
        EXPECT_EQ(t.files.Get("/apps/plant.kdt").find("RULES        = A"), Text::npos) << c.label;
    }
}

TEST(LoadApplicationsTest, ThirtyTwoThousandSevenHundredSixtyEightVariablesStopTheLoad) {
    LoadedDesk t;
    Text blocks;
    for (int i = 0; i < 32767; ++i) {
        blocks += "[FIELD]\r\n";
    }
    t.Put(anApplication().View("More", 1).Field(aField()));
    t.files.Put("/apps/plant.kdt", blocks);
    Text path;
    EXPECT_EQ(ErrorOf(t, &path), errOverflow);
    EXPECT_EQ(path, "/apps/plant.V1");
    EXPECT_EQ(Views(t.g), "0||1..32767;1|More|32768..32767;");
    EXPECT_EQ(t.g.gFields->Count(), 32767);
    EXPECT_EQ(t.desk.Grid.Rows(), 32768);
}

TEST(LoadApplicationsTest, ColumnsAreSizedOnceWhenAllRowsAreIn) {
    class Screen : public GridScreen {
    public:
        explicit Screen(VSFlexGrid& grid) : m_grid(grid) {}
        std::vector<std::int32_t> rowsAtSizing;
        void AutoSize(std::int32_t, std::int32_t) override {
            rowsAtSizing.push_back(m_grid.Rows());
            EXPECT_FALSE(m_grid.Redraw()) << "the grid is drawn when its columns are sized";
        }

    private:
        VSFlexGrid& m_grid;
    };
    LoadedDesk t;
    t.Put(anApplication().Field(aField()).View("Inlet", 1).Field(aField()));
    modKDLimitDesk::BuildColumnCatalogue(t.g);
    SetupGridColumns(t.desk);
    Screen screen(t.desk.Grid);
    t.desk.Grid.SetScreen(&screen);
    LoadApplications(t.desk);
    EXPECT_EQ(screen.rowsAtSizing, std::vector<std::int32_t>{3});
}

TEST(LoadApplicationsTest, ASaveWritesDerivedBoundsThatTheFileDidNotHold) {
    LoadedDesk t;
    t.Put(anApplication().Field(aField().Length(6).Max(0)));
    t.Load();
    EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 1));
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("   MAX          = 999.99\r\n"), Text::npos);
    EXPECT_NE(t.files.Get("/apps/plant.kdt").find("   MIN          = -99.99\r\n"), Text::npos);
}

TEST(LoadApplicationsTest, AViewFileWhoseNameDiffersInCaseIsReadAndRewritten) {
    LoadedDesk t;
    const auto application = anApplication().View("Inlet", 1).Field(aField().Name("a"));
    t.Put(application);
    t.files.Erase("/apps/plant.V1");
    t.files.Put("/apps/PLANT.v1", application.FileText(1));
    t.Load();
    ASSERT_EQ(t.g.gFields->Count(), 1);
    EXPECT_TRUE(modKDLimitDesk::SaveSchema(t.g, 2));
    EXPECT_NE(t.files.Get("/apps/PLANT.v1").find("7.001"), Text::npos);
    EXPECT_FALSE(t.files.Has("/apps/plant.V1"));
}

TEST(OpenApplicationFileTest, IsTrueOnlyWhenNothingWasRaised) {
    class Reader : public KDApplicationFile {
    public:
        int failure = 0;
        const KDList<KDViewEntry>& Views() override { throw cError(errSubscript, "Reader"); }
        const KDList<KDRuleEntry>& RuleList() override { throw cError(errSubscript, "Reader"); }
        Text ApplicationTitle() override { return {}; }
        void OpenFile(std::string_view) override {
            if (failure == 1) {
                throw cError(errFileNotFound, "Reader");
            }
            if (failure == 2) {
                throw std::runtime_error("anything else");
            }
        }
        void LoadViews() override {}
        void CloseFile() override {}
    };
    Reader reader;
    EXPECT_TRUE(OpenApplicationFile(reader, "/a.kdt"));
    for (const int failure : {1, 2}) {
        reader.failure = failure;
        EXPECT_FALSE(OpenApplicationFile(reader, "/a.kdt")) << failure;
    }
}

}  // namespace
}  // namespace kd
