#include "lifecycle/Settings.h"

#include "fuzz/FuzzDesk.h"

namespace kd::fuzz {

void Settings(std::string_view input) {
    using namespace modKDLimitDesk;
    FuzzDesk t("");
    t.files.Put("/s.IKD", std::string(input));
    ReadSettings(t.g, "/s.IKD");
    try {
        WriteSettings(t.g, "/s.IKD");
    } catch (const cError&) {
        Promise(t.files.Get("/s.IKD") == input, "too many lines leave the file");
        return;
    }
    FuzzDesk again("");
    again.files.Put("/s.IKD", t.files.Get("/s.IKD"));
    ReadSettings(again.g, "/s.IKD");
    Promise(again.g.gMasterFiles->Count() == t.g.gMasterFiles->Count() &&
                again.g.gRecents->Count() == t.g.gRecents->Count(),
            "no entry comes or goes");
    for (std::int32_t at = 1; at <= t.g.gMasterFiles->Count(); ++at) {
        Promise(again.g.gMasterFiles->Ref(at).Filename() == t.g.gMasterFiles->Ref(at).Filename(),
                "a path is read back as it was");
    }
    for (std::int32_t at = 1; at <= t.g.gRecents->Count(); ++at) {
        Promise(again.g.gRecents->Ref(at).Criteria() == t.g.gRecents->Ref(at).Criteria(),
                "a criterion is read back as it was");
    }
}

}  // namespace kd::fuzz
