#include "appfiles/SchemaText.h"

#include <array>

#include "base/Numbers.h"

namespace kd {

namespace {

/// A key with the column of its value, see cField::Value.
struct KeyColumn {
    std::string_view key;
    std::int32_t column;
};

constexpr KeyColumn Type{"TYPE", 18};
constexpr KeyColumn Length{"LENGTH", 19};
constexpr KeyColumn Decimals{"DECIMALS", 20};
constexpr KeyColumn XRef{"XREF", 21};
constexpr KeyColumn Sample{"SAMPLE", 25};
constexpr KeyColumn Required{"REQUIRED", 26};
constexpr KeyColumn Category{"CATEGORY", 27};
constexpr KeyColumn Units{"UNITS", 28};
constexpr KeyColumn Rules{"RULES", 29};
constexpr KeyColumn Popup{"POPUP", 30};
constexpr KeyColumn Input{"INPUT", 31};
constexpr KeyColumn Output{"OUTPUT", 32};
constexpr KeyColumn HelpFile{"HELPFILE", 33};
constexpr KeyColumn Calc{"CALC", 34};
constexpr KeyColumn UCase{"UCASE", 35};

constexpr std::array<KeyColumn, 14> NumericKeys{{
    {"REPORTTYPE", 22},
    {"LIMITMETHOD", 23},
    {"TARGETMETHOD", 24},
    {"MAX", 9},
    {"USL", 10},
    {"UCL", 11},
    {"UWL", 12},
    {"TGT", 13},
    {"LWL", 14},
    {"LCL", 15},
    {"LSL", 16},
    {"MIN", 17},
    Rules,
    Input,
}};

/// Appends the lines of one block.
class BlockWriter {
public:
    BlockWriter(const cField& field, const Locale& locale, Text& text)
        : m_field(field), m_locale(locale), m_text(text) {}

    void Line(const KeyColumn& line) {
        AppendSchemaKey(line.key, m_text);
        m_field.AppendValue(line.column, vmFile, m_locale, m_text);
        m_text += CrLf;
    }
    template <typename... KeyColumns>
    void Lines(const KeyColumns&... lines) {
        (Line(lines), ...);
    }
    void TextLine(std::string_view key, std::string_view value) {
        AppendSchemaKey(key, m_text);
        m_text += value;
        m_text += CrLf;
    }
    void NumberLine(std::string_view key, std::int32_t value) { TextLine(key, Digits(value)); }

    void OfType(std::string_view type) {
        if (type.size() != 1) {
            return;
        }
        switch (type.front()) {
            case 'N':
            case 'A':
            case 'R':
            case 'C':
                Numeric(type.front());
                return;
            case 'T':
                Lines(Sample, UCase, Required, Input, Output, Units, Category, HelpFile);
                return;
            case 'P':
                Lines(Sample, Required, UCase, Input, Output, Popup);
                NumberLine("COMPDATA", m_field.CompData());
                NumberLine("KEYID", m_field.KeyID());
                Lines(Units, Category, HelpFile);
                return;
            case 'L':
                Lines(Sample, UCase, Output, Popup);
                NumberLine("COMPDATA", m_field.CompData());
                NumberLine("KEYID", m_field.KeyID());
                NumberLine("LOOKUP", m_field.Lookup());
                Lines(Units, Category, HelpFile);
                return;
            default:
                return;
        }
    }

private:
    void Numeric(char type) {
        Lines(Decimals, Sample);
        if (type == 'N' || type == 'A') {
            Line(Required);
        }
        for (const KeyColumn& line : NumericKeys) {
            Line(line);
        }
        Line(Output);
        if (type == 'A') {
            NumberLine("#AVG", m_field.AvgCount());
        } else if (type == 'R') {
            NumberLine("RANGE", m_field.Range());
        }
        Lines(Units, Category, HelpFile);
        if (type == 'C') {
            Line(Calc);
        }
        TextLine("RELATION", m_field.Relation());
    }

    const cField& m_field;
    const Locale& m_locale;
    Text& m_text;
};

}  // namespace

void AppendSchemaKey(std::string_view key, Text& text) {
    constexpr std::size_t Width = 16;
    const std::size_t from = text.size();
    text += "   ";
    text += key;
    text.resize(from + Width, ' ');
    text += "= ";
}

void AppendSchemaBlock(const cField& field, bool isView, const Locale& locale, Text& text) {
    text += "[FIELD]";
    text += CrLf;
    BlockWriter block(field, locale, text);
    block.TextLine("NAME", field.Name());
    if (isView) {
        block.NumberLine("RAWFIELD", field.RawField());
        block.NumberLine("PIVOTFIELD", field.PivotField());
        block.NumberLine("STATISTIC", field.Statistic());
    }
    block.Lines(XRef, Type, Length);
    block.OfType(field.FieldType());
}

}  // namespace kd
