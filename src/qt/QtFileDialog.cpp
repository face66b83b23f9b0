#include "qt/QtFileDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

#include "qt/QtText.h"

namespace kd {

namespace {

/// A screen without a desktop behind it has no file dialog of its own.
bool HasNativeDialog() {
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
    const bool native = HasNativeDialog();
    dialog.setOption(QFileDialog::DontUseNativeDialog, !native);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    // The dialog of the toolkit asks for files that exist whenever it takes several.
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setNameFilter(NameFilter(request, native && TellsCasesApart()));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return std::nullopt;
    }
    return Shape(dialog.selectedFiles());
}

}  // namespace kd
