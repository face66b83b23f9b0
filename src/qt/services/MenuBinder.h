#pragma once

#include <QAction>
#include <QMenu>

#include "platform/Controls.h"

namespace kd {

/// Joins a menu entry with an action: caption, enabled, visible, check mark; choosing it is its click, which
/// the main form has put behind the event boundary.
class ActionBinder : public QObject {
public:
    /// With `clicks` false the choice is left to whoever shows the menu.
    ActionBinder(MenuItem& item, QAction& action, bool clicks = true);
    ~ActionBinder() override;
    ActionBinder(const ActionBinder&) = delete;
    ActionBinder& operator=(const ActionBinder&) = delete;

private:
    void Show();

    MenuItem& m_item;
    QAction& m_action;
};

/// Fills a menu from its item, menus within it too. Opening it runs the item's click first, so that the
/// entries are right when they are seen.
void FillMenu(MenuItem& item, QMenu& menu);

/// The action that stands for an entry, for a menu whose choice is looked at when it is over.
QAction* AddAction(MenuItem& item, QMenu& menu, bool clicks);

}  // namespace kd
