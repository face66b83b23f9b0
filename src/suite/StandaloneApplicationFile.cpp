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
    m_header = ReadApplicationHeader(m_files, m_locale, path);
    m_path = path;
}

void StandaloneApplicationFile::LoadViews() {
    m_views.Clear();
    if (m_path.empty()) {
        return;
    }
    if (!m_header.views) {
        m_header.views = ViewsBeside(m_files, m_locale, m_path);
    }
    for (const auto& view : *m_header.views) {
        m_views.Add(ViewEntry(view));
    }
}

void StandaloneApplicationFile::CloseFile() {
    m_path.clear();
    m_header = {};
    m_views.Clear();
}

}  // namespace kd
