#include "base/cError.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"
#include "fuzz/FuzzTargets.h"
#include "ini/INIfile.h"

namespace kd::fuzz {

/// Whatever is read is written and read again as the same records.
void IniText(std::string_view input) {
    MemoryFiles files;
    const FakeLocale locale;
    files.Put("/a.ini", std::string(input));
    INIfile read(files, locale);
    read.LoadFile("/a.ini");

    INIfile written(files, locale);
    for (const auto& line : read.INIlines()) {
        Promise(!line->Section().empty(), "no record without a key");
        const bool header = line->Section().front() == '[';
        Promise(!header || line->Group() == line->Section(), "a section line is its own group");
        written.INIlines().Add(line->Group(), header ? "" : line->Section(), line->Value());
    }
    if (read.INIlines().Count() > MostRecords) {
        return;
    }
    written.SaveFile("/b.ini");
    INIfile again(files, locale);
    again.LoadFile("/b.ini");
    Promise(again.INIlines().Count() == read.INIlines().Count(), "no record comes or goes");
    for (std::int32_t at = 1; at <= read.INIlines().Count(); ++at) {
        const auto before = read.INIlines().Item(at);
        const auto after = again.INIlines().Item(at);
        Promise(before->Group() == after->Group() && before->Section() == after->Section() &&
                    before->Value() == after->Value(),
                "a record is read back as it was");
    }
}

}  // namespace kd::fuzz
