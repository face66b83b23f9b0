#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <string>

#include "qt/Application.h"
#include "qt/grid/GridWidget.h"
#include "walk/WalkWatch.h"

class QMenu;
class QWindow;

namespace kd {

/// Clicks, types and closes at random on whatever window of the program is on top, one event at a time, and
/// looks between the events whether everything is in order. The same seed walks the same way, as far as the
/// clock lets it: how often a job gives the message loop a pass depends on the machine.
class Walker : public QObject {
    Q_OBJECT
public:
    using Counts = std::map<std::string, int>;

    /// `folder` holds the program's files; `fail` hears of what is not in order.
    Walker(std::uint32_t seed, QString folder, std::function<void(const std::string&)> fail);
    ~Walker() override;

    /// Walks through one run of the program, until that ends or `events` have been sent. Returns how many.
    int Walk(Application& program, int events);

    /// How often what was reached.
    const Counts& Reached() const noexcept { return m_counts; }
    const WalkWatch& Watch() const noexcept { return m_watch; }

public slots:
    /// What the desktop would open.
    void Opened(const QUrl& address);

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(limit)); }
    bool OneIn(int count) { return Below(count) == 0; }
    void CountCommands();
    void Tick();
    void Act();
    void ActInJob();
    void Send();
    void ComeThrough();
    void Notice(QWidget* modal, QWidget* popup);
    void ActOnPopup(QWidget& popup);
    void ActOnMenu(QMenu& menu);
    void ActOnFileDialog(QWidget& dialog);
    void ActOnDialog(QWidget& dialog);
    void ChooseOneValue(QWidget& dialog);
    void ActOnWindow();
    void ActOnGrid();
    void ClickSomewhere(QWidget& widget);
    void ClickAHeader();
    void DragADivider();
    void PressSomeKey();
    void TypeSomething();
    QString SomethingToType();
    void Finish();
    void Did(std::string what);
    void Fail(const std::string& what);
    GridWidget& Grid() const;
    bool IsFiltered() const;

    std::mt19937 m_random;
    QString m_folder;
    std::function<void(const std::string&)> m_fail;
    WalkWatch m_watch;
    Application* m_program = nullptr;
    QTimer m_timer;
    QPointer<QWidget> m_noticed;
    bool m_pending = false;
    bool m_loading = false;
    bool m_committing = false;
    int m_left = 0;
    int m_sent = 0;
    int m_total = 0;
    std::vector<std::function<void(QWindow&)>> m_waiting;  // what was done in the middle of a job
    Counts m_counts;
    std::deque<std::string> m_trail;  // what was done last
};

}  // namespace kd
