#include "suite/ApplicationHeader.h"

#include "base/cError.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"
#include "fuzz/FuzzTargets.h"
#include "suite/RuleCatalogue.h"
#include "suite/StandaloneArchiver.h"

namespace kd::fuzz {

/// The first line is the name of a file beside the template, the rest the template.
void Application(std::string_view input) {
    MemoryFiles files;
    const FakeLocale locale;
    const auto end = input.find('\n');
    const Text beside = locale.CodePage().Decode(input.substr(0, end));
    const std::string bytes(end == std::string_view::npos ? "" : input.substr(end + 1));
    files.Put("/apps/a.kdt", bytes);
    files.Put("/apps/Rules.ini", bytes);
    if (!beside.empty() && beside.find('/') == Text::npos && beside.find('\0') == Text::npos &&
        beside != "a.kdt") {
        files.Put("/apps/" + beside, bytes);
    }
    const ApplicationHeader header = ReadApplicationHeader(locale, bytes);
    if (header.views) {
        for (const auto& view : *header.views) {
            Promise(view.number >= 1, "a listed view has a number");
        }
    }
    std::int32_t last = 0;
    ReadFiles read;
    for (const auto& view : ViewsBeside(files, locale, "/apps/a.kdt", read)) {
        Promise(view.number > last && view.number <= 32767, "views beside come in order");
        last = view.number;
    }
    Promise(!ReadRuleCatalogue(files, locale, {"/apps"}).empty(), "the catalogue is never empty");
    FakeClock clock;
    Promise(StandaloneArchiver(files, clock, locale).ArchiveApplication("/apps/a.kdt").empty(),
            "what loads can be archived");
}

}  // namespace kd::fuzz
