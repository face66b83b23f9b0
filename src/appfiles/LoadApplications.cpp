#include "appfiles/LoadApplications.h"

#include "appfiles/DerivedBounds.h"
#include "appfiles/FileNames.h"
#include "appfiles/RuleLetters.h"
#include "appfiles/SchemaReader.h"
#include "base/NumberTexts.h"
#include "base/Scope.h"
#include "grid/ColumnCatalogue.h"
#include "grid/RowFill.h"

namespace kd {

namespace {

using namespace modKDLimitDesk;

/// One run of the load.
class Loader {
public:
    explicit Loader(Desk& desk)
        : m_desk(desk),
          m_g(desk.g),
          m_schema(desk.g),
          m_rules(desk.g.gRuleNames, desk.g.platform.locale.CodePage()),
          m_reader(desk.g.platform.suite.NewApplicationFile()),
          m_total(desk.g.gMasterFiles->TotalFilesEnabled()) {}

    void Load() {
        // The message loop runs in between: no reference into the list is held across it.
        const auto masterFiles = m_g.gMasterFiles;
        for (std::int32_t position = 1; position <= masterFiles->Count(); ++position) {
            const auto entry = masterFiles->Item(position);
            if (entry->Enabled()) {
                ++m_applications;
                LoadApplication(*entry);
            }
        }
    }

    Text Summary() const {
        return "Done ... , Applications: " + Digits(m_applications) + ", Views: " + Digits(m_views) +
               ", Variables: " + Digits(m_g.gFields->Count());
    }

private:
    void LoadApplication(cMasterFile& entry) {
        const Text path = entry.Filename();
        m_desk.Panel2.SetCaption("Loading: " + path);
        if (!OpenApplicationFile(*m_reader, path)) {
            entry.SetEnabled(false);
            if (m_applications == m_total) {
                m_g.platform.toolkit.ProcessEvents();  // so it is where the last one has failed
            }
            return;
        }
        LoadView(path, {}, 0);
        m_reader->LoadViews();
        const auto& views = m_reader->Views();
        for (std::int32_t position = 1; position <= views.Count(); ++position) {
            const KDViewEntry& view = views.Item(position);
            // A number below 1 would stand for the template itself, which is loaded already.
            if (view.ViewEntryNumber() >= 1) {
                ++m_views;
                LoadView(path, view.ViewEntryName(), NumberOf(view, path));
            }
        }
        m_reader->CloseFile();
        ++m_done;
        m_desk.ProgressBar1.SetValue(100.0 * m_done / m_total);
        if (m_applications < m_total) {
            m_g.platform.toolkit.ProcessEventsInJob();
        } else {
            m_g.platform.toolkit.ProcessEvents();  // the last state is always shown
        }
    }

    static std::int16_t NumberOf(const KDViewEntry& view, const Text& path) {
        try {
            return ToInt16(view.ViewEntryNumber());
        } catch (const cError& error) {
            throw error.WithPath(path);
        }
    }

    void LoadView(const Text& path, Text viewName, std::int16_t viewNo) {
        const auto file = m_g.gFiles->Add(path, m_reader->ApplicationTitle(), std::move(viewName), viewNo);
        const std::int32_t fileId = m_g.gFiles->Count();
        // Without variables until all of the file is read, so that it can never be saved half-read.
        file->SetBegFieldPtr(m_g.gFields->Count() + 1);
        file->SetEndFieldPtr(m_g.gFields->Count());
        const Text schemaPath = SchemaPath(m_g, *file);
        if (auto bytes = m_reader->TakeBytes(schemaPath)) {
            m_schema.Read(schemaPath, *std::move(bytes), fileId);
        } else {
            m_schema.Read(schemaPath, fileId);
        }
        file->SetEndFieldPtr(m_g.gFields->Count());
        try {
            FinishVariables(*file);
        } catch (const cError& error) {
            throw error.WithPath(schemaPath);
        }
        m_g.platform.toolkit.KeepAlive();  // an application may have thousands of views
    }

    void FinishVariables(const cFile& file) {
        const RuleTranslator& rules = m_rules.For(file.Rules());
        std::int32_t index = file.BegFieldPtr();
        try {
            for (; index <= file.EndFieldPtr(); ++index) {
                cField& saved = m_g.gSavedFields->Ref(index);
                cField& field = m_g.gFields->Ref(index);
                DeriveBounds(saved, field);
                TranslateLetters(rules, saved, field);
                RefreshGridRow(m_desk, index);
            }
        } catch (...) {
            // The rows that are there may be edited, and a save writes all variables: those left without a
            // row must not keep the file's letters beside the catalogue's rules.
            // LoadApplicationsTest.AViewWhoseRowsEndEarlyIsSavedWithTheCataloguesLettersThroughout
            for (; index <= file.EndFieldPtr(); ++index) {
                TranslateLetters(rules, m_g.gSavedFields->Ref(index), m_g.gFields->Ref(index));
            }
            throw;
        }
    }

    Desk& m_desk;
    Globals& m_g;
    SchemaReader m_schema;
    RuleTranslators m_rules;
    std::unique_ptr<KDApplicationFile> m_reader;
    std::int32_t m_total;
    std::int32_t m_applications = 0;
    std::int32_t m_views = 0;
    std::int32_t m_done = 0;
};

}  // namespace

bool OpenApplicationFile(KDApplicationFile& reader, std::string_view path) {
    try {
        reader.OpenFile(path);
        return true;
    } catch (const std::exception&) {
        return false;  // by contract, whatever it is
    }
}

void LoadApplications(Desk& desk) {
    Globals& g = desk.g;
    Loader loader(desk);
    g.gFiles = std::make_shared<cFiles>();
    g.gFields = std::make_shared<cFields>();
    g.gSavedFields = std::make_shared<cFields>();
    g.gFields->Reserve(MostRecords);
    g.gSavedFields->Reserve(MostRecords);
    desk.Grid.ReserveRows(MostRecords + 1);
    {
        desk.Grid.SetRedraw(false);
        const Scope redraw([&desk] { desk.Grid.SetRedraw(true); });
        loader.Load();
        SetGridALignments(desk);
    }
    desk.Panel2.SetCaption(loader.Summary());
}

}  // namespace kd
