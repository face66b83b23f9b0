#include "ini/IniScanner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kd {
namespace {

struct Record {
    std::string group;
    std::string section;
    std::string value;

    bool operator==(const Record&) const = default;
};

void PrintTo(const Record& record, std::ostream* out) {
    *out << '{' << record.group << '|' << record.section << '|' << record.value << '}';
}

using Records = std::vector<Record>;

Records Scanned(std::string_view text) {
    Records records;
    IniScanner(CodePage::Of(1252))
        .Scan(text, [&](std::string_view group, std::string_view section, std::string_view value) {
            records.push_back({std::string(group), std::string(section), std::string(value)});
        });
    return records;
}

TEST(IniScannerTest, ALineGivesItsKeyAndValueWhateverStandsAroundThem) {
    struct Case {
        const char* label;
        std::string_view line;
        Records records;
    };
    const Case cases[] = {
        {"as the program writes it", "   USL           = F5.00", {{"", "USL", "F5.00"}}},
        {"no blanks", "USL=F5.00", {{"", "USL", "F5.00"}}},
        {"lower case", "usl = f5", {{"", "USL", "f5"}}},
        {"a letter of the code page", "größe = x", {{"", "GRÖßE", "x"}}},
        {"a tab", "\tUSL\t=\tF5\t", {{"", "USL", "F5"}}},
        {"a tab within", "U\tSL = F\t5", {{"", "U SL", "F 5"}}},
        {"a carriage return alone", "USL = F\r5", {{"", "USL", "F 5"}}},
        {"a line feed alone", "US\nL = F5", {{"", "US L", "F5"}}},
        {"another control", "USL = F\x01", {{"", "USL", "F\x01"}}},
        {"several signs of equality", "A = B = C", {{"", "A", "B = C"}}},
        {"an empty value", "A =", {{"", "A", ""}}},
        {"a value of blanks", "A =     ", {{"", "A", ""}}},
        {"no key", " = 5", {}},
        {"no sign of equality", "USL F5", {}},
        {"blanks alone", "              ", {}},
        {"nothing", "", {}},
        {"a section", "  [Field]  ", {{"[FIELD]", "[FIELD]", ""}}},
        {"a section with a sign of equality", "[a=b]", {{"[A=B]", "[A=B]", ""}}},
        {"a section with a tab", "[FI\tELD]\t", {{"[FI ELD]", "[FI ELD]", ""}}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Scanned(std::string(c.line) + "\r\n"), c.records) << c.label;
        EXPECT_EQ(Scanned(c.line), Records()) << c.label << ", without an end";
        EXPECT_EQ(Scanned(std::string(c.line) + "\r"), Records()) << c.label << ", with half an end";
    }
}

TEST(IniScannerTest, ALineIsTheSameOneWhereverItStandsAndHoweverLongItIs) {
    for (std::size_t before = 0; before < 20; ++before) {
        for (std::size_t size = 1; size < 20; ++size) {
            const std::string key(size, 'K');
            const std::string value(before + 1, 'v');
            std::string lines(before, ' ');
            lines.append(key).append(before, ' ').append("= ").append(value).append(size, ' ');
            lines.append("\r\n[").append(key).append("]\r\n");
            lines.append(key).append("=").append(value).append("\r\n");
            const std::string section = "[" + key + "]";
            ASSERT_EQ(Scanned(lines),
                      (Records{{"", key, value}, {section, section, ""}, {section, key, value}}))
                << before << " blanks, a key of " << size;
        }
    }
}

TEST(IniScannerTest, ATabOrHalfALineEndAtAnyPlaceOfALineBecomesABlank) {
    const std::string line = "[A]\r\nSOMEKEY = somevalue and more\r\nB = 2\r\n";
    const std::size_t begin = line.find("SOMEKEY");
    for (const char control : {'\t', '\r', '\n'}) {
        for (std::size_t at = begin; at < line.find("\r\nB"); ++at) {
            std::string changed = line;
            changed[at] = control;
            std::string wanted = line;
            wanted[at] = ' ';
            ASSERT_EQ(Scanned(changed), Scanned(wanted)) << static_cast<int>(control) << " at " << at;
            ASSERT_EQ(Scanned(changed).back(), (Record{"[A]", "B", "2"}));
        }
    }
}

TEST(IniScannerTest, AnyOtherControlStaysWhereItStands) {
    for (const char control : {'\0', '\x01', '\x0B', '\x1F'}) {
        for (std::size_t at = 0; at < 12; ++at) {
            std::string value = "somevalue, x";
            value[at] = control;
            ASSERT_EQ(Scanned("KEY = " + value + "\r\nB=2\r\n"),
                      (Records{{"", "KEY", value}, {"", "B", "2"}}))
                << static_cast<int>(control) << " at " << at;
        }
    }
}

TEST(IniScannerTest, ATextIsScannedAnewAfterTheFirst) {
    IniScanner scanner(CodePage::Of(1252));
    scanner.Scan("[A]\r\n", [](auto...) {});
    Records records;
    scanner.Scan("B=1\r\n", [&](std::string_view group, std::string_view section, std::string_view value) {
        records.push_back({std::string(group), std::string(section), std::string(value)});
    });
    EXPECT_EQ(records, (Records{{"", "B", "1"}}));
}

}  // namespace
}  // namespace kd
