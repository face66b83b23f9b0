#pragma once

#include <memory>

#include "base/CodePage.h"
#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// The change log: a heading line, then a line a record, the delimiter between the fields. Text in the code
/// page, CR LF. Records are added; earlier ones are never rewritten.
/// What was added is left to Files::Settle, since several views add to one file.
class StandaloneChangeLog : public KDChangeLog {
public:
    StandaloneChangeLog(Files& files, const CodePage& page) : m_files(files), m_page(page) {}

    void SetDelimiter(std::string_view delimiter) override { m_delimiter = Text(delimiter); }
    void OpenLog(std::string_view path) override;
    void WriteRecord(const ChangeRecord& record) override;
    void CloseLog() override;

private:
    Text Line(std::initializer_list<std::string_view> fields) const;
    /// In quotation marks, those inside doubled, where the field would break its line.
    Text Field(std::string_view text) const;

    Files& m_files;
    const CodePage& m_page;
    Text m_delimiter = "\t";
    std::unique_ptr<OutputFile> m_file;
};

}  // namespace kd
