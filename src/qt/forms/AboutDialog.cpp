#include "qt/forms/AboutDialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"

namespace kd {

namespace {

constexpr int PictureSize = 64;

}  // namespace

AboutDialog::AboutDialog(frmAbout& form, EventBoundary& boundary, QWidget* parent)
    : FormDialog(form, boundary, parent) {
    const auto link = [&](Label& control) {
        auto* const label = new LinkWidget(this);
        new LabelBinder(control, *label, boundary, true);
        return label;
    };
    QLabel* const image = WidgetFor(form.Image1);
    QLabel* const title = WidgetFor(form.lblAppTitle);
    QLabel* const version = WidgetFor(form.lblVersion);
    QLabel* const company = WidgetFor(form.lblCompanyInfo);
    LinkWidget* const website = link(form.lblWebsite);
    LinkWidget* const email = link(form.lblEmail);
    QPushButton* const ok = WidgetFor(form.cmdOk);
    image->setPixmap(QApplication::windowIcon().pixmap(QSize(PictureSize, PictureSize), devicePixelRatioF()));
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    title->setFont(large);

    auto* const texts = new QVBoxLayout;
    for (QLabel* const label : std::initializer_list<QLabel*>{title, version, company, website, email}) {
        texts->addWidget(label, 0, Qt::AlignLeft);
    }
    texts->addStretch();
    auto* const row = new QHBoxLayout;
    row->addWidget(image, 0, Qt::AlignTop);
    row->addSpacing(fontMetrics().height());
    row->addLayout(texts, 1);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(row);
    column->addLayout(Row({}, {ok}));

    SetButtons(ok, ok);
    ok->setFocus();
    setSizeGripEnabled(false);
}

}  // namespace kd
