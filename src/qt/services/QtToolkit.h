#pragma once

#include <QDialog>
#include <QMargins>
#include <chrono>
#include <functional>
#include <memory>
#include <typeindex>
#include <unordered_map>

#include "platform/Toolkit.h"

namespace kd {

/// The window toolkit over Qt's widgets.
class QtToolkit : public Toolkit {
public:
    QtToolkit();
    ~QtToolkit() override;

    /// Makes the window of a form; `parent` may be null.
    using DialogMaker = std::function<std::unique_ptr<QDialog>(Form&, EventBoundary&, QWidget* parent)>;
    /// Which dialog shows a form of type F.
    template <typename F, typename D>
    void Register() {
        m_makers[std::type_index(typeid(F))] = [](Form& form, EventBoundary& boundary, QWidget* parent) {
            return std::unique_ptr<QDialog>(std::make_unique<D>(dynamic_cast<F&>(form), boundary, parent));
        };
    }

    /// The main form's window, how it comes on the screen, and where a pop-up menu belongs in screen
    /// coordinates. All null when the window goes; pop-up menus then open at the pointer.
    void SetMainWindow(QWidget* window, std::function<void()> show, std::function<QPoint()> menuPlace);

    /// Runs whenever a pass of the message loop, a box, a dialog or a menu has come to its end. What waits
    /// for the end of a job asks here for its next turn.
    std::function<void()> Paused;

    /// Whether the message loop is being given a pass in the middle of a job.
    bool InPass() const noexcept { return m_passes > 0; }

    /// What the desktop has put around the last modal form; null before there was one.
    const QMargins& KnownFrame() const noexcept { return m_frame; }

    BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                         std::string_view title) override;
    void ShowModal(Form& form) override;
    void ShowModeless(Form& form) override;
    void ShowPopupMenu(MenuItem& menu) override;
    void ProcessEvents() override;
    void ProcessEventsInJob() override;
    void KeepAlive() override;
    Pointer MousePointer() const override { return m_pointer; }
    void SetMousePointer(Pointer pointer) override;

private:
    class PointerAside;
    QWidget* Owner() const;
    QSize ScreenSize() const;
    void TellPaused();
    void ShowPointer(bool hourglass);

    std::unordered_map<std::type_index, DialogMaker> m_makers;
    QWidget* m_window = nullptr;
    std::function<void()> m_showWindow;
    std::function<QPoint()> m_menuPlace;
    Pointer m_pointer = Pointer::Default;
    bool m_hourglassShown = false;
    int m_passes = 0;
    QMargins m_frame;
    std::chrono::steady_clock::time_point m_lastPass;
};

}  // namespace kd
