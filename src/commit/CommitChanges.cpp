#include "commit/CommitChanges.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "appfiles/SchemaWriter.h"
#include "base/Numbers.h"
#include "base/Paths.h"
#include "commit/ChangeReport.h"
#include "commit/frmCommit.h"
#include "grid/ColumnCatalogue.h"
#include "model/Columns.h"

namespace kd {

namespace {

/// Column number of the first limit or bound that is above the one before it; 0 when all are in order.
std::int32_t FaultyColumn(const cField& field) {
    double bound = field.Maximum();
    for (int limit = 0; limit < LimitCount; ++limit) {
        if (field.LimitFlag(limit) != "F") {
            continue;
        }
        if (field.Limit(limit) > bound) {
            return LimitColumn(limit);
        }
        bound = field.Limit(limit);
    }
    return field.Minimum() > bound ? cnMin : 0;
}

void ShowFault(Desk& desk, const GridCell& fault) {
    desk.Grid.SetRedraw(true);
    desk.Grid.ShowCell(1, fault.screenCol);
    desk.Grid.Refresh();
    desk.Grid.Select(fault.row, fault.screenCol);
    desk.Grid.ShowCell(fault.row, fault.screenCol);
    desk.g.platform.toolkit.Say("Invalid Limit Entered!", BoxIcon::Exclamation);
}

/// The commit from the confirmed dialog on.
class Commit {
public:
    explicit Commit(Desk& desk) : m_desk(desk), m_g(desk.g), m_panelText(desk.Panel2.Caption()) {}

    void Run() {
        m_g.platform.toolkit.SetMousePointer(Pointer::Hourglass);
        m_desk.ProgressBar1.SetValue(0);
        m_desk.Panel2.SetCaption({});
        try {
            Begin();
            for (std::int32_t index = 1; index <= m_g.gFiles->Count(); ++index) {
                if (m_g.gFiles->Ref(index).Selected()) {
                    CommitView(index);
                }
            }
            FlushFolders();
        } catch (const std::exception& failure) {
            Fail(AsError(failure, "CommitChanges"));
            return;
        }
        Release();
        m_desk.Panel2.SetCaption(m_panelText);
        m_desk.ProgressBar1.SetValue(0);
        m_g.platform.toolkit.SetMousePointer(Pointer::Default);
        m_g.platform.toolkit.Say(Digits(m_modified) + " File(s) have been modified.", BoxIcon::Information);
    }

private:
    void Begin() {
        m_selected = std::count_if(m_g.gFiles->begin(), m_g.gFiles->end(),
                                   [](const auto& file) { return file->Selected(); });
        m_stamp.date = DateText(m_g.platform.clock.Now());
        m_stamp.time = TimeText(m_g.platform.clock.Now());
        m_stamp.moment = ParseDateTime(m_stamp.date + " " + m_stamp.time);
        m_stamp.user = m_g.gUserName;
        m_archiver = m_g.platform.suite.NewArchiver();
        m_archiveContext = m_g.platform.suite.NewArchiveContext();
    }

    void CommitView(std::int32_t index) {
        ++m_worked;
        const auto file = m_g.gFiles->Item(index);
        const Text path = file->Filename();
        if (!ItemExists(path, m_archived)) {
            m_desk.Panel2.SetCaption("Archiving: " + path);
            m_archived.insert(path);
            Archive(path);
        }
        m_desk.Panel2.SetCaption("Saving: " + path);
        m_desk.ProgressBar1.SetValue(100.0 * static_cast<double>(m_worked) / static_cast<double>(m_selected));
        if (!modKDLimitDesk::SaveSchema(m_g, index)) {
            return;
        }
        ++m_modified;
        m_folders.insert(paths::FolderToList(path));
        ReportChanges(m_desk, *file, m_stamp);
        file->SetChangesMade(false);
    }

    /// What has been told to be saved is saved for good, once for each folder and not for each view.
    void FlushFolders() {
        std::optional<cError> first;
        for (const Text& folder : m_folders) {
            try {
                m_g.platform.files.FlushFolder(folder);
            } catch (const cError& error) {
                // One that may not be listed cannot be flushed; a failure is no reason to leave the others.
                if (error.Number() != errPermissionDenied && !first) {
                    first.emplace(error);
                }
            }
        }
        if (first) {
            throw cError(*first);
        }
    }

    /// Deliberate: a failed archive does not keep the view from being saved.
    /// CommitChangesTest.AFailedArchiveIsShownAndTheSaveGoesOn
    void Archive(const Text& path) {
        const Text failure = m_archiver->ArchiveApplication(path);
        if (failure.empty()) {
            return;
        }
        Text text = "The following error occured while creating an archive of '" + path + "'";
        text += CrLf;
        text += failure;
        m_g.platform.toolkit.Say(text, BoxIcon::Exclamation, "KD6 LimitDesk");
    }

    void Fail(const cError& error) {
        try {
            FlushFolders();  // views already done stay done
        } catch (...) {
            // The failure that ended the commit is the one to tell.
        }
        Text text = "An error occurred while saving changes:";
        text += CrLf;
        text += Digits(error.Number()) + " (" + error.Source() + ") - " + error.Description();
        m_g.platform.toolkit.Say(text, BoxIcon::Critical);
        Release();
        m_g.platform.toolkit.SetMousePointer(Pointer::Default);
        m_desk.Panel2.SetCaption(m_panelText);
        m_desk.ProgressBar1.SetValue(0);
    }

    void Release() {
        m_archiveContext.reset();
        m_archiver.reset();
    }

    Desk& m_desk;
    Globals& m_g;
    Text m_panelText;
    CommitStamp m_stamp;
    std::set<Text> m_archived;  // templates
    std::set<Text> m_folders;   // of the views that have been saved
    std::unique_ptr<KDArchiver> m_archiver;
    std::unique_ptr<KDArchiveContext> m_archiveContext;
    std::int64_t m_selected = 0;
    std::int32_t m_worked = 0;
    std::int32_t m_modified = 0;
};

}  // namespace

std::optional<GridCell> ValidateLimits(Desk& desk) {
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        const cField& field = desk.g.gFields->Ref(desk.Grid.RowData(row));
        if (!IsNumericType(field.FieldType())) {
            continue;
        }
        if (const std::int32_t column = FaultyColumn(field); column != 0) {
            return GridCell{row, LabelIndexToGridColumn(desk, column)};
        }
    }
    return std::nullopt;
}

bool ItemExists(const Text& key, const std::set<Text>& list) {
    return list.count(key) != 0;
}

void CommitChanges(Desk& desk) {
    if (const auto fault = ValidateLimits(desk)) {
        ShowFault(desk, *fault);
        return;
    }
    frmCommit dialog(desk.g);
    dialog.Display();
    if (dialog.Cancel()) {
        return;
    }
    dialog.Destroy();
    Commit(desk).Run();
}

}  // namespace kd
