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
    const QString name = QGuiApplication::platformName();
    return name != QLatin1String("offscreen") && name != QLatin1String("minimal");
}

/// Windows and macOS look at names regardless of case by themselves.
bool TellsCasesApart() {
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return false;
#else
    return true;
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

std::optional<std::vector<Text>> QtFileDialog::OpenFiles(const OpenFileRequest& request) {
    QFileDialog dialog(QApplication::activeModalWidget() != nullptr ? QApplication::activeModalWidget()
                                                                    : QApplication::activeWindow(),
                       ToQt(request.title), ToQt(request.folder));
    dialog.setObjectName(QStringLiteral("FileDialog"));
    dialog.setOption(QFileDialog::DontUseNativeDialog, !MayBeNative());
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    // The dialog of the toolkit asks for files that exist whenever it takes several.
    dialog.setFileMode(QFileDialog::ExistingFiles);
    auto* const details = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    if (details != nullptr) {
        // The toolkit's own dialog: it matches in any case by itself.
        dialog.setNameFilter(NameFilter(request, false));
        details->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        dialog.resize(dialog.sizeHint().expandedTo({details->fontMetrics().averageCharWidth() * 140, 0}));
    } else {
        const bool spelledOut = TellsCasesApart();
        dialog.setOption(QFileDialog::HideNameFilterDetails, spelledOut);
        dialog.setNameFilter(NameFilter(request, spelledOut));
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return Shape(dialog.selectedFiles());
}

}  // namespace kd
