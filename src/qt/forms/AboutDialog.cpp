#include "qt/forms/AboutDialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/forms/Binders.h"
#include "qt/forms/Widgets.h"

namespace kd {

namespace {

constexpr int PictureSize = 64;

}  // namespace

AboutDialog::AboutDialog(frmAbout& form, EventEdge& edge, QWidget* parent) : FormDialog(form, edge, parent) {
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

    new LabelBinder(form.Image1, *image, edge);
    new LabelBinder(form.lblAppTitle, *title, edge);
    new LabelBinder(form.lblVersion, *version, edge);
    new LabelBinder(form.lblCompanyInfo, *company, edge);
    new LabelBinder(form.lblWebsite, *website, edge, true);
    new LabelBinder(form.lblEmail, *email, edge, true);
    new ButtonBinder(form.cmdOk, *ok, edge);
    image->setPixmap(QApplication::windowIcon().pixmap(QSize(PictureSize, PictureSize), devicePixelRatioF()));

    TabThrough({website, email, ok});
    SetButtons(ok, ok);
    ok->setFocus();
    setSizeGripEnabled(false);
}

}  // namespace kd
