#pragma once

#include <QStringList>

#include "platform/Services.h"

class QFileDialog;

namespace kd {

/// The open-file dialog over the toolkit's: the platform's own where there is one, else a widget with the
/// object name FileDialog.
class QtFileDialog : public FileDialog {
public:
    std::optional<std::vector<Text>> OpenFiles(const OpenFileRequest& request) override;

    /// The file dialog's filter: the description and its patterns. With `spellOutCase` each letter of a
    /// pattern is given in both cases, for platforms that tell cases apart.
    static QString NameFilter(const OpenFileRequest& request, bool spellOutCase);
    /// Names the kind of files to the toolkit's own dialog, or to the desktop's.
    static void SetKind(QFileDialog& dialog, const OpenFileRequest& request, bool isDesktops);
    /// The paths in the service's shapes: one full path; or the folder, then each name in it.
    static std::vector<Text> Shape(const QStringList& paths);
};

}  // namespace kd
