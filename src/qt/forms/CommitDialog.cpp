#include "qt/forms/CommitDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/ListBinder.h"

namespace kd {

CommitDialog::CommitDialog(frmCommit& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    QLabel* const label = WidgetFor(form.Label1);
    label->setWordWrap(true);
    auto* const list = new QListView(this);
    list->setAccessibleName(tr("Changed views"));
    new ListBinder(form.lstFiles, *list, boundary);
    QCheckBox* const all = WidgetFor(form.chkSelectAll, QLatin1Char('S'));
    QPushButton* const ok = WidgetFor(form.cmdOk);
    QPushButton* const cancel = WidgetFor(form.cmdCancel);

    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(list);
    column->addLayout(Row({all}, {ok, cancel}));

    SetButtons(ok, cancel);
    const int letter = fontMetrics().averageCharWidth();
    resize(letter * 100, fontMetrics().height() * 24);
}

}  // namespace kd
