#include "system/SystemServices.h"

#include <algorithm>
#include <array>

namespace kd {

int CodePageNumberOf(std::string_view language) noexcept {
    struct Page {
        int number;
        std::string_view languages;
    };
    static constexpr std::array<Page, 9> Pages{{{1250, "bs cs hr hu pl ro sk sl sq"},
                                                {1251, "be bg mk ru sr uk"},
                                                {1253, "el"},
                                                {1254, "az tr"},
                                                {1255, "he iw yi"},
                                                {1256, "ar fa ur"},
                                                {1257, "et lt lv"},
                                                {1258, "vi"},
                                                {874, "th"}}};
    for (const Page& page : Pages) {
        for (std::string_view rest = page.languages; !rest.empty();) {
            const std::string_view present = rest.substr(0, rest.find(' '));
            if (present == language) {
                return page.number;
            }
            rest.remove_prefix(std::min(rest.size(), present.size() + 1));
        }
    }
    return 1252;
}

}  // namespace kd
