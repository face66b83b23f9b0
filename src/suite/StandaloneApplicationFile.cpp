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
    ApplicationHeader header = ReadApplicationHeader(m_files, m_locale, path);
    if (!header.views) {
        // Here and not in LoadViews: an application whose views cannot be told is one that cannot be opened,
        // and the load goes on with the next.
        header.views = ViewsBeside(m_files, m_locale, path);
    }
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
    m_views.Clear();
}

}  // namespace kd
