#include "qt/services/HelpIndex.h"

#include <QDir>
#include <QUrl>
#include <QXmlStreamReader>

#include "base/Paths.h"
#include "base/cError.h"
#include "qt/services/QtText.h"

namespace kd {

namespace {

class HelpTopic : public KDHelpTopic {
public:
    HelpTopic(Shell& shell, Text address) : m_shell(shell), m_address(std::move(address)) {}
    void OpenTopic() override { m_shell.Open(m_address); }

private:
    Shell& m_shell;
    Text m_address;
};

/// Address of a page in a folder; the page may name a place in it behind "#". Empty for one that leads out of
/// the folder.
Text PageAddress(std::string_view folder, std::string_view page) {
    const auto mark = page.find('#');
    const QString root = QDir::cleanPath(QDir::fromNativeSeparators(ToQt(folder)));
    const QString name = QDir::fromNativeSeparators(ToQt(page.substr(0, mark)));
    const QString path = QDir::cleanPath(root + QLatin1Char('/') + name);
    if (!path.startsWith(root + QLatin1Char('/'))) {
        return {};
    }
    QUrl url = QUrl::fromLocalFile(path);
    if (mark != std::string_view::npos) {
        url.setFragment(ToQt(page.substr(mark + 1)));
    }
    return FromQt(url.toString(QUrl::FullyEncoded));
}

}  // namespace

void HelpIndex::LoadIndex() {
    m_pages.clear();
    if (!m_files.Exists(m_path)) {
        throw cError(errFileNotFound, "HelpIndex.LoadIndex", {}, m_path);
    }
    const std::string bytes = m_files.Read(m_path);
    QXmlStreamReader xml(QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("topic")) {
            const auto attributes = xml.attributes();
            m_pages.emplace(FromQt(attributes.value(QLatin1String("name")).toString()),
                            FromQt(attributes.value(QLatin1String("page")).toString()));
        }
    }
    if (xml.hasError()) {
        throw cError(errDevice, "HelpIndex.LoadIndex", FromQt(xml.errorString()), m_path);
    }
}

std::unique_ptr<KDHelpTopic> HelpIndex::FindTopic(std::string_view name) {
    const auto found = m_pages.find(Text(name));
    if (found == m_pages.end()) {
        return nullptr;
    }
    Text address = PageAddress(paths::Folder(m_path), found->second);
    return address.empty() ? nullptr : std::make_unique<HelpTopic>(m_shell, std::move(address));
}

}  // namespace kd
