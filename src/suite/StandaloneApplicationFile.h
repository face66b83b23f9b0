#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "base/cError.h"
#include "platform/Files.h"
#include "platform/Suite.h"
#include "suite/ApplicationHeader.h"

namespace kd {

/// A list of a service's entries over a vector.
template <typename Entry, typename Made>
class EntryList : public KDList<Entry> {
public:
    void Clear() { m_entries.clear(); }
    void Add(Made entry) { m_entries.push_back(std::move(entry)); }
    const Entry& Item(std::int32_t position) const override {
        if (position < 1 || position > Count()) {
            throw cError(errInvalidArgument, "EntryList.Item");
        }
        return m_entries[static_cast<std::size_t>(position - 1)];  // only here from 0
    }
    std::int32_t Count() const override { return static_cast<std::int32_t>(m_entries.size()); }

private:
    std::vector<Made> m_entries;
};

/// Reads an application's template: its title, and the list of its views.
class StandaloneApplicationFile : public KDApplicationFile {
public:
    /// `readRules` gives the rule catalogue; asked once, when it is needed.
    StandaloneApplicationFile(Files& files, const Locale& locale,
                              std::function<std::vector<Text>()> readRules);

    const KDList<KDViewEntry>& Views() override { return m_views; }
    const KDList<KDRuleEntry>& RuleList() override;
    Text ApplicationTitle() override;
    void OpenFile(std::string_view path) override;
    void LoadViews() override;
    std::optional<std::string> TakeBytes(std::string_view path) override;
    void CloseFile() override;

private:
    class ViewEntry : public KDViewEntry {
    public:
        explicit ViewEntry(ApplicationHeader::View view) : m_view(std::move(view)) {}
        Text ViewEntryName() const override { return m_view.name; }
        std::int32_t ViewEntryNumber() const override { return m_view.number; }

    private:
        ApplicationHeader::View m_view;
    };
    class RuleEntry : public KDRuleEntry {
    public:
        explicit RuleEntry(Text name) : m_name(std::move(name)) {}
        Text RuleEntryName() const override { return m_name; }

    private:
        Text m_name;
    };

    Files& m_files;
    const Locale& m_locale;
    std::function<std::vector<Text>()> m_readRules;
    EntryList<KDViewEntry, ViewEntry> m_views;
    std::optional<EntryList<KDRuleEntry, RuleEntry>> m_rules;
    Text m_path;
    ApplicationHeader m_header;
    ReadFiles m_read;
};

}  // namespace kd
