#include "appfiles/SchemaText.h"

#include <array>
#include <cstdint>
#include <span>

#include "base/Text.h"
#include "model/FieldTexts.h"
#include "model/PropertyTable.h"

namespace kd {

namespace {

/// The types whose blocks have lines of their own.
constexpr std::string_view Types = "NARCTPL";

constexpr bool Has(std::string_view letters, char letter) noexcept {
    return letters.find(letter) != std::string_view::npos;
}

/// The rows of the lines of one block, in order.
struct BlockLines {
    std::array<std::uint8_t, PropertyTable.size()> rows{};
    std::size_t count = 0;

    constexpr void Add(std::size_t row) noexcept { rows[count++] = static_cast<std::uint8_t>(row); }
};

/// The lines of a type's blocks; of any other text's with a type that stands in no row.
constexpr BlockLines LinesOf(char type, bool isView) noexcept {
    BlockLines lines;
    for (std::size_t row = 0; row < PropertyTable.size(); ++row) {
        const Property& property = PropertyTable[row];
        if (Has(property.types, '*') || Has(property.types, type) || (isView && Has(property.types, 'V'))) {
            lines.Add(row);
        }
        if (row > 0 && Has(PropertyTable[row - 1].typesOneLater, type)) {
            lines.Add(row - 1);
        }
    }
    return lines;
}

/// By place of the type in Types, last those of any other text; for the template and for views.
constexpr auto Blocks = [] {
    std::array<std::array<BlockLines, Types.size() + 1>, 2> blocks{};
    for (const bool isView : {false, true}) {
        for (std::size_t type = 0; type <= Types.size(); ++type) {
            blocks[isView ? 1 : 0][type] = LinesOf(type < Types.size() ? Types[type] : '\0', isView);
        }
    }
    return blocks;
}();

std::span<const std::uint8_t> BlockOf(std::string_view type, bool isView) noexcept {
    const std::size_t known = type.size() == 1 ? Types.find(type.front()) : Text::npos;
    const BlockLines& lines = Blocks[isView ? 1 : 0][known == Text::npos ? Types.size() : known];
    return {lines.rows.data(), lines.count};
}

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
    for (const std::uint8_t row : BlockOf(field.FieldType(), isView)) {
        const Property& property = PropertyTable[row];
        AppendSchemaKey(property.key, text);
        const std::size_t value = text.size();
        AppendProperty(field, property, vmFile, locale, text);
        if (property.kind == vkText) {
            BlankLineEnds(text, value);  // one that an edit has joined would begin a line of its own
        }
        text += CrLf;
    }
}

}  // namespace kd
