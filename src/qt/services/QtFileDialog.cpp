#include "qt/services/QtFileDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QTreeView>

#include "qt/services/QtText.h"

namespace kd {

namespace {

/// A screen without a desktop behind it is not asked for a file dialog of its own.
bool MayBeNative() {
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

/// Windows and macOS look at names regardless of case by themselves, and so does the toolkit's own dialog.
bool WantsBothCases([[maybe_unused]] bool isDesktops) {
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return false;
#else
    return isDesktops;
#endif
}

QString InAnyCase(const QString& pattern) {
    QString result;
    for (const QChar letter : pattern) {
        if (letter.isLetter()) {
            result += QLatin1Char('[') + letter.toLower() + letter.toUpper() + QLatin1Char(']');
        } else {
            result += letter;
        }
    }
    return result;
}

}  // namespace

QString QtFileDialog::NameFilter(const OpenFileRequest& request, bool spellOutCase) {
    QStringList patterns;
    for (const Text& pattern : request.patterns) {
        patterns << (spellOutCase ? InAnyCase(ToQt(pattern)) : ToQt(pattern));
    }
    return ToQt(request.description) + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
           QStringLiteral(")");
}

std::vector<Text> QtFileDialog::Shape(const QStringList& paths) {
    if (paths.size() == 1) {
        return {FromQt(QDir::toNativeSeparators(paths.front()))};
    }
    std::vector<Text> result;
    if (!paths.isEmpty()) {
        const QDir folder = QFileInfo(paths.front()).dir();
        result.push_back(FromQt(QDir::toNativeSeparators(folder.path())));
        for (const QString& path : paths) {
            result.push_back(FromQt(QDir::toNativeSeparators(folder.relativeFilePath(path))));
        }
    }
    return result;
}

void QtFileDialog::SetKind(QFileDialog& dialog, const OpenFileRequest& request, bool isDesktops) {
    const bool spelledOut = WantsBothCases(isDesktops);
    dialog.setOption(QFileDialog::HideNameFilterDetails, spelledOut);
    dialog.setNameFilter(NameFilter(request, spelledOut));
}

std::optional<std::vector<Text>> QtFileDialog::OpenFiles(const OpenFileRequest& request) {
    QFileDialog dialog(QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget()
                                                                    : QApplication::activeWindow(),
                       ToQt(request.title), ToQt(request.folder));
    dialog.setObjectName(QStringLiteral("FileDialog"));
    dialog.setOption(QFileDialog::DontUseNativeDialog, !MayBeNative());
    // The dialog of the toolkit asks for files that exist whenever it takes several.
    dialog.setFileMode(QFileDialog::ExistingFiles);
    auto* const details = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    SetKind(dialog, request, details == nullptr);
    if (details != nullptr) {
        details->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        dialog.resize(dialog.sizeHint().expandedTo({details->fontMetrics().averageCharWidth() * 140, 0}));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return Shape(dialog.selectedFiles());
}

}  // namespace kd
