#include "grid/ColumnCatalogue.h"

#include "model/PropertyTable.h"

namespace kd {

void modKDLimitDesk::BuildColumnCatalogue(Globals& g) {
    auto labels = std::make_shared<cLabels>();
    for (std::int32_t number = 1; number <= ColumnCount; ++number) {
        const Property& property = PropertyOf(number);
        labels->Add(Text(property.title), Text(1, property.alignment), property.editable, property.visible);
    }
    g.gLabels = std::move(labels);
}

const cLabel& LabelOf(const Desk& desk, std::int32_t screenCol) {
    return desk.g.gLabels->Ref(desk.Grid.ColData(screenCol));
}

void SetupGridColumns(Desk& desk) {
    VSFlexGrid& grid = desk.Grid;
    const std::int32_t count = desk.g.gLabels->Count();
    grid.SetRows(1);
    grid.SetCols(0);
    grid.SetCols(count);
    for (std::int32_t number = 1; number <= count; ++number) {
        const std::int32_t screenCol = number - 1;  // a column begins at its number's place
        const cLabel& label = desk.g.gLabels->Ref(number);
        grid.SetColData(screenCol, number);
        grid.SetTextMatrix(0, screenCol, label.Name());
        grid.SetCellPicture(screenCol, HeaderPicture::FilterOff);
        // Deliberate: a rebuild hides the property columns while Show All Properties stays ticked, and goes
        // by the position, which leaves "XRef" to its own flag.
        // ColumnCatalogueTest.ARebuildHidesThePropertyColumnsThoughShowAllPropertiesStaysTicked
        const bool always = desk.mnuShowAll.Checked() && screenCol >= FirstFurtherColumn;
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

}  // namespace kd
