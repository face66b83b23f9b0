#pragma once

#include <QString>

#include "base/Text.h"

/// The one door between the program's Text and the toolkit's strings.
namespace kd {

inline QString ToQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline Text FromQt(const QString& text) {
    return text.toStdString();
}

/// For a QString property that is read as plain or rich text as the toolkit guesses, such as a tool tip: the
/// same characters, never taken for markup.
inline QString ToPlainToolTip(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<p style='white-space:pre'>") + text.toHtmlEscaped();
}

/// The caption with `mnemonic` marked where that letter stands first, unless the caption marks one itself; a
/// null letter marks nothing.
inline QString CaptionWithMnemonic(std::string_view caption, QChar mnemonic) {
    QString text = ToQt(caption);
    // No caption has a null letter in it.
    const auto at = text.contains(QLatin1Char('&')) ? -1 : text.indexOf(mnemonic, 0, Qt::CaseInsensitive);
    return at < 0 ? text : text.insert(at, QLatin1Char('&'));
}

}  // namespace kd
