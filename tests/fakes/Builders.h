#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "appfiles/LoadApplications.h"
#include "appfiles/SchemaKeys.h"
#include "base/NumberTexts.h"
#include "fakes/TestMachine.h"
#include "grid/ColumnCatalogue.h"
#include "grid/Desk.h"

namespace kd {

/// A variable as a file states it: numeric, 8 wide with 2 decimals, bounds 0 and 1000, unless the test says
/// otherwise. A key that is given twice stands twice.
class FieldBuilder {
public:
    FieldBuilder& Name(Text value) { return Key("NAME", std::move(value)); }
    FieldBuilder& Type(Text value) { return Key("TYPE", std::move(value)); }
    FieldBuilder& Length(int value) { return Key("LENGTH", Digits(value)); }
    FieldBuilder& Decimals(int value) { return Key("DECIMALS", Digits(value)); }
    FieldBuilder& Max(double value) { return Key("MAX", PlainText(value)); }
    FieldBuilder& Min(double value) { return Key("MIN", PlainText(value)); }
    FieldBuilder& Usl(double value) { return Fixed("USL", value); }
    FieldBuilder& Ucl(double value) { return Fixed("UCL", value); }
    FieldBuilder& Uwl(double value) { return Fixed("UWL", value); }
    FieldBuilder& Tgt(double value) { return Fixed("TGT", value); }
    FieldBuilder& Lwl(double value) { return Fixed("LWL", value); }
    FieldBuilder& Lcl(double value) { return Fixed("LCL", value); }
    FieldBuilder& Lsl(double value) { return Fixed("LSL", value); }
    FieldBuilder& Rules(Text letters) { return Key("RULES", std::move(letters)); }
    FieldBuilder& Units(Text value) { return Key("UNITS", std::move(value)); }
    /// Any key with the text that stands in the file, such as ("USL", "B").
    FieldBuilder& Key(Text key, Text value) {
        m_keys.emplace_back(std::move(key), std::move(value));
        return *this;
    }

    /// The block as a file has it, with CR LF.
    Text Block() const {
        Text block = "[FIELD]\r\n";
        for (const auto& [key, value] : m_keys) {
            block.append(key).append("=").append(value).append("\r\n");
        }
        return block;
    }
    /// A record with the same values.
    std::shared_ptr<cField> Record() const {
        cFields list;
        auto record = list.Add(1, {}, "T", 1, 0);
        for (const auto& [key, value] : m_keys) {
            StoreFileText(*record, *FindSchemaKey(key), value);
        }
        return record;
    }
    /// Appends the record to gFields and its twin to gSavedFields; returns the one in gFields.
    std::shared_ptr<cField> AddTo(Globals& g, std::int32_t fileId = 1) const {
        const auto source = Record();
        source->SetFileID(fileId);
        auto record = g.gFields->AddCopy(*source);
        g.gSavedFields->AddCopy(*source);
        return record;
    }

private:
    FieldBuilder& Fixed(Text key, double value) { return Key(std::move(key), "F" + PlainText(value)); }

    std::vector<std::pair<Text, Text>> m_keys{{"NAME", "Weight"}, {"TYPE", "N"},   {"LENGTH", "8"},
                                              {"DECIMALS", "2"},  {"MAX", "1000"}, {"MIN", "0"}};
};

inline FieldBuilder aField() {
    return {};
}

/// An application with its files. Field adds to the view that was begun last; the template's own comes first.
class ApplicationBuilder {
public:
    explicit ApplicationBuilder(Text path = "/apps/plant.kdt") : m_path(std::move(path)) {}

    ApplicationBuilder& Title(Text value) {
        m_title = std::move(value);
        return *this;
    }
    /// The header of all its files, in place of the usual one.
    ApplicationBuilder& Header(Text value) {
        m_header = std::move(value);
        return *this;
    }
    ApplicationBuilder& Field(const FieldBuilder& field) {
        m_views.back().blocks += (m_views.back().blocks.empty() ? "" : "\r\n") + field.Block();
        return *this;
    }
    ApplicationBuilder& View(Text name, std::int32_t number) {
        m_views.push_back({std::move(name), number, {}});
        return *this;
    }

    const Text& Path() const { return m_path; }
    /// Path of the file of the view with that number, 0 for the template.
    Text FilePath(std::int32_t number) const {
        if (number == 0) {
            return m_path;
        }
        const Text extra = m_path.ends_with('6') ? ".KDV6" : "";
        return paths::ChangeExtension(m_path, extra + ".V" + Digits(number));
    }
    /// What stands in that file at first.
    Text FileText(std::size_t view) const { return m_header + m_views[view].blocks; }

    /// Puts the files on the disk, makes the application known to the suite, and lists it, enabled.
    template <typename D>
    void PutInto(D& desk) const {
        FakeSuite::Application application{m_title, {}};
        for (std::size_t view = 0; view < m_views.size(); ++view) {
            desk.files.Put(FilePath(m_views[view].number), FileText(view));
            if (view != 0) {
                application.views.push_back({m_views[view].name, m_views[view].number});
            }
        }
        desk.suite.applications[m_path] = application;
        desk.g.gMasterFiles->Add(m_path, true);
    }

private:
    struct OneView {
        Text name;
        std::int32_t number;
        Text blocks;
    };

    Text m_path;
    Text m_title = "Plant";
    Text m_header =
        "[APPLICATION]\r\n   TITLE        = Plant\r\n   VERSION      = 7.\r\n\r\n"
        "[RULES]\r\n   RULE         = Point beyond limit\r\n   RULE         = Run of nine\r\n\r\n";
    std::vector<OneView> m_views{{{}, 0, {}}};
};

inline ApplicationBuilder anApplication(Text path = "/apps/plant.kdt") {
    return ApplicationBuilder(std::move(path));
}

/// Makes these rules the catalogue.
inline void SetCatalogue(Globals& g, const std::vector<Text>& names) {
    g.gRuleNames.clear();
    g.gRuleLetters.clear();
    g.gRulesBlock = "[RULES]\r\n";
    for (const Text& name : names) {
        g.gRuleNames += (g.gRuleNames.empty() ? "" : ",") + name;
        g.gRuleLetters += static_cast<char>('A' + g.gRuleLetters.size());
        g.gRulesBlock += "   RULE         = " + name + "\r\n";
    }
    g.gRulesBlock += "\r\n";
}

/// A test desk with the main form's controls, the catalogue's two rules and the column catalogue.
struct LoadedDesk : TestMachine {
    Desk desk{g};

    LoadedDesk() {
        SetCatalogue(g, suite.rules);
        g.gUserName = "anna";
    }
    /// Puts an application in, see ApplicationBuilder.
    void Put(const ApplicationBuilder& application) { application.PutInto(*this); }
    /// Lays the grid out and loads all listed applications.
    void Load() {
        modKDLimitDesk::BuildColumnCatalogue(g);
        SetupGridColumns(desk);
        LoadApplications(desk);
    }
    /// What the user's edit of a cell amounts to: the new text, the mark, the view's flag.
    void Edit(std::int32_t row, std::int32_t column, std::string_view text) {
        cField& field = g.gFields->Ref(row);
        field.SetValue(column, vmGrid, text, platform);
        desk.Grid.SetTextMatrix(row, column - 1, field.ValueText(column, vmGrid, locale));
        desk.Grid.SetBackColor(row, column - 1, ChangedColour);
        g.gFiles->Ref(field.FileID()).SetChangesMade(true);
    }
};

}  // namespace kd
