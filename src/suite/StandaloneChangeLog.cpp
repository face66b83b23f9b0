#include "suite/StandaloneChangeLog.h"

#include "base/Expect.h"
#include "base/cError.h"
#include "suite/ChangeFile.h"

namespace kd {

Text StandaloneChangeLog::Field(std::string_view text) const {
    const bool plain = text.find_first_of("\"\r\n") == std::string_view::npos &&
                       (m_delimiter.empty() || text.find(m_delimiter) == std::string_view::npos);
    if (plain) {
        return Text(text);
    }
    Text quoted = "\"";
    for (const char c : text) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    quoted += '"';
    return quoted;
}

Text StandaloneChangeLog::Line(std::initializer_list<std::string_view> fields) const {
    Text line;
    bool first = true;
    for (const std::string_view field : fields) {
        if (!first) {
            line += m_delimiter;
        }
        first = false;
        line += Field(field);
    }
    line += CrLf;
    return line;
}

void StandaloneChangeLog::OpenLog(std::string_view path) {
    KD_EXPECT(!m_file);
    const ChangeFileEnd end = EndOf(m_files, path);
    m_file = m_files.OpenForAppend(path);
    if (end == ChangeFileEnd::NothingYet) {
        m_file->Write(m_page.Encode(Line({"Time of commit", "User", "View", "Revision", "Record kind",
                                          "Object kind", "Variable", "Property", "Old value", "New value"})));
    } else if (end == ChangeFileEnd::OpenLine) {
        m_file->Write(CrLf);
    }
}

void StandaloneChangeLog::WriteRecord(const ChangeRecord& record) {
    if (!m_file) {
        throw cError(errInvalidArgument, "StandaloneChangeLog.WriteRecord");
    }
    const Text time = DateText(record.time) + " " + TimeText(record.time);
    m_file->Write(m_page.Encode(
        Line({time, record.user, record.view, record.revision, record.recordKind, record.objectKind,
              record.variable, record.property, record.oldValue, record.newValue})));
}

void StandaloneChangeLog::CloseLog() {
    if (m_file) {
        const auto file = std::move(m_file);
        file->CloseForSettling();
    }
}

}  // namespace kd
