#include "commit/GroupCommit.h"

#include <algorithm>
#include <utility>

#include "appfiles/FileNames.h"
#include "base/ApplicationNames.h"
#include "base/Paths.h"

namespace kd {

using namespace modKDLimitDesk;

bool ItemExists(const Text& key, const std::set<Text>& list) {
    return list.count(key) != 0;
}

GroupCommit::GroupCommit(Desk& desk, CommitStamp stamp, std::int64_t selected, KDArchiver& archiver)
    : m_desk(desk),
      m_g(desk.g),
      m_stamp(std::move(stamp)),
      m_selected(selected),
      m_archiver(archiver),
      m_pending(desk.g) {}

void GroupCommit::Take(std::int32_t index) {
    const bool isFull = m_group.size() >= MostInAGroup;
    const bool isAnother = !m_group.empty() && m_group.back().path != m_g.gFiles->Ref(index).Filename();
    if (isFull || (isAnother && !m_g.platform.files.SettlesTogether())) {
        Complete();
    }
    if (m_group.empty() || !Prepare(index, Manner::AmongOthers)) {
        Complete();
        (void)Prepare(index, Manner::Alone);
    }
    m_g.platform.toolkit.KeepAlive();
}

void GroupCommit::Finish() {
    Complete();
    m_pending.Settle();
    m_g.platform.toolkit.KeepAlive();
    DeleteLeftovers();
}

void GroupCommit::Abandon() noexcept {
    try {
        m_pending.Settle();  // views already done stay done
    } catch (...) {
        // The failure that ended the commit is the one to tell.
    }
    Withdraw();
}

/// Archives and writes a view, all but its last step. Among others it returns false where that did not work,
/// with nothing told; alone it tells, and a view that cannot be written is through with that.
bool GroupCommit::Prepare(std::int32_t index, Manner manner) {
    const auto file = m_g.gFiles->Item(index);
    const Text path = file->Filename();
    const bool isAlone = manner == Manner::Alone;
    const std::size_t begun = m_begun.size();
    if ((!isAlone && !MakeRoomFor(*file)) || !BeginArchive(path, manner)) {
        return false;
    }
    m_g.platform.toolkit.KeepAlive();
    try {
        WrittenSchema written =
            WriteSchema(m_g, index, isAlone ? AfterFailure::Blocked : AfterFailure::MayBeTriedAgain);
        if (!isAlone && !IsOnlyOne(written.seen.file)) {
            Discard(written);
            DropBegunSince(begun);
            return false;
        }
        const CodePage& page = m_g.platform.locale.CodePage();
        m_group.push_back(
            {index, path, page.Upper(written.target), page.Upper(written.temporary), std::move(written)});
        return true;
    } catch (const cError& error) {
        if (!isAlone) {
            DropBegunSince(begun);
            return false;
        }
        Complete();  // the archive of the view is whole all the same
        ShowArchiving(path);
        ShowSaving(path);
        m_pending.TellSettled([&] { TellSaveFailure(m_g, error); });
        return true;
    }
}

/// Archives an application whose turn has come. Deliberate: a failed archive does not keep the view from
/// being saved. CommitChangesTest.AFailedArchiveIsShownAndTheSaveGoesOn
bool GroupCommit::BeginArchive(const Text& path, Manner manner) {
    if (ItemExists(path, m_archived)) {
        return true;
    }
    // Two templates may share a folder of archives: the name of one archive is taken when the next looks.
    if (manner == Manner::AmongOthers && HasBegunBeside(path)) {
        return false;
    }
    const Text failure = m_archiver.BeginArchive(path);
    if (failure.empty()) {
        m_begun.push_back(path);
    } else if (manner == Manner::AmongOthers) {
        return false;
    } else {
        ShowArchiving(path);
        m_pending.TellSettled([&] { TellArchiveFailure(path, failure); });
    }
    m_archived.insert(path);
    return true;
}

/// Whether an archive of the group has its folder where the template's own would be.
bool GroupCommit::HasBegunBeside(const Text& path) const {
    const auto archives = [&](const Text& ofTemplate) {
        return m_g.platform.locale.CodePage().Upper(
            names::ArchivesOf(ofTemplate, m_g.platform.files.Delimiter()));
    };
    return std::any_of(m_begun.begin(), m_begun.end(),
                       [&](const Text& begun) { return archives(begun) == archives(path); });
}

/// Drops the archive of a view that cannot be written beside the others: they take their places before its
/// turn, and what they change belongs into it.
void GroupCommit::DropBegunSince(std::size_t begun) noexcept {
    for (; m_begun.size() > begun; m_begun.pop_back()) {
        m_archiver.DropArchive(m_begun.back());
        m_archived.erase(m_begun.back());
    }
}

/// Whether a view can be written while the others of the group wait for their turn. The views of an
/// application share a temporary file: one that waits in it is set aside under a name of its own.
bool GroupCommit::MakeRoomFor(const cFile& file) {
    const CodePage& page = m_g.platform.locale.CodePage();
    const Text target = SchemaPath(m_g, file);
    const Text upperTarget = page.Upper(target);
    const Text upperTemporary = page.Upper(TemporaryPath(m_g, target));
    for (View& view : m_group) {
        WrittenSchema& written = view.written;
        // Of the same file the next text is made from what the last one has left there.
        if (!written.seen.file.IsKnown() || view.upperTarget == upperTarget ||
            view.upperTarget == upperTemporary || view.upperTemporary == upperTarget) {
            return false;
        }
        if (view.upperTemporary != upperTemporary) {
            continue;
        }
        const Text aside = paths::InFolder(paths::FolderToList(written.target),
                                           names::WaitingName(paths::FileName(written.target)),
                                           m_g.platform.files.Delimiter());
        try {
            m_g.platform.files.Rename(written.temporary, aside);
        } catch (const cError&) {
            // It may have been done all the same.
            if (m_g.platform.files.Exists(written.temporary) || !m_g.platform.files.Exists(aside)) {
                return false;
            }
        }
        written.temporary = aside;
        view.upperTemporary = page.Upper(aside);
    }
    return true;
}

/// Whether no view of the group has that file for its target: links give it as many names as they like. One
/// that is not known may be any.
bool GroupCommit::IsOnlyOne(const FileIdentity& targetFile) const {
    return targetFile.IsKnown() && std::none_of(m_group.begin(), m_group.end(), [&](const View& view) {
               return view.written.seen.file == targetFile;
           });
}

/// Brings the group to the disk and to its places.
void GroupCommit::Complete() {
    if (m_group.empty() && m_begun.empty()) {
        return;
    }
    if (!SettleGroup() || !PlaceAll()) {
        TakeEachAlone();
    }
    m_begun.clear();
}

/// Puts the views in their places, one after the other. Returns false at one whose file another program has
/// saved since: it is the first of the group then, and all before it is settled.
bool GroupCommit::PlaceAll() {
    while (!m_group.empty()) {
        View view = std::move(m_group.front());
        m_group.erase(m_group.begin());
        const bool isFirst = std::erase(m_begun, view.path) != 0;
        if (!Place(view)) {
            if (isFirst) {
                m_begun.push_back(view.path);  // what it holds has changed as well
                m_shown.erase(view.path);      // it is told again when it is archived anew
            }
            m_group.insert(m_group.begin(), std::move(view));
            m_pending.Settle();
            return false;
        }
        m_g.platform.toolkit.KeepAlive();
    }
    return true;
}

/// Does all of the group that has not had its turn view by view.
void GroupCommit::TakeEachAlone() {
    std::vector<std::int32_t> indexes;
    for (const View& view : m_group) {
        indexes.push_back(view.index);
    }
    const std::vector<Text> begun = m_begun;
    Withdraw();
    std::for_each(indexes.begin(), indexes.end(), [this](std::int32_t index) { TakeAlone(index); });
    // One of them may belong to a view that could not be written.
    std::for_each(begun.begin(), begun.end(), [this](const Text& path) {
        ArchiveAlone(path);
        m_g.platform.toolkit.KeepAlive();
    });
}

/// First the content, then the names of the archives: no archive's name ever stands for half of one, and no
/// file is replaced before its archive has its name for good. The records of the group before go along.
/// Returns false where the group has to be done view by view.
bool GroupCommit::SettleGroup() {
    if (!m_pending.SettleBesideAGroup()) {
        return false;
    }
    m_g.platform.toolkit.KeepAlive();
    if (m_begun.empty()) {
        return true;
    }
    for (const Text& path : m_begun) {
        if (!m_archiver.NameArchive(path).empty()) {
            return false;
        }
        m_g.platform.toolkit.KeepAlive();
    }
    try {
        m_g.platform.files.Settle();
        m_g.platform.toolkit.KeepAlive();
        return true;
    } catch (const cError&) {
        return false;
    }
}

/// Takes away what was prepared for the views that have not had their turn.
void GroupCommit::Withdraw() noexcept {
    for (const Text& path : m_begun) {
        m_archiver.DropArchive(path);
        m_archived.erase(path);
    }
    m_begun.clear();
    for (View& view : m_group) {
        Discard(view.written);
    }
    m_group.clear();
}

/// Takes away a new text that is not to have its turn.
void GroupCommit::Discard(WrittenSchema& written) noexcept {
    written.file->Unlock();
    written.file.reset();
    m_g.platform.files.DeleteAbandoned(written.temporary);
}

/// Returns false, with nothing done, where the view's file is not the one any more that its text was made
/// from.
bool GroupCommit::Place(View& view) {
    ShowArchiving(view.path);
    ShowSaving(view.path);
    m_pending.Note(view.path, view.index);
    // Deliberate: a view whose file could not be overwritten counts as saved; its user has seen the box.
    // CommitChangesTest.AFailedOverwriteStillCountsAsSaved
    bool isPlaced = false;
    try {
        if (!m_g.platform.files.MoveSettled(view.written.temporary, view.written.target, view.written.seen)) {
            --m_worked;  // it is told again when it is written anew
            return false;
        }
        isPlaced = true;
    } catch (const std::exception& failure) {
        m_pending.TellSettled([&] { TellOverwriteFailure(m_g, AsError(failure, "OverwriteFile")); });
    }
    if (isPlaced) {
        NoteSaved(view.written.target);
    }
    view.written.file.reset();
    Record(view.index);
    return true;
}

/// A view that goes to the disk by itself, with a flush for each of its steps.
void GroupCommit::TakeAlone(std::int32_t index) {
    const Text path = m_g.gFiles->Item(index)->Filename();
    ArchiveAlone(path);
    m_g.platform.toolkit.KeepAlive();
    ShowSaving(path);
    const Saving saving = TrySaveSchema(m_g, index);
    if (saving == Saving::Done) {
        NoteSaved(SchemaPath(m_g, m_g.gFiles->Ref(index)));
    }
    if (saving != Saving::Failed) {
        Record(index);
        m_pending.Settle();
    }
    m_g.platform.toolkit.KeepAlive();
}

void GroupCommit::ArchiveAlone(const Text& path) {
    if (ItemExists(path, m_archived)) {
        return;
    }
    ShowArchiving(path);
    m_archived.insert(path);
    if (const Text failure = m_archiver.ArchiveApplication(path); !failure.empty()) {
        TellArchiveFailure(path, failure);
    }
}

void GroupCommit::NoteSaved(const Text& target) {
    m_saved[paths::FolderToList(target)].insert(Text(paths::FileName(target)));
}

void GroupCommit::Record(std::int32_t index) {
    ++m_modified;
    const auto file = m_g.gFiles->Item(index);
    // Once more: a file that could not be overwritten was told, and all up to there is settled.
    m_pending.NoteRecords(file->Filename(), index);
    ReportChanges(m_desk, *file, m_stamp);
    file->SetChangesMade(false);
}

/// Takes away the new texts that waited for a schema file in a commit that was cut short: what they were kept
/// for is on the disk by now.
void GroupCommit::DeleteLeftovers() noexcept {
    Files& files = m_g.platform.files;
    for (const auto& [folder, saved] : m_saved) {
        try {
            for (const Text& name : files.FolderEntries(folder)) {
                if (saved.count(Text(names::WaitsFor(name))) != 0) {
                    files.DeleteLeftover(paths::InFolder(folder, name, files.Delimiter()));
                }
            }
            m_g.platform.toolkit.KeepAlive();
        } catch (...) {
            // They harm nobody, and the next commit comes by again.
        }
    }
}

/// Told for each view when its turn has come: the panel then tells the steps of one view after the other,
/// as if there were no groups.
void GroupCommit::ShowArchiving(const Text& path) {
    if (m_shown.insert(path).second) {
        m_desk.Panel2.SetCaption("Archiving: " + path);
    }
}

void GroupCommit::ShowSaving(const Text& path) {
    ++m_worked;
    m_desk.Panel2.SetCaption("Saving: " + path);
    m_desk.ProgressBar1.SetValue(100.0 * static_cast<double>(m_worked) / static_cast<double>(m_selected));
}

void GroupCommit::TellArchiveFailure(const Text& path, const Text& failure) {
    Text text = "The following error occured while creating an archive of '" + path + "'";
    text += CrLf;
    text += failure;
    m_g.platform.toolkit.Say(text, BoxIcon::Exclamation, "KD6 LimitDesk");
}

}  // namespace kd
