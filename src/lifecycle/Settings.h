#pragma once

#include "model/Globals.h"

/// The settings file: the list of applications and the recent filter criteria, between runs.
namespace kd::modKDLimitDesk {

/// Takes a new gMasterFiles, gRecents and gFiles, and fills the first two from the file: the applications
/// sorted and all enabled, the criteria in the file's order. A missing or unreadable file leaves both empty,
/// without a word.
/// @returns whether the file was read.
bool ReadSettings(Globals& g, std::string_view path);

/// Puts a file that was never read aside, under its name with ".old" behind, in the place of an earlier one.
/// One that is missing is none to keep, and one that cannot be put aside stays; neither is told.
/// @returns whether it was put aside.
bool SetAside(Files& files, const Text& path);

/// Gives a file that was put aside its name again, unless another has it by now; what fails is not told.
void PutBack(Files& files, const Text& path);

/// Replaces the file by the present criteria and applications, disabled ones too. What fails on the disk is
/// not told; the earlier file then stays.
/// @returns whether the file was written.
bool WriteSettings(Globals& g, std::string_view path);

}  // namespace kd::modKDLimitDesk
