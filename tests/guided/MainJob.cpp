#include "guided/MainJob.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>
#include <algorithm>
#include <memory>

#include "base/CodePage.h"
#include "base/Paths.h"
#include "guided/Snapshot.h"
#include "model/Columns.h"

namespace kd {

namespace {

constexpr std::int32_t UslColumn = cnUSL;

bool EndsWith(const std::string& text, const std::string& ending) {
    return text.size() >= ending.size() &&
           text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

bool IsGeneration6(const std::string& file) {
    return EndsWith(file, "6");
}

/// Name of the file of the changed view.
std::string SchemaName(const LimitChange& change) {
    const std::string base = change.file.substr(0, change.file.rfind('.'));
    if (change.viewNo == 0) {
        return change.file;
    }
    return base + (IsGeneration6(change.file) ? ".KDV6.V" : ".V") + std::to_string(change.viewNo);
}

/// The samples are written in the western code page.
Text Decoded(const std::string& bytes) {
    return CodePage::Of(1252).Decode(bytes);
}

std::string ChangeFileName(const LimitChange& change, const char* extension) {
    return change.file.substr(0, change.file.rfind('.')) + extension +
           (IsGeneration6(change.file) ? "6" : "");
}

}  // namespace

std::string WithPoint(std::string_view text) {
    std::string result(text);
    std::replace(result.begin(), result.end(), ',', '.');
    return result;
}

std::int32_t RowOf(Application& program, const LimitChange& change) {
    const Globals& g = program.Data();
    for (std::int32_t row = 1; row <= g.gFields->Count(); ++row) {
        const cField& field = g.gFields->Ref(row);
        const cFile& view = g.gFiles->Ref(field.FileID());
        if (field.Name() == change.variable && view.ViewNo() == change.viewNo &&
            paths::FileName(view.Filename()) == change.file) {
            return row;
        }
    }
    return 0;
}

void LoadAll(Guide& guide, Application& program) {
    guide.Form("frmApplicationAdmin", "01-manage-applications", [&guide](QWidget& dialog) {
        auto* const filter = dialog.findChild<QComboBox*>(QStringLiteral("cboFilter"));
        QTest::keyClicks(filter->lineEdit(), QStringLiteral("samples water|diesel"));
        Guide::Press(dialog, "cmdFilter");
        guide.SavePicture("20-applications-filtered");
        filter->lineEdit()->clear();
        Guide::Press(dialog, "cmdFilter");
        Guide::Press(dialog, "cmdOk");
    });
    guide.Then(
        "the applications are loaded",
        [&program] { return program.Form().Controls().Panel2.Caption().rfind("Done ... ", 0) == 0; }, [] {});
    guide.Picture("02-loaded");
}

void DoMainJob(Guide& guide, Application& program, std::vector<LimitChange>& changes) {
    bool first = true;
    for (LimitChange& change : changes) {
        const auto row = [&program, &change] { return RowOf(program, change); };
        guide.Check("found: " + change.file + ", " + change.variable, [row] { return row() > 0; });
        guide.Then(
            "", [] { return true; },
            [&program, &change, row] {
                change.oldUsl = program.Form().Controls().Grid.TextMatrix(row(), UslColumn - 1);
            });
        if (first) {
            guide.TypeInto(row, UslColumn, "12,3.4");
            guide.Box("Invalid value '12,3.4' entered for cell!", "03-refused");
            guide.Then(
                "the editor is open with the refused text; Esc leaves it",
                [&program] {
                    return program.Form().Controls().Grid.EditWindow() &&
                           QApplication::activeModalWidget() == nullptr &&
                           QApplication::focusWidget() != nullptr;
                },
                [&guide] { guide.Key(Qt::Key_Escape); });
            first = false;
        }
        if (!change.wrongUsl.empty()) {
            guide.TypeInto(row, UslColumn, change.wrongUsl);
            guide.Choose("mnuFile", "mnuCommit", "04-file-menu");
            guide.Box("Invalid Limit Entered!", "05-limit-out-of-order");
            guide.Check("the cursor stands on the limit that is out of order", [&program, row] {
                const VSFlexGrid& grid = program.Form().Controls().Grid;
                return grid.Row() == row() && grid.Col() == UslColumn - 1;
            });
        }
        guide.TypeInto(row, UslColumn, change.newUsl);
        guide.Check("changed: " + change.variable + ", USL " + change.newUsl, [&program, row] {
            return program.Form().Controls().Grid.BackColor(row(), UslColumn - 1) == ChangedColour;
        });
    }
    guide.Picture("06-changed");
    guide.Choose("mnuFile", "mnuCommit");
    guide.Form("frmCommit", "07-commit", [](QWidget& dialog) { Guide::Press(dialog, "cmdOk"); });
    guide.Box(std::to_string(changes.size()) + " File(s) have been modified.", "08-committed");
    guide.Check("no change is outstanding", [&program] { return program.Form().Form_QueryUnload(); });
    guide.Picture("09-after");
}

namespace {

/// One check of the files.
class FileCheck {
public:
    FileCheck(const std::string& folder, const Snapshot& before, const std::vector<LimitChange>& changes)
        : m_before(before), m_after(TakeSnapshot(folder)), m_changes(changes) {}

    Outcome Run() {
        CheckUntouched();
        for (const LimitChange& change : m_changes) {
            CheckView(change);
            CheckArchive(change);
            CheckRecords(change);
        }
        return std::move(m_outcome);
    }

private:
    void Expect(bool holds, const std::string& what) {
        if (!holds) {
            m_outcome.failures.push_back(what);
        }
    }

    void CheckUntouched() {
        for (const auto& [name, bytes] : m_before) {
            const bool changed =
                std::any_of(m_changes.begin(), m_changes.end(),
                            [&name = name](const LimitChange& c) { return SchemaName(c) == name; });
            if (!changed) {
                Expect(m_after.count(name) != 0 && m_after[name] == bytes, name + " was touched");
            }
        }
        for (const auto& [name, bytes] : m_after) {
            Expect(!EndsWith(name, ".temp") && name.find(".kdsave") == std::string::npos &&
                       name.find(".unfinished") == std::string::npos,
                   name + " was left behind");
        }
    }

    void CheckView(const LimitChange& change) {
        const std::string name = SchemaName(change);
        const auto lines = ChangedLines(Decoded(m_before.at(name)), Decoded(m_after[name]));
        m_outcome.report.push_back(name + ":");
        for (const std::string& line : lines) {
            m_outcome.report.push_back("   " + line);
        }
        const std::string version = "   VERSION      = ";
        const bool revision = lines.size() >= 2 && lines[0].rfind("(header): -" + version, 0) == 0 &&
                              lines[0].back() == '.' &&
                              lines[1] == "(header): +" + lines[0].substr(11) + "001";
        Expect(revision, name + ": the revision did not rise by 0.001");
        Expect(lines.size() == 4 &&
                   lines[2] == change.variable + ": -   USL          = F" + WithPoint(change.oldUsl) &&
                   lines[3].rfind(change.variable + ": +   USL          = F" + change.newUsl, 0) == 0,
               name + ": other lines than the changed limit's differ");
    }

    void CheckArchive(const LimitChange& change) {
        const std::string parent = "Archive/" + change.file.substr(0, change.file.rfind('.')) + "/";
        std::size_t kept = 0;
        for (const auto& [name, bytes] : m_after) {
            if (name.rfind(parent, 0) != 0) {
                continue;
            }
            ++kept;
            const std::string original = name.substr(name.rfind('/') + 1);
            Expect(m_before.count(original) != 0 && m_before.at(original) == bytes,
                   name + " is no true copy");
            if (original == SchemaName(change)) {
                m_outcome.report.push_back("archive: " + name);
            }
        }
        const std::string base = change.file.substr(0, change.file.rfind('.')) + ".";
        const auto files = std::count_if(m_before.begin(), m_before.end(),
                                         [&](const auto& file) { return file.first.rfind(base, 0) == 0; });
        Expect(kept == static_cast<std::size_t>(files),
               parent + " does not hold all files of the application");
    }

    void CheckRecords(const LimitChange& change) {
        const auto log = LinesOf(Decoded(m_after[ChangeFileName(change, ".KDL")]));
        const std::string record = "\tPROPERTY\tFIELD\t" + change.variable + "\tUSL\t" +
                                   WithPoint(change.oldUsl) + "\t" + change.newUsl;
        const auto found = std::count_if(log.begin(), log.end(), [&](const std::string& line) {
            return WithPoint(line).find(record) != std::string::npos;
        });
        Expect(found == 1, ChangeFileName(change, ".KDL") + " has no record of " + change.variable);
        for (const std::string& line : log) {
            m_outcome.report.push_back(ChangeFileName(change, ".KDL") + ": " + line);
        }
        for (const std::string& line : LinesOf(Decoded(m_after[ChangeFileName(change, ".KDM")]))) {
            m_outcome.report.push_back(ChangeFileName(change, ".KDM") + ": " + line);
        }
        const std::string told = WithPoint(change.oldUsl) + " -> " + change.newUsl;
        Expect(WithPoint(m_after[ChangeFileName(change, ".KDM")]).find(told) != std::string::npos,
               ChangeFileName(change, ".KDM") + " does not tell of " + change.variable);
    }

    const Snapshot& m_before;
    Snapshot m_after;
    const std::vector<LimitChange>& m_changes;
    Outcome m_outcome;
};

}  // namespace

Outcome CheckFiles(const std::string& folder, const Snapshot& before,
                   const std::vector<LimitChange>& changes) {
    return FileCheck(folder, before, changes).Run();
}

}  // namespace kd
