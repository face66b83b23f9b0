#include "appfiles/SchemaHeader.h"
#include "base/CodePage.h"
#include "base/cError.h"
#include "fuzz/FuzzTargets.h"

namespace kd::fuzz {

void Header(std::string_view input) {
    using namespace modKDLimitDesk;
    const CodePage& page = CodePage::Of(1252);
    const Text header = page.Decode(input);
    constexpr std::string_view Block = "[RULES]\r\n   RULE         = Run of nine\r\n\r\n";
    const Text swapped = ReplaceRulesBlock(header, Block);
    Promise(swapped == header || swapped.find(Block) != Text::npos, "the rules come in whole or not at all");
    Promise(ReplaceRulesBlock(swapped, Block) == swapped, "a second swap changes nothing");
    try {
        const Text revision = HeaderVersion(header, page);
        const Text bumped = BumpHeaderVersion(header, page);
        const bool none = bumped == header;
        // What stands before and behind the number stays.
        std::size_t same = 0;
        while (same < header.size() && same < bumped.size() && header[same] == bumped[same]) {
            ++same;
        }
        Promise(none || header.rfind("\r\n") >= same || same == header.size(), "only one line changes");
        Promise(none || bumped.ends_with(header.substr(header.find("\r\n", same == 0 ? 0 : same - 1))),
                "what follows the revision stays");
        (void)revision;
    } catch (const cError& error) {
        Promise(error.Number() == errInvalidArgument || error.Number() == errOverflow,
                "a revision without an end is error 5, one beyond all numbers error 6");
    }
}

}  // namespace kd::fuzz
