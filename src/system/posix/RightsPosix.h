#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/Text.h"

/// Owner, mode and list of access rights of a file that is made for the place of another. Only for the
/// sources beside this header.
namespace kd::posix {

/// The list of access rights of an open file, and of one that the user need not be allowed to open; empty
/// where there is none. Nothing where it could not be asked.
std::optional<std::string> AccessListOf(int fd);
std::optional<std::string> AccessListOf(const Text& path);

/// Takes away the list that a new file was given by its folder; false where that failed.
bool DropAccessList(int fd) noexcept;

/// Gives the new file the rights of the present one, which is open or named; false where the user may not.
bool TakeOverRights(int fd, int presentFile, const struct stat& present);
bool TakeOverRights(int fd, const Text& presentFile, const struct stat& present);

/// Gives a file that is wholly new, and the user's alone so far, the rights that the system gives one at that
/// path: those on its folder's list of them, else the mode that the user's mask leaves. Returns 0 or an
/// errno.
int TakeUsualRights(int fd, const Text& path);
/// Gives the new file, which is the user's alone so far and stays his, the rights to read and to write that
/// the present one gives its group, all others and those on its list, as far as the user may, and nobody more
/// than that one does. `list` is the present one's.
void TakeRightsWithin(int fd, const struct stat& present, const std::optional<std::string>& list);

/// Whether only who may write `present` anyway can have the new file open for writing.
bool IsOurs(const struct stat& made, const struct stat& present) noexcept;
/// Whether nobody but the user can have the file open.
bool IsPrivate(const struct stat& made) noexcept;
/// Whether the new file has the rights of the present one already, so that who has it open may write the
/// present one anyway.
bool HasSameRights(int file, const struct stat& made, int presentFile, const struct stat& present);

}  // namespace kd::posix
