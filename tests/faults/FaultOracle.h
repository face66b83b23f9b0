#pragma once

#include <vector>

#include "fakes/FailingFiles.h"
#include "faults/CommitScene.h"

namespace kd {

/// What became of one view.
enum class Outcome : std::uint8_t {
    Untouched,       // the commit never came to it
    NotSaved,        // SaveSchema failed: the view keeps everything
    NotOverwritten,  // told, and counted as saved all the same
    ReportFailed,    // the file is written, the commit ended in its report
    Done,
};

/// What a commit has to say and to leave behind, told from nothing but its steps on the disk and which of
/// them failed. Kept apart from the code under test: it knows the rules of the messages, not how they come
/// about.
class FaultOracle {
public:
    FaultOracle(const CommitScene& scene, FailingFiles::Kind kind) : m_scene(scene), m_kind(kind) {}

    /// Before each step: which part of the commit it belongs to.
    void Note() { m_captions.push_back(m_scene.desk.Panel2.Caption()); }

    /// After the commit.
    void Judge(const std::vector<FailingFiles::Step>& steps) {
        for (std::size_t at = 0; at < steps.size(); ++at) {
            if (m_captions[at].starts_with("Archiving: ")) {
                Archiving(steps[at]);
            } else if (steps[at].operation == "FlushFolder") {
                Flushing(steps[at]);
            } else if (!SaysMissing(steps[at])) {
                Saving(steps[at]);
            }
        }
        FinishView();
        if (!m_ended) {
            SkipBlocked();
            const auto saved = std::count_if(outcomes.begin(), outcomes.end(), [](Outcome outcome) {
                return outcome == Outcome::Done || outcome == Outcome::NotOverwritten;
            });
            boxes.push_back(
                {Digits(saved) + " File(s) have been modified.", BoxIcon::Information, "KDLimitDesk"});
        }
        outcomes.resize(CommitScene::Views, Outcome::Untouched);
    }

    std::vector<WillingToolkit::Box> boxes;
    std::vector<Outcome> outcomes;
    bool archived = true;

private:
    Text Failure() const {
        const cError error(FailingFiles::NumberOf(m_kind), {});
        return Digits(error.Number()) + ": " + error.Description();
    }
    static bool IsQuestion(const FailingFiles::Step& step) {
        return step.operation == "Exists" || step.operation == "IsRegularFile";
    }

    /// Whether the disk says that a file is not there, which is asked again and is an answer, no failure. Of
    /// log and report nothing more can be learned where the answer is a refusal.
    bool SaysMissing(const FailingFiles::Step& step) const {
        const bool isChangeFile =
            step.path.find(".KDL") != Text::npos || step.path.find(".KDM") != Text::npos;
        return step.operation == "Read" && step.failed &&
               (m_kind == FailingFiles::Kind::NotFound || m_kind == FailingFiles::Kind::PathNotFound ||
                (m_kind == FailingFiles::Kind::PermissionDenied && isChangeFile));
    }
    /// An entry that cannot be read as a file, asked twice, is none.
    bool SaysNoFile(const FailingFiles::Step& step) const {
        return step.operation == "Read" &&
               (m_kind == FailingFiles::Kind::NotFound || m_kind == FailingFiles::Kind::PermissionDenied);
    }

    void Archiving(const FailingFiles::Step& step) {
        if (!step.failed || !archived || IsQuestion(step) || SaysNoFile(step)) {
            return;
        }
        archived = false;
        boxes.push_back({"The following error occured while creating an archive of '" + m_scene.path +
                             "'\r\nError " + Failure() + "\r\n" + step.path,
                         BoxIcon::Exclamation, "KD6 LimitDesk"});
    }

    void Saving(const FailingFiles::Step& step) {
        if (step.operation == "OpenForOutput") {
            FinishView();
            SkipBlocked();
            m_inView = true;
            m_overwritten = false;
            m_outcome = Outcome::Done;
        }
        if (!step.failed || IsQuestion(step) || m_ended) {
            m_overwritten = m_overwritten || step.operation == "DeleteFile";
            return;
        }
        if (m_overwritten) {
            m_outcome = Outcome::ReportFailed;
            End(step);
        } else if (step.operation == "CopyFile" || step.operation == "DeleteFile") {
            m_overwritten = true;
            m_outcome = step.operation == "CopyFile" ? Outcome::NotOverwritten : Outcome::Done;
            boxes.push_back({"Error " + Failure(), BoxIcon::Exclamation, "KDLimitDesk - OverwriteFile"});
        } else if (m_outcome != Outcome::NotSaved) {
            m_outcome = Outcome::NotSaved;
            if (step.operation != "OpenForOutput") {
                m_blocked.push_back(m_scene.TemporaryPath(Current()));
            }
            boxes.push_back(
                {"Error " + Failure() + " occurred in SaveSchema.", BoxIcon::Exclamation, "KDLimitDesk"});
        }
    }

    /// Behind the last view: its folder. One that may not be listed is left as it is.
    void Flushing(const FailingFiles::Step& step) {
        if (!step.failed || m_ended || m_kind == FailingFiles::Kind::PermissionDenied) {
            return;
        }
        FinishView();
        SkipBlocked();
        End(step);
    }
    /// The commit ends there.
    void End(const FailingFiles::Step& step) {
        m_ended = true;
        const cError error(FailingFiles::NumberOf(m_kind), {});
        boxes.push_back({"An error occurred while saving changes:\r\n" + Digits(error.Number()) +
                             " (FailingFiles." + step.operation + ") - " + error.Description(),
                         BoxIcon::Critical, "KDLimitDesk"});
    }

    std::int32_t Current() const { return static_cast<std::int32_t>(outcomes.size()); }

    void FinishView() {
        if (m_inView) {
            outcomes.push_back(m_outcome);
            m_inView = false;
        }
    }
    /// Views whose temporary file stayed open in a failed save do not come to the disk at all.
    void SkipBlocked() {
        while (Current() < CommitScene::Views &&
               std::find(m_blocked.begin(), m_blocked.end(), m_scene.TemporaryPath(Current())) !=
                   m_blocked.end()) {
            outcomes.push_back(Outcome::NotSaved);
            boxes.push_back(
                {"Error 55: File already open occurred in SaveSchema.", BoxIcon::Exclamation, "KDLimitDesk"});
        }
    }

    const CommitScene& m_scene;
    FailingFiles::Kind m_kind;
    std::vector<Text> m_captions;
    std::vector<Text> m_blocked;
    bool m_inView = false;
    bool m_overwritten = false;
    bool m_ended = false;
    Outcome m_outcome = Outcome::Done;
};

}  // namespace kd
