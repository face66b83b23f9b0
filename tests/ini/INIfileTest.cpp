#include "ini/INIfile.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/NumberTexts.h"
#include "fakes/TestMachine.h"

namespace kd {
namespace {

/// A file system with one file, and an INIfile over it.
struct IniDesk : TestMachine {
    INIfile ini{files, locale};

    void Load(std::string bytes) {
        files.Put("/a.ini", std::move(bytes));
        ini.LoadFile("/a.ini");
    }
    /// The records as "group|section|value", one behind the other.
    Text Records() {
        Text all;
        for (const auto& line : ini.INIlines()) {
            all += line->Group() + "|" + line->Section() + "|" + line->Value() + ";";
        }
        return all;
    }
    std::string Saved() {
        ini.SaveFile("/a.ini");
        return files.Get("/a.ini");
    }
};

TEST(INIlinesTest, AddReturnsTheRecordThatStandsAtTheEnd) {
    INIlines lines;
    const auto added = lines.Add("[A]", "K", "v");
    EXPECT_EQ(lines.Item(lines.Count()), added);
    EXPECT_EQ(added->Group() + added->Section() + added->Value(), "[A]Kv");
}

TEST(INIlinesTest, APositionIsTakenAsItStandsAlsoAboveThirtyTwoThousand) {
    INIlines lines;
    for (int i = 1; i <= 32768; ++i) {
        lines.Add({}, "K", Digits(i));
    }
    EXPECT_EQ(lines.Item(32768)->Value(), "32768");
}

TEST(INIlinesTest, APositionOutsideTheListAndAnyTextAreInvalidArguments) {
    INIlines lines;
    lines.Add({}, "K", "v");
    const auto expectRefused = [](const auto& read) {
        try {
            read();
            ADD_FAILURE() << "there is such a record";
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errInvalidArgument);
            EXPECT_EQ(error.Source(), "INIlines.Item");
        }
    };
    expectRefused([&] { (void)lines.Item(0); });
    expectRefused([&] { (void)lines.Item(2); });
    expectRefused([&] { (void)lines.Item("1"); });
}

TEST(INIlinesTest, ClearLeavesHandedOutRecordsValid) {
    INIlines lines;
    const auto line = lines.Add("[A]", "K", "v");
    lines.Clear();
    EXPECT_EQ(lines.Count(), 0);
    EXPECT_EQ(line->Value(), "v");
}

TEST(INIfileTest, LayoutBeginsWithThreeBlanksAndTheEqualsSignInColumnSeventeen) {
    IniDesk t;
    EXPECT_FALSE(t.ini.UcaseSection());
    EXPECT_EQ(t.ini.LeadingSpaces(), 3);
    EXPECT_EQ(t.ini.EqualPos(), 17);
    EXPECT_EQ(t.ini.INIlines().Count(), 0);
}

TEST(INIfileTest, ReadsEachLineByItsRules) {
    struct Case {
        const char* label;
        std::string bytes;
        const char* records;
    };
    const Case cases[] = {
        {"plain key", "key=value\r\n", "|KEY|value;"},
        {"blanks around", "   KEY   =   value   \r\n", "|KEY|value;"},
        {"later equals signs stay", "A=B=C\r\n", "|A|B=C;"},
        {"text without equals sign", "A=1\r\nsome words\r\nB=2\r\n", "|A|1;|B|2;"},
        {"blank lines", "\r\n   \r\nA=1\r\n\r\n", "|A|1;"},
        {"line that begins with equals sign", "=x\r\n  = y\r\n", ""},
        {"empty value", "A=\r\n", "|A|;"},
        {"section in any case", "[Section]\r\nk=V\r\n", "[SECTION]|[SECTION]|;[SECTION]|K|V;"},
        {"section without bracket at the end", " [a b \r\nk=1\r\n", "[A B|[A B|;[A B|K|1;"},
        {"section with equals sign", "[a=b\r\nk=1\r\n", "[A=B|[A=B|;[A=B|K|1;"},
        {"no line end at the end", "[A]\r\nK=1", "[A]|[A]|;"},
        {"bare line feeds alone", "[A]\nK=1\n", ""},
        {"bare CR and LF count as blanks", "A=1\rB\n2\r\n", "|A|1 B 2;"},
        {"CR before CR LF", "A=1\r\r\n", "|A|1;"},
        {"tabs count as blanks", "\tA\t=\tx\ty\t\r\n", "|A|x y;"},
        {"tab inside a key", "a\tb=1\r\n", "|A B|1;"},
        {"comment lines are nothing special", "; c=1\r\n", "|; C|1;"},
        {"repeated keys in order", "B=2\r\nA=1\r\nB=3\r\n", "|B|2;|A|1;|B|3;"},
        {"key of letters beyond ASCII",
         "gr\xF6\xDF"
         "e=\xFC\r\n",
         "|GR\xC3\x96\xC3\x9F"
         "E|\xC3\xBC;"},
        {"empty file", "", ""},
    };
    for (const Case& c : cases) {
        IniDesk t;
        t.Load(c.bytes);
        EXPECT_EQ(t.Records(), c.records) << c.label;
    }
}

TEST(INIfileTest, EveryByteValueComesIntoAValueAndGoesOutAgain) {
    std::string value = "x";
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '\t' && byte != '\r' && byte != '\n') {
            value += static_cast<char>(byte);
        }
    }
    value += '\0';
    for (const int page : {1252, 1250, 1254, 874}) {
        IniDesk t;
        t.locale.page = page;
        t.Load("K=" + value + "\r\n");
        EXPECT_EQ(t.locale.CodePage().Encode(t.ini.INIlines().Item(1)->Value()), value) << page;
        t.ini.SetLeadingSpaces(0);
        t.ini.SetEqualPos(1);
        EXPECT_EQ(t.Saved(), "K= " + value + "\r\n") << page;
    }
}

TEST(INIfileTest, LoadingReplacesTheRecords) {
    IniDesk t;
    t.Load("A=1\r\n");
    t.Load("B=2\r\n");
    EXPECT_EQ(t.Records(), "|B|2;");
}

TEST(INIfileTest, AMissingOrUnreadableFileGivesNoRecordsAndNoError) {
    IniDesk t;
    t.Load("A=1\r\n");
    EXPECT_FALSE(t.ini.LoadFile("/none.ini"));
    EXPECT_EQ(t.ini.INIlines().Count(), 0);
    EXPECT_TRUE(t.ini.LoadFile("/a.ini"));
    EXPECT_EQ(t.ini.INIlines().Count(), 1);
    t.files.SetUnreadable("/a.ini");
    EXPECT_FALSE(t.ini.LoadFile("/a.ini"));
    EXPECT_EQ(t.ini.INIlines().Count(), 0);
    t.files.PutSpecial("/pipe.ini");
    EXPECT_FALSE(t.ini.LoadFile("/pipe.ini"));
    EXPECT_EQ(t.ini.INIlines().Count(), 0);
}

TEST(INIfileTest, AFileIsReadInOneOperation) {
    IniDesk t;
    t.Load("[A]\r\nB=1\r\nC=2\r\n");
    EXPECT_EQ(t.files.Log(), std::vector<Text>{"Read /a.ini"});
}

TEST(INIfileTest, ReadingHasNoLimitOnLines) {
    IniDesk t;
    std::string bytes;
    for (int i = 0; i < 40000; ++i) {
        bytes += "K=v\r\n";
    }
    t.Load(bytes);
    EXPECT_EQ(t.ini.INIlines().Count(), 40000);
}

TEST(INIfileTest, WritesEachRecordByItsKind) {
    struct Case {
        const char* label;
        Text group;
        Text section;
        Text value;
        const char* line;
    };
    const Case cases[] = {
        {"all empty", "", "", "", "\r\n"},
        {"blanks alone", " ", " ", " ", "\r\n"},
        {"header", " [abc] ", "", "", "[ABC]\r\n"},
        {"header with a value", "[A]", "", "v", "[A]\r\n"},
        {"value alone", "", "", "v", "\r\n"},
        {"key", "[A]", "RULE", "X", "   RULE         = X\r\n"},
        {"key with blanks around", "[A]", " Rule ", " X Y ", "   Rule         = X Y\r\n"},
        {"empty value ends in the equals sign", "[A]", "RULE", "", "   RULE         =\r\n"},
        {"key up to the equals sign", "[A]", "ABCDEFGHIJKLM", "X", "   ABCDEFGHIJKLM= X\r\n"},
        {"longer key", "[A]", "ABCDEFGHIJKLMN", "X", "   ABCDEFGHIJKLMN= X\r\n"},
        {"one short of it", "[A]", "ABCDEFGHIJKL", "X", "   ABCDEFGHIJKL = X\r\n"},
        {"letters beyond ASCII count once", "[A]", "\xC3\xA4", "\xC3\xB6", "   \xE4            = \xF6\r\n"},
        {"header beyond ASCII", "[\xC3\xA4]", "", "", "[\xC4]\r\n"},
    };
    for (const Case& c : cases) {
        IniDesk t;
        t.ini.INIlines().Add(c.group, c.section, c.value);
        EXPECT_EQ(t.Saved(), c.line) << c.label;
    }
}

TEST(INIfileTest, LayoutSettingsMoveKeyAndEqualsSign) {
    IniDesk t;
    t.ini.SetLeadingSpaces(1);
    t.ini.SetEqualPos(11);
    t.ini.SetUcaseSecton(true);
    t.ini.INIlines().Add("[FILES]", "File", "a.kdt");
    EXPECT_TRUE(t.ini.UcaseSection());
    EXPECT_EQ(t.Saved(), " FILE     = a.kdt\r\n");
}

TEST(INIfileTest, TheEqualsSignKeepsItsColumnWhateverStandsBeforeTheKey) {
    for (const std::int32_t leading : {-2, 0, 1, 2}) {
        IniDesk t;
        t.ini.SetLeadingSpaces(leading);
        t.ini.SetEqualPos(7);
        t.ini.INIlines().Add("[A]", "Key", "v");
        EXPECT_EQ(t.Saved().find('='), 6U) << leading;
        EXPECT_EQ(t.Saved().find('K'), static_cast<std::size_t>(std::max(leading, 0))) << leading;
    }
}

TEST(INIfileTest, ALoadedHeaderWouldBeWrittenAsAKey) {
    IniDesk t;
    t.Load("[A]\r\nK=1\r\n");
    EXPECT_EQ(t.Saved(), "   [A]          =\r\n   K            = 1\r\n");
}

TEST(INIfileTest, NoRecordsGiveAnEmptyFile) {
    IniDesk t;
    t.files.Put("/a.ini", "old");
    EXPECT_EQ(t.Saved(), "");
    EXPECT_TRUE(t.files.Has("/a.ini"));
}

TEST(INIfileTest, ThirtyTwoThousandSevenHundredSixtySevenRecordsAreSavedAndOneMoreOverflows) {
    IniDesk t;
    t.files.Put("/a.ini", "old");
    for (int i = 0; i < 32767; ++i) {
        t.ini.INIlines().Add({}, {}, {});
    }
    t.ini.SaveFile("/b.ini");
    EXPECT_EQ(t.files.Get("/b.ini").size(), 2U * 32767U);
    t.ini.INIlines().Add({}, {}, {});
    try {
        t.ini.SaveFile("/a.ini");
        ADD_FAILURE() << "saved";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOverflow);
        EXPECT_EQ(error.Source(), "INIfile.SaveFile");
        EXPECT_EQ(error.Path(), "/a.ini");
    }
    EXPECT_EQ(t.files.Get("/a.ini"), "old");
}

TEST(INIfileTest, AFailedSaveIsSilentAndKeepsTheEarlierFile) {
    IniDesk t;
    t.files.Put("/a.ini", "old");
    t.ini.INIlines().Add({}, "K", "v");
    bool saved = false;
    for (int failAt = 1; !saved; ++failAt) {
        t.files.FailAt(failAt, errDiskFull);
        const bool told = t.ini.SaveFile("/a.ini");
        saved = t.files.Operations() < failAt;
        EXPECT_EQ(told, saved) << failAt;
        EXPECT_EQ(t.files.Get("/a.ini"), saved ? "   K            = v\r\n" : "old") << failAt;
    }
    t.files.SetReadOnly("/a.ini");
    t.ini.INIlines().Clear();
    t.ini.SaveFile("/a.ini");
    EXPECT_EQ(t.files.Get("/a.ini"), "   K            = v\r\n");
    t.ini.SaveFile("/missing/folder/a.ini");
}

TEST(INIfileTest, ATextThatTheCodePageLacksIsWrittenAsUtf8WithAMarkAndReadByIt) {
    IniDesk t;
    const Text path = "/\xCE\xB1pp\xC3\xA4/plant.kdt";  // a Greek letter beside a Latin one
    t.ini.INIlines().Add("[FILES]", "", "");
    t.ini.INIlines().Add("[FILES]", "File", path);
    EXPECT_EQ(t.Saved(), "\xEF\xBB\xBF[FILES]\r\n   File         = " + path + "\r\n");
    t.ini.LoadFile("/a.ini");
    EXPECT_EQ(t.Records(), "[FILES]|[FILES]|;[FILES]|FILE|" + path + ";");
}

TEST(INIfileTest, ATextThatTheCodePageHasIsWrittenWithoutAMark) {
    IniDesk t;
    t.ini.INIlines().Add("[FILES]", "File", "/\xC3\xA4.kdt");
    EXPECT_EQ(t.Saved(), "   File         = /\xE4.kdt\r\n");
}

TEST(INIfileTest, ATextWhoseBytesLookLikeTheMarkIsReadBackAsItWas) {
    IniDesk t;
    const Text key = "\xC3\xAF\xC2\xBB\xC2\xBF";  // the three characters that the mark's bytes stand for
    t.ini.SetLeadingSpaces(0);
    t.ini.SetEqualPos(1);
    t.ini.INIlines().Add("", key, "v");
    EXPECT_EQ(t.Saved(), "\xEF\xBB\xBF" + key + "= v\r\n");
    t.ini.LoadFile("/a.ini");
    EXPECT_EQ(t.Records(), "|" + t.locale.CodePage().Upper(key) + "|v;");
}

}  // namespace
}  // namespace kd
