#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/CodePage.h"
#include "base/Text.h"

namespace kd {

/// A moment of the user's wall clock, to the second.
struct DateTime {
    int year = 1970;
    int month = 1;  // 1 to 12
    int day = 1;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const DateTime&) const = default;
};

/// "yyyy-mm-dd" and "hh:mm:ss".
Text DateText(const DateTime& moment);
Text TimeText(const DateTime& moment);
/// The moment that a date text, a blank and a time text stand for.
/// @throws cError(errTypeMismatch) for any other text.
DateTime ParseDateTime(std::string_view text);

class Clock {
public:
    virtual ~Clock() = default;
    virtual DateTime Now() = 0;
};

/// The user's locale. Asked afresh at each use, so that a change is seen at once.
class Locale {
public:
    virtual ~Locale() = default;
    /// The decimal separator, one ASCII character ("." or ",").
    virtual char DecimalSeparator() const = 0;
    /// The single-byte code page of the user's language; the same for the whole run.
    virtual const kd::CodePage& CodePage() const = 0;
};

class Environment {
public:
    virtual ~Environment() = default;
    /// The value of an environment variable, empty when there is none.
    virtual Text Variable(std::string_view name) const = 0;
    /// Path of the program's own file, with its folder and extension.
    virtual Text ProgramPath() const = 0;
};

class Shell {
public:
    virtual ~Shell() = default;
    /// Opens a web address, a "mailto:" link or a local page with the desktop's program for it. No result:
    /// nobody looks at it.
    virtual void Open(std::string_view address) = 0;
};

/// What the platform's open-file dialog is asked.
struct OpenFileRequest {
    Text folder;  // where it opens
    Text title;
    Text description;            // of the kind of files
    std::vector<Text> patterns;  // such as "*.kdt"
    bool mustExist = false;
};

class FileDialog {
public:
    virtual ~FileDialog() = default;
    /// One file: its full path as the only entry. Several files: the folder, then each name. Nothing when the
    /// user cancels.
    virtual std::optional<std::vector<Text>> OpenFiles(const OpenFileRequest& request) = 0;
};

}  // namespace kd
