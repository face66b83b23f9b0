#include "edit/Fill.h"

#include <cmath>

#include "base/NumberTexts.h"
#include "edit/CellCheck.h"
#include "edit/SelectedCells.h"
#include "edit/frmFill.h"
#include "grid/CellGate.h"
#include "grid/ColumnCatalogue.h"
#include "model/Columns.h"
#include "model/Decimals.h"

namespace kd {
namespace {

std::int32_t TargetLimitOf(const Desk& desk, const SelectedCells& cells) {
    if (cells.nCols() != 1) {
        return NoLimit;
    }
    return LimitOf(desk.Grid.ColData(cells.SelCols(1)));
}

double Calculated(double base, double value, std::int32_t how) {
    switch (how) {
        case pmMinus:
            return base - value;
        case pmPlusPercent:
            return base + base * (value / 100);
        case pmMinusPercent:
            return base - base * (value / 100);
        default:
            return base + value;
    }
}

void TakeConstant(const frmFill& form, EditMemory& memory, SelectedCells& cells) {
    // Deliberate: kept before any check. FillTest.RefusedConstantIsRemembered
    memory.LastFillText = form.FillText();
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            cells.SetSelValues(i, j, form.FillText());
        }
    }
}

/// False when a row refused, which was told; the values are then of no use.
bool Calculate(Desk& desk, const frmFill& form, SelectedCells& cells) {
    const Locale& locale = desk.g.platform.locale;
    const std::int32_t source = LabelIndexToGridColumn(desk, LimitColumn(form.LimitType()));
    const double value = ParseCellNumber(form.LimitValue(), locale);
    const char separator = modKDLimitDesk::LocaleDecimalSeparator(locale);
    for (std::int32_t i = 1; i <= cells.nRows(); ++i) {
        const std::string_view base = desk.Grid.TextMatrix(cells.SelRows(i), source);
        if (!IsNumericText(base, locale)) {  // nor are "C", "B" and the empty text
            desk.g.platform.toolkit.Say("Cannot calculate using Blank or Calc limits!", BoxIcon::Exclamation);
            return false;
        }
        const double result = Calculated(ParseCellNumber(base, locale), value, form.LimitPlusMinus());
        if (!std::isfinite(result)) {
            desk.g.platform.toolkit.Say("Invalid Limit value!", BoxIcon::Exclamation);
            return false;
        }
        for (std::int32_t j = 1; j <= cells.nCols(); ++j) {
            cells.SetSelValues(i, j, PlainTextWithLeadingZero(result, separator));
        }
    }
    return true;
}

/// False when a cell refused, which was told.
bool AllCellsPass(Desk& desk, const SelectedCells& cells) {
    const auto refused = FirstRefusedCell(desk, cells);
    if (!refused) {
        return true;
    }
    desk.g.platform.toolkit.Say(
        refused->readOnly
            ? Text("Cannot Fill over Read-Only Cells!")
            : RefusalText(desk, "Fill contains invalid data - Could not Fill!", cells.SelCols(refused->j),
                          "'" + cells.SelValues(refused->i, refused->j) + "'"),
        BoxIcon::Exclamation);
    return false;
}

/// Computes the values that the dialog asks for, and checks them. False when one was refused.
bool TakeValues(Desk& desk, const frmFill& form, EditMemory& memory, SelectedCells& cells) {
    if (form.FillType() == fkConstant) {
        TakeConstant(form, memory, cells);
    } else if (!Calculate(desk, form, cells)) {
        return false;
    }
    return AllCellsPass(desk, cells);
}

}  // namespace

void Fill(Desk& desk, EditMemory& memory) {
    auto cells = FindSelectedCells(desk);
    if (!cells) {
        return;
    }
    frmFill form(desk.g);
    form.SetTargetLimit(TargetLimitOf(desk, *cells));
    form.SetFillText(memory.LastFillText.empty()
                         ? Text(desk.Grid.TextMatrix(cells->SelRows(1), cells->SelCols(1)))
                         : memory.LastFillText);
    do {
        form.Display();
        if (form.Cancel()) {
            return;
        }
    } while (!TakeValues(desk, form, memory, *cells));
    WriteValues(desk, *cells);
    form.Destroy();
}

}  // namespace kd
