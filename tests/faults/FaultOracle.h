#pragma once

#include <vector>

#include "base/NumberTexts.h"
#include "fakes/FailingFiles.h"
#include "faults/CommitScene.h"

namespace kd {

/// What became of one view.
enum class Outcome : std::uint8_t {
    Untouched,       // the commit never came to it
    NotSaved,        // SaveSchema failed: the view keeps everything
    NotOverwritten,  // told, and counted as saved all the same
    ReportFailed,    // the file has had its turn, the commit ended before all of its records were added
    Done,
};

/// What a commit of one group has to say and to leave behind, told from nothing but its steps on the disk and
/// the first of them that failed. Kept apart from the code under test: it knows the rules of the messages,
/// not how they come about.
class FaultOracle {
public:
    using Step = FailingFiles::Step;

    FaultOracle(const CommitScene& scene, FailingFiles::Kind kind, bool forGood)
        : m_scene(scene), m_kind(kind), m_forGood(forGood) {}

    /// After the commit.
    void Judge(const std::vector<Step>& steps) {
        outcomes.assign(CommitScene::Views, Outcome::Done);
        for (std::size_t at = 0; at < steps.size(); ++at) {
            if (steps[at].failed && Matters(steps, at)) {
                JudgeFailure(steps, at);
                break;
            }
        }
        if (!m_ended) {
            const auto saved = std::count_if(outcomes.begin(), outcomes.end(), [](Outcome outcome) {
                return outcome == Outcome::Done || outcome == Outcome::NotOverwritten;
            });
            boxes.push_back(
                {Digits(saved) + " File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"});
        }
    }

    std::vector<ScriptedToolkit::Box> boxes;
    std::vector<Outcome> outcomes;
    bool archived = true;

private:
    Text Failure() const {
        const cError error(FailingFiles::NumberOf(m_kind), {});
        return Digits(error.Number()) + ": " + error.Description();
    }
    static std::ptrdiff_t CountOf(const std::vector<Step>& steps, std::size_t last, const char* operation) {
        return std::count_if(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(last) + 1,
                             [&](const Step& step) { return step.operation == operation; });
    }

    /// Whether a failure has any consequence of its own.
    bool Matters(const std::vector<Step>& steps, std::size_t at) const {
        const Step& step = steps[at];
        if (step.operation == "Exists" || step.operation == "IsRegularFile" ||
            step.operation == "DeleteAbandoned") {
            return false;
        }
        // The look for what an earlier commit has left behind.
        if (step.operation == "FolderEntries" && at > 0 && steps[at - 1].operation == "Settle") {
            return false;
        }
        return step.operation != "Read" || !IsAnswer(steps, at);
    }
    /// Whether a failed reading is an answer. A file that is not there is asked for again; of log and report
    /// nothing more can be learned where the answer is a refusal. An entry that cannot be read as a file,
    /// asked twice, is none of the archive's.
    bool IsAnswer(const std::vector<Step>& steps, std::size_t at) const {
        using Kind = FailingFiles::Kind;
        if (CountOf(steps, at, "OpenForOutput") == 0) {
            return m_kind == Kind::NotFound || m_kind == Kind::PermissionDenied;
        }
        const Text& path = steps[at].path;
        const bool isChangeFile = path.find(".KDL") != Text::npos || path.find(".KDM") != Text::npos;
        return m_kind == Kind::NotFound || m_kind == Kind::PathNotFound ||
               (m_kind == Kind::PermissionDenied && isChangeFile);
    }

    void JudgeFailure(const std::vector<Step>& steps, std::size_t at) {
        const Text& operation = steps[at].operation;
        const auto written = static_cast<std::int32_t>(CountOf(steps, at, "OpenForOutput"));
        const auto placed = static_cast<std::int32_t>(CountOf(steps, at, "CopyFile"));
        if (placed > 0) {
            Placing(operation, placed - 1);
        } else if (written == 0) {
            NoArchive(steps, at);
            for (std::int32_t view = 0; m_forGood && view < CommitScene::Views; ++view) {
                NotSaved(view);
            }
        } else if (written == 1 && (operation == "OpenForOutput" || operation == "Read" ||
                                    operation == "Write" || operation == "Close")) {
            FirstText(steps, at);
        } else if (m_forGood) {
            // Beside others it is tried again view by view, and fails again.
            NoArchive(steps, at);
            for (std::int32_t view = 0; view < CommitScene::Views; ++view) {
                NotSaved(view);
            }
        }
    }

    /// The first text is alone in its group: its failure is told, behind that of the archive.
    void FirstText(const std::vector<Step>& steps, std::size_t at) {
        if (m_forGood) {
            NoArchive(steps, at);
        }
        NotSaved(0);
        const bool blocks = steps[at].operation != "OpenForOutput";
        for (std::int32_t view = 1; view < CommitScene::Views; ++view) {
            if (blocks && m_scene.TemporaryPath(view) == m_scene.TemporaryPath(0)) {
                outcomes[static_cast<std::size_t>(view)] = Outcome::NotSaved;
                boxes.push_back({"Error 55: File already open occurred in SaveSchema.", BoxIcon::Exclamation,
                                 "KDLimitDesk"});
            } else if (m_forGood) {
                NotSaved(view);
            }
        }
    }

    /// A view that has its turn, or the end when all of them have had it.
    void Placing(const Text& operation, std::int32_t view) {
        const auto at = static_cast<std::size_t>(view);
        const bool isMoved = operation == "CopyFile" || operation == "DeleteFile";
        if (isMoved) {
            boxes.push_back({"Error " + Failure(), BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile"});
        }
        if (isMoved && !m_forGood) {
            outcomes[at] = operation == "CopyFile" ? Outcome::NotOverwritten : Outcome::Done;
            return;
        }
        const bool isSettling = operation == "Settle";
        if (isSettling && !m_forGood) {
            return;  // each file by itself is on the disk
        }
        End(isMoved || isSettling ? FailingCheck(view) : operation);
        for (std::size_t other = 0; other < outcomes.size(); ++other) {
            if (other < at) {
                outcomes[other] = m_forGood ? Outcome::ReportFailed : Outcome::Done;
            } else if (!isSettling || other == at) {
                outcomes[other] = other == at ? Outcome::ReportFailed : Outcome::Untouched;
            }
        }
    }
    /// What fails first when all that has been done up to a view is asked for by itself. Before the first
    /// record that is the folder; one that may not be listed is passed over, and the log cannot be opened.
    Text FailingCheck(std::int32_t view) const {
        return view == 0 && m_kind != FailingFiles::Kind::PermissionDenied ? "FlushFolder" : "OpenForAppend";
    }

    /// The archive fails, now or in the try of its own that follows.
    void NoArchive(const std::vector<Step>& steps, std::size_t at) {
        const bool isNow = CountOf(steps, at, "OpenForOutput") == 0;
        auto failed = std::find_if(
            steps.begin() + static_cast<std::ptrdiff_t>(at), steps.end(),
            [&](const Step& step) { return step.failed && (isNow || step.operation == "FolderEntries"); });
        // What can neither be copied nor read is no file of the application, up to the template.
        using Kind = FailingFiles::Kind;
        const bool passesOver = m_kind == Kind::NotFound || m_kind == Kind::PermissionDenied;
        for (auto later = failed; m_forGood && passesOver && later != steps.end(); ++later) {
            if (failed->operation == "CopyForArchive" && later->operation == "CopyForArchive") {
                failed = later;
            }
        }
        archived = false;
        boxes.push_back({"The following error occured while creating an archive of '" + m_scene.path +
                             "'\r\nError " + Failure() + "\r\n" + failed->path,
                         BoxIcon::Exclamation, "KD6 LimitDesk"});
    }
    void NotSaved(std::int32_t view) {
        outcomes[static_cast<std::size_t>(view)] = Outcome::NotSaved;
        boxes.push_back(
            {"Error " + Failure() + " occurred in SaveSchema.", BoxIcon::Exclamation, "KDLimitDesk"});
    }
    /// The commit ends there.
    void End(const Text& operation) {
        m_ended = true;
        const cError error(FailingFiles::NumberOf(m_kind), {});
        boxes.push_back({"An error occurred while saving changes:\r\n" + Digits(error.Number()) +
                             " (FailingFiles." + operation + ") - " + error.Description(),
                         BoxIcon::Critical, "KDLimitDesk"});
    }

    const CommitScene& m_scene;
    FailingFiles::Kind m_kind;
    bool m_forGood;
    bool m_ended = false;
};

}  // namespace kd
