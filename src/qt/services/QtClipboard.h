#pragma once

#include "platform/Suite.h"

namespace kd {

/// The desktop's clipboard. A text goes out as it is given and, beside it, as an HTML table of the same
/// cells; a text comes in from another program's table where there is one, else as it stands.
class QtClipboard : public KDClipboard {
public:
    Text GetText() override;
    void SetText(std::string_view text) override;
};

}  // namespace kd
