#include "qt/forms/ReplaceDialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kd {

ReplaceDialog::ReplaceDialog(frmReplace& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    QLabel* const columnLabel = WidgetFor(form.Label1);
    QLabel* const columnName = WidgetFor(form.lblColumn);
    QLabel* const findLabel = WidgetFor(form.lblFind);
    QLineEdit* const find = WidgetFor(form.txtFind, tr("Text to find"));
    QLabel* const replaceLabel = WidgetFor(form.LblReplace);
    QLineEdit* const replace = WidgetFor(form.txtReplace, tr("Text to put in its place"));
    QCheckBox* const matchCase = WidgetFor(form.chkMatchCase, QLatin1Char('M'));
    QPushButton* const doReplace = WidgetFor(form.cmdReplace, QLatin1Char('R'));
    QPushButton* const cancel = WidgetFor(form.cmdCancel);

    auto* const grid = new QGridLayout;
    grid->addWidget(columnLabel, 0, 0);
    grid->addWidget(columnName, 0, 1);
    grid->addWidget(findLabel, 1, 0);
    grid->addWidget(find, 1, 1);
    grid->addWidget(replaceLabel, 2, 0);
    grid->addWidget(replace, 2, 1);
    grid->addWidget(matchCase, 3, 1);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addStretch();
    column->addLayout(Row({}, {doReplace, cancel}));

    SetButtons(doReplace, nullptr);
    resize(sizeHint().expandedTo(QSize(fontMetrics().averageCharWidth() * 56, 0)));
}

}  // namespace kd
