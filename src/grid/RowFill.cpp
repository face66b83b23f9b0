#include "grid/RowFill.h"

#include "base/NumberTexts.h"
#include "model/Columns.h"

namespace kd {

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
        // What can be shown says which variable it is. A value is appended whole or not at all.
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
