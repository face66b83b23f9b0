#include "qt/forms/AutoFilterDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/ListBinder.h"

namespace kd {

AutoFilterDialog::AutoFilterDialog(frmAutoFilter& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    QCheckBox* const all = WidgetFor(form.chkSelectAll, QLatin1Char('S'));
    auto* const list = new QListView(this);
    list->setAccessibleName(tr("Values of the column"));
    new CheckListBinder(form.lstAutoFilter, *list, boundary);
    QPushButton* const ok = WidgetFor(form.cmdOk);
    QPushButton* const cancel = WidgetFor(form.cmdCancel);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(all);
    column->addWidget(list);
    column->addLayout(Row({}, {ok, cancel}));

    SetButtons(ok, cancel);
    list->setFocus();
    resize(fontMetrics().averageCharWidth() * 42, fontMetrics().height() * 24);
}

}  // namespace kd
