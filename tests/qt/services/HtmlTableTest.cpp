#include "qt/services/HtmlTable.h"

#include <gtest/gtest.h>

#include <QString>
#include <algorithm>
#include <string>

#include "fakes/AtSizes.h"

namespace kd {
namespace {

// --- in ---------------------------------------------------------------------------------------------------

struct HtmlCase {
    const char* label;
    const char* html;
    const char* cells;
};

class HtmlTableTest : public testing::TestWithParam<HtmlCase> {};

TEST_P(HtmlTableTest, CellsAreReadWithTabAndCarriageReturn) {
    const auto cells = CellsFromHtml(QString::fromUtf8(GetParam().html));
    ASSERT_TRUE(cells.has_value());
    EXPECT_EQ(*cells, GetParam().cells);
}

std::string LabelOf(const testing::TestParamInfo<HtmlCase>& tested) {
    return tested.param.label;
}

INSTANTIATE_TEST_SUITE_P(
    RowsAndCells, HtmlTableTest,
    testing::Values(
        HtmlCase{"Plain", "<table><tr><td>1</td><td>2</td></tr><tr><td>3</td><td>4</td></tr></table>",
                 "1\t2\r3\t4"},
        HtmlCase{"EndTagsLeftOut", "<TABLE><TR><TD>1<TD>2<TR><TD>3<TD>4</TABLE>", "1\t2\r3\t4"},
        HtmlCase{"HeadCells",
                 "<table><thead><tr><th>USL</th></tr></thead><tbody><tr><td>5</td></tr></tbody></table>",
                 "USL\r5"},
        HtmlCase{"TextBetweenCells",
                 "<table>s<tr>t<td>1</td>u<td>2</td>v</tr>w<tr><th>3</th>x<th>4</th>y</tr>z</table>",
                 "1\t2\r3\t4"},
        HtmlCase{"RowsWithoutTheirTags", "<table><td>1<td>2</tr>x<td>3</table>", "1\t2\r3"},
        HtmlCase{"EmptyCells", "<table><tr><td></td><td>&nbsp;</td><td><br></td><td>4</td></tr></table>",
                 "\t\t\t4"},
        HtmlCase{"TableInACell",
                 "<table><tr><td>a<table><tr><td>x</td></tr></table></td><td>b</td></tr></table>", "a x\tb"},
        HtmlCase{"TableInATableInACell",
                 "<table><tr><td>a<table><tr><td>x<table><tr><td>y</td></tr></table>z</td></tr></table>b</td>"
                 "<td>c</td></tr></table>",
                 "a x y z b\tc"},
        HtmlCase{"FirstTableOnly",
                 "<p>t</p><table><tr><td>1</td></tr></table>u<table><tr><td>2</td></tr></table>", "1"},
        HtmlCase{"FirstTableOnlyOfThoseWithoutEndTags", "<table><tr><td>1</table>u<table><tr><td>2</table>",
                 "1"},
        HtmlCase{"CellsAndEndTagsAheadOfTheTable",
                 "</table></td></tr><td>0</td><table><tr><td>1</td></tr></table>", "1"}),
    LabelOf);

INSTANTIATE_TEST_SUITE_P(
    Spans, HtmlTableTest,
    testing::Values(
        HtmlCase{"CellOverTwoColumns", "<table><tr><td colspan=\"2\">a</td><td>b</td></tr></table>",
                 "a\t\tb"},
        HtmlCase{"CellOverTwoRows", "<table><tr><td rowspan=2>a<td>b<tr><td>c<tr><td>d<td>e</table>",
                 "a\tb\r\tc\rd\te"},
        HtmlCase{"CellOverTwoRowsWithEndTags",
                 "<table><tr><td rowspan=2>a</td><td>b</td></tr><tr><td>c</td></tr></table>", "a\tb\r\tc"},
        HtmlCase{"CellOverThreeRows", "<table><tr><td rowspan='3'>a<td>b<tr><td>c<tr><td>d<tr><td>e</table>",
                 "a\tb\r\tc\r\td\re"},
        HtmlCase{"CellOverTwoRowsAtTheEnd", "<table><tr><td>a<td rowspan=\"2\">b<tr><td>c</table>",
                 "a\tb\rc\t"},
        HtmlCase{"CellOverARowWithoutItsTag", "<table><tr><td>a<td rowspan=2>b</tr><td>c</table>",
                 "a\tb\rc\t"},
        HtmlCase{"CellOverTwoRowsAndColumns", "<table><tr><td rowspan=2 colspan=2>a<td>b<tr><td>c</table>",
                 "a\t\tb\r\t\tc"},
        HtmlCase{
            "RowOfCellsFromAboveAlone",
            "<table><tr><td rowspan=2>a</td><td rowspan=2>b</td></tr><tr></tr><tr><td>c</td></tr></table>",
            "a\tb\r\t\rc"},
        HtmlCase{"SpanAmongOtherNumbers",
                 "<table><tr><td align=left COLSPAN=2 width=64 height=17>a<td>b</table>", "a\t\tb"},
        HtmlCase{"SpanOfOneOrNone",
                 "<table><tr><td colspan=1 rowspan=\"1\">a<td colspan=\"0\">b<td colspan=\"\" width=\"64\">c"
                 "<td rowspan= align=5>d<td id=\"5\">e<tr><td>f</table>",
                 "a\tb\tc\td\te\rf"}),
    LabelOf);

INSTANTIATE_TEST_SUITE_P(
    Texts, HtmlTableTest,
    testing::Values(
        HtmlCase{"BlanksAndBreaks", "<table>\n<tr>\n<td>\n a <b>b</b>\n  c<br>d </td>\n</tr></table>",
                 "a b c d"},
        HtmlCase{"BlanksOfAllKindsAndAtTheEndsOfCells",
                 "<table><tr><td>a </td><td> b\t</td><td>\xC2\xA0"
                 "c\xC2\xA0</td><td>d\te\xC2\xA0 \xC2\xA0"
                 "f&nbsp;&nbsp;g</td></tr></table>",
                 "a\tb\tc\td e f g"},
        HtmlCase{
            "ParagraphsAndBlocks",
            "<table><tr><td><p class=a>1</p><P>2</P><div>3</div><DIV align=left>4</DIV></td></tr></table>",
            "1 2 3 4"},
        HtmlCase{"Entities",
                 "<table><tr><td>&lt;b&gt; &amp; &#228;&#xE4;&auml; &micro; &x41;</td></tr></table>",
                 "<b> & \xC3\xA4\xC3\xA4\xC3\xA4 \xC2\xB5 &x41;"},
        HtmlCase{"LoneAmpersandsBeforeASemicolon",
                 "<table><tr><td>A & B<td>c; d<td>R&D</td><td>e;<td>&;&#;&<b>;</b></table>",
                 "A & B\tc; d\tR&D\te;\t&;&#;&;"},
        HtmlCase{"LoneAmpersandsBeforeATagAnEntityAndALongWord",
                 "<table><tr><td>&<b;c>e</b><td>&&lt;<td>&abcdefghijklmnopqrstuvwxyzabcdefghijklmn;</table>",
                 "&e\t&<\t&abcdefghijklmnopqrstuvwxyzabcdefghijklmn;"},
        HtmlCase{"AttributesWithBrackets",
                 "<table title=\"a>b\"><tr><td class='x>y' align=right>1</td></tr></table>", "1"},
        HtmlCase{"AttributesInEitherQuotationMark",
                 "<table><tr><td title=\"x>y\" abbr='p>q'>1</td><td title=\"it's\" abbr='a \"b>'>2</td>"
                 "<td bgcolor=#FFFFFF>3</td></tr></table>",
                 "1\t2\t3"},
        HtmlCase{"StyleAndComment",
                 "<style>td{color:red}</style><table><tr><td><!-- <td>no</td> -->1</td></tr></table>", "1"},
        HtmlCase{"StyleAndScriptInACell",
                 "<table><tr><td><style>p<td></style>1<SCRIPT>if(a<b)w(\"<td>2</td>\")</script>3</td></tr>"
                 "</table>",
                 "13"},
        HtmlCase{"CommentsOfNothingButTheirMarks", "<table><!--><tr><td>1<!--->2</td></tr></table>", "12"},
        HtmlCase{"CommentsThatAreEmptyOrFollowEachOther",
                 "<!--a--><!----><table><!----><tr><td>1<!-- - -- > --><!--b-->2</td></tr></table>", "12"}),
    LabelOf);

INSTANTIATE_TEST_SUITE_P(CutShort, HtmlTableTest,
                         testing::Values(HtmlCase{"InACell", "<table><tr><td>1</td><td>2", "1\t2"},
                                         HtmlCase{"InATag", "<table><tr><td>1<td>2</td", "1\t2"},
                                         HtmlCase{"InAQuotation", "<table><tr><td>1</td title=\"2>3", "1"},
                                         HtmlCase{"InAComment", "<table><tr><td>1<!-- 2</td>", "1"},
                                         HtmlCase{"InAStyle", "<table><tr><td>1<style>2</td>", "1"},
                                         HtmlCase{"InAnEntity", "<table><tr><td>1 &am", "1 &am"},
                                         HtmlCase{"BehindAnEntity", "<table><tr><td>1 &lt;", "1 <"}),
                         LabelOf);

INSTANTIATE_TEST_SUITE_P(
    Programs, HtmlTableTest,
    testing::Values(
        HtmlCase{"WordProcessor",
                 "<table class=MsoTableGrid border=1><tr style='mso-yfti-irow:0'>\n"
                 "  <td width=64 valign=top style='font-family:\"Arial\",sans-serif'>\n"
                 "  <p class=MsoNormal><span lang=EN-US>Milk\n  Fat<o:p></o:p></span></p>\n  </td>\n"
                 "  <td width=64 valign=top>\n  <p class=MsoNormal><o:p>&nbsp;</o:p></p>\n  </td>\n"
                 "  <td width=64>\n  <p class=MsoNormal>1</p>\n  <p class=MsoNormal>2</p>\n  </td>\n"
                 " </tr></table>",
                 "Milk Fat\t\t1 2"},
        HtmlCase{
            "Spreadsheet",
            "<html xmlns:x=\"urn:schemas\"><head>\n<!--[if gte mso 9]><xml><x:td>0</x:td></xml>"
            "<![endif]-->\n<style>\n<!--table {mso-displayed-decimal-separator:\"\\.\";}\n-->\n</style>\n"
            "</head><body link=blue>\n<table border=0 style='width:96pt'>\n<!--StartFragment-->\n"
            " <col width=64 span=2 style='width:48pt'>\n <tr height=20>\n"
            "  <td height=20 class=xl65 align=right style='height:15.0pt'>1.50</td>\n"
            "  <td colspan=2 class=xl66>a &lt; b</td>\n </tr>\n<!--EndFragment-->\n</table></body></html>",
            "1.50\ta < b\t"},
        HtmlCase{"Browser",
                 "<meta charset='utf-8'><table style=\"color: rgb(0, 0, 0);\"><tbody><tr><th scope=\"row\">"
                 "<a href=\"/?a=1&b=2\">USL</a></th><td><span>5<sup>2</sup></span></td></tr></tbody></table>",
                 "USL\t52"}),
    LabelOf);

TEST(CellsFromHtmlTest, ABracketPairWithNothingBetweenTakesNoTagAlong) {
    const Text cells = CellsFromHtml("<table><tr><td>a<></td><td>b</td></tr></table>").value_or("none");
    EXPECT_EQ(std::count(cells.begin(), cells.end(), '\t'), 1) << cells;
}

TEST(CellsFromHtmlTest, ATextCutAnywhereHasNoMoreRowsThanItsTable) {
    const QString html = QString::fromUtf8(
        "<!-- a --><style>td{}</style><table title=\"a>b\"><tr><td colspan='2' rowspan=2>1 &amp; 2</td>"
        "<th>&#228;</th></tr><tr><td>3</td></tr></table>");
    for (qsizetype length = 0; length <= html.size(); ++length) {
        const Text cells = CellsFromHtml(html.left(length)).value_or("");
        EXPECT_LE(std::count(cells.begin(), cells.end(), '\r'), 1) << length;
    }
    EXPECT_EQ(CellsFromHtml(html).value_or("none"), "1 & 2\t\t\xC3\xA4\r\t\t3");
}

TEST(CellsFromHtmlTest, TextWithoutATableHasNoCells) {
    for (const char* const html : {"", "<p>1</p>", "<tr><td>1</td></tr>", "<table></table>",
                                   "<table>1<tr>2</tr></table>", "<!-- <table><tr><td>1</table> -->"}) {
        EXPECT_FALSE(CellsFromHtml(html).has_value()) << html;
    }
}

// --- great ones -------------------------------------------------------------------------------------------

/// As many rows as wanted of one cell each.
QString Rows(int rows, const QString& cell) {
    return QLatin1String("<table>") + (QLatin1String("<tr>") + cell).repeated(rows) +
           QLatin1String("</table>");
}

TEST(SizeTest, ATableOfAMillionCellsArrivesWhole) {
    AtSizes("cells of an HTML table", 1'000'000, 1'000'000, [](std::size_t count) {
        const QString html = Rows(static_cast<int>(count / 10), QStringLiteral("<td>7</td>").repeated(10));
        const Text cells = CellsFromHtml(html).value_or("none");
        const auto wanted = static_cast<std::ptrdiff_t>(count);
        EXPECT_EQ(std::count(cells.begin(), cells.end(), '7'), wanted);
        EXPECT_EQ(std::count(cells.begin(), cells.end(), '\t'), wanted - wanted / 10);
        EXPECT_EQ(std::count(cells.begin(), cells.end(), '\r'), wanted / 10 - 1);
        return static_cast<std::size_t>(html.size());
    });
}

constexpr int MostPlaces = 4'194'304;

TEST(CellsFromHtmlTest, ATableOfMorePlacesThanAnyGridHasCountsAsNone) {
    const auto claims = [](int places) {
        constexpr int Widest = 999;
        return Rows(places / Widest, QStringLiteral("<td colspan=%1>").arg(Widest))
            .replace(QLatin1String("</table>"), QStringLiteral("<tr><td colspan=%1>").arg(places % Widest));
    };
    EXPECT_TRUE(CellsFromHtml(claims(MostPlaces)).has_value());
    EXPECT_FALSE(CellsFromHtml(claims(MostPlaces + 1)).has_value());
    EXPECT_FALSE(CellsFromHtml("<table><tr><td colspan=99999999999>").has_value());
}

TEST(CellsFromHtmlTest, ACellOverAThousandRowsAndMoreLeavesItsPlaceEmptyInEach) {
    constexpr int Below = 1199;
    const QString html = QStringLiteral("<table><tr><td rowspan=%1>a<td>b").arg(Below + 1) +
                         QStringLiteral("<tr><td>c").repeated(Below) + QStringLiteral("<tr><td>d</table>");
    const QString cells =
        QStringLiteral("a\tb") + QStringLiteral("\r\tc").repeated(Below) + QStringLiteral("\rd");
    EXPECT_EQ(CellsFromHtml(html).value_or("none"), cells.toStdString());
}

TEST(CellsFromHtmlTest, PlacesOfCellsFromAboveCountToo) {
    const QString wide = QStringLiteral("<td colspan=999 rowspan=2>");
    const QString row = wide.repeated(MostPlaces / 2 / 999 + 1);
    EXPECT_FALSE(CellsFromHtml(QLatin1String("<table><tr>") + row + QLatin1String("<tr>")).has_value());
}

TEST(SizeTest, ATableTakesLittleMemoryWhateverSpansItClaims) {
    const QString wide = QStringLiteral("<td colspan=999 rowspan=999>");
    AtSizes("spans of an HTML table", 100'000, 100'000, [&](std::size_t count) {
        qsizetype most = 0;
        for (const QString& html : {Rows(5000, wide), Rows(1, wide.repeated(static_cast<qsizetype>(count))),
                                    Rows(1, wide.repeated(1000) + QStringLiteral("<tr>").repeated(998))}) {
            EXPECT_FALSE(CellsFromHtml(html).has_value());
            most = std::max(most, html.size());
        }
        return static_cast<std::size_t>(most);
    });
}

// --- out --------------------------------------------------------------------------------------------------

TEST(CellsToHtmlTest, CellsAreATableWithWhatTheyContainEscaped) {
    EXPECT_EQ(CellsToHtml("1\t<b>&\r\xC3\xA4\t").toStdString(),
              "<html><head><meta charset=\"utf-8\"></head><body><table>"
              "<tr><td>1</td><td>&lt;b&gt;&amp;</td></tr><tr><td>\xC3\xA4</td><td></td></tr>"
              "</table></body></html>");
}

TEST(CellsToHtmlTest, CellsComeBackWhateverEndsTheirRows) {
    struct Case {
        const char* label;
        const char* text;
        const char* back;
    };
    for (const Case& c :
         {Case{"CR", "1\t2\r3\t4", "1\t2\r3\t4"}, Case{"CR LF", "1\r\n2", "1\r2"}, Case{"LF", "1\n2", "1\r2"},
          Case{"two CR", "1\r\r2", "1\r\r2"}, Case{"two CR LF", "1\r\n\r\n2", "1\r\r2"},
          Case{"two LF", "1\n\n2", "1\r\r2"}, Case{"LF CR", "1\n\r2", "1\r\r2"},
          Case{"CR at the end", "1\r", "1\r"}, Case{"CR LF at the end", "1\r\n", "1\r"},
          Case{"LF at the end", "1\n", "1\r"}, Case{"no cell", "", ""}, Case{"one cell", "<b>&", "<b>&"},
          Case{"an entity", "&lt;", "&lt;"}, Case{"empty cells", "\t1\r\t", "\t1\r\t"}}) {
        EXPECT_EQ(CellsFromHtml(CellsToHtml(c.text)).value_or("none"), c.back) << c.label;
    }
}

}  // namespace
}  // namespace kd
