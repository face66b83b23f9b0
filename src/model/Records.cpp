#include "model/Records.h"

#include <algorithm>
#include <vector>

namespace kd {

cFiles::Record cFiles::Add(Text filename, Text title, Text viewName, std::int16_t viewNo) {
    auto file = std::make_shared<cFile>();
    file->SetFilename(std::move(filename));
    file->SetTitle(std::move(title));
    file->SetViewName(std::move(viewName));
    file->SetViewNo(viewNo);
    return Append(std::move(file));
}

cMasterFiles::Record cMasterFiles::Add(Text filename, bool enabled) {
    auto file = std::make_shared<cMasterFile>();
    file->SetFilename(std::move(filename));
    file->SetEnabled(enabled);
    return Append(std::move(file));
}

void cMasterFiles::Sort(std::string_view direction) {
    std::vector<std::pair<Text, bool>> entries;
    entries.reserve(static_cast<std::size_t>(Count()));
    for (const Record& file : *this) {
        entries.emplace_back(file->Filename(), file->Enabled());
    }
    // Narrowing gaps, not std::sort: the order in which entries of one name come out is the suite's.
    // cMasterFilesTest.EntriesOfOneNameComeOutAsTheGapsLeaveThem
    for (std::size_t gap = entries.size() / 2; gap >= 1; gap /= 2) {
        for (std::size_t i = gap; i < entries.size(); ++i) {
            for (std::size_t j = i; j >= gap && entries[j - gap].first > entries[j].first; j -= gap) {
                std::swap(entries[j - gap], entries[j]);
            }
        }
    }
    if (direction.empty() || (direction.front() != 'A' && direction.front() != 'a')) {
        std::reverse(entries.begin(), entries.end());
    }
    Clear();
    for (auto& [filename, enabled] : entries) {
        Add(std::move(filename), enabled);
    }
}

std::int32_t cMasterFiles::TotalFilesEnabled() const {
    return static_cast<std::int32_t>(
        std::count_if(begin(), end(), [](const Record& file) { return file->Enabled(); }));
}

cFilters::Record cFilters::Add(Text name, bool selected) {
    auto filter = std::make_shared<cFilter>();
    filter->SetName(std::move(name));
    filter->SetSelected(selected);
    return Append(std::move(filter));
}

const std::shared_ptr<cFilters>& cLabel::Filters() const {
    if (!m_filters) {
        m_filters = std::make_shared<cFilters>();
    }
    return m_filters;
}

cLabels::Record cLabels::Add(Text name, Text alignment, bool editable, bool visible) {
    auto label = std::make_shared<cLabel>();
    label->SetName(std::move(name));
    label->SetAlignment(std::move(alignment));
    label->SetEditable(editable);
    label->SetVisible(visible);
    return Append(std::move(label));
}

cRecents::Record cRecents::Add(Text criteria) {
    auto recent = std::make_shared<cRecent>();
    recent->SetCriteria(std::move(criteria));
    return Append(std::move(recent));
}

}  // namespace kd
