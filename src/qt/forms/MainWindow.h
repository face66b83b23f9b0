#pragma once

#include <QMainWindow>

#include "lifecycle/frmKDLimitDesk.h"
#include "qt/forms/Room.h"
#include "qt/services/QtToolkit.h"

class QProgressBar;

namespace kd {

class GridWidget;

/// The window of frmKDLimitDesk.
class MainWindow : public QMainWindow {
public:
    MainWindow(frmKDLimitDesk& form, QtToolkit& toolkit);
    ~MainWindow() override;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

protected:
    /// Asks the form. A request that comes in the middle of a job is asked when the job is over.
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// Of the screen where the window belongs.
    virtual Room OwnRoom() const;

private:
    void BuildMenuBar();
    void BuildStatusBar();
    void ShowForm();
    /// Size and place of the window that is not maximised; to be called before it is shown.
    void PlaceRestored(const Room& room);
    void LayOut();
    void AskWaitingClose();

    frmKDLimitDesk& m_form;
    QtToolkit& m_toolkit;
    GridWidget* m_grid = nullptr;
    QProgressBar* m_progress = nullptr;
    bool m_closeWaits = false;  // for the end of a job
};

}  // namespace kd
