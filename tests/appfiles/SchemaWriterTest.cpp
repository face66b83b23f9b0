#include "appfiles/SchemaWriter.h"

#include <gtest/gtest.h>

#include <new>
#include <set>

#include "appfiles/FileNames.h"
#include "appfiles/SchemaHeader.h"
#include "appfiles/SchemaReader.h"
#include "fakes/Builders.h"
#include "fakes/ErrorOf.h"
#include "fakes/FailingFiles.h"
#include "model/PropertyTable.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

const char* const Header =
    "[APPLICATION]\r\n   VERSION      = 6.999\r\n\r\n[RULES]\r\n   RULE         = Old\r\n\r\n";
const char* const SavedHeader =
    "[APPLICATION]\r\n   VERSION      = 7.\r\n\r\n[RULES]\r\n   RULE         = New\r\n\r\n";

/// One view over gFields, with a file on the disk.
struct WriteDesk : TestMachine {
    explicit WriteDesk(Text path = "/apps/plant.kdt", std::int16_t viewNo = 0)
        : file(g.gFiles->Add(std::move(path), "Plant", {}, viewNo)), target(SchemaPath(g, *file)) {
        SetCatalogue(g, {"New"});
        file->SetBegFieldPtr(1);
        files.Put(target, Text(Header) + "[FIELD]\r\n   OLD = 1\r\n");
    }
    std::shared_ptr<cField> Add(const FieldBuilder& field) {
        file->SetEndFieldPtr(file->EndFieldPtr() + 1);
        return field.AddTo(g);
    }
    bool Save() { return SaveSchema(g, 1); }
    /// What stands behind the header after a save.
    Text Blocks() {
        EXPECT_TRUE(Save());
        const Text text = files.Get(target);
        const auto field = text.find("[FIELD]");
        return field == Text::npos ? Text() : text.substr(field);
    }
    /// The keys of the first block after a save, in order.
    Text Keys() {
        Text keys;
        Text blocks = Blocks();
        for (std::string_view line : Split(blocks, '\n')) {
            if (line.starts_with("   ")) {
                keys += Text(TrimRight(line.substr(3, line.find('=') - 3))) + " ";
            }
        }
        return keys;
    }
    void ExpectBox(const Text& text) { toolkit.ExpectBox(text, BoxIcon::Exclamation, "KDLimitDesk"); }
    void ExpectOverwriteBox(const Text& text) {
        toolkit.ExpectBox(text, BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    }

    std::shared_ptr<cFile> file;
    Text target;
};

TEST(FormatSchemaLineTest, TheEqualsSignStandsInColumnSeventeenAndTheValueInNineteen) {
    EXPECT_EQ(FormatSchemaLine("NAME", "x y"), "   NAME         = x y");
    EXPECT_EQ(FormatSchemaLine("TARGETMETHOD", "1"), "   TARGETMETHOD = 1");
    EXPECT_EQ(FormatSchemaLine("XREF", ""), "   XREF         = ");
    EXPECT_EQ(FormatSchemaLine("ABCDEFGHIJKLM", "1"), "   ABCDEFGHIJKLM= 1");
    EXPECT_EQ(FormatSchemaLine("ABCDEFGHIJKLMNOP", "1"), "   ABCDEFGHIJKLM= 1");
}

TEST(SchemaWriterTest, ANumericVariableIsWrittenToTheLetter) {
    WriteDesk t;
    t.Add(aField()
              .Length(6)
              .Usl(12.5)
              .Ucl(.5)
              .Key("UWL", "B")
              .Key("TGT", "f12")
              .Lcl(0)
              .Key("LSL", "F-1.0005")
              .Min(-3.005)
              .Rules("AB")
              .Key("LIMITMETHOD", "3")
              .Key("TARGETMETHOD", "1")
              .Key("SAMPLE", "5"));
    EXPECT_EQ(t.Save(), true);
    EXPECT_EQ(t.files.Get(t.target),
              Text(SavedHeader) +
                  "[FIELD]\r\n"
                  "   NAME         = Weight\r\n"
                  "   XREF         = \r\n"
                  "   TYPE         = N\r\n"
                  "   LENGTH       = 6\r\n"
                  "   DECIMALS     = 2\r\n"
                  "   SAMPLE       = 5\r\n"
                  "   REQUIRED     = N\r\n"
                  "   REPORTTYPE   = V\r\n"
                  "   LIMITMETHOD  = 3\r\n"
                  "   TARGETMETHOD = 1\r\n"
                  "   MAX          = 000.00\r\n"
                  "   USL          = F12.500\r\n"
                  "   UCL          = F.500\r\n"
                  "   UWL          = B\r\n"
                  "   TGT          = \r\n"
                  "   LWL          = C\r\n"
                  "   LCL          = F0.000\r\n"
                  "   LSL          = F-1.001\r\n"
                  "   MIN          = -3.01\r\n"
                  "   RULES        = AB\r\n"
                  "   INPUT        = \r\n"
                  "   OUTPUT       = \r\n"
                  "   UNITS        = \r\n"
                  "   CATEGORY     = \r\n"
                  "   HELPFILE     = \r\n"
                  "   RELATION     = 000,000,000,000,000,000,000,000,000,000,000,000\r\n");
}

TEST(SchemaWriterTest, EachTypeWritesItsKeysInItsOrder) {
    const Text numeric =
        "REPORTTYPE LIMITMETHOD TARGETMETHOD MAX USL UCL UWL TGT LWL LCL LSL MIN RULES INPUT OUTPUT ";
    struct Case {
        const char* type;
        Text keys;
    };
    const Case cases[] = {
        {"N", "DECIMALS SAMPLE REQUIRED " + numeric + "UNITS CATEGORY HELPFILE RELATION "},
        {"A", "DECIMALS SAMPLE REQUIRED " + numeric + "#AVG UNITS CATEGORY HELPFILE RELATION "},
        {"R", "DECIMALS SAMPLE " + numeric + "RANGE UNITS CATEGORY HELPFILE RELATION "},
        {"C", "DECIMALS SAMPLE " + numeric + "UNITS CATEGORY HELPFILE CALC RELATION "},
        {"T", "SAMPLE UCASE REQUIRED INPUT OUTPUT UNITS CATEGORY HELPFILE "},
        {"P", "SAMPLE REQUIRED UCASE INPUT OUTPUT POPUP COMPDATA KEYID UNITS CATEGORY HELPFILE "},
        {"L", "SAMPLE UCASE OUTPUT POPUP COMPDATA KEYID LOOKUP UNITS CATEGORY HELPFILE "},
        {"n", ""},
        {"AR", ""},
        {"", ""},
        {"X", ""},
    };
    Text written = "  ";
    for (const Case& c : cases) {
        WriteDesk t;
        t.Add(aField().Type(c.type));
        EXPECT_EQ(t.Keys(), "NAME XREF TYPE LENGTH " + c.keys) << c.type;
        WriteDesk view("/apps/plant.kdt", 1);
        view.Add(aField().Type(c.type));
        EXPECT_EQ(view.Keys(), "NAME RAWFIELD PIVOTFIELD STATISTIC XREF TYPE LENGTH " + c.keys) << c.type;
        written += view.Keys();
    }
    for (const Property& property : PropertyTable) {
        EXPECT_NE(written.find(" " + Text(property.key) + " "), Text::npos) << property.title;
    }
}

/// A value of its own for each key.
FieldBuilder EveryKey() {
    return aField()
        .Key("RAWFIELD", "-70001")
        .Key("PIVOTFIELD", "70002")
        .Key("STATISTIC", "3")
        .Key("XREF", "xref")
        .Length(10)
        .Key("LIMITMETHOD", "2")
        .Key("TARGETMETHOD", "1")
        .Min(-2)
        .Usl(17)
        .Ucl(16)
        .Uwl(15)
        .Tgt(14)
        .Lwl(13)
        .Lcl(12)
        .Lsl(11)
        .Key("SAMPLE", "4")
        .Key("REQUIRED", "P")
        .Key("UCASE", "Y")
        .Key("REPORTTYPE", "A30")
        .Key("RULES", "BA")
        .Key("INPUT", "in")
        .Key("OUTPUT", "out")
        .Key("#AVG", "5")
        .Key("RANGE", "6")
        .Key("CALC", "a=b")
        .Key("POPUP", "x,y")
        .Key("COMPDATA", "7")
        .Key("KEYID", "8")
        .Key("LOOKUP", "9")
        .Key("UNITS", "kg")
        .Key("CATEGORY", "cat")
        .Key("HELPFILE", "help")
        .Key("RELATION", "001,002");
}

TEST(SchemaWriterTest, EachKeyHasTheValueOfItsProperty) {
    struct Case {
        const char* type;
        std::vector<Text> lines;
    };
    const Case cases[] = {
        {"A", {"NAME         = Weight",  "RAWFIELD     = -70001",  "PIVOTFIELD   = 70002",
               "STATISTIC    = 3",       "XREF         = xref",    "REQUIRED     = P",
               "REPORTTYPE   = A30",     "RULES        = BA",      "INPUT        = in",
               "OUTPUT       = out",     "#AVG         = 5",       "UNITS        = kg",
               "CATEGORY     = cat",     "HELPFILE     = help",    "RELATION     = 001,002",
               "MAX          = 1000.00", "MIN          = -2.00",   "TYPE         = A",
               "LENGTH       = 10",      "DECIMALS     = 2",       "LIMITMETHOD  = 2",
               "TARGETMETHOD = 1",       "USL          = F17.000", "UCL          = F16.000",
               "UWL          = F15.000", "TGT          = F14.000", "LWL          = F13.000",
               "LCL          = F12.000", "LSL          = F11.000"}},
        {"R", {"RANGE        = 6"}},
        {"C", {"CALC         = a=b"}},
        {"T", {"UCASE        = Y", "SAMPLE       = 4"}},
        {"L", {"POPUP        = x,y", "COMPDATA     = 7", "KEYID        = 8", "LOOKUP       = 9"}},
    };
    std::set<Text> tried;
    for (const Case& c : cases) {
        WriteDesk t("/apps/plant.kdt", 1);
        t.Add(EveryKey().Type(c.type));
        const Text blocks = t.Blocks();
        for (const Text& line : c.lines) {
            tried.insert(line.substr(0, line.find(' ')));
            EXPECT_NE(blocks.find(Text("\r\n   ") + line + "\r\n"), Text::npos) << line << "\n" << blocks;
        }
    }
    for (const Property& property : PropertyTable) {
        EXPECT_TRUE(property.key.empty() || tried.count(Text(property.key)) != 0) << property.key;
    }
}

TEST(SchemaWriterTest, BlocksStandInTheOrderOfTheRecordsWithOneEmptyLineBetweenTwo) {
    WriteDesk t;
    t.Add(aField().Name("b").Type("x"));
    t.Add(aField().Name("a").Type("x").Length(3));
    EXPECT_EQ(t.Blocks(),
              "[FIELD]\r\n   NAME         = b\r\n   XREF         = \r\n   TYPE         = x\r\n"
              "   LENGTH       = 8\r\n\r\n"
              "[FIELD]\r\n   NAME         = a\r\n   XREF         = \r\n   TYPE         = x\r\n"
              "   LENGTH       = 3\r\n");
}

TEST(SchemaWriterTest, OnlyTheViewsOwnRunOfVariablesIsWritten) {
    WriteDesk t;
    for (const char* name : {"a", "b", "c"}) {
        aField().Name(name).Type("x").AddTo(t.g);
    }
    t.file->SetBegFieldPtr(2);
    t.file->SetEndFieldPtr(2);
    EXPECT_EQ(t.Keys(), "NAME XREF TYPE LENGTH ");
    EXPECT_NE(t.files.Get(t.target).find("= b\r\n"), Text::npos);
}

TEST(SchemaWriterTest, AViewWithoutVariablesIsItsHeaderAndNothingElse) {
    WriteDesk t;
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), SavedHeader);
}

TEST(SchemaWriterTest, AMissingTargetGetsTheBlocksAlone) {
    WriteDesk t;
    t.files.Erase(t.target);
    t.files.Put("/apps/other", "");
    t.Add(aField().Type("x"));
    EXPECT_TRUE(t.Save());
    EXPECT_TRUE(t.files.Get(t.target).starts_with("[FIELD]\r\n"));
    EXPECT_EQ(HeaderVersion(ReadHeaderText(t.g, t.target), t.locale.CodePage()), "6.000");
}

TEST(SchemaWriterTest, AFileWithoutARulesSectionGetsLettersButNoSection) {
    WriteDesk t;
    t.files.Put(t.target, "VERSION=1\r\n");
    t.Add(aField().Rules("A"));
    EXPECT_TRUE(t.Save());
    const Text text = t.files.Get(t.target);
    EXPECT_EQ(text.find("[RULES]"), Text::npos);
    EXPECT_NE(text.find("   RULES        = A\r\n"), Text::npos);
}

TEST(SchemaWriterTest, AFieldLineWithBlanksInFrontStaysHeaderText) {
    WriteDesk t;
    t.files.Put(t.target, "a\r\n [FIELD]\r\n   NAME = kept\r\n[FIELD]\r\nNAME = gone\r\n");
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), "a\r\n [FIELD]\r\n   NAME = kept\r\n");
}

TEST(SchemaWriterTest, AHeaderWithoutALineEndAtItsEndGetsOne) {
    WriteDesk t;
    t.files.Put(t.target, "a\r\nb");
    t.Add(aField().Type("x"));
    EXPECT_TRUE(t.Save());
    EXPECT_TRUE(t.files.Get(t.target).starts_with("a\r\nb\r\n[FIELD]\r\n"));
}

TEST(SchemaWriterTest, TheRevisionIsRaisedBeforeTheRulesAreSwapped) {
    WriteDesk t;
    SetCatalogue(t.g, {"Version=3"});
    t.files.Put(t.target, "[RULES]\r\nRULE=x\r\n\r\nVERSION=1\r\n");
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), "[RULES]\r\n   RULE         = Version=3\r\n\r\nVERSION= 1.001\r\n");
}

TEST(SchemaWriterTest, LinesOfAMegabyteSurviveALoadAndASave) {
    WriteDesk t;
    const std::string name(1U << 20U, 'x');
    const std::string header = "; " + std::string(1U << 20U, '\xE4') + "\r\n";
    const std::string bytes = header + "[FIELD]\r\n   NAME         = " + name +
                              "\r\n   XREF         = \r\n   TYPE         = x\r\n   LENGTH       = 1\r\n";
    t.files.Put(t.target, bytes);
    ReadSchema(t.g, t.target, 1);
    t.file->SetEndFieldPtr(1);
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), bytes);
}

TEST(SchemaWriterTest, AFileOfBareLineFeedsIsAllHeader) {
    WriteDesk t;
    t.files.Put(t.target, "VERSION=1\r\n[FIELD]\nNAME=a\n");
    ReadSchema(t.g, t.target, 1);
    EXPECT_EQ(t.g.gFields->Count(), 0);
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), "VERSION= 1.001\r\n[FIELD]\nNAME=a\n\r\n");
}

TEST(SchemaWriterTest, UnknownKeysAndCommentsBehindTheFirstFieldAreGone) {
    WriteDesk t;
    t.files.Put(t.target, "; kept\r\n[FIELD]\r\n; gone\r\nWHATEVER = gone\r\n[RULES]\r\nRULE = gone\r\n\r\n");
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), "; kept\r\n");
}

TEST(SchemaWriterTest, TheUsersLocaleDoesNotReachTheFile) {
    Text saved[2];
    for (const bool comma : {false, true}) {
        WriteDesk t;
        t.locale.separator = comma ? ',' : '.';
        t.Add(aField().Usl(12.5).Min(-.25));
        EXPECT_TRUE(t.Save());
        saved[comma ? 1 : 0] = t.files.Get(t.target);
    }
    EXPECT_NE(saved[0].find("F12.500"), Text::npos);
    EXPECT_EQ(saved[0], saved[1]);
}

TEST(SchemaWriterTest, EveryByteValueOfNamesUnitsAndHeaderSurvivesALoadAndASave) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\t' && byte != '\r' && byte != '\n') {
            all += static_cast<char>(byte);
        }
    }
    const std::string header = "comment \t\r \n" + all + "\r\n";
    for (const int page : {1252, 1250, 1251, 1253, 1254, 874}) {
        WriteDesk t;
        t.locale.page = page;
        std::string bytes = header;
        bytes.append("[FIELD]\r\n   NAME         = x").append(all);
        bytes +=
            "x\r\n   XREF         = \r\n   TYPE         = T\r\n   LENGTH       = 1\r\n"
            "   SAMPLE       = 0\r\n   UCASE        = N\r\n   REQUIRED     = N\r\n"
            "   INPUT        = \r\n   OUTPUT       = \r\n   UNITS        = x";
        bytes.append(all).append("x\r\n   CATEGORY     = \r\n   HELPFILE     = \r\n");
        t.files.Put(t.target, bytes);
        ReadSchema(t.g, t.target, 1);
        t.file->SetEndFieldPtr(1);
        EXPECT_TRUE(t.Save());
        EXPECT_EQ(t.files.Get(t.target), bytes) << page;
    }
}

TEST(SchemaWriterTest, AReloadedFileSavedAgainDiffersInTheRevisionAlone) {
    WriteDesk t("/apps/plant.kdt", 1);
    for (const char* type : {"N", "A", "R", "C", "T", "P", "L", "n"}) {
        t.Add(EveryKey().Type(type).Usl(12.3456).Lsl(1.25));
    }
    EXPECT_TRUE(t.Save());
    Text first = t.files.Get(t.target);
    t.g.gFields = std::make_shared<cFields>();
    t.g.gSavedFields = std::make_shared<cFields>();
    ReadSchema(t.g, t.target, 1);
    EXPECT_EQ(t.g.gFields->Count(), 8);
    EXPECT_TRUE(t.Save());
    const auto version = first.find("= 7.\r\n");
    ASSERT_NE(version, Text::npos);
    first.replace(version, 6, "= 7.001\r\n");
    EXPECT_EQ(t.files.Get(t.target), first);
}

TEST(SchemaWriterTest, AViewOfGenerationSixGoesThroughItsOwnTemporaryFile) {
    WriteDesk t("/apps/plant.kdt6", 2);
    EXPECT_EQ(t.target, "/apps/plant.KDV6.V2");
    t.files.ClearLog();
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Log(),
              (std::vector<Text>{"OpenForOutput /apps/plant.KDV6.temp", "Read /apps/plant.KDV6.V2",
                                 "Write /apps/plant.KDV6.temp", "Close /apps/plant.KDV6.temp",
                                 "CopyFile /apps/plant.KDV6.V2", "DeleteFile /apps/plant.KDV6.temp"}));
    EXPECT_EQ(t.files.Paths(), std::vector<Text>{"/apps/plant.KDV6.V2"});
}

TEST(SchemaWriterTest, NothingInMemoryChanges) {
    WriteDesk t;
    const auto field = t.Add(aField().Usl(5));
    field->SetUSL(6);
    t.file->SetChangesMade(true);
    EXPECT_TRUE(t.Save());
    EXPECT_TRUE(t.file->ChangesMade());
    EXPECT_EQ(t.g.gSavedFields->Ref(1).USL(), 5);
    EXPECT_EQ(field->USL(), 6);
}

TEST(SchemaWriterTest, ALineEndThatAnEditHasJoinedBeginsNoLineOfItsOwn) {
    WriteDesk t;
    const auto field = t.Add(aField());
    field->SetName("a\r\n[FIELD]\r\n   NAME         = planted");
    field->SetUnits("x\ry\nz\r");
    const Text blocks = t.Blocks();
    EXPECT_TRUE(
        blocks.starts_with("[FIELD]\r\n   NAME         = a  [FIELD]     NAME         = planted\r\n   XREF"));
    EXPECT_NE(blocks.find("   UNITS        = x\ry\nz\r\r\n   CATEGORY"), Text::npos)
        << "what ends no line stays to the byte";
}

TEST(SchemaWriterTest, ANameIsWrittenWithTheBlanksThatItHolds) {
    WriteDesk t;
    t.Add(aField())->SetName(" a name ");
    EXPECT_TRUE(t.Blocks().starts_with("[FIELD]\r\n   NAME         =  a name \r\n"));
}

/// Tells whether a file that was opened for output still keeps others from it, and is still held at all.
struct KeepingFiles : FailingFiles {
    struct Kept : OutputFile {
        Kept(std::unique_ptr<OutputFile> opened, KeepingFiles& keeping)
            : file(std::move(opened)), files(keeping) {
            files.isKept = files.isHeld = true;
        }
        ~Kept() override { files.isKept = files.isHeld = false; }
        void Write(std::string_view bytes) override { file->Write(bytes); }
        void Flush() override { file->Flush(); }
        void Close() override { file->Close(); }
        void CloseForSettling() override { file->CloseForSettling(); }
        void Unlock() noexcept override {
            file->Unlock();
            files.isKept = false;
        }
        std::unique_ptr<OutputFile> file;
        KeepingFiles& files;
    };
    using FailingFiles::FailingFiles;
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path, Patience patience) override {
        patiences.push_back(patience);
        return std::make_unique<Kept>(FailingFiles::OpenForOutput(path, patience), *this);
    }
    void DeleteAbandoned(std::string_view path) noexcept override {
        heldAtDeletions.push_back(isHeld);
        FailingFiles::DeleteAbandoned(path);
    }
    bool isKept = false;
    bool isHeld = false;
    std::vector<Patience> patiences;    // of each opening
    std::vector<bool> heldAtDeletions;  // for each DeleteAbandoned
};

/// One view whose saves go through KeepingFiles.
struct KeepingDesk : WriteDesk {
    KeepingDesk() { keepingG.gFiles = g.gFiles; }
    KeepingFiles keeping{files};
    Platform keepingPlatform{keeping, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals keepingG{keepingPlatform};
};

TEST(SchemaWriterTest, TheTemporaryFileIsKeptFromOtherProgramsUntilItStandsInTheTargetsPlace) {
    KeepingDesk t;
    KeepingFiles& files = t.keeping;
    std::vector<Text> kept;
    files.OnDone = [&](const FailingFiles::Step& step) {
        if (files.isKept && step.operation != "Exists" && step.operation != "Read") {  // of the old header
            kept.push_back(step.operation);
        }
    };
    EXPECT_TRUE(SaveSchema(t.keepingG, 1));
    EXPECT_EQ(kept, (std::vector<Text>{"Write", "Close", "CopyFile", "DeleteFile"}));
    EXPECT_FALSE(files.isKept);
}

TEST(SchemaWriterTest, AFailedSaveHoldsItsTemporaryFileAndKeepsOtherProgramsFromItNoMore) {
    KeepingDesk t;
    t.files.FailOn("Write", ".temp", errDiskFull);
    t.ExpectBox("Error 61: Disk full occurred in SaveSchema.");
    EXPECT_FALSE(SaveSchema(t.keepingG, 1));
    EXPECT_TRUE(t.keeping.isHeld);
    EXPECT_FALSE(t.keeping.isKept);
    EXPECT_EQ(t.keeping.heldAtDeletions, std::vector<bool>());
}

TEST(SchemaWriterTest, AWritingThatMayBeTriedAgainLetsItsTemporaryFileGoBeforeItIsDeleted) {
    KeepingDesk t;
    t.files.FailOn("Write", ".temp", errDiskFull);
    EXPECT_EQ(ErrorOf([&] { (void)WriteSchema(t.keepingG, 1, AfterFailure::MayBeTriedAgain); }), errDiskFull);
    EXPECT_EQ(t.keeping.heldAtDeletions, std::vector<bool>{false});
    EXPECT_FALSE(t.files.Has("/apps/plant.temp"));
    EXPECT_EQ(t.keepingG.openTemporaries, std::vector<Text>());
}

TEST(SchemaWriterTest, OnlyAWritingThatMayBeTriedAgainWaitsForNobody) {
    KeepingDesk t;
    (void)WriteSchema(t.keepingG, 1, AfterFailure::MayBeTriedAgain);  // how it opens its file is asked
    (void)WriteSchema(t.keepingG, 1, AfterFailure::Blocked);          // the same
    EXPECT_TRUE(SaveSchema(t.keepingG, 1));
    EXPECT_EQ(t.keeping.patiences,
              (std::vector<Patience>{Patience::None, Patience::ForASave, Patience::ForASave}));
}

TEST(SchemaWriterTest, AWritingIsLeftToSettlingAndASaveIsNot) {
    WriteDesk t;
    const WrittenSchema written = WriteSchema(t.g, 1, AfterFailure::Blocked);
    EXPECT_EQ(t.files.Unsettled(), std::set<Text>{"/apps/plant.temp"});
    EXPECT_EQ(t.files.OpenFiles(), 0);
    WriteDesk saved;
    EXPECT_TRUE(saved.Save());
    EXPECT_EQ(saved.files.Unsettled(), std::set<Text>());
}

TEST(SchemaWriterTest, WhatAnotherProgramSavesOnceTheHeaderIsReadIsSeen) {
    WriteDesk t;
    t.files.onStep = [&](const Text& step) {
        if (step == "Write /apps/plant.temp") {
            t.files.Put(t.target, "another program's");
        }
    };
    const WrittenSchema written = WriteSchema(t.g, 1, AfterFailure::Blocked);
    EXPECT_FALSE(t.files.MoveSettled(written.temporary, written.target, written.seen));
    EXPECT_EQ(t.files.Get(t.target), "another program's");
}

TEST(SchemaWriterTest, WantOfMemoryInAWritingTellsWhereItWasMet) {
    WriteDesk t;
    t.files.onStep = [](const Text&) { throw std::bad_alloc(); };
    try {
        (void)WriteSchema(t.g, 1, AfterFailure::Blocked);
        ADD_FAILURE() << "written";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOutOfMemory);
        EXPECT_EQ(error.Source(), "SaveSchema");
    }
}

TEST(SchemaWriterTest, WhatStoodInTheTemporaryFileIsReplaced) {
    WriteDesk t;
    t.files.Put("/apps/plant.temp", "left over");
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), SavedHeader);
    EXPECT_FALSE(t.files.Has("/apps/plant.temp"));
}

TEST(SchemaWriterTest, DecimalsNotBelowLengthFailWithErrorFive) {
    struct Case {
        const char* label;
        int length;
        int decimals;
    };
    for (const Case& c : {Case{"equal", 2, 2}, Case{"above", 1, 5}, Case{"negative length", -1, 0}}) {
        WriteDesk t;
        t.Add(aField().Length(c.length).Decimals(c.decimals));
        const Text old = t.files.Get(t.target);
        t.ExpectBox("Error 5: Invalid procedure call or argument occurred in SaveSchema.");
        EXPECT_FALSE(t.Save()) << c.label;
        EXPECT_EQ(t.files.Get(t.target), old) << c.label;
    }
}

TEST(SchemaWriterTest, AVersionWithoutAnEqualsSignFailsWithErrorFive) {
    WriteDesk t;
    t.files.Put(t.target, "a = 1\r\nVERSION\r\n[FIELD]\r\n");
    t.ExpectBox("Error 5: Invalid procedure call or argument occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), "a = 1\r\nVERSION\r\n[FIELD]\r\n");
}

TEST(SchemaWriterTest, ATargetThatCannotBeReadIsNotOverwritten) {
    WriteDesk t;
    t.files.SetUnreadable(t.target);
    const Text old = t.files.Get(t.target);
    t.ExpectBox("Error 70: Permission denied occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), old);
}

TEST(SchemaWriterTest, APipeInTheTargetsPlaceIsNotTouched) {
    WriteDesk t;
    t.files.Erase(t.target);
    t.files.PutSpecial(t.target);
    t.ExpectBox("Error 70: Permission denied occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    EXPECT_FALSE(t.files.IsRegularFile(t.target));
}

TEST(SchemaWriterTest, APositionOutsideTheListFails) {
    WriteDesk t;
    t.ExpectBox("Error 5: Invalid procedure call or argument occurred in SaveSchema.");
    EXPECT_FALSE(SaveSchema(t.g, 2));
}

TEST(SchemaWriterTest, AFailedSaveKeepsItsTemporaryFileOpenSoThatTheNextOneFailsWithErrorFiftyFive) {
    WriteDesk t;
    t.files.FailOn("Write", ".temp", errDiskFull);
    t.ExpectBox("Error 61: Disk full occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    EXPECT_TRUE(t.files.Has("/apps/plant.temp"));
    EXPECT_EQ(t.files.OpenFiles(), 1);
    EXPECT_EQ(t.g.openTemporaries, std::vector<Text>{"/apps/plant.temp"});

    t.files.FailNoMore();
    t.ExpectBox("Error 55: File already open occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    EXPECT_EQ(t.files.OpenFiles(), 1);
}

TEST(SchemaWriterTest, AFailedSaveBlocksTheOtherViewsThatShareItsTemporaryPathAndNoOthers) {
    WriteDesk t;
    t.g.gFiles->Add("/apps/plant.kdt", {}, {}, 1);
    t.g.gFiles->Add("/apps/mill.kdt", {}, {}, 1)->SetBegFieldPtr(1);
    t.files.FailOn("Close", ".temp", errDevice);
    t.ExpectBox("Error 57: Device I/O error occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    t.files.FailNoMore();
    t.ExpectBox("Error 55: File already open occurred in SaveSchema.");
    EXPECT_FALSE(SaveSchema(t.g, 2));
    EXPECT_TRUE(SaveSchema(t.g, 3));
}

TEST(SchemaWriterTest, AnApplicationNamedAsItsOwnTemporaryFileIsNotSaved) {
    for (const Text& path : std::vector<Text>{"/apps/plant.temp", "/apps/plant.TEMP"}) {
        TestMachine t;
        anApplication(path).Field(aField()).View("Inlet", 1).Field(aField()).PutInto(t);
        t.g.gFiles->Add(path, {}, {}, 0);
        t.g.gFiles->Add(path, {}, "Inlet", 1);
        const std::string before = t.files.Get(path);
        ASSERT_FALSE(before.empty());
        for (std::int32_t view = 1; view <= 2; ++view) {
            t.toolkit.ExpectBox("Error 55: File already open occurred in SaveSchema.", BoxIcon::Exclamation,
                                "KDLimitDesk");
            EXPECT_FALSE(SaveSchema(t.g, view));
            EXPECT_EQ(t.files.Get(path), before);
        }
    }
}

TEST(SchemaWriterTest, ATemporaryFileThatIsTakenTellsWhoWantedIt) {
    TestMachine own;
    anApplication("/apps/plant.temp").Field(aField()).PutInto(own);
    own.g.gFiles->Add("/apps/plant.temp", {}, {}, 0);
    WriteDesk left;
    left.g.openTemporaries.push_back("/apps/plant.temp");
    for (Globals* const g : {&own.g, &left.g}) {
        try {
            (void)WriteSchema(*g, 1, AfterFailure::Blocked);
            ADD_FAILURE() << "it is taken";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errFileAlreadyOpen);
            EXPECT_EQ(error.Source(), "SaveSchema");
            EXPECT_EQ(error.Path(), "/apps/plant.temp");
        }
    }
}

TEST(SchemaWriterTest, ATemporaryFileThatCannotBeOpenedMayBeTriedAgain) {
    WriteDesk t;
    t.files.FailOn("OpenForOutput", ".temp", errPermissionDenied);
    t.ExpectBox("Error 70: Permission denied occurred in SaveSchema.");
    EXPECT_FALSE(t.Save());
    t.files.FailNoMore();
    EXPECT_TRUE(t.Save());
}

TEST(SchemaWriterTest, WantOfMemoryIsToldAndBlocksTheTemporaryPathOnceItsFileIsOpen) {
    for (const Text where : {"OpenForOutput", "Read", "Write", "Close"}) {
        WriteDesk t;
        t.Add(aField());
        const Text old = t.files.Get(t.target);
        t.files.onStep = [&](const Text& operation) {
            if (operation.starts_with(where + " ")) {
                throw std::bad_alloc();
            }
        };
        t.ExpectBox("Error 7: Out of memory occurred in SaveSchema.");
        EXPECT_FALSE(t.Save()) << where;
        EXPECT_EQ(t.files.Get(t.target), old) << where;

        t.files.onStep = nullptr;
        const bool opened = where != "OpenForOutput";
        if (opened) {
            t.ExpectBox("Error 55: File already open occurred in SaveSchema.");
        }
        EXPECT_EQ(t.Save(), !opened) << where;
    }
}

TEST(SchemaWriterTest, AFailedOverwriteStillCountsAsSaved) {
    WriteDesk t;
    const Text old = t.files.Get(t.target);
    t.files.SetReadOnly(t.target);
    t.ExpectOverwriteBox("Error 70: Permission denied");
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), old);
    EXPECT_EQ(t.files.Get("/apps/plant.temp"), SavedHeader);
    EXPECT_EQ(t.files.OpenFiles(), 0);
    t.files.SetReadOnly(t.target, false);
    EXPECT_TRUE(t.Save());
    EXPECT_EQ(t.files.Get(t.target), SavedHeader);
}

TEST(SchemaWriterTest, AtEachPointOfFailureTheTargetIsWhollyOldOrWhollyNew) {
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        WriteDesk t;
        t.Add(aField().Type("x"));
        const Text old = t.files.Get(t.target);
        t.files.FailAt(failAt);
        // Open, read, write and close come before the overwriting: copy and delete.
        if (failAt <= 4) {
            t.ExpectBox("Error 57: Device I/O error occurred in SaveSchema.");
        } else if (failAt <= 6) {
            t.ExpectOverwriteBox("Error 57: Device I/O error");
        }
        EXPECT_EQ(t.Save(), failAt > 4) << failAt;
        done = t.files.Operations() < failAt;
        const Text left = t.files.Get(t.target);
        if (failAt <= 5) {
            EXPECT_EQ(left, old) << failAt;
        } else {
            EXPECT_TRUE(left.starts_with(Text(SavedHeader) + "[FIELD]\r\n   NAME")) << failAt;
        }
        EXPECT_EQ(t.files.Has("/apps/plant.temp"), !done && failAt != 1) << failAt;
        ASSERT_LT(failAt, 20);
    }
}

TEST(OverwriteFileTest, CopiesAndDeletesTheSourceWhenWanted) {
    for (const bool deleteSource : {true, false}) {
        TestMachine t;
        t.files.Put("/a", "new");
        t.files.Put("/b", "old");
        EXPECT_TRUE(OverwriteFile(t.g, "/a", "/b", deleteSource));
        EXPECT_EQ(t.files.Get("/b"), "new");
        EXPECT_EQ(t.files.Has("/a"), !deleteSource);
    }
}

TEST(OverwriteFileTest, AFailureIsShownAndLeavesTheTargetWholeAndTheSource) {
    struct Case {
        const char* operation;
        const char* left;
    };
    for (const Case& c : {Case{"CopyFile", "old"}, Case{"DeleteFile", "new"}}) {
        TestMachine t;
        t.files.Put("/a", "new");
        t.files.Put("/b", "old");
        t.files.FailOn(c.operation, "", errDiskFull);
        t.toolkit.ExpectBox("Error 61: Disk full", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
        EXPECT_FALSE(OverwriteFile(t.g, "/a", "/b", true)) << c.operation;
        EXPECT_EQ(t.files.Get("/b"), c.left);
        EXPECT_TRUE(t.files.Has("/a"));
    }
}

TEST(OverwriteFileTest, WantOfMemoryIsShownLikeAnyOtherFailure) {
    TestMachine t;
    t.files.Put("/a", "new");
    t.files.Put("/b", "old");
    t.files.onStep = [](const Text&) { throw std::bad_alloc(); };
    t.toolkit.ExpectBox("Error 7: Out of memory", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    EXPECT_FALSE(OverwriteFile(t.g, "/a", "/b", true));
}

TEST(OverwriteFileTest, AMissingSourceIsShown) {
    TestMachine t;
    t.files.Put("/b", "old");
    t.toolkit.ExpectBox("Error 53: File not found", BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile");
    EXPECT_FALSE(OverwriteFile(t.g, "/a", "/b", true));
    EXPECT_EQ(t.files.Get("/b"), "old");
}

}  // namespace
}  // namespace kd
