#include "qt/services/QtShell.h"

#include <QDesktopServices>
#include <QDir>

#include "qt/services/QtText.h"

namespace kd {

QUrl QtShell::Url(std::string_view address) {
    const QString text = ToQt(address);
    return QDir::isAbsolutePath(text) ? QUrl::fromLocalFile(text) : QUrl(text, QUrl::TolerantMode);
}

void QtShell::Open(std::string_view address) {
    (void)QDesktopServices::openUrl(Url(address));  // nobody looks at the result
}

}  // namespace kd
