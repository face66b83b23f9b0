#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "base/Text.h"
#include "platform/Services.h"

/// The suite's services, as the logic sees them. All raise cError for what they cannot do, unless told
/// otherwise.
namespace kd {

class KDSuiteContext {
public:
    virtual ~KDSuiteContext() = default;
    virtual void SetSystemCode(std::string_view code) = 0;
    virtual void OpenContext() = 0;
    /// Folders without a delimiter at their end.
    virtual Text SettingsFolder() = 0;
    virtual Text ApplicationsFolder() = 0;
    virtual Text HelpFolder() = 0;
};

class KDLoginUser {
public:
    virtual ~KDLoginUser() = default;
    virtual bool IsAuthenticated() const = 0;
    virtual Text LoginUserName() const = 0;
};

class KDLogin {
public:
    virtual ~KDLogin() = default;
    virtual bool LoginRequired() = 0;
    /// Nothing when the user dismisses it. `window` is the handle of the window that owns the prompt.
    virtual std::unique_ptr<KDLoginUser> PromptLogin(std::uintptr_t window, std::string_view title,
                                                     std::string_view prompt) = 0;
};

class KDPathTools {
public:
    virtual ~KDPathTools() = default;
    /// The path with its extension replaced by `extension` (with its leading dot; it may hold further dots).
    virtual Text ChangeExtension(std::string_view path, std::string_view extension) = 0;
    /// No delimiter at its end.
    virtual Text GetFolderPart(std::string_view path) = 0;
    virtual Text GetFileNamePart(std::string_view path) = 0;
};

/// One view of an application's list.
class KDViewEntry {
public:
    virtual ~KDViewEntry() = default;
    virtual Text ViewEntryName() const = 0;
    virtual std::int32_t ViewEntryNumber() const = 0;
};

/// One rule of the catalogue.
class KDRuleEntry {
public:
    virtual ~KDRuleEntry() = default;
    virtual Text RuleEntryName() const = 0;
};

/// A list of entries of a service; positions count from 1.
template <typename Entry>
class KDList {
public:
    virtual ~KDList() = default;
    /// A loan, good while the list lives. @throws cError(errInvalidArgument) outside 1..Count().
    virtual const Entry& Item(std::int32_t position) const = 0;
    virtual std::int32_t Count() const = 0;
};

/// The reader of an application's template. One object opens and closes one application after the other.
class KDApplicationFile {
public:
    virtual ~KDApplicationFile() = default;
    /// The views of the open application, good until the next LoadViews or CloseFile.
    virtual const KDList<KDViewEntry>& Views() = 0;
    /// The rule catalogue; usable without an open file.
    virtual const KDList<KDRuleEntry>& RuleList() = 0;
    virtual Text ApplicationTitle() = 0;
    /// @throws cError when the file cannot be opened.
    virtual void OpenFile(std::string_view path) = 0;
    virtual void LoadViews() = 0;
    /// Hands over the bytes of a file of the open application that it has read on its own behalf, so that
    /// nobody need read them again; once for each. Nothing where it has not.
    virtual std::optional<std::string> TakeBytes(std::string_view path) {
        (void)path;
        return std::nullopt;
    }
    virtual void CloseFile() = 0;
};

class KDArchiver {
public:
    virtual ~KDArchiver() = default;
    /// Copies the application's files into the archive. Empty on success, else what failed, with the file.
    /// Does not raise errors for ordinary failures.
    virtual Text ArchiveApplication(std::string_view path) = 0;

    /// The same for several applications that are brought to the disk together: BeginArchive copies, then
    /// Files::Settle, then NameArchive makes an archive of the copies, then Files::Settle once more. An
    /// archiver that knows nothing of it does all of its work in the first step.
    virtual Text BeginArchive(std::string_view path) { return ArchiveApplication(path); }
    virtual Text NameArchive(std::string_view path) {
        (void)path;
        return {};
    }
    /// Takes away what was begun or named for the application since its last ArchiveApplication, as if it had
    /// never been; for one of whose files none has been replaced. What cannot be taken away stays.
    virtual void DropArchive(std::string_view path) noexcept { (void)path; }
};

class KDArchiveContext {
public:
    virtual ~KDArchiveContext() = default;
};

/// One changed cell, field by field.
struct ChangeRecord {
    DateTime time;
    Text user;
    Text view;
    Text revision;
    Text recordKind;
    Text objectKind;
    Text variable;
    Text property;
    Text oldValue;
    Text newValue;

    bool operator==(const ChangeRecord&) const = default;
};

/// The change log of one application at a time. Order of calls: SetDelimiter, then for each file OpenLog,
/// WriteRecord once a changed cell (or never), CloseLog. All raise cError when the file fails them.
class KDChangeLog {
public:
    virtual ~KDChangeLog() = default;
    /// Stands between the fields of all records that follow.
    virtual void SetDelimiter(std::string_view delimiter) = 0;
    /// Records are added to a file that exists. No log is open at this moment: the caller sees to it.
    virtual void OpenLog(std::string_view path) = 0;
    /// @throws cError(errInvalidArgument) when no log is open.
    virtual void WriteRecord(const ChangeRecord& record) = 0;
    /// The records are on the disk when Files::Settle has returned. Nothing happens when no log is open.
    virtual void CloseLog() = 0;
};

/// The change report of one application at a time. Order of calls: OpenMemo, then for each entry BeginEntry
/// and WriteItem once a changed cell, CloseMemo. All raise cError when the file fails them.
class KDChangeMemo {
public:
    virtual ~KDChangeMemo() = default;
    /// Entries are added to a file that exists. No report is open at this moment: the caller sees to it.
    virtual void OpenMemo(std::string_view path) = 0;
    /// The entry before it is complete. @throws cError(errInvalidArgument) when no report is open.
    virtual void BeginEntry(std::string_view view, std::string_view user, std::string_view date,
                            std::string_view time) = 0;
    /// @throws cError(errInvalidArgument) before the first BeginEntry of an open report.
    virtual void WriteItem(std::string_view variable, std::string_view property, std::string_view oldValue,
                           std::string_view newValue) = 0;
    /// Completes the last entry, which is on the disk when Files::Settle has returned. Nothing happens when
    /// no report is open.
    virtual void CloseMemo() = 0;
};

class KDClipboard {
public:
    virtual ~KDClipboard() = default;
    /// Empty when the clipboard holds no text.
    virtual Text GetText() = 0;
    virtual void SetText(std::string_view text) = 0;
};

class KDHelpTopic {
public:
    virtual ~KDHelpTopic() = default;
    virtual void OpenTopic() = 0;
};

class KDHelpIndex {
public:
    virtual ~KDHelpIndex() = default;
    virtual void SetFileName(std::string_view path) = 0;
    /// Nothing when the catalogue does not hold the topic.
    virtual std::unique_ptr<KDHelpTopic> FindTopic(std::string_view name) = 0;
    virtual void LoadIndex() = 0;
};

/// Makes the suite's objects; the caller owns each.
class Suite {
public:
    virtual ~Suite() = default;
    virtual std::unique_ptr<KDSuiteContext> NewSuiteContext() = 0;
    virtual std::unique_ptr<KDLogin> NewLogin() = 0;
    virtual std::unique_ptr<KDPathTools> NewPathTools() = 0;
    virtual std::unique_ptr<KDApplicationFile> NewApplicationFile() = 0;
    virtual std::unique_ptr<KDArchiver> NewArchiver() = 0;
    virtual std::unique_ptr<KDArchiveContext> NewArchiveContext() = 0;
    virtual std::unique_ptr<KDChangeLog> NewChangeLog() = 0;
    virtual std::unique_ptr<KDChangeMemo> NewChangeMemo() = 0;
    virtual std::unique_ptr<KDClipboard> NewClipboard() = 0;
    virtual std::unique_ptr<KDHelpIndex> NewHelpIndex() = 0;
};

}  // namespace kd
