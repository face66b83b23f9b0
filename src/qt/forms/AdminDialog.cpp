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
    QLabel* const label = WidgetFor(form.Label1);
    auto* const filter = new ComboBoxWidget(this);
    new ComboBoxBinder(form.cboFilter, *filter, boundary);
    filter->setFont(FilterFont(font()));
    filter->setMinimumContentsLength(20);
    filter->SetSpokenName(tr("Filter criteria"));
    QPushButton* const apply = WidgetFor(form.cmdFilter, QLatin1Char('p'));
    auto* const grid = new GridWidget(form.Grid, this, std::make_unique<ListManner>(form.Grid));
    grid->setAccessibleName(tr("List of active applications"));
    QPushButton* const add = WidgetFor(form.cmdAddApplication, QLatin1Char('A'));
    QPushButton* const remove = WidgetFor(form.cmdRemoveApplication, QLatin1Char('R'));
    QPushButton* const help = WidgetFor(form.cmdHelp, QLatin1Char('H'));
    QPushButton* const ok = WidgetFor(form.cmdOk);
    QPushButton* const cancel = WidgetFor(form.cmdCancel);

    auto* const top = new QHBoxLayout;
    top->addWidget(filter, 1);
    top->addWidget(apply);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addLayout(top);
    column->addWidget(grid);
    column->addLayout(Row({add, remove, help}, {ok, cancel}));

    SetButtons(ok, cancel);
    const int letter = fontMetrics().averageCharWidth();
    resize(letter * 130, fontMetrics().height() * 32);
}

}  // namespace kd
