#pragma once

#include <functional>

#include "edit/EditMemory.h"
#include "fakes/GridDesk.h"

namespace kd {

/// A desk with the property columns in sight that the edit commands are tried on.
struct EditDesk : GridDesk {
    EditMemory memory;

    EditDesk() {
        for (const ColumnNumber number : {cnXRef, cnReportType, cnCategory, cnUnits, cnRules, cnUCase}) {
            SetShown(number, true);
        }
    }
    bool ChangesMade() const { return g.gFiles->Ref(1).ChangesMade(); }
    /// Nothing was written, and nothing marked.
    void ExpectUntouched(const std::vector<Text>& texts, ColumnNumber number) {
        EXPECT_EQ(Column(number), texts);
        EXPECT_FALSE(ChangesMade());
    }
};

}  // namespace kd
