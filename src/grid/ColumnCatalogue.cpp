#include "grid/ColumnCatalogue.h"

#include <array>

namespace kd {

namespace {

struct Column {
    const char* name;
    char alignment;
    bool editable;
    bool visible;
};

// The order is the column numbers', from 1.
constexpr std::array<Column, ColumnCount> Catalogue{{
    {"ID", 'R', false, false},         {"Folder", 'L', false, false},      {"Filename", 'L', false, true},
    {"Title", 'L', false, true},       {"View Name", 'L', false, true},    {"ViewNo", 'R', false, false},
    {"VarNo", 'R', false, true},       {"Variable Name", 'L', true, true}, {"Max", 'R', true, true},
    {"USL", 'R', true, true},          {"UCL", 'R', true, true},           {"UWL", 'R', true, true},
    {"TGT", 'R', true, true},          {"LWL", 'R', true, true},           {"LCL", 'R', true, true},
    {"LSL", 'R', true, true},          {"Min", 'R', true, true},           {"Type", 'L', false, true},
    {"Length", 'R', false, true},      {"Decimals", 'R', false, true},     {"XRef", 'L', true, false},
    {"ReportType", 'L', true, false},  {"LimitMethod", 'L', true, false},  {"TargetMethod", 'L', true, false},
    {"Sample", 'R', true, false},      {"Required", 'L', true, false},     {"Category", 'L', true, false},
    {"Units", 'L', true, false},       {"Rules", 'L', true, false},        {"Popup", 'L', true, false},
    {"InputFile", 'L', true, false},   {"OutputFile", 'L', true, false},   {"HelpFile", 'L', true, false},
    {"Calculation", 'L', true, false}, {"UCase", 'L', true, false},
}};

}  // namespace

void modKDLimitDesk::BuildColumnCatalogue(Globals& g) {
    auto labels = std::make_shared<cLabels>();
    for (const Column& column : Catalogue) {
        labels->Add(column.name, Text(1, column.alignment), column.editable, column.visible);
    }
    g.gLabels = std::move(labels);
}

const cLabel& LabelOf(const Desk& desk, std::int32_t screenCol) {
    return desk.g.gLabels->Ref(desk.Grid.ColData(screenCol));
}

void SetupGridColumns(Desk& desk) {
    VSFlexGrid& grid = desk.Grid;
    const std::int32_t count = desk.g.gLabels->Count();
    grid.SetFixedCols(0);
    grid.SetFixedRows(1);
    grid.SetRows(1);
    grid.SetCols(0);
    grid.SetCols(count);
    grid.SetFrozenCols(0);
    for (std::int32_t number = 1; number <= count; ++number) {
        const std::int32_t screenCol = number - 1;  // a column begins at its number's place
        const cLabel& label = desk.g.gLabels->Ref(number);
        grid.SetColData(screenCol, number);
        grid.SetTextMatrix(0, screenCol, label.Name());
        grid.SetCellPicture(screenCol, HeaderPicture::FilterOff);
        // Deliberate: a rebuild hides the property columns while Show All Properties stays ticked, and goes
        // by the position, which leaves "XRef" to its own flag.
        // ColumnCatalogueTest.ARebuildHidesThePropertyColumnsThoughShowAllPropertiesStaysTicked
        const bool always = desk.mnuShowAll.Checked() && screenCol >= FirstPropertyColumn;
        grid.SetColHidden(screenCol, always || !label.Visible());
    }
    grid.AutoSize(0, count - 1);
}

void SetGridALignments(Desk& desk) {
    VSFlexGrid& grid = desk.Grid;
    const std::int32_t count = desk.g.gLabels->Count();
    for (std::int32_t number = 1; number <= count; ++number) {
        const Text letter = UpperAscii(desk.g.gLabels->Ref(number).Alignment());
        if (letter == "L") {
            grid.SetColAlignment(number - 1, caLeftCenter);
        } else if (letter == "C") {
            grid.SetColAlignment(number - 1, caCenterCenter);
        } else if (letter == "R") {
            grid.SetColAlignment(number - 1, caRightCenter);
        }
    }
    grid.AutoSize(0, count - 1);
}

std::int32_t LabelIndexToGridColumn(Desk& desk, std::int32_t columnNumber) {
    for (std::int32_t screenCol = 0; screenCol < desk.Grid.Cols(); ++screenCol) {
        if (desk.Grid.ColData(screenCol) == columnNumber) {
            return screenCol;
        }
    }
    desk.g.platform.toolkit.Say("Invalid Label conversion!", BoxIcon::Critical);
    return 0;
}

void RefreshGridRow(Desk& desk, std::int32_t row) {
    VSFlexGrid& grid = desk.Grid;
    const cField& field = desk.g.gFields->Ref(row);
    const cFile& view = desk.g.gFiles->Ref(field.FileID());
    const auto tools = desk.g.platform.suite.NewPathTools();
    grid.SetRows(row + 1);
    // Linked before it is filled: a value that cannot be shown must not leave a row without its variable.
    grid.SetRowData(row, row);

    constexpr std::size_t EverydayRow = 512;  // bytes
    RowText texts;
    texts.Reserve(EverydayRow, ColumnCount);
    texts.Add(Digits(row));
    texts.Add(tools->GetFolderPart(view.Filename()));
    texts.Add(tools->GetFileNamePart(view.Filename()));
    texts.Add(view.Title());
    texts.Add(view.ViewName());
    texts.Add(Digits(view.ViewNo()));
    try {
        for (std::int32_t number = FirstVariableColumn; number <= ColumnCount; ++number) {
            field.AppendValue(number, vmGrid, desk.g.platform.locale, texts.Bytes());
            texts.EndCell();
        }
    } catch (...) {
        // What can be shown says which variable it is.
        texts.DropOpenCell();
        while (texts.Ends().size() < static_cast<std::size_t>(ColumnCount)) {
            texts.Add({});
        }
        grid.SetRowTexts(row, texts);
        throw;
    }
    grid.SetRowTexts(row, texts);
    grid.SetRowHidden(row, desk.mnuShowOnlyNumericVariables.Checked() && !IsNumericType(field.FieldType()));
}

}  // namespace kd
