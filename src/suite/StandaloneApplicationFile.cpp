#include "suite/StandaloneApplicationFile.h"

#include <utility>

#include "base/Paths.h"

namespace kd {

StandaloneApplicationFile::StandaloneApplicationFile(Files& files, const Locale& locale,
                                                     std::function<std::vector<Text>()> readRules)
    : m_files(files), m_locale(locale), m_readRules(std::move(readRules)) {}

const KDList<KDRuleEntry>& StandaloneApplicationFile::RuleList() {
    if (!m_rules) {
        m_rules.emplace();
        for (Text& rule : m_readRules()) {
            m_rules->Add(RuleEntry(std::move(rule)));
        }
    }
    return *m_rules;
}

Text StandaloneApplicationFile::ApplicationTitle() {
    return m_header.title.empty() ? Text(paths::BaseName(m_path)) : m_header.title;
}

void StandaloneApplicationFile::OpenFile(std::string_view path) {
    CloseFile();
    ReadFiles read;
    std::string& bytes = read[Text(path)];
    bytes = m_files.Read(path);
    ApplicationHeader header = ReadApplicationHeader(m_locale, bytes);
    if (!header.views) {
        // Here and not in LoadViews: an application whose views cannot be told is one that cannot be opened,
        // and the load goes on with the next.
        header.views = ViewsBeside(m_files, m_locale, path, read);
    }
    m_read = std::move(read);
    m_header = std::move(header);
    m_path = path;
}

void StandaloneApplicationFile::LoadViews() {
    m_views.Clear();
    if (m_header.views) {
        for (const auto& view : *m_header.views) {
            m_views.Add(ViewEntry(view));
        }
    }
}

void StandaloneApplicationFile::CloseFile() {
    m_path.clear();
    m_header = {};
    m_read.clear();
    m_views.Clear();
}

std::optional<std::string> StandaloneApplicationFile::TakeBytes(std::string_view path) {
    const auto found = m_read.find(path);
    if (found == m_read.end()) {
        return std::nullopt;
    }
    std::optional<std::string> bytes(std::move(found->second));
    m_read.erase(found);
    return bytes;
}

}  // namespace kd
