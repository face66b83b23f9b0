#include "qt/forms/FillDialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A frame with the group's options in one column from its top on.
QGroupBox* FrameOf(OptionGroup& group, const Label& frame, EventBoundary& boundary, QWidget* parent) {
    auto* const box = new QGroupBox(parent);
    box->setObjectName(ToQt(frame.Name()));
    auto* const holder = new QWidget(box);
    auto* const column = new QVBoxLayout(holder);
    column->setContentsMargins({});
    std::vector<QRadioButton*> options;
    for (std::size_t member = 0; member < group.Captions().size(); ++member) {
        options.push_back(new QRadioButton(holder));
        column->addWidget(options.back());
    }
    column->addStretch();
    (new QVBoxLayout(box))->addWidget(holder);
    new OptionGroupBinder(group, *holder, std::move(options), boundary);
    box->setEnabled(frame.Enabled());  // the frame is switched off as a whole
    return box;
}

}  // namespace

FillDialog::FillDialog(frmFill& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    QRadioButton* const constant = WidgetFor(form.optFillConstant, QLatin1Char('U'));
    QLineEdit* const text = WidgetFor(form.txtConstant, tr("Constant value"));
    QRadioButton* const calculation = WidgetFor(form.optFillLimit, QLatin1Char('c'));
    QLabel* const target = WidgetFor(form.lblLimit);
    QGroupBox* const limitFrame = FrameOf(form.optLimits, form.fraLimits, boundary, this);
    QGroupBox* const operationFrame = FrameOf(form.optPlusMinus, form.fraPlusMinus, boundary, this);
    QLineEdit* const value = WidgetFor(form.txtLimitValue, tr("Value of the calculation"));
    QPushButton* const ok = WidgetFor(form.cmdOk);
    QPushButton* const cancel = WidgetFor(form.cmdCancel);
    limitFrame->setAccessibleName(tr("Limit to calculate from"));
    operationFrame->setAccessibleName(tr("Calculation"));

    auto* const grid = new QGridLayout;
    grid->addWidget(constant, 0, 0);
    grid->addWidget(text, 0, 1, 1, 3);
    grid->addWidget(calculation, 1, 0, 1, 4);
    grid->addWidget(target, 2, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(limitFrame, 2, 1);
    grid->addWidget(operationFrame, 2, 2);
    grid->addWidget(value, 2, 3, Qt::AlignVCenter);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addStretch();
    column->addLayout(Row({}, {ok, cancel}));

    SetButtons(ok, cancel);
    text->setFocus();
    value->setMinimumWidth(fontMetrics().averageCharWidth() * 14);
    resize(sizeHint().expandedTo(QSize(fontMetrics().averageCharWidth() * 76, 0)));
}

}  // namespace kd
