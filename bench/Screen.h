#pragma once

#include <memory>
#include <string>

class QApplication;

namespace kd::bench {

/// A screen, and the toolkit's application on it. At most one in a process.
class Screen {
public:
    /// One of 1920 x 1080 pixels that nobody sees, or the display that is there.
    enum class Kind { Unseen, Display };
    /// The description of an unseen one goes below `scratch`.
    explicit Screen(const std::string& scratch, Kind kind = Kind::Unseen);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

private:
    std::unique_ptr<QApplication> m_application;
};

}  // namespace kd::bench
