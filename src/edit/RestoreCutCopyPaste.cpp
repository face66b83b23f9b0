#include "edit/RestoreCutCopyPaste.h"

#include <vector>

#include "edit/CellCheck.h"
#include "edit/SelectedCells.h"

namespace kd {
namespace {

constexpr char CellSeparator = '\t';
constexpr char RowSeparator = '\r';

Text ClipboardText(const SelectedCells& cells) {
    Text text;
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        if (i > 1) {
            text += RowSeparator;
        }
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            if (j > 1) {
                text += CellSeparator;
            }
            text += cells.SelValues(i, j);
        }
    }
    return text;
}

/// A rectangle of texts, row behind row.
struct Block {
    std::int32_t nRows;
    std::int32_t nCols;
    std::vector<std::string_view> values;  // views of the text that was split
};

/// The first line sets the width; a line of another width is dropped and the following ones move up.
Block SplitBlock(std::string_view text) {
    const auto lines = Split(text, RowSeparator);
    const std::size_t width = Split(lines.front(), CellSeparator).size();
    Block block{0, static_cast<std::int32_t>(width), {}};
    for (const std::string_view line : lines) {
        const auto fields = Split(line, CellSeparator);
        // Deliberate: no word about a line that is dropped. PasteTest.LinesOfAnotherWidthAreDroppedSilently
        if (fields.size() == width) {
            block.values.insert(block.values.end(), fields.begin(), fields.end());
            ++block.nRows;
        }
    }
    return block;
}

void SayPasteRefused(Desk& desk, const SelectedCells& cells, const RefusedCell& refused) {
    Toolkit& toolkit = desk.g.platform.toolkit;
    if (refused.readOnly) {
        toolkit.Say("Cannot Paste over Read-Only Cells!");
    } else {
        toolkit.Say(RefusalText(desk, "Clipboard contains invalid data.", cells.SelCols(refused.j),
                                "'" + cells.SelValues(refused.i, refused.j) + "'"),
                    BoxIcon::Exclamation);
    }
}

}  // namespace

void Restore(Desk& desk) {
    auto cells = FindSelectedCells(desk);
    if (!cells) {
        return;
    }
    for (std::int32_t i = 1; i <= cells->nRows(); ++i) {
        const cField& saved = desk.g.gSavedFields->Ref(desk.Grid.RowData(cells->SelRows(i)));
        for (std::int32_t j = 1; j <= cells->nCols(); ++j) {
            const std::int32_t number = desk.Grid.ColData(cells->SelCols(j));
            // Deliberate: the shown text goes back, not the value, so that digits beyond the mask are lost
            // unmarked, and "Rules" gets the file's letters. RestoreTest.DigitsBeyondTheMaskAreLostUnmarked,
            // RestoreTest.RulesGetTheFilesLetters
            cells->SetSelValues(i, j, saved.ValueText(number, vmGrid, desk.g.platform.locale));
        }
    }
    WriteValues(desk, *cells);  // which leaves the columns of the view as they are
}

void Copy(Desk& desk) {
    auto cells = FindSelectedCells(desk);
    if (!cells) {
        return;
    }
    ReadShownTexts(desk, *cells);
    desk.g.platform.suite.NewClipboard()->SetText(ClipboardText(*cells));
}

void Cut(Desk& desk) {
    auto cells = FindSelectedCells(desk);
    if (!cells) {
        return;
    }
    ReadShownTexts(desk, *cells);
    const Text text = ClipboardText(*cells);
    cells->ClearValues();
    if (const auto refused = FirstRefusedCell(desk, *cells)) {
        Toolkit& toolkit = desk.g.platform.toolkit;
        if (refused->readOnly) {
            toolkit.Say("Cannot Cut Read-Only Cells!");
        } else {
            toolkit.Say(
                RefusalText(desk, "Some cells could not be cut!", cells->SelCols(refused->j), "Blank"),
                BoxIcon::Exclamation);
        }
        return;
    }
    WriteValues(desk, *cells);
    desk.g.platform.suite.NewClipboard()->SetText(text);
}

void Paste(Desk& desk) {
    const std::int32_t row = desk.Grid.Row();
    const std::int32_t col = desk.Grid.Col();
    if (row < 1 || col < 0) {
        return;
    }
    const Text text =
        desk.g.platform.locale.CodePage().Narrowed(desk.g.platform.suite.NewClipboard()->GetText());
    if (text.empty()) {
        return;
    }
    const Block block = SplitBlock(text);
    if (block.nCols == 0) {
        return;
    }
    auto cells = CellsFrom(desk.Grid, row, col, block.nRows, block.nCols);
    if (!cells) {
        desk.g.platform.toolkit.Say("The clipboard's block does not fit from the current cell.",
                                    BoxIcon::Exclamation);
        return;
    }
    auto value = block.values.begin();
    for (std::int32_t i = 1; i <= cells->nRows(); ++i) {
        for (std::int32_t j = 1; j <= cells->nCols(); ++j) {
            cells->SetSelValues(i, j, Text(*value++));
        }
    }
    if (const auto refused = FirstRefusedCell(desk, *cells)) {
        SayPasteRefused(desk, *cells, *refused);
        return;
    }
    WriteValues(desk, *cells);
}

}  // namespace kd
