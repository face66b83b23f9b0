#include "commit/ChangeReport.h"

#include <memory>

#include "appfiles/FileNames.h"
#include "appfiles/SchemaHeader.h"
#include "model/modKDLimitDesk.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

/// The two change files of one view.
class Report {
public:
    Report(Desk& desk, const cFile& file, const CommitStamp& stamp)
        : m_desk(desk), m_g(desk.g), m_stamp(stamp) {
        m_log = m_g.platform.suite.NewChangeLog();
        m_log->SetDelimiter("\t");
        m_memo = m_g.platform.suite.NewChangeMemo();
        m_log->OpenLog(ChangeLogPath(m_g, file.Filename()));
        m_memo->OpenMemo(ChangeReportPath(m_g, file.Filename()));
        m_record.time = stamp.moment;
        m_record.user = stamp.user;
        m_record.view = file.ViewName().empty() ? "MAIN" : file.ViewName();
        m_record.revision =
            HeaderVersion(ReadHeaderText(m_g, SchemaPath(m_g, file)), m_g.platform.locale.CodePage());
        m_record.recordKind = "PROPERTY";
        m_record.objectKind = "FIELD";
    }

    /// The marked cells of one variable, whose position is also its grid row. One that a stopped load left
    /// without a row has none.
    void Variable(std::int32_t index) {
        if (index >= m_desk.Grid.Rows()) {
            return;
        }
        const std::int32_t cols = m_desk.Grid.Cols();
        for (std::int32_t screenCol = 0; screenCol < cols; ++screenCol) {
            if (m_desk.Grid.BackColor(index, screenCol) == ChangedColour) {
                m_desk.Grid.SetBackColor(index, screenCol, 0);
                Cell(index, m_desk.Grid.ColData(screenCol));
            }
        }
    }

    void Close() {
        m_log->CloseLog();
        m_memo->CloseMemo();
    }

private:
    void Cell(std::int32_t index, std::int32_t column) {
        const Locale& locale = m_g.platform.locale;
        const cField& field = m_g.gFields->Ref(index);
        m_record.variable = field.Name();
        m_record.property = m_g.gLabels->Ref(column).Name();
        m_record.oldValue = m_g.gSavedFields->Ref(index).ValueText(column, vmGrid, locale);
        m_record.newValue = field.ValueText(column, vmGrid, locale);
        m_log->WriteRecord(m_record);
        if (!m_begun) {
            m_memo->BeginEntry(m_record.view, m_record.user, m_stamp.date, m_stamp.time);
            m_begun = true;
        }
        m_memo->WriteItem(m_record.variable, m_record.property, m_record.oldValue, m_record.newValue);
    }

    Desk& m_desk;
    Globals& m_g;
    std::unique_ptr<KDChangeLog> m_log;
    std::unique_ptr<KDChangeMemo> m_memo;
    const CommitStamp& m_stamp;
    ChangeRecord m_record;
    bool m_begun = false;
};

}  // namespace

void ReportChanges(Desk& desk, const cFile& file, const CommitStamp& stamp) {
    Globals& g = desk.g;
    Report report(desk, file, stamp);
    for (std::int32_t index = file.BegFieldPtr(); index <= file.EndFieldPtr(); ++index) {
        report.Variable(index);
        CopyFieldValues(g.gFields->Ref(index), g.gSavedFields->Ref(index));
    }
    report.Close();
}

}  // namespace kd
