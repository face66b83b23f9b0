#pragma once

#include <QAbstractListModel>
#include <QListView>

#include "qt/forms/Binders.h"

namespace kd {

/// The entries of a list control as a model that reads them where they are: nothing is copied, so that a list
/// at the system's limit opens at once.
class ListModel : public QAbstractListModel {
public:
    /// `checkable` for a list whose entries are ticked instead of selected.
    ListModel(ListBox& control, bool checkable, QObject* parent);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// The control's entries changed.
    void Refresh();

private:
    ListBox& m_control;
    bool m_checkable;
    int m_count;
};

/// A list of which any number of entries can be selected: a click or Space turns an entry over and leaves the
/// others alone, Ctrl+A selects all.
class ListBinder : public ControlBinder {
public:
    ListBinder(ListBox& control, QListView& widget, EventBoundary& boundary);

protected:
    void Show() override;

private:
    void TakeSelection(const QItemSelection& selected, const QItemSelection& deselected);
    void ShowCurrent();

    ListBox& m_list;
    QListView& m_view;
    ListModel* m_model;
    bool m_showing = false;
};

/// A list whose entries bear a tick: a click anywhere on an entry or Space turns it over. No entry is current
/// until the user or the form makes one so.
class CheckListBinder : public ControlBinder {
public:
    CheckListBinder(ListBox& control, QListView& widget, EventBoundary& boundary);

protected:
    void Show() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ListBox& m_list;
    QListView& m_view;
    ListModel* m_model;
};

}  // namespace kd
