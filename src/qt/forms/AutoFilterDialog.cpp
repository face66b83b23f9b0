#include "qt/forms/AutoFilterDialog.h"

#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/ListBinder.h"
#include "qt/forms/Widgets.h"

namespace kd {

AutoFilterDialog::AutoFilterDialog(frmAutoFilter& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    auto* const all = new CheckBoxWidget(this);
    auto* const list = new QListView(this);
    auto* const ok = new QPushButton(this);
    auto* const cancel = new QPushButton(this);
    list->setAccessibleName(tr("Values of the column"));

    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(all);
    column->addWidget(list, 1);
    column->addLayout(buttons);

    new CheckBoxBinder(form.chkSelectAll, *all, boundary, QLatin1Char('S'));
    new CheckListBinder(form.lstAutoFilter, *list, boundary);
    new ButtonBinder(form.cmdOk, *ok, boundary);
    new ButtonBinder(form.cmdCancel, *cancel, boundary);

    TabThrough({all, list, ok, cancel});
    SetButtons(ok, cancel);
    list->setFocus();
    resize(fontMetrics().averageCharWidth() * 42, fontMetrics().height() * 24);
}

}  // namespace kd
