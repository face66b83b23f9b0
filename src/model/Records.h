#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "base/Text.h"
#include "base/cList.h"

/// The small records and their lists.
namespace kd {

/// One view of one application. The template's own entry is view number 0 and comes first.
class cFile {
public:
    /// Path of the application's template, the same for all its views.
    const Text& Filename() const noexcept { return m_filename; }
    void SetFilename(Text value) { m_filename = std::move(value); }
    /// Title of the application.
    const Text& Title() const noexcept { return m_title; }
    void SetTitle(Text value) { m_title = std::move(value); }
    /// Name of the view; empty for the template's own entry.
    const Text& ViewName() const noexcept { return m_viewName; }
    void SetViewName(Text value) { m_viewName = std::move(value); }
    /// Number of the view; 0 for the template's own entry.
    std::int16_t ViewNo() const noexcept { return m_viewNo; }
    void SetViewNo(std::int16_t value) noexcept { m_viewNo = value; }
    /// Rule names of the schema file, joined with ",", in its order: the first is a variable's letter "A".
    const Text& Rules() const noexcept { return m_rules; }
    void SetRules(Text value) { m_rules = std::move(value); }
    /// Positions in gFields and gSavedFields of the view's first and last variable; the last is below the
    /// first for a view without variables.
    std::int32_t BegFieldPtr() const noexcept { return m_begFieldPtr; }
    void SetBegFieldPtr(std::int32_t value) noexcept { m_begFieldPtr = value; }
    std::int32_t EndFieldPtr() const noexcept { return m_endFieldPtr; }
    void SetEndFieldPtr(std::int32_t value) noexcept { m_endFieldPtr = value; }
    /// The view has unsaved edits.
    bool ChangesMade() const noexcept { return m_changesMade; }
    void SetChangesMade(bool value) noexcept { m_changesMade = value; }
    /// Marked in the commit dialog.
    bool Selected() const noexcept { return m_selected; }
    void SetSelected(bool value) noexcept { m_selected = value; }

private:
    Text m_filename;
    Text m_title;
    Text m_viewName;
    Text m_rules;
    std::int32_t m_begFieldPtr = 0;
    std::int32_t m_endFieldPtr = 0;
    std::int16_t m_viewNo = 0;
    bool m_changesMade = false;
    bool m_selected = false;
};

class cFiles : public cList<cFile> {
public:
    Record Add(Text filename, Text title, Text viewName, std::int16_t viewNo);
};

/// One entry of the list of applications.
class cMasterFile {
public:
    /// Path of the template.
    const Text& Filename() const noexcept { return m_filename; }
    void SetFilename(Text value) { m_filename = std::move(value); }
    /// The application takes part in this run.
    bool Enabled() const noexcept { return m_enabled; }
    void SetEnabled(bool value) noexcept { m_enabled = value; }

private:
    Text m_filename;
    bool m_enabled = false;
};

class cMasterFiles : public cList<cMasterFile> {
public:
    Record Add(Text filename, bool enabled);
    /// Puts the list into ascending order where `direction` begins with "A" or "a", else into descending
    /// order. Names are compared by exact code units. Makes new records. Not stable: entries of one name may
    /// change places.
    void Sort(std::string_view direction);
    /// Number of records that are enabled.
    std::int32_t TotalFilesEnabled() const;
};

/// One value offered in a column's filter list.
class cFilter {
public:
    const Text& Name() const noexcept { return m_name; }
    void SetName(Text value) { m_name = std::move(value); }
    bool Selected() const noexcept { return m_selected; }
    void SetSelected(bool value) noexcept { m_selected = value; }

private:
    Text m_name;
    bool m_selected = false;
};

class cFilters : public cList<cFilter> {
public:
    Record Add(Text name, bool selected);
};

/// One column of the grid.
class cLabel {
public:
    /// Title in the header row.
    const Text& Name() const noexcept { return m_name; }
    void SetName(Text value) { m_name = std::move(value); }
    /// "L", "C" or "R", in any case.
    const Text& Alignment() const noexcept { return m_alignment; }
    void SetAlignment(Text value) { m_alignment = std::move(value); }
    /// The user may change cells of this column.
    bool Editable() const noexcept { return m_editable; }
    void SetEditable(bool value) noexcept { m_editable = value; }
    /// Shown when no view option says otherwise.
    bool Visible() const noexcept { return m_visible; }
    void SetVisible(bool value) noexcept { m_visible = value; }
    /// The column's active filter; empty for none. Never null: made on first read.
    const std::shared_ptr<cFilters>& Filters() const;
    void SetFilters(std::shared_ptr<cFilters> value) { m_filters = std::move(value); }

private:
    Text m_name;
    Text m_alignment;
    bool m_editable = false;
    bool m_visible = false;
    mutable std::shared_ptr<cFilters> m_filters;
};

class cLabels : public cList<cLabel> {
public:
    Record Add(Text name, Text alignment, bool editable, bool visible);
};

/// One remembered filter criterion of Manage Applications.
class cRecent {
public:
    const Text& Criteria() const noexcept { return m_criteria; }
    void SetCriteria(Text value) { m_criteria = std::move(value); }

private:
    Text m_criteria;
};

class cRecents : public cList<cRecent> {
public:
    Record Add(Text criteria);
};

}  // namespace kd
