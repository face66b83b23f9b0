#pragma once

#include <optional>

#include "grid/Desk.h"

/// The way back to disk.
///
/// What is on the disk after each step, for the first view of an application. "unfinished" is a folder under
/// a name that no archive has. CommitTableTest reads this table.
///
/// | after this step                         | archive    | temporary | schema file | log  | report |
/// |-----------------------------------------|------------|-----------|-------------|------|--------|
/// | the dialog is confirmed                 | none       | none      | old         | old  | old    |
/// | a folder for the archive is made        | unfinished | none      | old         | old  | old    |
/// | all files are in it, a text is begun    | unfinished | part      | old         | old  | old    |
/// | the new text is written to it           | unfinished | whole     | old         | old  | old    |
/// | all is settled, the archive has a name  | whole      | whole     | old         | old  | old    |
/// | the text takes the schema file's place  | whole      | whole     | new         | old  | old    |
/// | the temporary file is deleted           | whole      | none      | new         | old  | old    |
/// | the first record is added to the log    | whole      | none      | new         | part | old    |
/// | the last record is added to the log     | whole      | none      | new         | new  | old    |
/// | the entry is added to the report        | whole      | none      | new         | new  | new    |
///
/// The first five rows are gone through by all views of a group (see GroupCommit.h) before the first of them
/// comes to the sixth; from there on it is one view after the other. The views of an application share their
/// temporary file: a text that has to leave it to the next one waits beside it, under a name that nobody can
/// foresee and that ends in its schema file's.
///
/// A schema file that another program saves while its new text waits is seen to have changed when its turn
/// comes: the text is then made anew, view by view from there on.
///
/// A program that is stopped before a schema file's turn has not changed it; one that is stopped behind it
/// has saved the view, whose records are then in the log as far as they had come, and whose old values are in
/// the archive. Every record and every entry is added in one write, and stands there whole or not at all.
///
/// Where the disk lets it, the temporary file itself is put in the schema file's place, and two of the rows
/// are one step.
///
/// For a machine that goes down: the files of a group's archives and its new texts are on the disk itself
/// before the archives get their names, and those names before the first schema file is replaced. The records
/// and entries of a group are on the disk before any file of the next one is replaced, and with the places
/// that its schema files have taken before any box comes up. Where a schema file has to be written over in
/// place, its new text is on the disk as well, as far as the system lets it be.
namespace kd {

/// Whether the bounds and the fixed limits of all numeric variables are in order, from Maximum down to
/// Minimum; rows that are hidden count too.
/// @returns the first cell that is not; nothing when all are.
std::optional<GridCell> ValidateLimits(Desk& desk);

/// Checks all limits, asks which of the changed views to write, and archives, saves and reports each of them.
/// What fails is told in boxes; nothing of it escapes once the user has confirmed.
void CommitChanges(Desk& desk);

}  // namespace kd
