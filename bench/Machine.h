#pragma once

#include <string>
#include <vector>

#include "fakes/FakeServices.h"
#include "model/Globals.h"
#include "platform/Platform.h"
#include "suite/StandaloneSuite.h"
#include "system/SystemFiles.h"
#include "system/SystemServices.h"

namespace kd::bench {

/// Nobody sits before it: a box is a failure, passes of the message loop do nothing.
class SilentToolkit : public Toolkit {
public:
    /// @throws std::runtime_error always: no job of the benchmark has anything to say.
    BoxAnswer MessageBox(std::string_view text, BoxIcon icon, BoxButtons buttons,
                         std::string_view title) override;
    void ShowModal(Form& form) override;
    void ShowModeless(Form& /*form*/) override {}
    void ShowPopupMenu(MenuItem& /*menu*/) override {}
    void ProcessEvents() override {}
    Pointer MousePointer() const override { return m_pointer; }
    void SetMousePointer(Pointer pointer) override { m_pointer = pointer; }
    std::int32_t ScreenWidth() const override { return 1920; }
    std::int32_t ScreenHeight() const override { return 1080; }

private:
    Pointer m_pointer = Pointer::Default;
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
    StandaloneSuite suite{{"", "", "", KD_SOURCE_DIR "/samples"}, files, locale, clock, {}};
    Platform platform{files, toolkit, locale, clock, environment, shell, fileDialog, suite};
    Globals g{platform};
};

/// Paths of all files below a folder, in order; the templates among them.
std::vector<std::string> AllFiles(const std::string& folder);
std::vector<std::string> Templates(const std::vector<std::string>& files);

/// Variables of each file of the corpus.
inline constexpr std::int32_t VariablesPerFile = 18;

/// A figure counts only when what it measured has done its work.
/// @throws std::runtime_error with these words when `holds` is false.
void Expect(bool holds, const std::string& words);

}  // namespace kd::bench
