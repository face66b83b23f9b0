#pragma once

#include <optional>
#include <set>

#include "grid/Desk.h"

/// The way back to disk.
///
/// What is on the disk after each step, for the view in hand; nothing else changes meanwhile. "unfinished" is
/// a folder under a name that no archive has. CommitTableTest reads this table.
///
/// | after this step                         | archive    | temporary | schema file | log  | report |
/// |-----------------------------------------|------------|-----------|-------------|------|--------|
/// | the dialog is confirmed                 | none       | none      | old         | old  | old    |
/// | a folder for the archive is made        | unfinished | none      | old         | old  | old    |
/// | all files are in it, it gets its name   | whole      | none      | old         | old  | old    |
/// | the temporary file is opened            | whole      | part      | old         | old  | old    |
/// | the new text is written to it           | whole      | whole     | old         | old  | old    |
/// | it takes the schema file's place        | whole      | whole     | new         | old  | old    |
/// | the temporary file is deleted           | whole      | none      | new         | old  | old    |
/// | the first record is added to the log    | whole      | none      | new         | part | old    |
/// | the last record is added to the log     | whole      | none      | new         | new  | old    |
/// | the entry is added to the report        | whole      | none      | new         | new  | new    |
///
/// A program that is stopped before the schema file's turn has changed nothing; one that is stopped behind it
/// has saved the view, whose records are then in the log as far as they had come, and whose old values are in
/// the archive. Every record and every entry is added in one write, and stands there whole or not at all.
///
/// Where the disk lets it, the temporary file itself is put in the schema file's place, and two of the rows
/// are one step.
///
/// For a machine that goes down: the archive is on the disk itself before the temporary file is opened, a
/// schema file's new text before it takes the old one's place, a view's records and its entry before the next
/// view's turn, and the places that the schema files have taken before a box tells how many they are. Where a
/// schema file has to be written over in place, its temporary file is flushed before that where the system
/// lets it be.
namespace kd {

/// Whether the bounds and the fixed limits of all numeric variables are in order, from Maximum down to
/// Minimum; rows that are hidden count too.
/// @returns the first cell that is not; nothing when all are.
std::optional<GridCell> ValidateLimits(Desk& desk);

/// Whether the list has the key.
bool ItemExists(const Text& key, const std::set<Text>& list);

/// Checks all limits, asks which of the changed views to write, and archives, saves and reports each of them.
/// What fails is told in boxes; nothing of it escapes once the user has confirmed.
void CommitChanges(Desk& desk);

}  // namespace kd
