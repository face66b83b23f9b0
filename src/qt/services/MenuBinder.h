#pragma once

#include <QAction>
#include <QMenu>
#include <functional>

#include "platform/Controls.h"

namespace kd {

/// Joins a menu entry with an action: caption, enabled, visible, check mark.
class ActionBinder : public QObject {
public:
    ActionBinder(MenuItem& item, QAction& action);
    ~ActionBinder() override;
    ActionBinder(const ActionBinder&) = delete;
    ActionBinder& operator=(const ActionBinder&) = delete;

private:
    void Show();

    MenuItem& m_item;
    QAction& m_action;
};

/// What is done with an entry that is chosen, and with a menu that opens.
using MenuChoice = std::function<void(MenuItem&)>;

/// Fills a menu from its item, menus within it too. Opening it is a choice of the menu's own item first, so
/// that the entries are right when they are seen.
void FillMenu(MenuItem& item, QMenu& menu, const MenuChoice& choose);

/// The action that stands for an entry, for a menu whose choice is looked at when it is over.
QAction* AddAction(MenuItem& item, QMenu& menu);

}  // namespace kd
