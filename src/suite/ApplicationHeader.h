#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/Services.h"

namespace kd {

/// What stands in a schema file before its first variable.
struct ApplicationHeader {
    struct View {
        std::int32_t number;
        Text name;
    };
    Text title;                              // empty when none is given
    std::optional<std::vector<View>> views;  // in the order of the lines; nothing without such a section
};

/// Reads "TITLE" of [APPLICATION] and the lines "VIEW = number,name" of [VIEWS]. A view below number 1 is
/// left out; one beyond 32 bits counts as the largest number there is.
ApplicationHeader ReadApplicationHeader(const Locale& locale, std::string_view bytes);

/// The bytes of files that have been read, by path.
using ReadFiles = std::map<Text, std::string, std::less<>>;

/// The view files that lie beside a template, by ascending number up to 32767, the largest
/// that a view can have. A view is named by the title of its own
/// header, else "View " and its number. What was read for that is added to `read`.
/// @throws cError when the folder cannot be listed.
std::vector<ApplicationHeader::View> ViewsBeside(Files& files, const Locale& locale,
                                                 std::string_view templatePath, ReadFiles& read);

}  // namespace kd
