#include "edit/Replace.h"

#include "edit/CellCheck.h"
#include "edit/SelectedCells.h"
#include "edit/frmReplace.h"
#include "grid/CellGate.h"
#include "grid/ColumnCatalogue.h"
#include "platform/RedrawOff.h"

namespace kd {
namespace {

/// Computes the new texts; those that differ for a match are checked. False when one was refused, which was
/// told.
bool TakeNewTexts(Desk& desk, const frmReplace& form, SelectedCells& cells) {
    const CodePage& page = desk.g.platform.locale.CodePage();
    const std::int32_t col = cells.SelCols(1);
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        const std::int32_t row = cells.SelRows(i);
        const Text shown(desk.Grid.TextMatrix(row, col));
        const auto replaced =
            ReplaceFirst(page, shown, form.FindText(), form.ReplaceText(), form.MatchCase());
        if (replaced && !IsCellValueValid(desk, row, col, *replaced)) {
            desk.g.platform.toolkit.Say(RefusalText(desk, "Fill contains invalid data - Could not Replace!",
                                                    col, "'" + *replaced + "'"),
                                        BoxIcon::Exclamation);
            return false;
        }
        cells.SetSelValues(i, 1, replaced.value_or(shown));
    }
    return true;
}

void WriteChangedTexts(Desk& desk, const SelectedCells& cells) {
    const RedrawOff quiet(desk.Grid);
    const std::int32_t col = cells.SelCols(1);
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        if (desk.Grid.TextMatrix(cells.SelRows(i), col) != cells.SelValues(i, 1)) {
            SetCellValue(desk, cells.SelRows(i), col, cells.SelValues(i, 1));
        }
    }
}

}  // namespace

std::optional<Text> ReplaceFirst(const CodePage& page, std::string_view text, std::string_view find,
                                 std::string_view replacement, bool matchCase) {
    // Counted in characters: a capital may take another number of bytes than its small letter.
    const Text where = matchCase ? Text(text) : page.Upper(text);
    const std::size_t at = where.find(matchCase ? Text(find) : page.Upper(find));
    if (at == Text::npos) {
        return std::nullopt;
    }
    const std::size_t position = CharacterCount(std::string_view(where.data(), at)) + 1;
    const std::size_t begin = ByteOffset(text, position);
    const std::size_t end = ByteOffset(text, position + CharacterCount(find));
    return Text(text.substr(0, begin)) + Text(replacement) + Text(text.substr(end));
}

void Replace(Desk& desk, EditMemory& memory) {
    auto cells = FindSelectedCells(desk);
    if (!cells) {
        return;
    }
    Toolkit& toolkit = desk.g.platform.toolkit;
    if (cells->nCols() > 1) {
        toolkit.Say("Can only replace within a single column.", BoxIcon::Exclamation);
        return;
    }
    const cLabel& label = LabelOf(desk, cells->SelCols(1));
    if (!label.Editable()) {
        toolkit.Say("Cannot replace read-only cells.", BoxIcon::Exclamation);
        return;
    }
    frmReplace form(desk.g);
    form.SetLabelName(label.Name());
    form.SetFindText(memory.LastFindText.empty()
                         ? Text(desk.Grid.TextMatrix(cells->SelRows(1), cells->SelCols(1)))
                         : memory.LastFindText);
    form.SetReplaceText(memory.LastReplaceText);
    do {
        form.Display();
        if (form.Cancel()) {
            return;
        }
        // Deliberate: kept before any check. ReplaceTest.RefusedTextsAreRemembered
        memory.LastFindText = form.FindText();
        memory.LastReplaceText = form.ReplaceText();
    } while (!TakeNewTexts(desk, form, *cells));
    WriteChangedTexts(desk, *cells);
    form.Destroy();
}

}  // namespace kd
