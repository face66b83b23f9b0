#include <QString>
#include <QUrl>

#include "base/cError.h"
#include "fakes/FakeServices.h"
#include "fakes/MemoryFiles.h"
#include "fuzz/FuzzTargets.h"
#include "qt/services/HelpIndex.h"
#include "qt/services/HtmlTable.h"
#include "qt/services/QtText.h"

namespace kd::fuzz {

void HtmlTable(std::string_view input) {
    const QString html = QString::fromUtf8(input.data(), static_cast<qsizetype>(input.size()));
    const auto cells = CellsFromHtml(html);
    Promise(!cells || cells->find('\n') == Text::npos, "CR alone stands between rows");
    // Plain cells survive the way out and in.
    Text plain;
    for (const char c : input) {
        if (c > ' ' && c < 0x7F) {
            plain += c;
        }
    }
    if (!plain.empty()) {
        Promise(CellsFromHtml(CellsToHtml(plain + "\tx")) == plain + "\tx", "cells go out and come in");
    }
}

void HelpCatalogue(std::string_view input) {
    MemoryFiles files;
    FakeShell shell;
    files.Put("/help/a.xml", std::string(input));
    HelpIndex index(files, shell);
    index.SetFileName("/help/a.xml");
    try {
        index.LoadIndex();
    } catch (const cError&) {
        return;
    }
    for (const char* name : {"Documentation", "a", ""}) {
        if (const auto topic = index.FindTopic(name)) {
            topic->OpenTopic();
            Promise(shell.opened.back().starts_with("file:///help/"), "only pages beside the catalogue open");
        }
    }
}

}  // namespace kd::fuzz
