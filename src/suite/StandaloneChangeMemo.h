#pragma once

#include <array>
#include <memory>
#include <vector>

#include "base/CodePage.h"
#include "platform/Files.h"
#include "platform/Suite.h"

namespace kd {

/// The change report, for people: an entry has a head line, then aligned lines, then an empty line. Text in
/// the code page, CR LF. Entries are added; earlier ones are never rewritten.
/// What was added is left to Files::Settle, since several views add to one file.
class StandaloneChangeMemo : public KDChangeMemo {
public:
    StandaloneChangeMemo(Files& files, const CodePage& page) : m_files(files), m_page(page) {}
    /// What was handed over is written, also when a failure elsewhere ends the commit before CloseMemo.
    ~StandaloneChangeMemo() override;
    StandaloneChangeMemo(const StandaloneChangeMemo&) = delete;
    StandaloneChangeMemo& operator=(const StandaloneChangeMemo&) = delete;

    void OpenMemo(std::string_view path) override;
    void BeginEntry(std::string_view view, std::string_view user, std::string_view date,
                    std::string_view time) override;
    void WriteItem(std::string_view variable, std::string_view property, std::string_view oldValue,
                   std::string_view newValue) override;
    void CloseMemo() override;

private:
    /// The entry in hand as text: its columns are as wide as its widest texts.
    Text EntryText() const;
    void WriteEntry();

    Files& m_files;
    const CodePage& m_page;
    std::unique_ptr<OutputFile> m_file;
    Text m_head;
    std::vector<std::array<Text, 4>> m_items;
};

}  // namespace kd
