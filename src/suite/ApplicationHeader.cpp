#include "suite/ApplicationHeader.h"

#include <algorithm>
#include <limits>
#include <set>

#include "base/ApplicationNames.h"
#include "base/NumberTexts.h"
#include "base/Numbers.h"
#include "base/Paths.h"
#include "base/cError.h"
#include "ini/IniScanner.h"

namespace kd {

namespace {

/// The text up to the first line that is "[FIELD]" and nothing else, as a save takes it for the header; the
/// rest may be large and tells nothing here.
std::string_view HeaderPart(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const auto end = bytes.find(CrLf, at);
        const auto line = bytes.substr(at, end == std::string_view::npos ? end : end - at);
        if (EqualsNoCaseAscii(line, "[FIELD]")) {
            return bytes.substr(0, at);
        }
        if (end == std::string_view::npos) {
            break;
        }
        at = end + CrLf.size();
    }
    return bytes;
}

/// "number,name"; a name is kept from the first comma on, further ones too.
ApplicationHeader::View ParseView(std::string_view value) {
    const auto comma = value.find(',');
    const double number = NumberAtFront(value.substr(0, comma));
    ApplicationHeader::View view{0, {}};
    if (number >= 1) {
        constexpr auto Most = std::numeric_limits<std::int32_t>::max();
        view.number = number < Most ? ToInt32(number) : Most;
    }
    if (comma != std::string_view::npos) {
        view.name = Trim(value.substr(comma + 1));
    }
    return view;
}

}  // namespace

ApplicationHeader ReadApplicationHeader(const Locale& locale, std::string_view bytes) {
    const Text text = locale.CodePage().Decode(HeaderPart(bytes));
    ApplicationHeader header;
    IniScanner scanner(locale.CodePage());
    scanner.Scan(text, [&](std::string_view group, std::string_view key, std::string_view value) {
        if (group == "[APPLICATION]" && key == "TITLE") {
            header.title = value;
        } else if (group == "[VIEWS]") {
            if (!header.views) {
                header.views.emplace();
            }
            if (key == "VIEW") {
                auto view = ParseView(value);
                if (view.number >= 1) {
                    header.views->push_back(std::move(view));
                }
            }
        }
    });
    return header;
}

namespace {

/// The title in the header of a view's file; nothing where that is no file at all.
std::optional<Text> TitleOfView(Files& files, const Locale& locale, const Text& path, ReadFiles& read) {
    try {
        std::string bytes = files.Read(path);
        Text title = ReadApplicationHeader(locale, bytes).title;
        read[path] = std::move(bytes);
        return title;
    } catch (const cError&) {
        // One that cannot be read has no title; the load finds it without variables.
        return files.IsRegularFile(path) ? std::optional(Text()) : std::nullopt;
    }
}

}  // namespace

std::vector<ApplicationHeader::View> ViewsBeside(Files& files, const Locale& locale,
                                                 std::string_view templatePath, ReadFiles& read) {
    std::set<std::int32_t> numbers;
    for (const Text& name : files.FolderEntries(paths::FolderToList(templatePath))) {
        const auto number = names::ViewNumberOf(name, paths::FileName(templatePath), locale.CodePage());
        // A number that no view can have would stop the load; no save has written such a file.
        if (number >= 1 && number <= std::numeric_limits<std::int16_t>::max()) {
            numbers.insert(number);
        }
    }
    std::vector<ApplicationHeader::View> views;
    for (const std::int32_t number : numbers) {
        // By the name that the load takes, so that the title is that of the file which is loaded.
        const Text path = paths::ChangeExtension(templatePath, names::ViewExtension(templatePath, number));
        if (const auto title = TitleOfView(files, locale, path, read)) {
            views.push_back({number, title->empty() ? "View " + Digits(number) : *title});
        }
    }
    return views;
}

}  // namespace kd
