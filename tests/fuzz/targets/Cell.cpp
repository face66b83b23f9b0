#include "edit/RestoreCutCopyPaste.h"
#include "fuzz/FuzzDesk.h"
#include "grid/CellGate.h"
#include "model/Columns.h"

namespace kd::fuzz {

namespace {

/// Variables of several kinds, so that every column means something.
std::string Variables() {
    std::string text = "VERSION=7.\r\n";
    for (const char* type : {"N", "A", "C", "T", "P", "L", ""}) {
        text += "[FIELD]\r\nNAME=v" + std::string(type) + "\r\nTYPE=" + type +
                "\r\nLENGTH=8\r\nDECIMALS=2\r\nMAX=1000\r\nMIN=0\r\nUSL=F100\r\nUCL=B\r\nRULES=A\r\n";
    }
    return text;
}

/// Marks obey their rule: a mark stands on a view that has changed, and a view that never changed has none.
void CheckMarks(const FuzzDesk& t) {
    bool marked = false;
    for (std::int32_t row = 1; row < t.desk.Grid.Rows(); ++row) {
        for (std::int32_t screenCol = 0; screenCol < t.desk.Grid.Cols(); ++screenCol) {
            marked = marked || t.desk.Grid.BackColor(row, screenCol) == ChangedColour;
        }
    }
    Promise(!marked || modKDLimitDesk::AnyChanges(t.g), "where a mark stands, the view has changed");
}

}  // namespace

/// Two bytes for the cell, and the text that is typed into it.
void Cell(std::string_view input) {
    if (input.size() < 2) {
        return;
    }
    FuzzDesk t(Variables());
    Promise(t.Load(), "the variables load");
    const auto rows = static_cast<unsigned>(t.desk.Grid.Rows() - 1);
    const auto row = static_cast<std::int32_t>(1 + static_cast<unsigned char>(input[0]) % rows);
    const auto column = ColumnFor(static_cast<unsigned char>(input[1]));
    const Text text = t.locale.CodePage().Decode(input.substr(2));
    if (!IsCellValueValid(t.desk, row, column - 1, text)) {
        return;
    }
    try {
        SetCellValue(t.desk, row, column - 1, text);
    } catch (const cError&) {
        return;  // such as a length that leaves no room for the decimals
    }
    CheckMarks(t);
    // Type, length and decimals are the one thing that other cells of the row hang on; nobody edits them
    // here.
    if (column < cnType || column > cnDecimals) {
        t.CheckGrid();
    }
    const auto shown = [&] { return Text(t.desk.Grid.TextMatrix(row, column - 1)); };
    if (IsCellValueValid(t.desk, row, column - 1, shown())) {
        // A mask that has cut a number may leave zeros in front, which go when the text is written again.
        SetCellValue(t.desk, row, column - 1, shown());
        const Text settled = shown();
        SetCellValue(t.desk, row, column - 1, settled);
        Promise(shown() == settled, "the shown text is its own normal form");
    }
}

/// One byte for the cell, and what is on the clipboard.
void Clipboard(std::string_view input) {
    if (input.empty()) {
        return;
    }
    FuzzDesk t(Variables());
    Promise(t.Load(), "the variables load");
    const auto rows = static_cast<unsigned>(t.desk.Grid.Rows() - 1);
    const auto place = static_cast<unsigned char>(input.front());
    t.desk.Grid.Select(static_cast<std::int32_t>(1 + place % rows), ColumnFor(place) - 1);
    t.suite.clipboard = t.locale.CodePage().Decode(input.substr(1));
    try {
        Paste(t.desk);
        t.CheckGrid();
    } catch (const cError&) {
        return;
    }
    CheckMarks(t);
    t.suite.clipboard.clear();
    Copy(t.desk);
    const Text shown(t.desk.Grid.TextMatrix(t.desk.Grid.Row(), t.desk.Grid.Col()));
    Promise(t.suite.clipboard.empty() || t.suite.clipboard == shown,
            "a copy of one cell is what the cell shows");
}

}  // namespace kd::fuzz
