#include "qt/forms/CommitDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/ListBinder.h"
#include "qt/forms/Widgets.h"

namespace kd {

CommitDialog::CommitDialog(frmCommit& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    auto* const label = new QLabel(this);
    auto* const list = new QListView(this);
    auto* const all = new CheckBoxWidget(this);
    auto* const ok = new QPushButton(this);
    auto* const cancel = new QPushButton(this);
    list->setAccessibleName(tr("Changed views"));

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(all);
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(list, 1);
    column->addLayout(buttons);

    new LabelBinder(form.Label1, *label, boundary);
    new ListBinder(form.lstFiles, *list, boundary);
    new CheckBoxBinder(form.chkSelectAll, *all, boundary, QLatin1Char('S'));
    new ButtonBinder(form.cmdOk, *ok, boundary);
    new ButtonBinder(form.cmdCancel, *cancel, boundary);

    label->setWordWrap(true);
    TabThrough({list, all, ok, cancel});
    SetButtons(ok, cancel);
    list->setFocus();
    const int letter = fontMetrics().averageCharWidth();
    resize(letter * 100, fontMetrics().height() * 24);
}

}  // namespace kd
