#include "commit/CommitChanges.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/NumberTexts.h"
#include "base/Scope.h"
#include "commit/GroupCommit.h"
#include "commit/frmCommit.h"
#include "grid/ColumnCatalogue.h"
#include "platform/Hourglass.h"

namespace kd {

namespace {

void ShowFault(Desk& desk, const GridCell& fault) {
    desk.Grid.SetRedraw(true);
    desk.Grid.ShowCell(1, fault.screenCol);
    desk.Grid.Select(fault.row, fault.screenCol);
    desk.Grid.ShowCell(fault.row, fault.screenCol);
    desk.g.platform.toolkit.Say("Invalid Limit Entered!", BoxIcon::Exclamation);
}

/// The commit from the confirmed dialog on.
class Commit {
public:
    explicit Commit(Desk& desk) : m_desk(desk), m_g(desk.g), m_panelText(desk.Panel2.Caption()) {}

    void Run() {
        if (SaveAll()) {
            m_g.platform.toolkit.Say(Digits(m_modified) + " File(s) have been modified.",
                                     BoxIcon::Information);
        }
    }

private:
    /// Whether all went as it should; else the failure was told.
    bool SaveAll() {
        const Hourglass hourglass(m_g.platform.toolkit);
        const Scope atRest([this] {
            m_views.reset();
            m_archiveContext.reset();
            m_archiver.reset();
            m_desk.Panel2.SetCaption(std::move(m_panelText));
            m_desk.ProgressBar1.SetValue(0);
        });
        m_desk.ProgressBar1.SetValue(0);
        m_desk.Panel2.SetCaption({});
        m_g.platform.toolkit.KeepAlive();  // the dialog is seen to go before the first archive is made
        try {
            Begin();
            for (std::int32_t index = 1; index <= m_g.gFiles->Count(); ++index) {
                if (m_g.gFiles->Ref(index).Selected()) {
                    m_views->Take(index);
                }
            }
            m_views->Finish();
            m_modified = m_views->Modified();
        } catch (const std::exception& failure) {
            Fail(AsError(failure, "CommitChanges"));
            return false;
        }
        return true;
    }

    void Begin() {
        const auto selected = std::count_if(m_g.gFiles->begin(), m_g.gFiles->end(),
                                            [](const auto& file) { return file->Selected(); });
        CommitStamp stamp;
        stamp.date = DateText(m_g.platform.clock.Now());
        stamp.time = TimeText(m_g.platform.clock.Now());
        stamp.moment = ParseDateTime(stamp.date + " " + stamp.time);
        stamp.user = m_g.gUserName;
        m_archiver = m_g.platform.suite.NewArchiver();
        m_archiveContext = m_g.platform.suite.NewArchiveContext();
        m_views.emplace(m_desk, stamp, selected, *m_archiver);
    }

    void Fail(const cError& error) {
        if (m_views) {
            m_views->Abandon();
        }
        Text text = "An error occurred while saving changes:";
        text += CrLf;
        text += Digits(error.Number()) + " (" + error.Source() + ") - " + error.Description();
        m_g.platform.toolkit.Say(text, BoxIcon::Critical);
    }

    Desk& m_desk;
    Globals& m_g;
    Text m_panelText;
    std::unique_ptr<KDArchiver> m_archiver;
    std::unique_ptr<KDArchiveContext> m_archiveContext;
    std::optional<GroupCommit> m_views;
    std::int32_t m_modified = 0;
};

}  // namespace

std::optional<GridCell> ValidateLimits(Desk& desk) {
    for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
        const cField& field = desk.g.gFields->Ref(desk.Grid.RowData(row));
        if (const std::int32_t column = field.ColumnOutOfOrder(); column != 0) {
            return GridCell{row, LabelIndexToGridColumn(desk, column)};
        }
    }
    return std::nullopt;
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
