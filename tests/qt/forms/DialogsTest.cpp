#include <QSizeGrip>
#include <map>

#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// A form and its window, which goes first.
struct Opened {
    std::unique_ptr<Form> form;
    std::unique_ptr<QDialog> window;
};

/// The words that its width goes by, where a dialog's does.
template <typename F>
void SetWords(F& /*form*/, const Text& /*words*/) {}
void SetWords(frmReplace& form, const Text& words) {
    form.lblColumn.SetCaption(words);
}
void SetWords(frmFill& form, const Text& words) {
    form.optFillConstant.SetCaption(words);
}

template <typename F, typename D>
Opened Made(ScreenDesk& desk, const Text& words) {
    static EventBoundary boundary([](const std::function<void()>&, const Text&) {});
    auto form = std::make_unique<F>(desk.g);
    SetWords(*form, words);
    auto window = std::make_unique<D>(*form, boundary, nullptr);
    return {std::move(form), std::move(window)};
}

template <typename F, typename D>
void Shown(ScreenDesk& desk) {
    desk.toolkit.Register<F, D>();
    F form{desk.g};
    form.Display();
}

TEST(DialogsTest, EachOpensAsWideAndHighAsItsLettersAndLinesAsk) {
    struct Case {
        const char* label;
        Opened (*make)(ScreenDesk&, const Text& words);
        Text words;
        int letters;  // 0: as its words ask
        int lines;    // 0: as its controls ask
    };
    const Text longWords(200, 'w');
    const Case cases[] = {{"filter of a column", Made<frmAutoFilter, AutoFilterDialog>, "", 42, 24},
                          {"commit", Made<frmCommit, CommitDialog>, "", 100, 24},
                          {"applications", Made<frmApplicationAdmin, AdminDialog>, "", 130, 32},
                          {"replace", Made<frmReplace, ReplaceDialog>, "Name", 56, 0},
                          {"replace, long words", Made<frmReplace, ReplaceDialog>, longWords, 0, 0},
                          {"fill, short words", Made<frmFill, FillDialog>, "", 76, 0},
                          {"fill, long words", Made<frmFill, FillDialog>, longWords, 0, 0}};
    for (const Case& each : cases) {
        ScreenDesk desk;
        const Opened opened = each.make(desk, each.words);
        const QFontMetrics metrics = opened.window->fontMetrics();
        const QSize own = opened.window->sizeHint();
        EXPECT_EQ(opened.window->width(),
                  each.letters == 0 ? own.width() : each.letters * metrics.averageCharWidth())
            << each.label;
        EXPECT_EQ(opened.window->height(), each.lines == 0 ? own.height() : each.lines * metrics.height())
            << each.label;
    }
}

/// What becomes of a control when its dialog is made larger: whether it moves to the right and down, and
/// grows in width and height.
struct Part {
    const char* name;
    int right;
    int down;
    int wider;
    int higher;
};

struct Look {
    const char* window;
    void (*show)(ScreenDesk&);
    std::vector<std::vector<const char*>> lines;  // top to bottom, each left to right
    std::vector<Part> parts;                      // all others stay as they are
    bool grip;                                    // a corner to take it by

    friend std::ostream& operator<<(std::ostream& out, const Look& look) { return out << look.window; }
};

const std::vector<Look>& Looks() {
    static const std::vector<Look> looks{
        {"frmAutoFilter",
         Shown<frmAutoFilter, AutoFilterDialog>,
         {{"chkSelectAll"}, {"lstAutoFilter"}, {"cmdOk", "cmdCancel"}},
         {{"chkSelectAll", 0, 0, 1, 0},
          {"lstAutoFilter", 0, 0, 1, 1},
          {"cmdOk", 1, 1, 0, 0},
          {"cmdCancel", 1, 1, 0, 0}},
         true},
        {"frmCommit",
         Shown<frmCommit, CommitDialog>,
         {{"Label1"}, {"lstFiles"}, {"chkSelectAll", "cmdOk", "cmdCancel"}},
         {{"Label1", 0, 0, 1, 0},
          {"lstFiles", 0, 0, 1, 1},
          {"chkSelectAll", 0, 1, 0, 0},
          {"cmdOk", 1, 1, 0, 0},
          {"cmdCancel", 1, 1, 0, 0}},
         true},
        {"frmApplicationAdmin",
         Shown<frmApplicationAdmin, AdminDialog>,
         {{"Label1"},
          {"cboFilter", "cmdFilter"},
          {"Grid"},
          {"cmdAddApplication", "cmdRemoveApplication", "cmdHelp", "cmdOk", "cmdCancel"}},
         {{"Label1", 0, 0, 1, 0},
          {"cboFilter", 0, 0, 1, 0},
          {"cmdFilter", 1, 0, 0, 0},
          {"Grid", 0, 0, 1, 1},
          {"cmdAddApplication", 0, 1, 0, 0},
          {"cmdRemoveApplication", 0, 1, 0, 0},
          {"cmdHelp", 0, 1, 0, 0},
          {"cmdOk", 1, 1, 0, 0},
          {"cmdCancel", 1, 1, 0, 0}},
         true},
        {"frmReplace",
         Shown<frmReplace, ReplaceDialog>,
         {{"Label1", "lblColumn"},
          {"lblFind", "txtFind"},
          {"LblReplace", "txtReplace"},
          {"chkMatchCase"},
          {"cmdReplace", "cmdCancel"}},
         {{"lblColumn", 0, 0, 1, 0},
          {"txtFind", 0, 0, 1, 0},
          {"txtReplace", 0, 0, 1, 0},
          {"chkMatchCase", 0, 0, 1, 0},
          {"cmdReplace", 1, 1, 0, 0},
          {"cmdCancel", 1, 1, 0, 0}},
         true},
        {"frmFill",
         Shown<frmFill, FillDialog>,
         {{"optFillConstant", "txtConstant"},
          {"optFillLimit"},
          {"lblLimit", "fraLimits", "fraPlusMinus", "txtLimitValue"},
          {"cmdOk", "cmdCancel"}},
         {{"txtConstant", 0, 0, 1, 0},
          {"optFillLimit", 0, 0, 1, 0},
          {"txtLimitValue", 0, 0, 1, 0},
          {"cmdOk", 1, 1, 0, 0},
          {"cmdCancel", 1, 1, 0, 0}},
         true},
        {"frmAbout",
         Shown<frmAbout, AboutDialog>,
         {{"lblAppTitle"}, {"lblVersion"}, {"lblCompanyInfo"}, {"lblWebsite"}, {"lblEmail"}, {"cmdOk"}},
         {{"Image1", 0, 0, 0, 0}, {"cmdOk", 1, 1, 0, 0}},
         false}};
    return looks;
}

class DialogLookTest : public testing::TestWithParam<Look> {
protected:
    ScreenDesk desk;

    void Show(const std::function<void(QWidget&)>& user) {
        NextModal next([&user](QWidget& window) {
            user(window);
            window.close();
        });
        GetParam().show(desk);
    }
    /// Where the controls named in the table stand, by name.
    static std::map<std::string, QRect> Places(QWidget& window) {
        std::map<std::string, QRect> places;
        for (const auto& line : GetParam().lines) {
            for (const char* const name : line) {
                places[name] = Find(window, name).geometry();
            }
        }
        for (const Part& part : GetParam().parts) {
            places[part.name] = Find(window, part.name).geometry();
        }
        return places;
    }
};

TEST_P(DialogLookTest, ControlsStandInTheirLinesFromTopToBottom) {
    Show([](QWidget& window) {
        std::map<std::string, QRect> places = Places(window);
        int above = -1;
        for (const auto& line : GetParam().lines) {
            const QRect first = places[line.front()];
            int before = -1;
            int bottom = above;
            for (const char* const name : line) {
                const QRect at = places[name];
                EXPECT_GT(at.left(), before) << name;
                EXPECT_GT(at.top(), above) << name;
                EXPECT_NEAR(at.center().y(), first.center().y(), 1) << name;
                before = at.right();
                bottom = std::max(bottom, at.bottom());
            }
            above = bottom;
        }
    });
}

TEST_P(DialogLookTest, WhatALargerDialogHasToGiveGoesToItsListsAndFieldsAlone) {
    Show([](QWidget& window) {
        constexpr int Wider = 60;
        constexpr int Higher = 40;
        std::map<std::string, QRect> wanted = Places(window);
        for (const Part& part : GetParam().parts) {
            QRect& place = wanted[part.name];
            place.translate(part.right * Wider, part.down * Higher);
            place.setSize(place.size() + QSize(part.wider * Wider, part.higher * Higher));
        }
        window.resize(window.size() + QSize(Wider, Higher));
        QTest::qWait(0);
        for (const auto& [name, place] : Places(window)) {
            EXPECT_EQ(place, wanted[name]) << name;
        }
    });
}

TEST_P(DialogLookTest, ThereIsACornerToTakeItByWhereALargerOneShowsMore) {
    Show([](QWidget& window) { EXPECT_EQ(window.findChild<QSizeGrip*>() != nullptr, GetParam().grip); });
}

INSTANTIATE_TEST_SUITE_P(Dialogs, DialogLookTest, testing::ValuesIn(Looks()),
                         [](const testing::TestParamInfo<Look>& tried) {
                             return std::string(tried.param.window);
                         });

}  // namespace
}  // namespace kd
