#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "platform/Controls.h"
#include "platform/EventBoundary.h"

namespace kd {

/// The program's name in the captions of its windows, and in the titles of boxes that ask or warn the user.
inline constexpr std::string_view WindowTitle = "KD LimitDesk";
/// The same in one word: the default title of a message box, and the name in the About box.
inline constexpr std::string_view DefaultTitle = "KDLimitDesk";

enum class BoxIcon : std::uint8_t { None, Information, Exclamation, Critical, Question };
enum class BoxButtons : std::uint8_t { Ok, YesNo };
/// Closing a question box by its frame answers No.
enum class BoxAnswer : std::uint8_t { Ok, Yes, No };
enum class Pointer : std::uint8_t { Default, Hourglass };

/// The left top corner of a window, in pixels of the screen.
struct Place {
    std::int32_t left = 0;
    std::int32_t top = 0;

    bool operator==(const Place&) const = default;
};

/// Where the frame of a window stands, and how large the window is inside it.
struct WindowGeometry {
    Place corner;
    std::int32_t width = 0;
    std::int32_t height = 0;

    bool operator==(const WindowGeometry&) const = default;
};

/// A window of the program as plain state. Its widget shows the state and calls the handlers.
class Form {
public:
    explicit Form(Text name) : m_name(std::move(name)) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    /// Name of the form, which is also the window's object name.
    const Text& Name() const noexcept { return m_name; }
    const Text& Caption() const noexcept { return m_caption; }
    void SetCaption(Text caption) {
        m_caption = std::move(caption);
        if (OnChanged) {
            OnChanged();
        }
    }

    /// Where the window opens; nothing for the middle of the screen.
    const std::optional<Place>& OwnPlace() const noexcept { return m_place; }
    void SetOwnPlace(Place place) {
        m_place = place;
        m_lastGeometry.reset();
    }

    /// Name of the control that had the keyboard when the form was last hidden; kept by the screen, so that a
    /// form that is shown again begins there.
    const Text& FocusedControl() const noexcept { return m_focusedControl; }
    void SetFocusedControl(Text name) { m_focusedControl = std::move(name); }
    /// Where the window stood when the form was last hidden; kept by the screen in the same way.
    const std::optional<WindowGeometry>& LastGeometry() const noexcept { return m_lastGeometry; }
    void SetLastGeometry(WindowGeometry geometry) { m_lastGeometry = geometry; }
    /// Unloads a hidden form: shown again, it would begin as for the first time. A command ends with it also
    /// where the form dies next, so that every road of a dialog ends alike, whoever keeps the form.
    virtual void Destroy() {
        m_focusedControl.clear();
        m_lastGeometry.reset();
    }

    bool Shown() const noexcept { return m_shown; }
    /// Ends a modal showing; the form keeps its state.
    void Hide() {
        m_shown = false;
        if (OnHide) {
            OnHide();
        }
    }

    /// Runs when the user closes the window by its frame. The window then hides. Esc presses the form's
    /// cancel button; where no button is one, it does nothing.
    virtual void UserClose() { Hide(); }

    /// The screen's listeners.
    std::function<void()> OnChanged;
    std::function<void()> OnHide;

    /// For the toolkit alone, when it puts the form on the screen.
    void MarkShown() noexcept { m_shown = true; }

private:
    Text m_name;
    Text m_caption;
    std::optional<Place> m_place;
    Text m_focusedControl;
    std::optional<WindowGeometry> m_lastGeometry;
    bool m_shown = false;
};

/// The window toolkit: message boxes, modal forms, the message loop, the pointer.
class Toolkit {
public:
    Toolkit() = default;
    virtual ~Toolkit() = default;
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;

    /// Where all that the user does enters the logic.
    EventBoundary& Boundary() noexcept { return m_boundary; }

    /// Shows a box and waits for the answer. Plain text, CR LF between its lines.
    virtual BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                                 std::string_view title) = 0;
    /// A box with the OK button alone.
    void Say(std::string_view text, BoxIcon icon = BoxIcon::None, std::string_view title = DefaultTitle) {
        (void)MessageBox(text, icon, BoxButtons::Ok, title);  // an OK box has one answer only
    }

    /// Shows a form modally, centred on the screen unless the form has a place of its own, and comes back
    /// when it is hidden.
    virtual void ShowModal(Form& form) = 0;
    /// Puts the main form on the screen and comes back at once.
    virtual void ShowModeless(Form& form) = 0;
    /// Shows a pop-up menu at the pointer; runs the chosen entry's handler before it comes back.
    virtual void ShowPopupMenu(MenuItem& menu) = 0;

    /// One pass of the message loop: repaints and keeps the window alive; the user's mouse and keyboard
    /// input, and a request to close, wait until the job ends.
    virtual void ProcessEvents() = 0;
    /// The pass that a long job gives for each unit of its work. A screen may leave one out that comes right
    /// behind another: it cannot show more pictures than that.
    virtual void ProcessEventsInJob() { ProcessEvents(); }
    /// Asked for in the middle of a unit of work, as often as one likes: a screen gives a pass only when the
    /// last one was so long ago that the desktop might take the window for a dead one.
    virtual void KeepAlive() {}

    virtual Pointer MousePointer() const = 0;
    virtual void SetMousePointer(Pointer pointer) = 0;

private:
    EventBoundary m_boundary{[this](const std::function<void()>& putBack, const Text& words) {
        SetMousePointer(Pointer::Default);
        if (putBack) {
            putBack();
        }
        Say(words, BoxIcon::Critical);
    }};
};

}  // namespace kd
