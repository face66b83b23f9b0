#include "appfiles/SchemaReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>

#include "base/NumberTexts.h"
#include "fakes/Builders.h"
#include "model/FieldProperties.h"
#include "model/PropertyTable.h"

namespace kd {
namespace {

using modKDLimitDesk::ReadSchema;

/// One view whose file the test gives.
struct ReadDesk : TestMachine {
    ReadDesk() { g.gFiles->Add("/a.kdt", "Plant", {}, 0); }

    void Read(std::string bytes) {
        files.Put("/a.kdt", std::move(bytes));
        ReadSchema(g, "/a.kdt", 1);
    }
    /// The error of a file that cannot be read to its end.
    cError Fail(std::string bytes) {
        try {
            Read(std::move(bytes));
        } catch (const cError& error) {
            return error;
        }
        return {0, "no failure"};
    }
    const cField& Field(std::int32_t position = 1) const { return g.gFields->Ref(position); }
    const cField& Saved(std::int32_t position = 1) const { return g.gSavedFields->Ref(position); }
};

/// All that a file can say about a variable.
Text Dump(const cField& field, const Locale& locale) {
    Text all = field.Name() + "|" + Digits(field.VariableNo()) + "|" + Digits(field.FileID()) + "|" +
               Digits(field.RawField()) + "|" + Digits(field.PivotField()) + "|" + Digits(field.Statistic()) +
               "|" + Digits(field.AvgCount()) + "|" + Digits(field.Lookup()) + "|" +
               Digits(field.CompData()) + "|" + Digits(field.KeyID()) + "|" + Digits(field.Range()) + "|" +
               field.Relation() + "|" + PlainText(field.Maximum()) + "|" + PlainText(field.Minimum());
    for (int limit = 0; limit < LimitCount; ++limit) {
        all += "|" + field.LimitFlag(limit) + PlainText(field.Limit(limit));
    }
    for (std::int32_t column = cnType; column <= ColumnCount; ++column) {
        if (column != cnLimitMethod && column != cnTargetMethod) {
            all += "|" + field.ValueText(column, vmFile, locale);
        }
    }
    return all + "|" + Digits(field.LimitMethod()) + "|" + Digits(field.TargetMethod());
}

TEST(SchemaReaderTest, ABlockWithOnlyItsFirstLineIsATextVariableWithTheDefaults) {
    ReadDesk t;
    t.Read("[FIELD]\r\n[FIELD]\r\n");
    ASSERT_EQ(t.g.gFields->Count(), 2);
    EXPECT_EQ(Dump(t.Field(2), t.locale),
              "V2|2|1|0|0|0|0|0|0|0|0|000,000,000,000,000,000,000,000,000,000,000,000|0|0"
              "|C0|C0|C0|C0|C0|C0|C0|T|1|0||V|0|N|||||||||N|0|0");
    EXPECT_EQ(Dump(t.Saved(2), t.locale), Dump(t.Field(2), t.locale));
}

TEST(SchemaReaderTest, EachKeyGoesToItsPropertyAlone) {
    struct Case {
        const char* line;
        std::function<Text(const cField&)> read;
        const char* value;
    };
    const Case cases[] = {
        {"NAME = a b", [](const cField& f) { return f.Name(); }, "a b"},
        {"RAWFIELD = 70000", [](const cField& f) { return Digits(f.RawField()); }, "70000"},
        {"PIVOTFIELD = -70000", [](const cField& f) { return Digits(f.PivotField()); }, "-70000"},
        {"STATISTIC = 5", [](const cField& f) { return Digits(f.Statistic()); }, "5"},
        {"TYPE = q", [](const cField& f) { return f.FieldType(); }, "q"},
        {"LENGTH = 12abc", [](const cField& f) { return Digits(f.Length()); }, "12"},
        {"LENGTH = abc", [](const cField& f) { return Digits(f.Length()); }, "0"},
        {"LENGTH =", [](const cField& f) { return Digits(f.Length()); }, "0"},
        {"LENGTH = 2.5", [](const cField& f) { return Digits(f.Length()); }, "2"},
        {"LENGTH = 3.5", [](const cField& f) { return Digits(f.Length()); }, "4"},
        {"LENGTH = 2 4", [](const cField& f) { return Digits(f.Length()); }, "2"},
        {"LENGTH = 1e2", [](const cField& f) { return Digits(f.Length()); }, "100"},
        {"DECIMALS = -3", [](const cField& f) { return Digits(f.Decimals()); }, "-3"},
        {"XREF = x", [](const cField& f) { return f.XRef(); }, "x"},
        {"SAMPLE = 4", [](const cField& f) { return Digits(f.Sample()); }, "4"},
        {"REPORTTYPE = a30", [](const cField& f) { return f.ReportType(); }, "a30"},
        {"UCASE = Y", [](const cField& f) { return f.UpperCase(); }, "Y"},
        {"REQUIRED = P", [](const cField& f) { return f.Required(); }, "P"},
        {"REQUIRED =", [](const cField& f) { return f.Required(); }, ""},
        {"INPUT = c:\\in", [](const cField& f) { return f.InputFile(); }, "c:\\in"},
        {"OUTPUT = out", [](const cField& f) { return f.OutputFile(); }, "out"},
        {"LIMITMETHOD = 4", [](const cField& f) { return Digits(f.LimitMethod()); }, "4"},
        {"TARGETMETHOD = 1", [](const cField& f) { return Digits(f.TargetMethod()); }, "1"},
        {"TARGETMETHOD = 70000", [](const cField& f) { return Digits(f.TargetMethod()); }, "70000"},
        {"MAX = 12.5", [](const cField& f) { return PlainText(f.Maximum()); }, "12.5"},
        {"MAX = 12,5", [](const cField& f) { return PlainText(f.Maximum()); }, "12"},
        {"MIN = -.25", [](const cField& f) { return PlainText(f.Minimum()); }, "-.25"},
        {"#AVG = 3", [](const cField& f) { return Digits(f.AvgCount()); }, "3"},
        {"POPUP = a,b", [](const cField& f) { return f.Popup(); }, "a,b"},
        {"LOOKUP = 2", [](const cField& f) { return Digits(f.Lookup()); }, "2"},
        {"COMPDATA = 6", [](const cField& f) { return Digits(f.CompData()); }, "6"},
        {"KEYID = 7", [](const cField& f) { return Digits(f.KeyID()); }, "7"},
        {"RULES = ba", [](const cField& f) { return f.Rules(); }, "ba"},
        {"RANGE = 8", [](const cField& f) { return Digits(f.Range()); }, "8"},
        {"RELATION = 001", [](const cField& f) { return f.Relation(); }, "001"},
        {"CALC = A=B", [](const cField& f) { return f.Calculation(); }, "A=B"},
        {"UNITS = \xB5m", [](const cField& f) { return f.Units(); }, "\xC2\xB5m"},
        {"CATEGORY = c", [](const cField& f) { return f.Category(); }, "c"},
        {"HELPFILE = h", [](const cField& f) { return f.HelpFile(); }, "h"},
        {"name=lower case key", [](const cField& f) { return f.Name(); }, "lower case key"},
        {"NAME=first\r\nNAME=later", [](const cField& f) { return f.Name(); }, "later"},
        {"VERSION = 5\r\nWHATEVER = 1\r\nname", [](const cField& f) { return f.Name(); }, "V1"},
    };
    ReadDesk bare;
    bare.Read("[FIELD]\r\n");
    const std::vector<std::string> defaults = AllOf(bare.Field());
    for (const Case& c : cases) {
        ReadDesk t;
        t.Read(Text("[FIELD]\r\n   ") + c.line + "\r\n");
        EXPECT_EQ(c.read(t.Field()), c.value) << c.line;
        EXPECT_EQ(c.read(t.Saved()), c.value) << c.line;
        const std::vector<std::string> all = AllOf(t.Field());
        int changed = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            changed += all[i] != defaults[i] ? 1 : 0;
        }
        EXPECT_LE(changed, 1) << c.line;
    }
    for (const Property& property : PropertyTable) {
        const auto reads = [&property](const Case& c) {
            return std::string_view(c.line).starts_with(Text(property.key) + " =");
        };
        EXPECT_TRUE(property.key.empty() || property.kind == vkLimit ||
                    std::any_of(std::begin(cases), std::end(cases), reads))
            << property.key << " is read nowhere";
    }
}

TEST(SchemaReaderTest, EachLimitGoesToItsPair) {
    const char* const keys[] = {"USL", "UCL", "UWL", "TGT", "LWL", "LCL", "LSL"};
    for (int limit = 0; limit < LimitCount; ++limit) {
        ReadDesk t;
        t.Read(Text("[FIELD]\r\n") + keys[limit] + "=F12.5\r\n");
        for (int other = 0; other < LimitCount; ++other) {
            EXPECT_EQ(t.Field().LimitFlag(other), other == limit ? "F" : "C") << keys[limit];
            EXPECT_EQ(t.Field().Limit(other), other == limit ? 12.5 : 0) << keys[limit];
        }
        EXPECT_EQ(t.Field().Rules(), "") << keys[limit];
        EXPECT_EQ(Dump(t.Saved(), t.locale), Dump(t.Field(), t.locale));
    }
}

TEST(SchemaReaderTest, ALimitIsItsFirstCharacterAndANumberOnlyBehindACapitalF) {
    struct Case {
        const char* value;
        const char* flag;
        double number;
    };
    const Case cases[] = {{"F12.5", "F", 12.5},
                          {"F 12.5", "F", 12.5},
                          {"F.500", "F", .5},
                          {"F-.25x", "F", -.25},
                          {"F", "F", 0},
                          {"Fx", "F", 0},
                          {"f12", "f", 0},
                          {"C", "C", 0},
                          {"B7", "B", 0},
                          {"", "", 0},
                          {"12.5", "1", 0},
                          {"\xC4"
                           "1",
                           "\xC3\x84", 0},
                          {"F12.5 F3", "F", 12.5}};
    for (const Case& c : cases) {
        ReadDesk t;
        t.Read(Text("[FIELD]\r\nUSL = ") + c.value + "\r\n");
        EXPECT_EQ(t.Field().USLflag(), c.flag) << c.value;
        EXPECT_EQ(t.Field().USL(), c.number) << c.value;
    }
}

TEST(SchemaReaderTest, ALaterFlagTakesTheNumberOfAnEarlierLineAway) {
    for (const char* const later : {"C", "B", "", "F"}) {
        ReadDesk t;
        t.Read(Text("[FIELD]\r\nUSL=F5\r\nUSL=") + later + "\r\n");
        EXPECT_EQ(t.Field().USLflag(), later);
        EXPECT_EQ(t.Field().USL(), 0) << later;
        EXPECT_EQ(t.Saved().USL(), 0) << later;
    }
}

TEST(SchemaReaderTest, BlanksAroundANameAreNoPartOfIt) {
    ReadDesk t;
    t.Read("[FIELD]\r\nNAME = \t two words \t \r\n");
    EXPECT_EQ(t.Field().Name(), "two words");
}

TEST(SchemaReaderTest, VariablesAreNumberedAndNamedByTheirOrdinalInTheFile) {
    ReadDesk t;
    aField().AddTo(t.g);
    t.Read("[FIELD]\r\nNAME=a\r\n\r\n[FIELD]\r\n\r\n[FIELD]\r\nNAME=\r\n");
    ASSERT_EQ(t.g.gFields->Count(), 4);
    EXPECT_EQ(t.Field(2).Name(), "a");
    EXPECT_EQ(t.Field(3).Name(), "V2");
    EXPECT_EQ(t.Field(4).Name(), "");
    EXPECT_EQ(t.Field(4).VariableNo(), 3);
    EXPECT_EQ(t.Saved(4).VariableNo(), 3);
}

TEST(SchemaReaderTest, TheRecordsBearThePositionOfTheirView) {
    ReadDesk t;
    t.g.gFiles->Add("/b.kdt", {}, {}, 0);
    t.files.Put("/b.kdt", "[FIELD]\r\n");
    ReadSchema(t.g, "/b.kdt", 2);
    EXPECT_EQ(t.Field().FileID(), 2);
    EXPECT_EQ(t.Saved().FileID(), 2);
}

TEST(SchemaReaderTest, OnlyTheFieldGroupReachesARecord) {
    ReadDesk t;
    t.Read(
        "NAME=before\r\n[APPLICATION]\r\nNAME=header\r\n [Field] \r\nNAME=a\r\n[VIEWS]\r\nNAME=other\r\n"
        "[field=x]\r\nNAME=not\r\n[FIELD]\r\nUNITS=u\r\n");
    ASSERT_EQ(t.g.gFields->Count(), 2);
    EXPECT_EQ(t.Field(1).Name(), "a");
    EXPECT_EQ(t.Field(2).Name(), "V2");
    EXPECT_EQ(t.Field(2).Units(), "u");
}

TEST(SchemaReaderTest, TheFilesRulesAreJoinedInItsOrder) {
    struct Case {
        const char* label;
        const char* bytes;
        const char* rules;
    };
    const Case cases[] = {
        {"usual", "[RULES]\r\nRULE=Point\r\nRULE=run\r\n", "Point,run"},
        {"any case", "[Rules]\r\nrule=Point\r\n", "Point"},
        {"other keys", "[RULES]\r\nRULE=a\r\nNAME=b\r\nRULES=c\r\n", "a"},
        {"equal names", "[RULES]\r\nRULE=a\r\nRULE=a\r\n", "a,a"},
        {"an empty name", "[RULES]\r\nRULE=a\r\nRULE=\r\nRULE=b\r\n", "a,,b"},
        {"an empty first name leaves no trace", "[RULES]\r\nRULE=\r\nRULE=b\r\n", "b"},
        {"a bare line feed in front of the line's end", "[RULES]\r\nRULE=a\n\r\nRULE=b\r\n", "a,b"},
        {"behind the variables", "[FIELD]\r\nRULES=A\r\n[RULES]\r\nRULE=a\r\n", "a"},
        {"in two sections", "[RULES]\r\nRULE=a\r\n[X]\r\nRULE=x\r\n[RULES]\r\nRULE=b\r\n", "a,b"},
        {"a variable's letters are none", "[FIELD]\r\nRULES=A\r\nRULE=x\r\n", ""},
        {"none", "[FIELD]\r\n", ""},
    };
    for (const Case& c : cases) {
        ReadDesk t;
        t.g.gFiles->Ref(1).SetRules("old");
        t.Read(c.bytes);
        EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), c.rules) << c.label;
    }
}

TEST(SchemaReaderTest, AMissingOrUnreadableFileHasNoVariablesAndNoMessage) {
    for (const Text path : {"/none.kdt", "/none/a.kdt", "/pipe.kdt", "/locked.kdt"}) {
        ReadDesk t;
        t.files.PutSpecial("/pipe.kdt");
        t.files.Put("/locked.kdt", "[FIELD]\r\n");
        t.files.SetUnreadable("/locked.kdt");
        t.g.gFiles->Ref(1).SetRules("old");
        ReadSchema(t.g, path, 1);
        EXPECT_EQ(t.g.gFields->Count(), 0) << path;
        EXPECT_EQ(t.g.gSavedFields->Count(), 0) << path;
        EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "") << path;
    }
}

TEST(SchemaReaderTest, WhatAReaderKeptOfOneFileDoesNotReachTheNext) {
    ReadDesk t;
    t.files.Put("/a.kdt", "[FIELD]\r\nNAME=a\r\n[RULES]\r\nRULE=x\r\n");
    t.files.Put("/b.kdt", "NAME=b\r\nRULE=y\r\n");
    SchemaReader reader(t.g);
    reader.Read("/a.kdt", 1);
    reader.Read("/none.kdt", 1);  // a read that fails leaves the buffer as it was
    EXPECT_EQ(t.g.gFields->Count(), 1);
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "");
    reader.Read("/b.kdt", 1);
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "");
    t.g.gFiles->Ref(1).SetRules("old");
    reader.Read("/none.kdt", 1);
    EXPECT_EQ(t.g.gFields->Count(), 1);
    EXPECT_EQ(t.Field().Name(), "a");
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "");
}

TEST(SchemaReaderTest, BytesAtHandAreReadAndTheirPathIsForTheErrorsAlone) {
    ReadDesk t;
    t.files.Put("/a.kdt", "[FIELD]\r\nNAME=on the disk\r\n");
    SchemaReader reader(t.g);
    reader.Read("/a.kdt", "[FIELD]\r\nNAME=a\r\n[RULES]\r\nRULE=x\r\n", 1);
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "x");
    reader.Read("/a.kdt", "[FIELD]\r\nNAME=b \xB5\r\n", 1);
    EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "");
    ASSERT_EQ(t.g.gFields->Count(), 2);
    EXPECT_EQ(t.Field(1).Name(), "a");
    EXPECT_EQ(t.Field(2).Name(), "b \xC2\xB5");
    EXPECT_EQ(t.Saved(2).Name(), "b \xC2\xB5");
    try {
        reader.Read("/a.kdt", "[FIELD]\r\nLENGTH=40000\r\n", 1);
        ADD_FAILURE() << "read";
    } catch (const cError& error) {
        EXPECT_EQ(error.Path(), "/a.kdt");
    }
    EXPECT_EQ(t.files.Log(), std::vector<Text>());
}

TEST(SchemaReaderTest, AFileIsReadInOneOperation) {
    ReadDesk t;
    t.Read("[FIELD]\r\n");
    EXPECT_EQ(t.files.Log(), std::vector<Text>{"Read /a.kdt"});
}

TEST(SchemaReaderTest, ALastLineWithoutLineEndAndAFileOfBareLineFeedsAreNotSeen) {
    ReadDesk t;
    t.Read("[FIELD]\r\nNAME=a\r\nUNITS=u");
    EXPECT_EQ(t.Field().Name(), "a");
    EXPECT_EQ(t.Field().Units(), "");
    ReadDesk bare;
    bare.Read("[FIELD]\nNAME=a\n");
    EXPECT_EQ(bare.g.gFields->Count(), 0);
}

TEST(SchemaReaderTest, AFileWithoutAFieldLineHoldsNoVariables) {
    ReadDesk t;
    t.Read("[APPLICATION]\r\nNAME=a\r\n");
    EXPECT_EQ(t.g.gFields->Count(), 0);
}

TEST(SchemaReaderTest, ANumberThatDoesNotFitStopsTheFileAndKeepsTheRecordsSoFarInBothLists) {
    struct Case {
        const char* line;
        const char* label;
        const char* source;
    };
    const Text megabyte = "LENGTH=" + Text(1U << 20U, '9');
    const Case cases[] = {{"LENGTH=40000", "16 bits", "Numbers.ToInt16"},
                          {"LENGTH=-32769", "16 bits below", "Numbers.ToInt16"},
                          {"#AVG=32768", "16 bits by one", "Numbers.ToInt16"},
                          {"RAWFIELD=3000000000", "32 bits", "Numbers.ToInt32"},
                          {"LIMITMETHOD=1E20", "32 bits by far", "Numbers.ToInt32"},
                          {"MAX=1E999", "a double", "FileNumber"},
                          {megabyte.c_str(), "a megabyte of digits", "FileNumber"},
                          {"USL=F1E999", "a limit", "FileNumber"}};
    for (const Case& c : cases) {
        ReadDesk t;
        const cError error = t.Fail(Text("[RULES]\r\nRULE=x\r\n[FIELD]\r\nNAME=a\r\n[FIELD]\r\nNAME=b\r\n") +
                                    c.line + "\r\nUNITS=u\r\n[FIELD]\r\nNAME=c\r\n");
        EXPECT_EQ(error.Number(), errOverflow) << c.label;
        EXPECT_EQ(error.Path(), "/a.kdt") << c.label;
        EXPECT_EQ(error.Source(), c.source) << c.label;
        ASSERT_EQ(t.g.gFields->Count(), 2) << c.label;
        ASSERT_EQ(t.g.gSavedFields->Count(), 2) << c.label;
        EXPECT_EQ(Dump(t.Saved(2), t.locale), Dump(t.Field(2), t.locale)) << c.label;
        EXPECT_EQ(t.Field(2).Name(), "b") << c.label;
        EXPECT_EQ(t.g.gFiles->Ref(1).Rules(), "") << c.label;
    }
}

TEST(SchemaReaderTest, AFixedLimitWithANumberBeyondADoubleHasItsFlagInBothLists) {
    ReadDesk t;
    (void)t.Fail("[FIELD]\r\nUSL=F1E999\r\n");
    EXPECT_EQ(t.Field().USLflag() + t.Saved().USLflag(), "FF");
    EXPECT_EQ(t.Field().USL(), 0);
}

TEST(SchemaReaderTest, TheLargestAndSmallestNumbersFit) {
    ReadDesk t;
    t.Read("[FIELD]\r\nLENGTH=32767.4\r\nDECIMALS=-32768\r\nRAWFIELD=2147483647\r\nMAX=1E308\r\n");
    EXPECT_EQ(t.Field().Length(), 32767);
    EXPECT_EQ(t.Field().Decimals(), -32768);
    EXPECT_EQ(t.Field().RawField(), 2147483647);
    EXPECT_EQ(t.Field().Maximum(), 1e308);
}

TEST(SchemaReaderTest, TheTwinsPartWhenOneIsChanged) {
    ReadDesk t;
    t.Read("[FIELD]\r\nNAME=a\r\nRULES=A\r\n");
    t.g.gFields->Ref(1).SetName("b");
    t.g.gFields->Ref(1).SetRules("B");
    EXPECT_EQ(t.Saved().Name(), "a");
    EXPECT_EQ(t.Saved().Rules(), "A");
}

TEST(SchemaReaderTest, Variable32767IsReadAndOneMoreOverflows) {
    ReadDesk t;
    Text bytes;
    for (int i = 0; i < 32767; ++i) {
        bytes += "[FIELD]\r\n";
    }
    t.Read(bytes);
    EXPECT_EQ(t.g.gFields->Count(), 32767);
    const cError error = t.Fail("[FIELD]\r\n");
    EXPECT_EQ(error.Number(), errOverflow);
    EXPECT_EQ(error.Source(), "SchemaReader.BeginVariable");
    EXPECT_EQ(error.Path(), "/a.kdt");
    EXPECT_EQ(t.g.gFields->Count(), 32767);
    EXPECT_EQ(t.g.gSavedFields->Count(), 32767);
}

TEST(SchemaReaderTest, OneMoreThan32767InASingleFileOverflowsWithTheOthersKept) {
    ReadDesk t;
    Text bytes;
    for (int i = 0; i < 32768; ++i) {
        bytes += "[FIELD]\r\n";
    }
    const cError error = t.Fail(bytes);
    EXPECT_EQ(error.Number(), errOverflow);
    EXPECT_EQ(t.g.gFields->Count(), 32767);
    EXPECT_EQ(t.g.gSavedFields->Count(), 32767);
    EXPECT_EQ(t.Field(32767).VariableNo(), 32767);
}

TEST(SchemaReaderTest, AnUnknownKeyLikeAKnownOneReachesNoProperty) {
    ReadDesk t;
    t.Read("[FIELD]\r\nNAME=a\r\nNAXE=b\r\n");
    EXPECT_EQ(t.Field().Name(), "a");
}

TEST(FindSchemaKeyTest, FindsNothingElse) {
    for (const char* key :
         {"", "X", "NAM", "NAMES", "VERSION", "RULE", "name", "[FIELD]", "LENGTHS", "US", "NAXE"}) {
        EXPECT_EQ(FindSchemaKey(key), nullptr) << key;
    }
}

TEST(SchemaReaderTest, AControlAnywhereInALineIsABlank) {
    const Text line = "   NAME         = seventeen letters";
    for (std::size_t at = 0; at <= line.size(); ++at) {
        ReadDesk plain;
        ReadDesk controlled;
        Text with = line;
        plain.Read("[FIELD]\r\n" + with.insert(at, " ") + "\r\n");
        for (const char control : {'\t', '\r', '\n'}) {
            with[at] = control;
            ReadDesk t;
            t.Read("[FIELD]\r\n" + with + "\r\n");
            EXPECT_EQ(t.Field().Name(), plain.Field().Name()) << at;
        }
    }
}

}  // namespace
}  // namespace kd
