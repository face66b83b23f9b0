#pragma once

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Services.h"

namespace kd {

class FakeLocale : public Locale {
public:
    char separator = '.';
    int page = 1252;
    char DecimalSeparator() const override { return separator; }
    const kd::CodePage& CodePage() const override { return CodePage::Of(page); }
};

/// Gives the moments in order; the last one for ever.
class FakeClock : public Clock {
public:
    std::vector<DateTime> moments{{2026, 3, 4, 5, 6, 7}};
    int readings = 0;
    DateTime Now() override {
        const auto at = static_cast<std::size_t>(readings++);
        return moments[at < moments.size() ? at : moments.size() - 1];
    }
};

class FakeEnvironment : public Environment {
public:
    std::map<Text, Text> variables{{"USERNAME", "anna"}};
    Text programPath = "/opt/kd/KDLimitDesk";
    Text Variable(std::string_view name) const override {
        const auto found = variables.find(Text(name));
        return found == variables.end() ? Text() : found->second;
    }
    Text ProgramPath() const override { return programPath; }
};

class FakeShell : public Shell {
public:
    std::vector<Text> opened;
    void Open(std::string_view address) override { opened.emplace_back(address); }
};

/// Answers with `answer` and remembers what it was asked.
class FakeFileDialog : public FileDialog {
public:
    std::optional<std::vector<Text>> answer;
    std::vector<OpenFileRequest> requests;
    std::optional<std::vector<Text>> OpenFiles(const OpenFileRequest& request) override {
        requests.push_back(request);
        return answer;
    }
};

}  // namespace kd
