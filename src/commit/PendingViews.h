#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "base/cError.h"
#include "model/Globals.h"

namespace kd {

/// The views of a commit that have taken their places, with their records, and are not known to be on the
/// disk yet. One of which a flush then fails is a view with changes again.
class PendingViews {
public:
    explicit PendingViews(Globals& g) noexcept : m_g(g) {}

    /// What a view does to the disk is to be settled; `path` is its template's, `index` its position in
    /// gFiles.
    void Note(const Text& path, std::int32_t index) { (void)Noted(path, index); }
    /// The same of a view whose records are added.
    void NoteRecords(const Text& path, std::int32_t index) { Noted(path, index).hasRecords = true; }

    /// Brings them to the disk; does nothing where nothing is pending.
    /// @throws cError where something of it is not on the disk.
    void Settle();
    /// Brings them to the disk together with what a group has written. Returns false where that has failed
    /// for something of the group, or of another program.
    /// @throws cError as Settle.
    bool SettleBesideAGroup();
    /// Tells a failure when what is pending has been settled; what fails in that ends the commit all the
    /// same.
    /// @throws cError as Settle, when it has been told.
    void TellSettled(const std::function<void()>& tell);

private:
    /// What has been done for an application.
    struct Placed {
        std::vector<std::int32_t> views;  // positions in gFiles
        bool hasRecords = false;
    };

    Placed& Noted(const Text& path, std::int32_t index);
    void Check(const std::vector<cError>& failures);
    bool IsOf(const cError& failure, const Text& path, const Placed& placed) const;
    std::optional<cError> FailureAmong(const std::vector<cError>& failures, const Text& path,
                                       const Placed& placed) const;
    std::optional<cError> FailureOf(const Text& path, const Placed& placed);

    Globals& m_g;
    std::map<Text, Placed> m_placed;  // by template
};

}  // namespace kd
