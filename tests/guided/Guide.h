#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <string>
#include <utility>

#include "qt/Application.h"
#include "qt/grid/GridWidget.h"

namespace kd {

/// Does what a user does to the running program, step by step, by simulated mouse and keyboard. A step waits
/// until its condition holds, which the message loop brings about; a step that waits in vain ends the run as
/// failed.
class Guide {
public:
    /// Pictures of the screen go to `pictures`; none are taken when it is empty. `tell` hears of each step.
    Guide(Application& program, QString pictures, std::function<void(const std::string&)> tell);

    /// Pictures are taken by this program, which is given the path behind these words, where the toolkit may
    /// not look at the screen itself.
    void TakePicturesWith(QStringList camera) { m_camera = std::move(camera); }

    /// From here on a window that stands elsewhere than it should fails the run: for desktops that put
    /// windows where they ask to be.
    void JudgePlaces() { m_judgesPlaces = true; }
    bool JudgesPlaces() const { return m_judgesPlaces; }

    /// Adds a step.
    void Then(std::string title, std::function<bool()> ready, std::function<void()> act);

    // --- steps of a user
    // ------------------------------------------------------------------------------------

    /// A modal form comes up; `act` does what the user does in it.
    void Form(const char* name, const char* picture, std::function<void(QWidget&)> act);
    /// A message box comes up; it begins with `text`; its button is pressed.
    void Box(const std::string& text, const char* picture, const char* button = "OK");
    /// The current cell becomes that of the row and column number; the text is typed and ended with Enter.
    void TypeInto(std::function<std::int32_t()> row, std::int32_t column, std::string text);
    /// An entry of a menu of the menu bar is chosen by the mouse.
    void Choose(const char* menu, const char* entry, const char* picture = nullptr);
    /// A condition that must hold now.
    void Check(std::string what, std::function<bool()> holds);
    void Picture(const char* name);
    /// The window asks this when it is closed at the end, and is answered with Yes.
    void ExpectQuestionAtClosing(std::string text);

    /// Starts the program, does all steps and closes the window. Whether all went well.
    bool Run();

    // --- for steps
    // ------------------------------------------------------------------------------------------

    /// The main window's grid.
    GridWidget& Grid() const;
    /// The modal window on top, if it has that name and is there to be used.
    static QWidget* Modal(const char* name);
    static void Press(QWidget& window, const char* control);
    /// Keys go to whatever has the keyboard.
    void Keys(const std::string& text) const;
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void ClickCell(std::int32_t row, std::int32_t screenCol, Qt::MouseButton button = Qt::LeftButton) const;
    /// Presses the header of a column.
    void PressHeader(std::int32_t screenCol) const;
    /// Drags the divider at the right of a column's header by that many pixels.
    void DragDivider(std::int32_t screenCol, int by) const;
    void DoubleClickDivider(std::int32_t screenCol) const;
    /// Clicks the entry of a list that has this text.
    void ClickEntry(QWidget& window, const char* list, const std::string& text);
    /// Whether the main window waits for the user, with no modal window or menu open.
    bool IsIdle() const;
    /// The picture says where the active window stands in it, so that the window can be cut out.
    void SavePicture(const char* name);
    void Fail(const std::string& why);

private:
    struct OneStep {
        std::string title;
        std::function<bool()> ready;
        std::function<void()> act;
    };

    void Tick();
    void KeepActive() const;
    /// In the viewport, with the column in sight.
    QPoint DividerOf(std::int32_t screenCol) const;
    QWidget* Focused() const;
    /// The whole screen, once nothing on it moves.
    QImage ScreenAtRest();

    Application& m_program;
    QString m_pictures;
    QStringList m_camera;
    bool m_judgesPlaces = false;
    std::function<void(const std::string&)> m_tell;
    std::deque<OneStep> m_steps;
    QTimer m_timer;
    QTimer m_patience;
    int m_settled = 0;      // ticks on end for which the next step's condition has held
    bool m_begins = false;  // a step is queued and has not begun
    // Steps under way: a command gives the message loop its turn while it works, and the next step must not
    // run then, unless it is the answer to a window that the command has opened.
    int m_acting = 0;
    std::string m_closingQuestion;
    bool m_failed = false;
};

}  // namespace kd
