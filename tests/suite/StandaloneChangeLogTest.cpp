#include "suite/StandaloneChangeLog.h"

#include <gtest/gtest.h>

#include "fakes/FailingFiles.h"
#include "fakes/MemoryFiles.h"

namespace kd {
namespace {

const std::string Heading =
    "Time of commit\tUser\tView\tRevision\tRecord kind\tObject kind\tVariable\tProperty\tOld value\tNew "
    "value\r\n";

ChangeRecord aRecord() {
    return {
        {2026, 3, 4, 5, 6, 7}, "anna", "MAIN", "6.001", "PROPERTY", "FIELD", "Weight", "USL", "12.5", "13"};
}
const std::string Line = "2026-03-04 05:06:07\tanna\tMAIN\t6.001\tPROPERTY\tFIELD\tWeight\tUSL\t12.5\t13\r\n";

class StandaloneChangeLogTest : public testing::Test {
protected:
    void Write(const std::vector<ChangeRecord>& records, const Text& delimiter = "\t") {
        StandaloneChangeLog log(files, CodePage::Of(1252));
        log.SetDelimiter(delimiter);
        log.OpenLog("/a/plant.KDL");
        for (const ChangeRecord& record : records) {
            log.WriteRecord(record);
        }
        log.CloseLog();
    }
    std::string Log() const { return files.Get("/a/plant.KDL"); }

    StandaloneChangeLogTest() { files.Put("/a/plant.kdt", ""); }
    MemoryFiles files;
};

TEST_F(StandaloneChangeLogTest, ANewLogBeginsWithTheNamesOfItsFields) {
    Write({aRecord()});
    EXPECT_EQ(Log(), Heading + Line);
}

TEST_F(StandaloneChangeLogTest, AnEmptyLogDoesToo) {
    files.Put("/a/plant.KDL", "");
    Write({aRecord()});
    EXPECT_EQ(Log(), Heading + Line);
}

TEST_F(StandaloneChangeLogTest, ALogThatTheDiskDeniesForAMomentGetsNoSecondHeading) {
    files.Put("/a/plant.KDL", "earlier record\r\n");
    FailingFiles failing(files);
    failing.FailAt(1, FailingFiles::Kind::NotFound, false);
    StandaloneChangeLog log(failing, CodePage::Of(1252));
    log.OpenLog("/a/plant.KDL");
    log.CloseLog();
    ASSERT_EQ(failing.Steps().at(0).operation, "Read");
    EXPECT_EQ(files.Get("/a/plant.KDL"), "earlier record\r\n");
}

TEST_F(StandaloneChangeLogTest, AMissingLogInAFolderThatMayNotBeListedIsMade) {
    files.FailOn("Read", ".KDL", errPermissionDenied);
    Write({aRecord()});
    EXPECT_EQ(Log(), Heading + Line);
}

TEST_F(StandaloneChangeLogTest, ALogThatMayNotBeReadIsToldAndStays) {
    files.Put("/a/plant.KDL", "earlier record\r\n");
    files.FailOn("Read", ".KDL", errPermissionDenied);
    EXPECT_THROW(Write({aRecord()}), cError);
    EXPECT_EQ(Log(), "earlier record\r\n");
}

TEST_F(StandaloneChangeLogTest, ALogWithoutRecordsHasItsHeadingOnce) {
    Write({});
    Write({});
    EXPECT_EQ(Log(), Heading);
}

TEST_F(StandaloneChangeLogTest, RecordsAreAddedAndWhatStandsThereStays) {
    files.Put("/a/plant.KDL", "of another program, \xE4\t\r\n");
    Write({aRecord()});
    Write({aRecord(), aRecord()});
    EXPECT_EQ(Log(), "of another program, \xE4\t\r\n" + Line + Line + Line);
}

TEST_F(StandaloneChangeLogTest, ARecordBehindAnUnfinishedLineBeginsALineOfItsOwn) {
    files.Put("/a/plant.KDL", Heading + "2026-03-0");
    Write({aRecord()});
    EXPECT_EQ(Log(), Heading + "2026-03-0\r\n" + Line);
}

TEST_F(StandaloneChangeLogTest, ALogInAnotherCaseIsTheLog) {
    files.Put("/a/PLANT.kdl", Heading);
    Write({aRecord()});
    EXPECT_EQ(files.Get("/a/PLANT.kdl"), Heading + Line);
    EXPECT_FALSE(files.Has("/a/plant.KDL"));
}

TEST_F(StandaloneChangeLogTest, FieldsThatWouldBreakTheLineStandInQuotationMarks) {
    struct Case {
        const char* label;
        const char* value;
        const char* field;
    };
    const Case cases[] = {
        {"plain", "a b", "a b"},
        {"empty", "", ""},
        {"delimiter", "a\tb", "\"a\tb\""},
        {"quotation mark", "3\"", "\"3\"\"\""},
        {"mark alone", "\"", "\"\"\"\""},
        {"CR", "a\rb", "\"a\rb\""},
        {"LF", "a\nb", "\"a\nb\""},
        {"CR LF", "a\r\nb", "\"a\r\nb\""},
        {"comma", "1,5", "1,5"},
        {"blanks", " a ", " a "},
        {"other signs", "!#$%&'()*+-./:;<=>?@[\\]^_`{|}~", "!#$%&'()*+-./:;<=>?@[\\]^_`{|}~"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        files.Erase("/a/plant.KDL");
        ChangeRecord record = aRecord();
        record.variable = c.value;
        record.newValue = c.value;
        Write({record});
        EXPECT_EQ(Log(), Heading + "2026-03-04 05:06:07\tanna\tMAIN\t6.001\tPROPERTY\tFIELD\t" + c.field +
                             "\tUSL\t12.5\t" + c.field + "\r\n");
    }
}

TEST_F(StandaloneChangeLogTest, TheDelimiterMayBeAnyText) {
    ChangeRecord record = aRecord();
    record.oldValue = "1;5";
    record.newValue = "1\t5";
    Write({record}, ";");
    EXPECT_EQ(
        Log(),
        "Time of commit;User;View;Revision;Record kind;Object kind;Variable;Property;Old value;New value\r\n"
        "2026-03-04 05:06:07;anna;MAIN;6.001;PROPERTY;FIELD;Weight;USL;\"1;5\";1\t5\r\n");
}

TEST_F(StandaloneChangeLogTest, WithoutADelimiterTheFieldsStandSideBySide) {
    files.Put("/a/plant.KDL", Heading);
    ChangeRecord record = aRecord();
    record.newValue = "3\"";
    Write({record}, "");
    EXPECT_EQ(Log(), Heading + "2026-03-04 05:06:07annaMAIN6.001PROPERTYFIELDWeightUSL12.5\"3\"\"\"\r\n");
}

TEST_F(StandaloneChangeLogTest, EveryByteOfTheCodePageComesOutAsItWas) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '"') {
            bytes += static_cast<char>(byte);
        }
    }
    ChangeRecord record = aRecord();
    record.newValue = CodePage::Of(1252).Decode(bytes);
    Write({record});
    EXPECT_EQ(Log(), Heading +
                         "2026-03-04 05:06:07\tanna\tMAIN\t6.001\tPROPERTY\tFIELD\tWeight\tUSL\t12.5\t\"" +
                         bytes + "\"\r\n");
}

TEST_F(StandaloneChangeLogTest, ACharacterOutsideTheCodePageIsAQuestionMark) {
    ChangeRecord record = aRecord();
    record.user = "Łucja";
    Write({record});
    EXPECT_EQ(Log(), Heading + "2026-03-04 05:06:07\t?ucja" + Line.substr(Line.find("\tMAIN")));
}

TEST_F(StandaloneChangeLogTest, TheLogIsLeftToTheSettlingOfAllThatACommitHasWritten) {
    Write({aRecord()});
    EXPECT_EQ(files.Unsettled(), std::set<Text>{"/a/plant.KDL"});
}

TEST_F(StandaloneChangeLogTest, AFailureIsRaisedAndEarlierRecordsStay) {
    const Text whole = Heading + Line + Line + Line;
    bool done = false;
    for (int failAt = 1; !done; ++failAt) {
        SCOPED_TRACE(failAt);
        files.Put("/a/plant.KDL", Heading + Line);
        files.FailAt(failAt, errDiskFull);
        bool raised = false;
        try {
            Write({aRecord(), aRecord()});
        } catch (const cError& error) {
            raised = true;
            EXPECT_EQ(error.Number(), errDiskFull);
        }
        done = !raised;
        EXPECT_EQ(Log().rfind(Heading + Line, 0), 0U);
        EXPECT_EQ(files.OpenFiles(), 0);
        if (done) {
            EXPECT_EQ(Log(), whole);
        }
        ASSERT_LT(failAt, 20);
    }
    EXPECT_GE(files.Operations(), 5);  // read, open, two records, close
}

TEST_F(StandaloneChangeLogTest, ALogThatIsReadOnlyOrNoFileIsRefused) {
    files.Put("/a/plant.KDL", Heading);
    files.SetReadOnly("/a/plant.KDL");
    EXPECT_THROW(Write({aRecord()}), cError);
    EXPECT_EQ(Log(), Heading);
    files.Erase("/a/plant.KDL");
    files.PutSpecial("/a/plant.KDL");
    EXPECT_THROW(Write({aRecord()}), cError);
}

TEST_F(StandaloneChangeLogTest, WithoutAFileARecordIsAnError) {
    StandaloneChangeLog log(files, CodePage::Of(1252));
    EXPECT_THROW(log.WriteRecord(aRecord()), cError);
    log.OpenLog("/a/plant.KDL");
    log.CloseLog();
    try {
        log.WriteRecord(aRecord());
        ADD_FAILURE() << "a record went into a closed log";
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errInvalidArgument);
        EXPECT_EQ(error.Source(), "StandaloneChangeLog.WriteRecord");
    }
}

#ifdef KD_CHECKED
TEST_F(StandaloneChangeLogTest, ALogThatIsOpenIsNotOpenedOnceMore) {
    StandaloneChangeLog log(files, CodePage::Of(1252));
    log.OpenLog("/a/plant.KDL");
    EXPECT_DEATH(log.OpenLog("/a/plant.KDL"), "precondition broken: !m_file");
}
#endif

}  // namespace
}  // namespace kd
