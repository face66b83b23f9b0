#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fakes/FakeServices.h"
#include "model/Globals.h"
#include "platform/Platform.h"
#include "suite/StandaloneSuite.h"
#include "system/SystemFiles.h"
#include "system/SystemServices.h"

namespace kd::bench {

/// Nobody sits before it: a box or a dialog that is not foreseen is a failure, passes of the message loop do
/// nothing.
class SilentToolkit : public Toolkit {
public:
    /// What the user does in the next dialog, which is then hidden; empty again behind it.
    std::function<void(Form&)> user;
    /// The text of the next box; empty again behind it, and when no job has anything to say.
    std::string box;

    /// @throws std::runtime_error when the box has another text.
    BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                         std::string_view title) override;
    /// @throws std::runtime_error when there is no user.
    void ShowModal(Form& form) override;
    void ShowModeless(Form& /*form*/) override {}
    void ShowPopupMenu(MenuItem& /*menu*/) override {}
    void ProcessEvents() override {}
    Pointer MousePointer() const override { return m_pointer; }
    void SetMousePointer(Pointer pointer) override { m_pointer = pointer; }

private:
    Pointer m_pointer = Pointer::Default;
};

/// A clipboard of the program's own.
class OwnClipboard : public KDClipboard {
public:
    explicit OwnClipboard(Text& text) : m_text(text) {}
    Text GetText() override { return m_text; }
    void SetText(std::string_view text) override { m_text = text; }

private:
    Text& m_text;
};

/// The machine under the benchmark: the operating system's files and the standalone suite, with a locale that
/// is the same everywhere.
struct Machine {
    FakeLocale locale;
    SystemFiles files{locale.CodePage()};
    SilentToolkit toolkit;
    SystemClock clock;
    SystemEnvironment environment;
    FakeShell shell;
    FakeFileDialog fileDialog;
    Text clipboard;
    StandaloneSuite suite{{"", "", "", KD_SOURCE_DIR "/samples"},
                          files,
                          locale,
                          clock,
                          {[this] { return std::make_unique<OwnClipboard>(clipboard); }, {}}};
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
};

/// Paths of all files below a folder, in order; the templates among them.
std::vector<std::string> AllFiles(const std::string& folder);
std::vector<std::string> Templates(const std::vector<std::string>& files);

/// Variables of each file of the corpus.
inline constexpr std::int32_t VariablesPerFile = 18;
/// Files of each application of the corpus, its template among them, which follow one another in gFiles.
inline constexpr std::int32_t ViewsAnApplication = 6;

/// Gives every loaded variable a number's type, since a calculation needs a number in each row.
void MakeAllNumeric(Globals& g);

/// A figure counts only when what it measured has done its work.
/// @throws std::runtime_error with these words when `holds` is false.
void Expect(bool holds, const std::string& words);

}  // namespace kd::bench
