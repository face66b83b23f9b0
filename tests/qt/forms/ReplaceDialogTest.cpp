#include "qt/forms/ReplaceDialog.h"

#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// Replace through the main window: the menu, the dialog, the messages, the cells.
class ReplaceDialogTest : public WindowFixture {
protected:
    void LoadNames() {
        Load({aField().Name("Fat in milk").Usl(10), aField().Name("fat fat").Usl(20),
              aField().Name("Sugar").Usl(30)});
    }
    void ChooseReplace() { Choose("mnuEdit", "mnuEditReplace"); }
    void Replace(std::function<void(QWidget&)> user) {
        Modals modals;
        modals.Then("frmReplace", std::move(user));
        ChooseReplace();
    }
    static void Cancel(QWidget& dialog) { Click(Find(dialog, "cmdCancel")); }
    static QString TextOf(QWidget& dialog, const char* edit) { return Find<QLineEdit>(dialog, edit).text(); }
    static void Enter(QWidget& dialog, const char* find, const char* replace) {
        TypeInto(dialog, "txtFind", find);
        TypeInto(dialog, "txtReplace", replace);
        Press(Qt::Key_Return);
    }
};

TEST_F(ReplaceDialogTest, CaptionsAndStartStatesAreTheDesignedOnes) {
    LoadNames();
    ClickCell(1, cnVariableName);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Replace");
        EXPECT_EQ(Find<QLabel>(dialog, "Label1").text(), "Replace in Column:");
        EXPECT_EQ(Find<QLabel>(dialog, "lblColumn").text(), "Variable Name");
        EXPECT_EQ(Find<QLabel>(dialog, "lblFind").text(), "Find What:");
        EXPECT_EQ(Find<QLabel>(dialog, "LblReplace").text(), "Replace With:");
        EXPECT_EQ(Find<QCheckBox>(dialog, "chkMatchCase").text().remove('&'), "Match Case");
        EXPECT_EQ(Find<QCheckBox>(dialog, "chkMatchCase").checkState(), Qt::Unchecked);
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdReplace").text().remove('&'), "Replace");
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdCancel").text(), "Cancel");
        EXPECT_TRUE(Find<QPushButton>(dialog, "cmdReplace").isDefault());
        EXPECT_EQ(TextOf(dialog, "txtFind"), "Fat in milk");
        EXPECT_EQ(TextOf(dialog, "txtReplace"), "");
        const QPoint middle = dialog.screen()->availableGeometry().center();
        EXPECT_NEAR(dialog.frameGeometry().center().x(), middle.x(), 1);
        EXPECT_NEAR(dialog.frameGeometry().center().y(), middle.y(), 1);
        Cancel(dialog);
    });
}

TEST_F(ReplaceDialogTest, TextToFindHasTheKeyboardWithAllOfItSelected) {
    LoadNames();
    ClickCell(1, cnVariableName);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(Focused(), &Find(dialog, "txtFind"));
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtFind").selectedText(), "Fat in milk");
        Type("in");
        EXPECT_EQ(TextOf(dialog, "txtFind"), "in") << "typing replaces what was offered";
        Cancel(dialog);
    });
}

TEST_F(ReplaceDialogTest, TabGoesFromTheTextsToTheButtons) {
    LoadNames();
    ClickCell(1, cnVariableName);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(TabOrder(dialog), (std::vector<std::string>{"txtFind", "txtReplace", "chkMatchCase",
                                                              "cmdReplace", "cmdCancel"}));
        Cancel(dialog);
    });
}

TEST_F(ReplaceDialogTest, FirstOccurrenceInEachCellIsReplacedInAnyCase) {
    LoadNames();
    SelectCells(1, cnVariableName, 3, cnVariableName);
    Replace([](QWidget& dialog) { Enter(dialog, "FAT", "Oil"); });
    EXPECT_EQ(Cell(1, cnVariableName), "Oil in milk");
    EXPECT_EQ(Cell(2, cnVariableName), "Oil fat");
    EXPECT_EQ(Cell(3, cnVariableName), "Sugar");
    EXPECT_TRUE(Marked(2, cnVariableName));
    EXPECT_FALSE(Marked(3, cnVariableName)) << "a cell without a match is not written";
}

TEST_F(ReplaceDialogTest, KeyboardAloneMatchesTheCaseAndDeletesWhatWasFound) {
    LoadNames();
    SelectCells(1, cnVariableName, 3, cnVariableName);
    Replace([](QWidget& dialog) {
        Type("fat");
        Press(Qt::Key_Tab);
        Press(Qt::Key_Tab);
        Press(Qt::Key_Space);
        EXPECT_EQ(Find<QCheckBox>(dialog, "chkMatchCase").checkState(), Qt::Checked);
        Press(Qt::Key_Space);
        EXPECT_EQ(Find<QCheckBox>(dialog, "chkMatchCase").checkState(), Qt::Unchecked) << "two states";
        Press(Qt::Key_M, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return Find<QCheckBox>(dialog, "chkMatchCase").checkState() == Qt::Checked; }));
        Press(Qt::Key_R, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }));
    });
    EXPECT_EQ(Cell(1, cnVariableName), "Fat in milk");
    EXPECT_EQ(Cell(2, cnVariableName), " fat");
}

TEST_F(ReplaceDialogTest, SecondReplaceBeginsWithTheLastTextsAndWithoutTheTick) {
    LoadNames();
    ClickCell(3, cnVariableName);
    Replace([](QWidget& dialog) {
        ClickMark(Find(dialog, "chkMatchCase"));
        Enter(dialog, "Sug", "Vineg");
    });
    EXPECT_EQ(Cell(3, cnVariableName), "Vinegar");
    ClickCell(1, cnVariableName);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtFind"), "Sug");
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtFind").selectedText(), "Sug");
        EXPECT_EQ(TextOf(dialog, "txtReplace"), "Vineg");
        EXPECT_EQ(Find<QCheckBox>(dialog, "chkMatchCase").checkState(), Qt::Unchecked);
        Cancel(dialog);
    });
}

// --- refusals ---------------------------------------------------------------------------------------------

TEST_F(ReplaceDialogTest, SeveralColumnsAreRefusedWithoutADialog) {
    LoadNames();
    SelectCells(1, cnVariableName, 1, cnMax);
    Modals modals;
    modals.ThenBox("Can only replace within a single column.");
    ChooseReplace();
}

TEST_F(ReplaceDialogTest, ReadOnlyColumnIsRefusedWithoutADialog) {
    LoadNames();
    ClickCell(1, cnType);
    Modals modals;
    modals.ThenBox("Cannot replace read-only cells.");
    ChooseReplace();
}

TEST_F(ReplaceDialogTest, OneVisibleColumnBesideAHiddenOneIsTaken) {
    LoadNames();
    desk.Grid.SetColHidden(cnMax - 1, true);
    desk.Grid.Select(1, cnVariableName - 1);
    desk.Grid.ExtendSelection(1, cnMax - 1);
    Replace([](QWidget& dialog) { Enter(dialog, "milk", "cream"); });
    EXPECT_EQ(Cell(1, cnVariableName), "Fat in cream");
}

TEST_F(ReplaceDialogTest, WithoutASelectionNothingComesUp) {
    LoadNames();
    const Modals none;
    ChooseReplace();
}

TEST_F(ReplaceDialogTest, EmptyTextToFindIsToldAndGetsTheKeyboard) {
    LoadNames();
    ClickCell(1, cnVariableName);
    Modals modals;
    modals
        .Then("frmReplace",
              [](QWidget& dialog) {
                  TypeInto(dialog, "txtFind", "");
                  TypeInto(dialog, "txtReplace", "x");
                  Click(Find(dialog, "cmdReplace"));
              })
        .ThenBox("Find Text must be specified!")
        .Then("frmReplace", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "txtFind"));
            EXPECT_EQ(TextOf(dialog, "txtReplace"), "x");
            Type("Fat");
            Press(Qt::Key_Return);
        });
    ChooseReplace();
    EXPECT_EQ(Cell(1, cnVariableName), "x in milk");
}

TEST_F(ReplaceDialogTest, ADialogThatComesBackStandsWhereItWasAndAsLarge) {
    LoadNames();
    ClickCell(1, cnVariableName);
    QRect before;
    Modals modals;
    modals
        .Then("frmReplace",
              [&](QWidget& dialog) {
                  dialog.move(30, 40);
                  dialog.resize(dialog.size() + QSize(60, 20));
                  before = QRect(dialog.pos(), dialog.size());
                  Enter(dialog, "", "x");
              })
        .ThenBox("Find Text must be specified!")
        .Then("frmReplace", [&](QWidget& dialog) {
            EXPECT_EQ(QRect(dialog.pos(), dialog.size()), before);
            Cancel(dialog);
        });
    ChooseReplace();
}

TEST_F(ReplaceDialogTest, RefusedTextIsToldAndMayBeCorrected) {
    LoadNames();
    SelectCells(1, cnUSL, 3, cnUSL);
    Modals modals;
    modals.Then("frmReplace", [](QWidget& dialog) { Enter(dialog, "2", "x"); })
        .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x0.000'")
        .Then("frmReplace", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "txtReplace")) << "the focus stays where it was";
            EXPECT_EQ(TextOf(dialog, "txtFind"), "2");
            EXPECT_EQ(TextOf(dialog, "txtReplace"), "x");
            TypeInto(dialog, "txtReplace", "4");
            Click(Find(dialog, "cmdReplace"));
        });
    ChooseReplace();
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
    EXPECT_EQ(Cell(2, cnUSL), "40.000");
    EXPECT_FALSE(Marked(1, cnUSL));
    EXPECT_TRUE(Marked(2, cnUSL));
}

TEST_F(ReplaceDialogTest, AllOfTheTextToFindIsSelectedAgainWhereTheFocusStayedOnIt) {
    LoadNames();
    ClickCell(1, cnUSL);
    Modals modals;
    modals
        .Then("frmReplace",
              [](QWidget& dialog) {
                  TypeInto(dialog, "txtReplace", "x");
                  TypeInto(dialog, "txtFind", "10");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x.000'")
        .Then("frmReplace", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "txtFind"));
            EXPECT_EQ(Find<QLineEdit>(dialog, "txtFind").selectedText(), "10");
            Cancel(dialog);
        });
    ChooseReplace();
}

TEST_F(ReplaceDialogTest, EnterInATextReplacesAlsoWhereTheDialogCameBackWithTheFocusOnTheButton) {
    LoadNames();
    ClickCell(1, cnUSL);
    Modals modals;
    modals
        .Then("frmReplace",
              [](QWidget& dialog) {
                  TypeInto(dialog, "txtFind", "1");
                  TypeInto(dialog, "txtReplace", "x");
                  Find(dialog, "cmdReplace").setFocus();
                  Press(Qt::Key_Space);
              })
        .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x0.000'")
        .Then("frmReplace", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "cmdReplace"));
            Enter(dialog, "1", "4");
            EXPECT_FALSE(dialog.isVisible());
        });
    ChooseReplace();
    EXPECT_EQ(Cell(1, cnUSL), "40.000");
}

TEST_F(ReplaceDialogTest, RefusedTextsAreOfferedByTheNextReplace) {
    LoadNames();
    ClickCell(1, cnUSL);
    {
        Modals modals;
        modals.Then("frmReplace", [](QWidget& dialog) { Enter(dialog, "1", "x"); })
            .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x0.000'")
            .Then("frmReplace", Cancel);
        ChooseReplace();
    }
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
    ClickCell(2, cnUSL);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtFind"), "1");
        EXPECT_EQ(TextOf(dialog, "txtReplace"), "x");
        Cancel(dialog);
    });
}

// --- leaving ----------------------------------------------------------------------------------------------

TEST_F(ReplaceDialogTest, EscDoesNothing) {
    LoadNames();
    ClickCell(1, cnVariableName);
    Replace([](QWidget& dialog) {
        for (const char* const control :
             {"txtFind", "txtReplace", "chkMatchCase", "cmdReplace", "cmdCancel"}) {
            Find(dialog, control).setFocus();
            Press(Qt::Key_Escape);
            EXPECT_TRUE(dialog.isVisible()) << control;
        }
        Cancel(dialog);
    });
    EXPECT_EQ(Cell(1, cnVariableName), "Fat in milk");
}

TEST_F(ReplaceDialogTest, CancelByMouseAndByEnterAndTheFrameOnTheFirstShowingChangeNothing) {
    LoadNames();
    const std::function<void(QWidget&)> ways[] = {Cancel,
                                                  [](QWidget& dialog) {
                                                      Find(dialog, "cmdCancel").setFocus();
                                                      Press(Qt::Key_Return);
                                                  },
                                                  [](QWidget& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        ClickCell(1, cnVariableName);
        Replace([&leave](QWidget& dialog) {
            TypeInto(dialog, "txtFind", "Fat");
            TypeInto(dialog, "txtReplace", "Oil");
            leave(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_EQ(Cell(1, cnVariableName), "Fat in milk");
    }
    ClickCell(2, cnVariableName);
    Replace([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtFind"), "fat fat") << "what was cancelled is not kept";
        Cancel(dialog);
    });
}

TEST_F(ReplaceDialogTest, FrameAfterAReplaceGoesOnWithItsTexts) {
    LoadNames();
    ClickCell(1, cnUSL);
    Modals modals;
    modals.Then("frmReplace", [](QWidget& dialog) { Enter(dialog, "1", "x"); })
        .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x0.000'")
        .Then("frmReplace",
              [](QWidget& dialog) {
                  TypeInto(dialog, "txtReplace", "2");
                  dialog.close();
              })
        .ThenBox("Fill contains invalid data - Could not Replace!\n\nFound: USL = 'x0.000'")
        .Then("frmReplace", [](QWidget& dialog) {
            EXPECT_EQ(TextOf(dialog, "txtReplace"), "2") << "what was typed stays in it";
            Cancel(dialog);
        });
    ChooseReplace();
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
}

// --- decimal separators -----------------------------------------------------------------------------------

TEST_F(ReplaceDialogTest, EitherDecimalSeparatorMayBePutIn) {
    for (const char separator : {'.', ','}) {
        screen.locale.separator = separator;
        LoadNames();
        for (const char* const replacement : {"1.5", "1,5"}) {
            SCOPED_TRACE(std::string(1, separator) + " " + replacement);
            const Text shown = separator == '.' ? "10.000" : "10,000";
            ClickCell(1, cnUSL);
            Replace([&](QWidget& dialog) { Enter(dialog, Cell(1, cnUSL).c_str(), replacement); });
            EXPECT_EQ(Cell(1, cnUSL), separator == '.' ? "1.500" : "1,500");
            Replace([&](QWidget& dialog) { Enter(dialog, Cell(1, cnUSL).c_str(), "10"); });
            EXPECT_EQ(Cell(1, cnUSL), shown);
        }
    }
}

}  // namespace
}  // namespace kd
