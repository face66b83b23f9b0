#include "qt/services/MenuBinder.h"

#include "qt/services/QtText.h"

namespace kd {

ActionBinder::ActionBinder(MenuItem& item, QAction& action)
    : QObject(&action), m_item(item), m_action(action) {
    m_action.setObjectName(ToQt(item.Name()));
    m_action.setMenuRole(QAction::NoRole);
    m_item.OnChanged = [this] { Show(); };
    // A checkable action turns its mark over by itself.
    connect(&m_action, &QAction::triggered, this, [this] { Show(); });
    Show();
}

ActionBinder::~ActionBinder() {
    m_item.OnChanged = nullptr;
}

void ActionBinder::Show() {
    m_action.setText(CaptionWithMnemonic(m_item.Caption(), QLatin1Char(m_item.AccessLetter())));
    m_action.setEnabled(m_item.Enabled());
    m_action.setVisible(m_item.Visible());
    m_action.setCheckable(m_item.Checkable());
    m_action.setChecked(m_item.Checked());
}

QAction* AddAction(MenuItem& item, QMenu& menu) {
    auto* const action = new QAction(&menu);
    new ActionBinder(item, *action);
    menu.addAction(action);
    return action;
}

void FillMenu(MenuItem& item, QMenu& menu, const MenuChoice& choose) {
    new ActionBinder(item, *menu.menuAction());
    menu.setObjectName(ToQt(item.Name()));
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&item, choose] { choose(item); });
    for (MenuItem* const entry : item.Entries()) {
        if (entry == nullptr) {
            menu.addSeparator();
        } else if (entry->Entries().empty()) {
            const QAction* const action = AddAction(*entry, menu);
            QObject::connect(action, &QAction::triggered, action, [entry, choose] { choose(*entry); });
        } else {
            FillMenu(*entry, *menu.addMenu(QString()), choose);
        }
    }
}

}  // namespace kd
