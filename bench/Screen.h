#pragma once

#include <memory>
#include <string>

class QApplication;

namespace kd::bench {

/// A screen of 1920 x 1080 pixels that nobody sees, and the toolkit's application on it. At most one in a
/// process.
class Screen {
public:
    /// Its description goes below `scratch`.
    explicit Screen(const std::string& scratch);
    ~Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

private:
    std::unique_ptr<QApplication> m_application;
};

}  // namespace kd::bench
