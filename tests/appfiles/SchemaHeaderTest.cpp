#include "appfiles/SchemaHeader.h"

#include <gtest/gtest.h>

#include "fakes/ErrorOf.h"
#include "fakes/FailingFiles.h"
#include "fakes/TestMachine.h"

namespace kd {
namespace {

using namespace modKDLimitDesk;

const CodePage& Western() {
    return CodePage::Of(1252);
}

TEST(ReadHeaderTextTest, EndsBeforeTheFirstLineThatIsFieldToTheLetterButForCase) {
    struct Case {
        const char* label;
        std::string bytes;
        std::string header;
    };
    const Case cases[] = {
        {"usual", "a\r\nb\r\n[FIELD]\r\nc\r\n", "a\r\nb\r\n"},
        {"any case", "a\r\n[fIeLd]\r\n", "a\r\n"},
        {"field at once", "[FIELD]\r\na\r\n", ""},
        {"blank in front", "a\r\n [FIELD]\r\nb\r\n[FIELD]\r\n", "a\r\n [FIELD]\r\nb\r\n"},
        {"blank behind", "[FIELD] \r\n[FIELD]\r\n", "[FIELD] \r\n"},
        {"no such line", "a\r\nb\r\n", "a\r\nb\r\n"},
        {"no line end at the end", "a\r\nb", "a\r\nb\r\n"},
        {"field without line end", "a\r\n[FIELD]", "a\r\n"},
        {"empty lines stay", "\r\n\r\n[FIELD]\r\n", "\r\n\r\n"},
        {"bare LF ends no line", "a\n[FIELD]\nb\r\n[FIELD]\r\n", "a\n[FIELD]\nb\r\n"},
        {"bare CR ends no line", "a\r[FIELD]\rb\r\n[FIELD]\r\n", "a\r[FIELD]\rb\r\n"},
        {"CR before CR LF", "[FIELD]\r\r\n[FIELD]\r\n", "[FIELD]\r\r\n"},
        {"empty file", "", ""},
    };
    for (const Case& c : cases) {
        TestMachine t;
        t.files.Put("/a.kdt", c.bytes);
        EXPECT_EQ(ReadHeaderText(t.g, "/a.kdt"), c.header) << c.label;
    }
}

TEST(ReadHeaderTextTest, AMissingFileHasNoHeader) {
    TestMachine t;
    EXPECT_EQ(ReadHeaderText(t.g, "/a.kdt"), "");
}

TEST(ReadHeaderTextTest, AFileThatTheDiskDeniesForAMomentIsReadAllTheSame) {
    TestMachine t;
    FailingFiles failing(t.files);
    Platform platform{failing, t.toolkit, t.locale, t.clock, t.environment, t.shell, t.fileDialog, t.suite};
    Globals g(platform);
    t.files.Put("/a.kdt", "VERSION=7.\r\n[FIELD]\r\n");
    failing.FailAt(1, FailingFiles::Kind::NotFound, false);
    EXPECT_EQ(ReadHeaderText(g, "/a.kdt"), "VERSION=7.\r\n");
    ASSERT_EQ(failing.Steps().at(0).operation, "Read");
}

TEST(ReadHeaderTextTest, AFileThatIsThereAndCannotBeReadIsAnError) {
    TestMachine t;
    t.files.Put("/a.kdt", "x");
    t.files.SetUnreadable("/a.kdt");
    EXPECT_EQ(ErrorOf([&] { (void)ReadHeaderText(t.g, "/a.kdt"); }), errPermissionDenied);
}

TEST(HeaderVersionTest, IsTheNumberBehindTheFirstEqualsSignAfterTheLetters) {
    struct Case {
        const char* label;
        const char* header;
        const char* version;
        const char* bumped;
    };
    const Case cases[] = {
        {"usual", "x\r\n   VERSION      = 7.25\r\ny\r\n", "7.25", "x\r\n   VERSION      = 7.251\r\ny\r\n"},
        {"up to a whole number", "VERSION=6.999\r\n", "6.999", "VERSION= 7.\r\n"},
        {"on from a whole number", "VERSION= 7.\r\n", "7.", "VERSION= 7.001\r\n"},
        {"below one", "VERSION=.5\r\n", ".5", "VERSION= .501\r\n"},
        {"any case in free text", "the version of = 3\r\nVERSION=9\r\n", "3.",
         "the version of = 3.001\r\nVERSION=9\r\n"},
        {"equals sign lines below", "Version\r\n\r\na = 4\r\n", "4.", "Version\r\n\r\na = 4.001\r\n"},
        {"an equals sign in front of the letters", "x=VERSION=3\r\n", "3.", "x=VERSION= 3.001\r\n"},
        {"a number in the line below", "VERSION=\r\n5\r\n", ".", "VERSION= .001\r\n5\r\n"},
        {"blanks", "VERSION  =   6.5   \r\n", "6.5", "VERSION  = 6.501\r\n"},
        {"what follows the number goes", "VERSION=6.5beta\r\n", "6.5", "VERSION= 6.501\r\n"},
        {"no number", "VERSION=\r\n", ".", "VERSION= .001\r\n"},
        {"many decimals", "VERSION=6.12345\r\n", "6.123", "VERSION= 6.124\r\n"},
        {"a comma ends the number", "VERSION=6,5\r\n", "6.", "VERSION= 6.001\r\n"},
        {"a bare CR ends no line", "VERSION = 6.5\rx\r\ny\r\n", "6.5", "VERSION = 6.501\r\ny\r\n"},
        {"a bare CR before the line's end", "VERSION = 6.5\r\r\ny\r\n", "6.5", "VERSION = 6.501\r\ny\r\n"},
        {"none", "no revision = 5\r\n", "6.000", "no revision = 5\r\n"},
        {"empty header", "", "6.000", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(HeaderVersion(c.header, Western()), c.version) << c.label;
        EXPECT_EQ(BumpHeaderVersion(c.header, Western()), c.bumped) << c.label;
    }
}

TEST(HeaderVersionTest, LettersOfWhichTheCapitalHasAnotherSizeDoNotMoveThePlace) {
    const CodePage& turkish = CodePage::Of(1254);
    const Text small = turkish.Decode("\xFD\xFD\xFD\xFD");  // the capital is a plain letter
    EXPECT_EQ(BumpHeaderVersion(small + "=1\r\nVERSION=2\r\n", turkish), small + "=1\r\nVERSION= 2.001\r\n");
}

TEST(HeaderVersionTest, LettersWithoutEqualsSignOrLineEndBehindAreAnInvalidArgument) {
    for (const char* header : {"a = 1\r\nVERSION\r\n", "VERSION 7\r\n", "VERSION=7", "VERSION=7\n"}) {
        EXPECT_EQ(ErrorOf([&] { (void)BumpHeaderVersion(header, Western()); }), errInvalidArgument) << header;
        try {
            (void)HeaderVersion(header, Western());
            ADD_FAILURE() << header;
        } catch (const cError& error) {
            EXPECT_EQ(error.Number(), errInvalidArgument) << header;
            EXPECT_EQ(error.Source(), "SchemaHeader.FindVersion") << header;
        }
    }
}

TEST(HeaderVersionTest, ANumberBeyondADoubleOverflows) {
    EXPECT_EQ(ErrorOf([&] { (void)BumpHeaderVersion("VERSION=1E999\r\n", Western()); }), errOverflow);
}

TEST(ReplaceRulesBlockTest, SwapsTheSectionUpToItsEmptyLine) {
    struct Case {
        const char* label;
        const char* header;
        const char* replaced;
    };
    const Case cases[] = {
        {"usual", "a\r\n[RULES]\r\n   RULE = x\r\n\r\nb\r\n", "a\r\n<new>b\r\n"},
        {"empty section", "[RULES]\r\n\r\nb\r\n", "<new>b\r\n"},
        {"at the end", "a\r\n[RULES]\r\nRULE=x\r\n\r\n", "a\r\n<new>"},
        {"none", "a\r\n\r\nb\r\n", "a\r\n\r\nb\r\n"},
        {"small letters", "[Rules]\r\nRULE=x\r\n\r\n", "[Rules]\r\nRULE=x\r\n\r\n"},
        {"no empty line", "[RULES]\r\nRULE=x\r\n", "[RULES]\r\nRULE=x\r\n"},
        {"a line of blanks is not empty", "[RULES]\r\nRULE=x\r\n \r\n", "[RULES]\r\nRULE=x\r\n \r\n"},
        {"another section before the empty line", "[RULES]\r\nRULE=x\r\n[VIEWS]\r\nVIEW=1,a\r\n\r\n",
         "[RULES]\r\nRULE=x\r\n[VIEWS]\r\nVIEW=1,a\r\n\r\n"},
        {"an indented section before the empty line", "[RULES]\r\n \t[VIEWS]\r\n\r\n",
         "[RULES]\r\n \t[VIEWS]\r\n\r\n"},
        {"a section behind the empty line", "[RULES]\r\nRULE=x\r\n\r\n[VIEWS]\r\n", "<new>[VIEWS]\r\n"},
        {"a bracket inside a rule", "[RULES]\r\nRULE=[x]\r\n\r\n", "<new>"},
        {"a bracket behind another sign", "[RULES]\r\n#[x]\r\n\r\n", "<new>"},
        {"a line of blanks before the empty line", "[RULES]\r\n \r\nRULE=x\r\n\r\nb\r\n", "<new>b\r\n"},
        {"text in front and a section right behind", "ab\r\n[RULES]\r\n\r\n[VIEWS]\r\n",
         "ab\r\n<new>[VIEWS]\r\n"},
        {"only the first one", "[RULES]\r\n\r\n[RULES]\r\n\r\n", "<new>[RULES]\r\n\r\n"},
        {"a bare LF between two line ends", "[RULES]\r\n\n\r\nb\r\n", "[RULES]\r\n\n\r\nb\r\n"},
        {"a bare LF before the empty line", "[RULES]\r\nRULE=x\n\r\n\r\nb\r\n", "<new>b\r\n"},
        {"a section behind a bare LF", "[RULES]\r\n\n[VIEWS]\r\n\r\n", "[RULES]\r\n\n[VIEWS]\r\n\r\n"},
        {"a section behind a bare CR", "[RULES]\r\n\r[VIEWS]\r\n\r\n", "[RULES]\r\n\r[VIEWS]\r\n\r\n"},
        {"in the middle of a line", "see [RULES] here\r\nx\r\n\r\ny\r\n", "see <new>y\r\n"},
        {"empty header", "", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ReplaceRulesBlock(c.header, "<new>"), c.replaced) << c.label;
    }
}

}  // namespace
}  // namespace kd
