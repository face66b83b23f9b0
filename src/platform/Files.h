#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/Text.h"
#include "base/cError.h"

namespace kd {

/// What tells one file from all others, whatever its names are, while both exist.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;  // 0 where the system does not tell, and where there is no file

    bool IsKnown() const noexcept { return file != 0; }
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// What a file was at a moment: one that has been replaced or written since is so in another one.
struct FileState {
    FileIdentity file;
    std::uint64_t size = 0;
    std::int64_t written = 0;  // when it was last written, in the system's own measure

    friend bool operator==(const FileState&, const FileState&) = default;
};

/// A file open for writing. Destroying it without Close gives the handle back and drops what was not flushed.
class OutputFile {
public:
    OutputFile() = default;
    virtual ~OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Adds bytes at the end; all of them, or it throws.
    /// @throws cError(errDiskFull, errDevice)
    virtual void Write(std::string_view bytes) = 0;
    /// Brings what was written to the disk itself.
    /// @throws cError(errDiskFull, errDevice)
    virtual void Flush() = 0;
    /// Closes the file; a close can fail, and a failed one has closed it all the same. A second call does
    /// nothing.
    /// @throws cError(errDiskFull, errDevice)
    virtual void Close() = 0;
    /// The same, and what was written is left to Files::Settle, which brings it to the disk with all else.
    /// @throws cError(errDiskFull, errDevice)
    virtual void CloseForSettling() = 0;
    /// Gives a file just opened for output the owner, the mode and the rights of another as far as the user
    /// may (of one that a link leads to no owner), so that Files::MoveSettled has nothing left to give. What
    /// cannot be given is no failure: the file then lets in those whom the other one lets in, as far as the
    /// user may: not those who are let in as its owner or as its group alone, if the user is neither; and
    /// nobody else. Where the other one is missing, it gets what a new file gets there.
    /// @returns which file the other one is, so that two names of one file are seen, and in which state.
    virtual FileState TakeRightsOf(std::string_view path) noexcept {
        (void)path;
        return {};
    }
    /// From Files::OpenForOutput on, closed or not, the file is locked: kept from other programs'
    /// OpenForOutput where the system can do that. No longer from here on. Nothing is written after it.
    virtual void Unlock() noexcept {}
};

/// How long what another program keeps is waited for: as long as it takes to save a file, or not at all.
enum class Patience : bool { None, ForASave };

/// The file system as the logic sees it; every access to a file goes through here, so that faults can be
/// injected. Bytes are bytes: no code page, no line ends. Paths are Text.
///
/// Names regardless of case: where a path does not exist but its folder holds a file whose name differs only
/// in case, that file is the one meant. This holds for every operation on a file but OpenForOutput, Rename
/// and the target of CopyForArchive; a folder is meant by its exact name. Where a folder is to be listed or
/// flushed, the empty text is the root, and on Windows "C:" is the root of that disk.
///
/// All operations raise cError with the path: errFileNotFound, errPathNotFound (its folder is missing),
/// errPermissionDenied (also for a directory, FIFO, socket or device in a file's place), errDiskFull, and
/// errDevice for anything else.
class Files {
public:
    Files() = default;
    virtual ~Files() = default;
    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    /// Runs between the flushes of Settle, behind each copy of CopyAllForArchive, and again and again while
    /// OpenForOutput waits for a file that another program keeps: what can take long lets its caller live.
    /// May be empty; must not throw.
    std::function<void()> Meanwhile;

    /// The character that this platform puts between the parts of a path.
    virtual char Delimiter() const = 0;

    /// Whether a file or folder exists at the path. Never throws; errors count as false.
    virtual bool Exists(std::string_view path) = 0;
    /// Whether a regular file is there (a link to one counts). Never throws.
    virtual bool IsRegularFile(std::string_view path) = 0;

    /// The bytes of a regular file. Others may read and write it meanwhile. Never waits on a FIFO or device.
    virtual std::string Read(std::string_view path) = 0;
    /// The same into a buffer of the caller's, which keeps its capacity from file to file; what it holds
    /// after an error says nothing.
    virtual void Read(std::string_view path, std::string& bytes) { bytes = Read(path); }

    /// The last bytes of a regular file, `count` at most; fails as Read does.
    virtual std::string ReadEnd(std::string_view path, std::size_t count);

    /// Opens a file for writing, replacing what stands there. A link or anything else that is no regular file
    /// is not written through: errPermissionDenied. Where the system can do that, a file that others may have
    /// open is made anew, and one that is made is the user's alone until TakeRightsOf. One that another
    /// program keeps, and goes on keeping while `patience` lasts, is left to it by each of its names:
    /// errFileAlreadyOpen.
    virtual std::unique_ptr<OutputFile> OpenForOutput(std::string_view path, Patience patience) = 0;
    /// The same with the patience of a save.
    std::unique_ptr<OutputFile> OpenForOutput(std::string_view path) {
        return OpenForOutput(path, Patience::ForASave);
    }
    /// Opens a file for writing at its end; made when missing.
    virtual std::unique_ptr<OutputFile> OpenForAppend(std::string_view path) = 0;

    /// Copies a file's bytes over `target`, which may exist. The target is wholly old or wholly new at every
    /// moment, and wholly new for good once its folder has been flushed (a link's target at once); its owner,
    /// mode and links stay. A target whose mode forbids writing is refused with errPermissionDenied, also for
    /// a user who could override it.
    virtual void CopyFile(std::string_view source, std::string_view target) = 0;
    /// The same, and the source is deleted. Where that takes nothing away from the promise, the source itself
    /// is put in the target's place. The new name is left to Settle.
    virtual void MoveOver(std::string_view source, std::string_view target);
    /// The same for a source that was closed for settling, has been settled since, and was kept from other
    /// programs all the while: it is flushed no more where that is not needed, and the name that it gets is
    /// left to Settle.
    /// @returns false, with nothing done, where the target is seen not to be in the state `seen` any more,
    /// which TakeRightsOf has told.
    [[nodiscard]] virtual bool MoveSettled(std::string_view source, std::string_view target,
                                           const FileState& seen) {
        (void)seen;
        MoveOver(source, target);
        return true;
    }
    /// Brings to the disk itself, in as few flushes as the system has, what was left to it since it was
    /// called last: files closed for settling, copies of CopyAllForArchive, and the names that Rename and
    /// MoveSettled have given. All of it is tried; none of it is left any more, also when some of it fails.
    /// What is settled by itself is settled in the order in which it was left.
    /// @returns all failures (errDiskFull, errDevice), in that order; none where all is on the disk. One of a
    /// folder's names has the folder's path. One has no path where one flush stands for a whole file system:
    /// it may then be another program's, and the flush of each file by itself tells that.
    [[nodiscard]] virtual std::vector<cError> TrySettle() = 0;
    /// The same.
    /// @throws cError the first failure.
    void Settle();
    /// Whether Settle has one flush for files of several applications, and not one for each.
    virtual bool SettlesTogether() const noexcept { return true; }
    /// Deletes a file; one that may not be written is refused.
    virtual void DeleteFile(std::string_view path) = 0;
    /// Deletes a file that a program which is gone has left, as far as that can be known: one that another
    /// program keeps (see OutputFile) stays, and so does one that the user may not write and anything that is
    /// no regular file. Never throws.
    virtual void DeleteAbandoned(std::string_view path) noexcept = 0;
    /// The same for a file that a program of any machine may have left: where it cannot be known whether one
    /// on another machine keeps it, it stays.
    virtual void DeleteLeftover(std::string_view path) noexcept { DeleteAbandoned(path); }
    /// Writes a file whole, with the promise of CopyFile, and flushes its folder where it gets its name anew:
    /// afterwards it holds `bytes`, or what it held before.
    virtual void ReplaceFile(std::string_view path, std::string_view bytes) = 0;

    /// Names (without folder) of the entries of a folder, in no order.
    virtual std::vector<Text> FolderEntries(std::string_view folder) = 0;
    /// Makes a folder and the missing ones above it, with the user's own permissions. One that exists is no
    /// error.
    virtual void MakeFolder(std::string_view folder) = 0;
    /// The same for a folder that is then filled: from here on until it is renamed or removed it is kept from
    /// DeleteAbandonedFolder, where the system can do that.
    virtual void MakeKeptFolder(std::string_view folder) = 0;
    /// Copies a regular file to a new place: bytes, times and mode, flushed to the disk. Nobody gets a right
    /// by it that the source does not give him. The target must not exist.
    virtual void CopyForArchive(std::string_view source, std::string_view target) = 0;
    /// The same for several files at once, which keep their names; the copies are left to Settle.
    /// @throws cError with the source at hand.
    virtual void CopyAllForArchive(const std::vector<Text>& sources, std::string_view folder);
    /// Renames a file or folder. The new name must not exist, or be an empty folder.
    virtual void Rename(std::string_view from, std::string_view to) = 0;
    /// Brings the entries of a folder to the disk itself.
    virtual void FlushFolder(std::string_view folder) = 0;
    /// Removes a folder with all that is in it, or the file that stands in its place: by the right to the
    /// folders that hold them, also what may not be written. What is missing is no error.
    virtual void RemoveFolder(std::string_view folder) = 0;
    /// Removes a folder that is empty; any other stays. Never throws.
    virtual void RemoveEmptyFolder(std::string_view folder) noexcept = 0;
    /// Removes a folder, with all that is in it, that a program which is gone has made by MakeKeptFolder and
    /// left. One that is kept stays, and so does every one where the system cannot tell that of all machines.
    /// Never throws.
    virtual void DeleteAbandonedFolder(std::string_view folder) noexcept = 0;

protected:
    void LiveOn() const {
        if (Meanwhile) {
            Meanwhile();
        }
    }
};

}  // namespace kd
