#include "suite/RuleCatalogue.h"

#include "base/Paths.h"
#include "base/cError.h"
#include "ini/IniScanner.h"

namespace kd {

std::vector<Text> ReadRuleCatalogue(Files& files, const Locale& locale, const std::vector<Text>& folders) {
    const CodePage& page = locale.CodePage();
    for (const Text& folder : folders) {
        if (folder.empty()) {
            continue;  // no such place; with a delimiter behind it, it would be the root
        }
        Text text;
        try {
            // Narrowed, since the names go into every saved file.
            text = page.Narrowed(
                page.DecodeMarked(files.Read(paths::InFolder(folder, "Rules.ini", files.Delimiter()))));
        } catch (const cError&) {
            continue;  // a catalogue that cannot be read is none; the next place has one
        }
        std::vector<Text> rules;
        IniScanner scanner(page);
        scanner.Scan(text, [&](std::string_view group, std::string_view key, std::string_view value) {
            if (group == "[RULES]" && key == "RULE" && !value.empty()) {
                rules.emplace_back(value);
            }
        });
        if (!rules.empty()) {
            return rules;
        }
    }
    return {"Point beyond limit",     "Run of nine",
            "Trend of six",           "Fourteen alternating",
            "Two of three in zone A", "Four of five in zone B",
            "Fifteen in zone C",      "Eight outside zone C"};
}

}  // namespace kd
