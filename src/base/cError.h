#pragma once

#include <cstdint>
#include <stdexcept>
#include <utility>

#include "base/Text.h"

namespace kd {

/// The numbers of the failures that the program raises; users know them from the suite's other programs.
enum ErrorNumber : std::int32_t {
    errInvalidArgument = 5,    // "Invalid procedure call or argument"
    errOverflow = 6,           // "Overflow"
    errOutOfMemory = 7,        // "Out of memory"
    errSubscript = 9,          // "Subscript out of range"
    errTypeMismatch = 13,      // "Type mismatch"
    errFileNotFound = 53,      // "File not found"
    errFileAlreadyOpen = 55,   // "File already open"
    errDevice = 57,            // "Device I/O error"
    errDiskFull = 61,          // "Disk full"
    errPermissionDenied = 70,  // "Permission denied"
    errPathNotFound = 76,      // "Path not found"
};

/// The usual words for a number; "Application-defined or object-defined error" for any other.
Text ErrorText(std::int32_t number);

/// A failure with its number, where it arose ("Class.Operation") and its words.
class cError : public std::runtime_error {
public:
    /// An empty description takes the usual words of the number. `path` names the file at hand, if there is
    /// one.
    cError(std::int32_t number, Text source, Text description = {}, Text path = {});

    std::int32_t Number() const noexcept { return m_number; }
    const Text& Source() const noexcept { return m_source; }
    const Text& Description() const noexcept { return m_description; }
    /// Path of the file at hand; empty when there is none.
    const Text& Path() const noexcept { return m_path; }

    /// The same failure with the file that was at hand; a path that is already known stays.
    cError WithPath(std::string_view path) const {
        return m_path.empty() ? cError(m_number, m_source, m_description, Text(path)) : *this;
    }

private:
    std::int32_t m_number;
    Text m_source;
    Text m_description;
    Text m_path;
};

/// Any failure as one of the program's own: a cError as it is, want of memory as errOutOfMemory, and anything
/// else as errInvalidArgument with its words; `source` names where these two were met.
cError AsError(const std::exception& failure, Text source);

}  // namespace kd
