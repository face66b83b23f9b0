#include "qt/forms/ReplaceDialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"

namespace kd {

ReplaceDialog::ReplaceDialog(frmReplace& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    auto* const columnLabel = new QLabel(this);
    auto* const columnName = new QLabel(this);
    auto* const findLabel = new QLabel(this);
    auto* const find = new QLineEdit(this);
    auto* const replaceLabel = new QLabel(this);
    auto* const replace = new QLineEdit(this);
    auto* const matchCase = new CheckBoxWidget(this);
    auto* const doReplace = new QPushButton(this);
    auto* const cancel = new QPushButton(this);
    find->setAccessibleName(tr("Text to find"));
    replace->setAccessibleName(tr("Text to put in its place"));

    auto* const grid = new QGridLayout;
    grid->addWidget(columnLabel, 0, 0);
    grid->addWidget(columnName, 0, 1);
    grid->addWidget(findLabel, 1, 0);
    grid->addWidget(find, 1, 1);
    grid->addWidget(replaceLabel, 2, 0);
    grid->addWidget(replace, 2, 1);
    grid->addWidget(matchCase, 3, 1);
    grid->setColumnStretch(1, 1);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(doReplace);
    buttons->addWidget(cancel);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addStretch();
    column->addLayout(buttons);

    new LabelBinder(form.Label1, *columnLabel, boundary);
    new LabelBinder(form.lblColumn, *columnName, boundary);
    new LabelBinder(form.lblFind, *findLabel, boundary);
    new TextBoxBinder(form.txtFind, *find, boundary);
    new LabelBinder(form.LblReplace, *replaceLabel, boundary);
    new TextBoxBinder(form.txtReplace, *replace, boundary);
    new CheckBoxBinder(form.chkMatchCase, *matchCase, boundary, QLatin1Char('M'));
    new ButtonBinder(form.cmdReplace, *doReplace, boundary, QLatin1Char('R'));
    new ButtonBinder(form.cmdCancel, *cancel, boundary);

    TabThrough({find, replace, matchCase, doReplace, cancel});
    SetButtons(doReplace, nullptr);
    find->setFocus();
    resize(sizeHint().expandedTo(QSize(fontMetrics().averageCharWidth() * 56, 0)));
}

}  // namespace kd
