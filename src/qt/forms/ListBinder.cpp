#include "qt/forms/ListBinder.h"

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>

#include "base/Scope.h"
#include "qt/grid/TextWidths.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

constexpr int RowSpace = 4;  // between the marks of two entries

/// All entries are as wide as the widest one, so that the list can be scrolled to the end of each. The view
/// asks for one size and takes it for all.
class EvenDelegate : public QStyledItemDelegate {
public:
    EvenDelegate(ListBox& control, QListView& view)
        : QStyledItemDelegate(&view), m_control(control), m_view(view) {}

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        TextWidths widths;
        widths.SetFont(option.font, m_view.viewport());
        double widest = 0;
        for (const ListBox::Entry& entry : m_control.Entries()) {
            if (widths.AtMost(entry.text) > widest) {
                widest = std::max(widest, widths.Exact(entry.text));
            }
        }
        const QSize own = QStyledItemDelegate::sizeHint(option, index);
        const double around = own.width() - widths.Exact(FromQt(index.data().toString()));
        return {std::max(own.width(), static_cast<int>(std::ceil(widest + around))), own.height() + RowSpace};
    }

private:
    ListBox& m_control;
    QListView& m_view;
};

void SetUp(QListView& view, ListModel& model) {
    view.setUniformItemSizes(true);
    view.setTextElideMode(Qt::ElideNone);
    view.setModel(&model);
}

std::vector<std::int32_t> Rows(const QItemSelection& selection) {
    std::vector<std::int32_t> rows;
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(row);
        }
    }
    return rows;
}

/// Turns a tick over by a click anywhere on the entry.
class TickDelegate : public EvenDelegate {
public:
    TickDelegate(ListBox& control, QListView& view, EventBoundary& boundary)
        : EvenDelegate(control, view), m_control(control), m_boundary(boundary) {}

    bool editorEvent(QEvent* event, QAbstractItemModel* /*model*/, const QStyleOptionViewItem& /*option*/,
                     const QModelIndex& index) override {
        bool turn = false;
        if (event->type() == QEvent::MouseButtonRelease) {
            turn = static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
        } else if (event->type() == QEvent::KeyPress) {
            turn = static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
        }
        if (!turn) {
            return false;
        }
        const std::int32_t row = index.row();
        m_boundary.Run([&] { m_control.UserSelect(row, !m_control.Selected(row)); });
        return true;
    }

private:
    ListBox& m_control;
    EventBoundary& m_boundary;
};

}  // namespace

// --- model ------------------------------------------------------------------------------------------------

ListModel::ListModel(ListBox& control, bool checkable, QObject* parent)
    : QAbstractListModel(parent), m_control(control), m_checkable(checkable), m_count(control.Count()) {}

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_count;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_control.Count()) {
        return {};
    }
    const ListBox::Entry& entry = m_control.Entries()[static_cast<std::size_t>(index.row())];
    if (role == Qt::DisplayRole) {
        return ToQt(entry.text);
    }
    if (role == Qt::CheckStateRole && m_checkable) {
        return entry.selected ? Qt::Checked : Qt::Unchecked;
    }
    return {};
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractListModel::flags(index);
    return m_checkable ? flags | Qt::ItemIsUserCheckable : flags;
}

void ListModel::Refresh() {
    if (m_count != m_control.Count()) {
        beginResetModel();
        m_count = m_control.Count();
        endResetModel();
    } else if (m_count > 0) {
        emit dataChanged(index(0), index(m_count - 1));
    }
}

// --- selection --------------------------------------------------------------------------------------------

ListBinder::ListBinder(ListBox& control, QListView& widget, EventBoundary& boundary)
    : ControlBinder(control, widget, boundary),
      m_list(control),
      m_view(widget),
      m_model(new ListModel(control, false, this)) {
    m_view.setSelectionMode(QAbstractItemView::MultiSelection);
    SetUp(m_view, *m_model);
    m_view.setItemDelegate(new EvenDelegate(control, m_view));
    connect(m_view.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected, const QItemSelection& deselected) {
                if (!m_showing) {
                    TakeSelection(selected, deselected);
                }
            });
    connect(m_view.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (!m_showing) {
                    m_list.SetListIndex(current.row());
                }
            });
    Show();
}

void ListBinder::TakeSelection(const QItemSelection& selected, const QItemSelection& deselected) {
    // The indexes are taken first: a handler may change the list.
    const std::vector<std::int32_t> on = Rows(selected);
    const std::vector<std::int32_t> off = Rows(deselected);
    {
        m_showing = true;  // the view shows this change already
        const Scope shown([this] { m_showing = false; });
        Boundary().Run([&] {
            if (!off.empty()) {
                m_list.UserSelect(off, false);
            }
            if (!on.empty()) {
                m_list.UserSelect(on, true);
            }
        });
    }
    Show();
}

void ListBinder::Show() {
    if (m_showing) {
        return;
    }
    m_showing = true;
    const Scope shown([this] { m_showing = false; });
    ControlBinder::Show();
    m_model->Refresh();
    QItemSelection selection;
    const std::int32_t count = m_list.Count();
    for (std::int32_t first = 0; first < count; ++first) {
        if (m_list.Selected(first)) {
            std::int32_t last = first;
            while (last + 1 < count && m_list.Selected(last + 1)) {
                ++last;
            }
            selection.append(QItemSelectionRange(m_model->index(first), m_model->index(last)));
            first = last;
        }
    }
    m_view.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    ShowCurrent();
}

void ListBinder::ShowCurrent() {
    m_view.selectionModel()->setCurrentIndex(m_model->index(m_list.ListIndex()),
                                             QItemSelectionModel::NoUpdate);
}

// --- ticks ------------------------------------------------------------------------------------------------

CheckListBinder::CheckListBinder(ListBox& control, QListView& widget, EventBoundary& boundary)
    : ControlBinder(control, widget, boundary),
      m_list(control),
      m_view(widget),
      m_model(new ListModel(control, true, this)) {
    SetUp(m_view, *m_model);
    m_view.setItemDelegate(new TickDelegate(control, m_view, boundary));
    connect(m_view.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { m_list.SetListIndex(current.row()); });
    Show();
}

void CheckListBinder::Show() {
    ControlBinder::Show();
    m_model->Refresh();
    // Told also where there is none: the view would else make its first entry the current one as soon as it
    // gets the keyboard, and the first Space would turn that over.
    m_view.setCurrentIndex(m_model->index(m_list.ListIndex()));
}

bool CheckListBinder::eventFilter(QObject* watched, QEvent* event) {
    // Without a current entry the view takes End for the way to the first one.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_End) {
        m_view.setCurrentIndex(m_model->index(m_list.Count() - 1));
    }
    return ControlBinder::eventFilter(watched, event);
}

}  // namespace kd
