#include "commit/PendingViews.h"

#include <algorithm>
#include <utility>

#include "appfiles/FileNames.h"
#include "base/Paths.h"
#include "model/modKDLimitDesk.h"

namespace kd {

using namespace modKDLimitDesk;

PendingViews::Placed& PendingViews::Noted(const Text& path, std::int32_t index) {
    m_isPending = true;
    Placed& placed = m_placed[path];
    if (placed.views.empty() || placed.views.back() != index) {
        placed.views.push_back(index);
    }
    return placed;
}

void PendingViews::Settle() {
    if (!m_isPending) {
        return;
    }
    m_isPending = false;
    try {
        m_g.platform.files.Settle();
        m_placed.clear();
    } catch (const cError& error) {
        Check(error);
    }
}

bool PendingViews::SettleBesideAGroup() {
    try {
        m_isPending = false;
        m_g.platform.files.Settle();
        m_placed.clear();
        return true;
    } catch (const cError& error) {
        if (error.Path().empty() || Has(error.Path())) {
            Check(error);
        }
        return false;
    }
}

void PendingViews::TellSettled(const std::function<void()>& tell) {
    std::optional<cError> first;
    try {
        Settle();
    } catch (const cError& error) {
        first.emplace(error);
    }
    tell();
    if (first) {
        throw cError(*first);
    }
}

/// A flush of all that was pending has failed. One that names its file is that file's failure. One of a whole
/// file system may be another program's: whether the records of the views and the names that these have taken
/// are on the disk is then asked of their files and folders alone. A view of which they may not be is one
/// with changes again.
/// @throws cError where there is such a view.
void PendingViews::Check(const cError& failure) {
    const bool isKnown = !failure.Path().empty();
    std::optional<cError> first;
    for (const auto& [path, placed] : std::exchange(m_placed, {})) {
        const std::optional<cError> error = isKnown ? failure : FailureOf(path, placed);
        if (!error) {
            continue;
        }
        for (const std::int32_t index : placed.views) {
            m_g.gFiles->Item(index)->SetChangesMade(true);
        }
        if (!first) {
            first.emplace(*error);
        }
    }
    if (first) {
        throw cError(*first);
    }
}

/// Whether a flush that failed is one of what has been placed and recorded.
bool PendingViews::Has(std::string_view path) const {
    const CodePage& page = m_g.platform.locale.CodePage();
    const Text upper = page.Upper(path);
    const auto is = [&](const Text& other) { return page.Upper(other) == upper; };
    return std::any_of(m_placed.begin(), m_placed.end(), [&](const auto& one) {
        const std::vector<std::int32_t>& views = one.second.views;
        return is(ChangeLogPath(m_g, one.first)) || is(ChangeReportPath(m_g, one.first)) ||
               std::any_of(views.begin(), views.end(),
                           [&](std::int32_t index) { return is(SchemaPath(m_g, *m_g.gFiles->Item(index))); });
    });
}

/// Flushes the change files of an application, and the names of its views; what failed in that.
std::optional<cError> PendingViews::FailureOf(const Text& path, const Placed& placed) {
    Files& files = m_g.platform.files;
    try {
        if (placed.hasRecords) {
            for (const Text& changeFile : {ChangeLogPath(m_g, path), ChangeReportPath(m_g, path)}) {
                const auto file = files.OpenForAppend(changeFile);
                file->Flush();
                file->Close();
            }
        }
        files.FlushFolder(paths::FolderToList(path));
        return std::nullopt;
    } catch (const cError& error) {
        const bool isFolder = error.Path() == paths::FolderToList(path);
        if (isFolder && error.Number() == errPermissionDenied) {
            return std::nullopt;  // one that may not be listed cannot be flushed
        }
        return error;
    }
}

}  // namespace kd
