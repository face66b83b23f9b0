#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "edit/EditMemory.h"
#include "grid/Desk.h"
#include "help/frmAbout.h"
#include "platform/Toolkit.h"

namespace kd {

/// Where something stands in a window, in pixels.
struct Area {
    std::int32_t left;
    std::int32_t top;
    std::int32_t width;
    std::int32_t height;

    bool operator==(const Area&) const = default;
};

class GridEvents;

/// The main window: wiring. It owns the controls, joins events and menu entries to the commands in their
/// folders, and holds the order of start, load and end. Everything that comes from the user passes the event
/// boundary.
class frmKDLimitDesk : public Form {
public:
    explicit frmKDLimitDesk(Globals& g);
    ~frmKDLimitDesk() override;

    /// The start of the program. False when the program must end at once, without a word.
    /// `window` is the handle of the form's window.
    [[nodiscard]] bool Form_Load(std::uintptr_t window);
    /// The user wants to close the window: whether it may close. An open cell editor is left first: a text
    /// that may stand is taken, a refused one told and given up.
    [[nodiscard]] bool Form_QueryUnload();
    /// Lays out progress bar and grid; `inner` is the window's inner area below the menu bar, `gridTop` the
    /// grid's top in it, `pixel` the size of a pixel in the form's units.
    struct Layout {
        Area progressBar;
        Area grid;
    };
    static Layout Form_Resize(const Area& inner, std::int32_t gridTop, std::int32_t statusBarHeight,
                              std::int32_t progressBarHeight, std::int32_t pixel = 1);

    /// Rebuilds everything from the files.
    void LoadAndShowApplications();

    /// Position that centres a window of that size on the screen.
    static Area Centred(std::int32_t screenWidth, std::int32_t screenHeight, std::int32_t width,
                        std::int32_t height);
    bool Maximised() const noexcept { return m_maximised; }

    Desk& Controls() noexcept { return m_desk; }
    /// The menu bar's menus, in order.
    const std::vector<MenuItem*>& MenuBar() const noexcept { return m_menuBar; }

    /// Closes the window: set by the screen; runs the query like any other way of closing.
    std::function<void()> Unload;
    /// Where the grid stands: the window's left top corner on the screen, frame and all, plus the grid's
    /// place in the window's inner area. Set by the screen.
    std::function<Place()> GridPlace;

private:
    void SetUpMenus();
    void WireMenus();
    void WireEditCommands();
    void WireGrid();
    /// The handler behind the event boundary.
    std::function<void()> Bounded(std::function<void()> handler);
    bool RunStart(std::uintptr_t window);
    void mnuFile_Click();
    void FindSettings();
    void KeepSettings();
    void mnuApplications_Click();

    Globals& m_g;
    Desk m_desk;
    std::unique_ptr<GridEvents> m_gridEvents;
    frmAbout m_about;
    EditMemory m_editMemory;
    std::vector<MenuItem*> m_menuBar;
    bool m_maximised = false;
    bool m_settingsKnown = true;  // what stands at gSettingsPath was read or written by this run
};

}  // namespace kd
