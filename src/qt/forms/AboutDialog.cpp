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
    auto* const image = new QLabel(this);
    auto* const title = new QLabel(this);
    auto* const version = new QLabel(this);
    auto* const company = new QLabel(this);
    auto* const website = new LinkWidget(this);
    auto* const email = new LinkWidget(this);
    auto* const ok = new QPushButton(this);
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
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    auto* const column = new QVBoxLayout(this);
    column->addLayout(row, 1);
    column->addLayout(buttons);

    new LabelBinder(form.Image1, *image, boundary);
    new LabelBinder(form.lblAppTitle, *title, boundary);
    new LabelBinder(form.lblVersion, *version, boundary);
    new LabelBinder(form.lblCompanyInfo, *company, boundary);
    new LabelBinder(form.lblWebsite, *website, boundary, true);
    new LabelBinder(form.lblEmail, *email, boundary, true);
    new ButtonBinder(form.cmdOk, *ok, boundary);
    image->setPixmap(QApplication::windowIcon().pixmap(QSize(PictureSize, PictureSize), devicePixelRatioF()));

    TabThrough({website, email, ok});
    SetButtons(ok, ok);
    ok->setFocus();
    setSizeGripEnabled(false);
}

}  // namespace kd
