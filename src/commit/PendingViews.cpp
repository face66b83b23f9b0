#include "commit/PendingViews.h"

#include <algorithm>
#include <utility>

#include "appfiles/FileNames.h"
#include "base/Paths.h"
#include "model/modKDLimitDesk.h"

namespace kd {

using namespace modKDLimitDesk;

PendingViews::Placed& PendingViews::Noted(const Text& path, std::int32_t index) {
    Placed& placed = m_placed[path];
    if (placed.views.empty() || placed.views.back() != index) {
        placed.views.push_back(index);
    }
    return placed;
}

void PendingViews::Settle() {
    if (!m_placed.empty()) {
        Check(m_g.platform.files.TrySettle());
    }
}

bool PendingViews::SettleBesideAGroup() {
    const std::vector<cError> failures = m_g.platform.files.TrySettle();
    Check(failures);
    return failures.empty();
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

/// What has failed in the flush of all that was pending. A failure that names a file or folder of a view is
/// that view's. One of a whole file system may be another program's, as one of any other file is: whether the
/// records of the views and the names that these have taken are on the disk is then asked of their files and
/// folders alone. A view of which they may not be is one with changes again.
/// @throws cError where there is such a view.
void PendingViews::Check(const std::vector<cError>& failures) {
    const auto all = std::exchange(m_placed, {});
    if (failures.empty()) {
        return;
    }
    const bool mayBeAnothers = std::any_of(failures.begin(), failures.end(), [&](const cError& failure) {
        return std::none_of(all.begin(), all.end(),
                            [&](const auto& one) { return IsOf(failure, one.first, one.second); });
    });
    std::optional<cError> first;
    for (const auto& [path, placed] : all) {
        std::optional<cError> error = FailureAmong(failures, path, placed);
        if (!error && mayBeAnothers) {
            error = FailureOf(path, placed);
            m_g.platform.toolkit.KeepAlive();
        }
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

std::optional<cError> PendingViews::FailureAmong(const std::vector<cError>& failures, const Text& path,
                                                 const Placed& placed) const {
    const auto found = std::find_if(failures.begin(), failures.end(),
                                    [&](const cError& failure) { return IsOf(failure, path, placed); });
    return found == failures.end() ? std::nullopt : std::optional(*found);
}

/// Whether a failed flush is that of a file of an application's views, or of their folder.
bool PendingViews::IsOf(const cError& failure, const Text& path, const Placed& placed) const {
    const CodePage& page = m_g.platform.locale.CodePage();
    const Text upper = page.Upper(failure.Path());
    const auto is = [&](const Text& other) { return page.Upper(other) == upper; };
    const std::vector<std::int32_t>& views = placed.views;
    return is(ChangeLogPath(m_g, path)) || is(ChangeReportPath(m_g, path)) || is(paths::FolderToList(path)) ||
           std::any_of(views.begin(), views.end(),
                       [&](std::int32_t index) { return is(SchemaPath(m_g, *m_g.gFiles->Item(index))); });
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
