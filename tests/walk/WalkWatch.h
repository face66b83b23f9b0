#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "qt/Application.h"

namespace kd {

/// Looks at a running program between two events of its user, and says what is not in order: texts, marks,
/// flags, header pictures, files, and what a job leaves behind.
class WalkWatch {
public:
    /// `folder` holds everything that the program writes; `fail` hears what is not in order.
    WalkWatch(std::string folder, std::function<void(const std::string&)> fail);

    /// A run begins.
    void Begin(Application& program);

    /// The user did something.
    void Event() noexcept { ++m_events; }
    /// A window whose command writes below `folder` is open.
    void MayWrite(const std::string& folder) { m_writable.push_back(folder); }
    /// The rows were, or are being, made anew from the files, or a commit has moved the baseline.
    void BaselineMoves() noexcept { m_newBaseline = true; }

    /// A look from outside any job.
    void Look();
    /// A look in the middle of a command: rows may be still to come, and what it has switched on is on.
    void LookInJob();

    int Looks() const noexcept { return m_looks; }
    /// Cells that bore a mark at one look or another.
    int Marks() const noexcept { return m_marks; }

private:
    /// What tells whether a file was written: number, length, time.
    using Stamp = std::tuple<std::uint64_t, std::uint64_t, std::int64_t>;

    bool CheckCells();
    bool CheckCell(std::int32_t row, std::int32_t screenCol, std::vector<bool>& marked);
    bool MayStandUnmarked(std::int32_t row, std::int32_t column, const Text& text, const Text& saved) const;
    void CheckViews(const std::vector<bool>& marked);
    void CheckHeader();
    void CheckPutBack();
    void CheckFiles();
    void KeepRules();
    std::map<std::string, Stamp> Files() const;

    std::string m_folder;
    std::function<void(const std::string&)> m_fail;
    Application* m_program = nullptr;
    int m_looks = 0;
    int m_marks = 0;
    int m_events = 0;  // since the last look
    bool m_newBaseline = true;
    std::vector<Text> m_rules;    // of each variable, since nobody has written them
    std::vector<bool> m_changed;  // of each view, at the last look
    std::map<std::string, Stamp> m_files;
    std::vector<std::string> m_writable;  // since the last look
};

}  // namespace kd
