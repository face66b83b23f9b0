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
    file->SetSelected(false);
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
    for (const Record& file : *this) {
        entries.emplace_back(file->Filename(), file->Enabled());
    }
    // Equal paths cannot be told apart but by their flag; a stable sort keeps their order.
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
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
    label->SetFilters(std::make_shared<cFilters>());
    return Append(std::move(label));
}

cRecents::Record cRecents::Add(Text criteria) {
    auto recent = std::make_shared<cRecent>();
    recent->SetCriteria(std::move(criteria));
    return Append(std::move(recent));
}

}  // namespace kd
