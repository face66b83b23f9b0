#pragma once

#include <QUrl>

#include "platform/Services.h"

namespace kd {

/// Opens addresses with the desktop's programs.
class QtShell : public Shell {
public:
    void Open(std::string_view address) override;

    /// The address as the desktop takes it; a path of this machine becomes a file address.
    static QUrl Url(std::string_view address);
};

}  // namespace kd
