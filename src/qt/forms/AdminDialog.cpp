#include "qt/forms/AdminDialog.h"

#include <QFont>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"
#include "qt/grid/GridWidget.h"

namespace kd {

namespace {

/// Filter texts are read letter by letter, so all letters are of one width.
QFont FilterFont(const QFont& around) {
    QFont font(around);
    font.setFamilies(
        {QStringLiteral("Courier New"), QFontDatabase::systemFont(QFontDatabase::FixedFont).family()});
    font.setStyleHint(QFont::Monospace);
    return font;
}

}  // namespace

AdminDialog::AdminDialog(frmApplicationAdmin& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    auto* const label = new QLabel(this);
    auto* const filter = new ComboBoxWidget(this);
    auto* const grid = new GridWidget(form.Grid, this, std::make_unique<ListManner>(form.Grid));
    const auto button = [&](Button& control, QChar mnemonic = {}) {
        auto* const made = new QPushButton(this);
        new ButtonBinder(control, *made, boundary, mnemonic);
        return made;
    };
    auto* const apply = button(form.cmdFilter, QLatin1Char('p'));
    auto* const add = button(form.cmdAddApplication, QLatin1Char('A'));
    auto* const remove = button(form.cmdRemoveApplication, QLatin1Char('R'));
    auto* const help = button(form.cmdHelp, QLatin1Char('H'));
    auto* const ok = button(form.cmdOk);
    auto* const cancel = button(form.cmdCancel);
    new LabelBinder(form.Label1, *label, boundary);
    new ComboBoxBinder(form.cboFilter, *filter, boundary);
    filter->setFont(FilterFont(font()));
    filter->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    filter->setMinimumContentsLength(20);
    filter->SetSpokenName(tr("Filter criteria"));
    grid->setAccessibleName(tr("List of active applications"));

    auto* const top = new QHBoxLayout;
    top->addWidget(filter, 1);
    top->addWidget(apply);
    auto* const bottom = new QHBoxLayout;
    bottom->addWidget(add);
    bottom->addWidget(remove);
    bottom->addWidget(help);
    bottom->addStretch();
    bottom->addWidget(ok);
    bottom->addWidget(cancel);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addLayout(top);
    column->addWidget(grid, 1);
    column->addLayout(bottom);

    TabThrough({filter, apply, grid, add, remove, help, ok, cancel});
    SetButtons(ok, cancel);
    filter->setFocus();
    const int letter = fontMetrics().averageCharWidth();
    resize(letter * 130, fontMetrics().height() * 32);
}

}  // namespace kd
