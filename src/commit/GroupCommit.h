#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "appfiles/SchemaWriter.h"
#include "commit/ChangeReport.h"
#include "commit/PendingViews.h"
#include "grid/Desk.h"

namespace kd {

/// Whether the list has the key.
bool ItemExists(const Text& key, const std::set<Text>& list);

/// The views of one commit, taken in groups that go to the disk together. Each group has two parts: archives
/// and new texts are written, settled, and the archives get their names; then each view takes its place and
/// its records are added, in order. What fails beside others is tried again by itself, so that a failure is
/// told with what has then been done as if there were no groups.
class GroupCommit {
public:
    /// A flush is shared by that many views. With more of them a flush more would be saved for every few
    /// hundred, and more would lie about after a program that is ended, and wait for its records after a
    /// machine that goes down. Where every file is flushed by itself there is nothing to share but the change
    /// files of an application: a group ends with it there.
    static constexpr std::size_t MostInAGroup = 16;

    /// `selected` is how many views will be taken, for the progress bar.
    GroupCommit(Desk& desk, CommitStamp stamp, std::int64_t selected, KDArchiver& archiver);

    /// Takes the view at that position of gFiles; it is on the disk when Finish has returned, or before.
    /// @throws cError for what ends the commit.
    void Take(std::int32_t index);
    /// Completes all views and settles them.
    /// @throws cError as Take.
    void Finish();
    /// After a failure that ends the commit: settles what has been done, and takes away what was prepared for
    /// views that have not had their turn.
    void Abandon() noexcept;
    /// How many views have been saved.
    std::int32_t Modified() const noexcept { return m_modified; }

private:
    struct View {
        std::int32_t index;  // in gFiles
        Text path;           // of the template
        Text upperTarget;    // the two paths as file systems compare them that ignore case
        Text upperTemporary;
        modKDLimitDesk::WrittenSchema written;
    };
    enum class Manner : bool { AmongOthers, Alone };

    bool Prepare(std::int32_t index, Manner manner);
    bool BeginArchive(const Text& path, Manner manner);
    bool HasBegunBeside(const Text& path) const;
    void DropBegunSince(std::size_t begun) noexcept;
    bool MakeRoomFor(const cFile& file);
    bool IsOnlyOne(const FileIdentity& targetFile) const;
    void Discard(modKDLimitDesk::WrittenSchema& written) noexcept;
    void Complete();
    bool SettleGroup();
    void Withdraw() noexcept;
    bool PlaceAll();
    void TakeEachAlone();
    bool Place(View& view);
    void TakeAlone(std::int32_t index);
    void ArchiveAlone(const Text& path);
    void NoteSaved(const Text& target);
    void Record(std::int32_t index);
    void DeleteLeftovers() noexcept;
    void ShowArchiving(const Text& path);
    void ShowSaving(const Text& path);
    void TellArchiveFailure(const Text& path, const Text& failure);

    Desk& m_desk;
    Globals& m_g;
    CommitStamp m_stamp;
    std::int64_t m_selected;
    KDArchiver& m_archiver;
    PendingViews m_pending;
    std::set<Text> m_archived;               // templates
    std::set<Text> m_shown;                  // templates whose archiving the status panel has told
    std::vector<View> m_group;               // prepared, and not at their place yet
    std::vector<Text> m_begun;               // templates whose archives belong to the group
    std::map<Text, std::set<Text>> m_saved;  // names of the schema files that have been saved, by folder
    std::int32_t m_worked = 0;
    std::int32_t m_modified = 0;
};

}  // namespace kd
