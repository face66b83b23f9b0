#include "Driver.h"

#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "Machine.h"
#include "qt/forms/AutoFilterDialog.h"
#include "qt/services/QtText.h"

namespace kd::bench {

namespace fs = std::filesystem;

namespace {

frmAutoFilter* shownFilter = nullptr;

/// The program's dialog, which tells its form: half of 32,400 ticks are not to be set by single clicks.
class TellingFilterDialog : public AutoFilterDialog {
public:
    TellingFilterDialog(frmAutoFilter& form, EventBoundary& boundary, QWidget* parent)
        : AutoFilterDialog(form, boundary, parent) {
        shownFilter = &form;
    }
    ~TellingFilterDialog() override { shownFilter = nullptr; }
};

ApplicationFolders Folders(const std::string& folder, const std::string& scratch) {
    const std::string settings = scratch + "/settings";
    fs::create_directories(settings);
    std::ofstream list(settings + "/KDLimitDesk.IKD", std::ios::binary);
    list << "[FILES]\r\n";
    for (const std::string& path : Templates(AllFiles(folder))) {
        list << "   File         = " << path << "\r\n";
    }
    Expect(list.flush().good(), "the list of applications is written");
    return {KD_SOURCE_DIR "/bin/KDLimitDesk",
            {settings, folder, KD_SOURCE_DIR "/help", KD_SOURCE_DIR "/samples"}};
}

}  // namespace

class Driver::PaintCounter : public QObject {
public:
    explicit PaintCounter(int& paints) : m_paints(paints) {}
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        m_paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

private:
    int& m_paints;
};

Driver::Driver(const std::string& folder, const std::string& scratch)
    : m_program(std::make_unique<Application>(Folders(folder, scratch))),
      m_counter(std::make_unique<PaintCounter>(m_paints)) {
    m_program->Screen().Register<frmAutoFilter, TellingFilterDialog>();
    View().viewport()->installEventFilter(m_counter.get());
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Tick(); });
    m_timer.setInterval(1);
}

Driver::~Driver() = default;

GridWidget& Driver::View() {
    return *m_program->Window().findChild<GridWidget*>(QStringLiteral("Grid"));
}

frmAutoFilter& Driver::ShownFilter() {
    Expect(shownFilter != nullptr, "the filter dialog is shown");
    return *shownFilter;
}

void Driver::When(std::string window, std::function<void(QWidget&)> act) {
    m_acts.push_back({std::move(window), std::move(act)});
    m_timer.start();
}

void Driver::Tick() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == nullptr || !modal->isVisible()) {
        m_seen = nullptr;
        return;
    }
    if (modal != m_seen) {
        m_seen = modal;  // by the next time it has been painted
        return;
    }
    if (m_acts.empty() || modal->objectName().toStdString() != m_acts.front().window) {
        const auto* const box = qobject_cast<QMessageBox*>(modal);
        (void)std::fprintf(stderr, "kd_bench: unforeseen window %s %s\n",
                           modal->objectName().toUtf8().constData(),
                           box == nullptr ? "" : box->text().toUtf8().constData());
        std::_Exit(1);  // no way back out of a modal window that nobody knows
    }
    const Act act = std::move(m_acts.front());
    m_acts.pop_front();
    m_seen = nullptr;
    if (m_acts.empty()) {
        m_timer.stop();
    }
    try {
        act.act(*modal);
    } catch (const std::exception& error) {  // which must not reach the toolkit's event loop
        (void)std::fprintf(stderr, "kd_bench: %s\n", error.what());
        std::_Exit(1);
    }
}

void Driver::Settle() {
    for (int pass = 0; pass < 3; ++pass) {
        QApplication::processEvents();
    }
}

void Driver::Start() {
    Expect(m_program->Start(), "the program has started");
    Settle();
}

void Driver::Choose(const char* menu, const char* entry) {
    auto* const opened = m_program->Window().findChild<QMenu*>(QLatin1String(menu));
    auto* const action = m_program->Window().findChild<QAction*>(QLatin1String(entry));
    Expect(opened != nullptr && action != nullptr, std::string("there is a menu entry ") + entry);
    emit opened->aboutToShow();
    Expect(action->isEnabled(), std::string("the menu entry is enabled: ") + entry);
    action->trigger();
    Settle();
    Expect(m_acts.empty(), std::string("all windows came up after ") + entry);
}

void Driver::PressHeader(std::int32_t screenCol) {
    View().ShowCell(0, screenCol);
    Settle();
    QTest::mouseClick(View().viewport(), Qt::LeftButton, {},
                      View().Layout().ShownRect(0, screenCol).center());
    Settle();
}

void Driver::SelectColumn(std::int32_t screenCol) {
    Grid().Select(1, screenCol);
    Grid().ExtendSelection(Grid().Rows() - 1, screenCol);
    Settle();
}

}  // namespace kd::bench
