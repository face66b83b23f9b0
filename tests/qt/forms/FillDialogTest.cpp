#include "qt/forms/FillDialog.h"

#include <QGroupBox>
#include <QLayout>
#include <QRadioButton>

#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// Fill through the main window: the menu, the dialog, the messages, the cells.
class FillDialogTest : public WindowFixture {
protected:
    void LoadLimits() {
        Load({aField().Name("Fat").Usl(10).Tgt(5), aField().Name("Protein").Usl(20).Tgt(6),
              aField().Name("Sugar").Usl(30).Tgt(7).Key("UCL", "C")});
    }
    void ChooseFill() { Choose("mnuEdit", "mnuEditFill"); }
    void Fill(std::function<void(QWidget&)> user) {
        Modals modals;
        modals.Then("frmFill", std::move(user));
        ChooseFill();
    }
    static void Cancel(QWidget& dialog) { Click(Find(dialog, "cmdCancel")); }
    static bool Chosen(QWidget& dialog, const char* option) {
        return Find<QRadioButton>(dialog, option).isChecked();
    }
    static QString TextOf(QWidget& dialog, const char* edit) { return Find<QLineEdit>(dialog, edit).text(); }
};

TEST_F(FillDialogTest, CaptionsAndStartStatesAreTheDesignedOnes) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Fill a range of cells");
        EXPECT_EQ(Find<QRadioButton>(dialog, "optFillConstant").text().remove('&'),
                  "Using a constant value: ");
        EXPECT_EQ(Find<QRadioButton>(dialog, "optFillLimit").text().remove('&'), "Using a calculation:");
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdOk").text(), "Ok");
        EXPECT_EQ(Find<QPushButton>(dialog, "cmdCancel").text(), "Cancel");
        EXPECT_TRUE(Find<QPushButton>(dialog, "cmdOk").isDefault());
        QStringList captions;
        for (int index = 0; index < 7; ++index) {
            captions << Find<QRadioButton>(dialog, ("optLimits_" + std::to_string(index)).c_str()).text();
        }
        for (int index = 0; index < 4; ++index) {
            captions << Find<QRadioButton>(dialog, ("optPlusMinus_" + std::to_string(index)).c_str()).text();
        }
        EXPECT_EQ(captions, QStringList({"USL", "UCL", "UWL", "TGT", "LWL", "LCL", "LSL", "Plus", "Minus",
                                         "Plus Percent", "Minus Percent"}));
        EXPECT_TRUE(Chosen(dialog, "optFillConstant"));
        EXPECT_FALSE(Chosen(dialog, "optFillLimit"));
        EXPECT_TRUE(Chosen(dialog, "optLimits_3"));
        EXPECT_TRUE(Chosen(dialog, "optPlusMinus_0"));
        EXPECT_EQ(TextOf(dialog, "txtLimitValue"), "");
        EXPECT_EQ(Find<QLabel>(dialog, "lblLimit").text(), "USL  =");
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, DialogStandsInTheMiddleOfTheScreen) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        const QPoint middle = dialog.screen()->availableGeometry().center();
        EXPECT_NEAR(dialog.frameGeometry().center().x(), middle.x(), 1);
        EXPECT_NEAR(dialog.frameGeometry().center().y(), middle.y(), 1);
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, ConstantHasTheKeyboardWithAllOfItSelected) {
    LoadLimits();
    ClickCell(2, cnUSL);
    const QString shown = QString::fromStdString(Cell(2, cnUSL));
    Fill([&shown](QWidget& dialog) {
        EXPECT_EQ(Focused(), &Find(dialog, "txtConstant"));
        EXPECT_EQ(TextOf(dialog, "txtConstant"), shown);
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtConstant").selectedText(), shown);
        Type("25");
        EXPECT_EQ(TextOf(dialog, "txtConstant"), "25") << "typing replaces what was offered";
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Cell(2, cnUSL), "25.000");
}

TEST_F(FillDialogTest, TabGoesFromTheConstantThroughTheCalculationToTheButtons) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        EXPECT_EQ(TabOrder(dialog),
                  (std::vector<std::string>{"txtConstant", "optFillLimit", "optLimits_3", "optPlusMinus_0",
                                            "txtLimitValue", "cmdOk", "cmdCancel", "optFillConstant"}));
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, ConstantEndsWhereTheCalculationDoesAndBeginsWithItsFrames) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        const auto at = [&dialog](const char* name) { return Find(dialog, name).geometry(); };
        EXPECT_EQ(at("txtConstant").left(), at("fraLimits").left());
        EXPECT_EQ(at("txtConstant").right(), at("txtLimitValue").right());
        EXPECT_EQ(at("txtLimitValue").right(), at("cmdCancel").right());
        EXPECT_EQ(at("optFillLimit").left(), at("optFillConstant").left());
        EXPECT_EQ(at("optFillLimit").right(), at("txtConstant").right()) << "a click in the line chooses it";
        EXPECT_EQ(at("lblLimit").right(), at("optFillConstant").right());
        EXPECT_EQ(at("lblLimit").width(), Find(dialog, "lblLimit").sizeHint().width())
            << "what is calculated stands before what it is calculated from";
        EXPECT_EQ(at("fraPlusMinus").top(), at("fraLimits").top());
        EXPECT_EQ(at("fraPlusMinus").bottom(), at("fraLimits").bottom());
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, OptionsStandBelowEachOtherFromTheTopOfTheirFrame) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        std::vector<int> tops[2];
        const std::pair<const char*, std::string> groups[] = {{"fraLimits", "optLimits_"},
                                                              {"fraPlusMinus", "optPlusMinus_"}};
        for (int group = 0; group < 2; ++group) {
            auto& frame = Find<QGroupBox>(dialog, groups[group].first);
            const auto options = frame.findChildren<QRadioButton*>();
            EXPECT_EQ(options.size(), group == 0 ? 7 : 4);
            int above = -1;
            for (int index = 0; index < static_cast<int>(options.size()); ++index) {
                const auto& option =
                    Find<QRadioButton>(frame, (groups[group].second + std::to_string(index)).c_str());
                const QRect at(option.mapTo(&frame, QPoint()), option.size());
                EXPECT_EQ(at.left(), frame.layout()->contentsRect().left()) << groups[group].second << index;
                EXPECT_GT(at.top(), above) << groups[group].second << index;
                above = at.bottom();
                tops[group].push_back(at.top());
            }
            EXPECT_EQ(tops[group].front(), frame.layout()->contentsRect().top()) << groups[group].first;
        }
        tops[0].resize(tops[1].size());
        EXPECT_EQ(tops[1], tops[0]) << "the fewer options are no farther from each other";
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, ValueKeepsRoomForFourteenLettersInTheNarrowestDialog) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        dialog.resize(1, dialog.height());
        QTest::qWait(0);
        EXPECT_EQ(Find(dialog, "txtLimitValue").width(), dialog.fontMetrics().averageCharWidth() * 14);
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, OnlyALimitColumnOffersTheCalculation) {
    LoadLimits();
    struct Case {
        const char* label;
        ColumnNumber first;
        ColumnNumber last;
        bool offered;
        const char* target;
    };
    const Case cases[] = {{"first limit", cnUSL, cnUSL, true, "USL  ="},
                          {"last limit", cnLSL, cnLSL, true, "LSL  ="},
                          {"beside the limits, above", cnMax, cnMax, false, "USL  ="},
                          {"beside the limits, below", cnMin, cnMin, false, "USL  ="},
                          {"a property", cnVariableName, cnVariableName, false, "USL  ="},
                          {"two limits", cnUCL, cnUWL, false, "USL  ="}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.label);
        SelectCells(1, each.first, 2, each.last);
        Fill([&each](QWidget& dialog) {
            for (const char* const control :
                 {"optFillLimit", "fraLimits", "fraPlusMinus", "txtLimitValue", "optLimits", "optPlusMinus",
                  "optLimits_0", "optLimits_6", "optPlusMinus_3"}) {
                EXPECT_EQ(Find(dialog, control).isEnabled(), each.offered) << control;
            }
            EXPECT_TRUE(Find(dialog, "optFillConstant").isEnabled());
            EXPECT_TRUE(Find(dialog, "txtConstant").isEnabled());
            EXPECT_EQ(Find<QLabel>(dialog, "lblLimit").text(), each.target);
            Cancel(dialog);
        });
    }
}

TEST_F(FillDialogTest, OneLimitBesideAHiddenColumnOffersTheCalculation) {
    LoadLimits();
    desk.Grid.SetColHidden(cnUCL - 1, true);
    desk.Grid.Select(1, cnUSL - 1);
    desk.Grid.ExtendSelection(2, cnUCL - 1);
    Fill([](QWidget& dialog) {
        EXPECT_TRUE(Find(dialog, "optFillLimit").isEnabled());
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, FocusChoosesTheKindOfFillAndOptionsDoNot) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Fill([](QWidget& dialog) {
        ClickMark(Find(dialog, "optLimits_6"));
        ClickMark(Find(dialog, "optPlusMinus_1"));
        EXPECT_TRUE(Chosen(dialog, "optLimits_6"));
        EXPECT_FALSE(Chosen(dialog, "optLimits_3"));
        EXPECT_TRUE(Chosen(dialog, "optPlusMinus_1"));
        EXPECT_TRUE(Chosen(dialog, "optFillConstant")) << "an option of the calculation chooses no kind";
        Click(Find(dialog, "txtLimitValue"));
        EXPECT_TRUE(Chosen(dialog, "optFillLimit"));
        EXPECT_FALSE(Chosen(dialog, "optFillConstant"));
        Click(Find(dialog, "txtConstant"));
        EXPECT_TRUE(Chosen(dialog, "optFillConstant"));
        EXPECT_FALSE(Chosen(dialog, "optFillLimit"));
        ClickMark(Find(dialog, "optFillLimit"));
        EXPECT_TRUE(Chosen(dialog, "optFillLimit"));
        ClickMark(Find(dialog, "optFillConstant"));
        EXPECT_TRUE(Chosen(dialog, "optFillConstant"));
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, KeyboardAloneFillsACalculation) {
    LoadLimits();
    SelectCells(1, cnLSL, 3, cnLSL);
    Fill([](QWidget& dialog) {
        Press(Qt::Key_C, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([&] { return Chosen(dialog, "optFillLimit"); }));
        Press(Qt::Key_Tab);
        Press(Qt::Key_Up);
        Press(Qt::Key_Up);
        Press(Qt::Key_Up);
        EXPECT_TRUE(Chosen(dialog, "optLimits_0"));
        Press(Qt::Key_Tab);
        Press(Qt::Key_Down);
        EXPECT_TRUE(Chosen(dialog, "optPlusMinus_1"));
        Press(Qt::Key_Tab);
        EXPECT_EQ(Focused(), &Find(dialog, "txtLimitValue"));
        Type("2.5");
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Cell(1, cnLSL), "7.500");
    EXPECT_EQ(Cell(2, cnLSL), "17.500");
    EXPECT_EQ(Cell(3, cnLSL), "27.500");
    EXPECT_TRUE(Marked(3, cnLSL));
}

TEST_F(FillDialogTest, EachCalculationIsTakenFromTheChosenLimit) {
    LoadLimits();
    const std::pair<const char*, const char*> cases[] = {{"optPlusMinus_0", "25.000"},
                                                         {"optPlusMinus_1", "15.000"},
                                                         {"optPlusMinus_2", "21.000"},
                                                         {"optPlusMinus_3", "19.000"}};
    for (const auto& [option, result] : cases) {
        ClickCell(2, cnUCL);
        Fill([option = option](QWidget& dialog) {
            ClickMark(Find(dialog, "optLimits_0"));
            ClickMark(Find(dialog, option));
            EXPECT_EQ(TextOf(dialog, "txtLimitValue"), "") << "no value is ever remembered";
            TypeInto(dialog, "txtLimitValue", "5");
            Click(Find(dialog, "cmdOk"));
        });
        EXPECT_EQ(Cell(2, cnUCL), result) << option;
    }
}

// --- refusals ---------------------------------------------------------------------------------------------

TEST_F(FillDialogTest, LimitValueThatIsNoNumberIsToldAndGetsTheKeyboard) {
    LoadLimits();
    ClickCell(1, cnUSL);
    for (const char* const value : {"", "abc", "1.5,2", "5x"}) {
        SCOPED_TRACE(value);
        Modals modals;
        modals
            .Then("frmFill",
                  [value](QWidget& dialog) {
                      TypeInto(dialog, "txtLimitValue", value);
                      Click(Find(dialog, "cmdOk"));
                  })
            .ThenBox("Invalid Limit value!")
            .Then("frmFill", [value](QWidget& dialog) {
                EXPECT_EQ(Focused(), &Find(dialog, "txtLimitValue"));
                EXPECT_TRUE(Chosen(dialog, "optFillLimit"));
                EXPECT_EQ(TextOf(dialog, "txtLimitValue"), value);
                Press(Qt::Key_Escape);
            });
        ChooseFill();
    }
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
}

TEST_F(FillDialogTest, BlankOrCalcLimitInOneRowRefusesAllAndTheDialogComesBackAsItWas) {
    LoadLimits();
    SelectCells(1, cnUSL, 3, cnUSL);
    Modals modals;
    modals
        .Then("frmFill",
              [](QWidget& dialog) {
                  ClickMark(Find(dialog, "optLimits_1"));
                  TypeInto(dialog, "txtLimitValue", "1");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Cannot calculate using Blank or Calc limits!")
        .Then("frmFill", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "txtLimitValue")) << "the focus stays where it was";
            EXPECT_TRUE(Chosen(dialog, "optFillLimit"));
            EXPECT_TRUE(Chosen(dialog, "optLimits_1"));
            EXPECT_EQ(TextOf(dialog, "txtLimitValue"), "1");
            EXPECT_EQ(TextOf(dialog, "txtConstant"), "10.000");
            Cancel(dialog);
        });
    ChooseFill();
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
    EXPECT_FALSE(Marked(1, cnUSL));
}

TEST_F(FillDialogTest, ReadOnlyColumnIsToldOnlyBehindTheDialog) {
    LoadLimits();
    ClickCell(1, cnType);
    Modals modals;
    modals.Then("frmFill", [](QWidget&) { Press(Qt::Key_Return); })
        .ThenBox("Cannot Fill over Read-Only Cells!")
        .Then("frmFill", [](QWidget&) { Press(Qt::Key_Escape); });
    ChooseFill();
    EXPECT_EQ(Cell(1, cnType), "N");
}

TEST_F(FillDialogTest, RefusedConstantIsToldAndMayBeCorrected) {
    LoadLimits();
    SelectCells(1, cnUSL, 2, cnUSL);
    Modals modals;
    modals
        .Then("frmFill",
              [](QWidget&) {
                  Type("abc");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Fill contains invalid data - Could not Fill!\n\nFound: USL = 'abc'")
        .Then("frmFill", [](QWidget& dialog) {
            EXPECT_EQ(Focused(), &Find(dialog, "txtConstant"));
            EXPECT_EQ(Find<QLineEdit>(dialog, "txtConstant").selectedText(), "abc")
                << "all of it is selected again";
            Type("12");
            Click(Find(dialog, "cmdOk"));
        });
    ChooseFill();
    EXPECT_EQ(Cell(1, cnUSL), "12.000");
    EXPECT_EQ(Cell(2, cnUSL), "12.000");
    EXPECT_EQ(Cell(3, cnUSL), "30.000");
}

TEST_F(FillDialogTest, ADialogThatComesBackStandsWhereItWasAndAsLarge) {
    LoadLimits();
    ClickCell(1, cnUSL);
    QRect before;
    Modals modals;
    modals
        .Then("frmFill",
              [&](QWidget& dialog) {
                  dialog.move(30, 40);
                  dialog.resize(dialog.size() + QSize(60, 20));
                  before = QRect(dialog.pos(), dialog.size());
                  Type("abc");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Fill contains invalid data - Could not Fill!\n\nFound: USL = 'abc'")
        .Then("frmFill", [&](QWidget& dialog) {
            EXPECT_EQ(QRect(dialog.pos(), dialog.size()), before);
            Cancel(dialog);
        });
    ChooseFill();
}

TEST_F(FillDialogTest, ResultBeyondANumberIsAnInvalidValueAndChangesNothing) {
    Load({aField().Usl(1), aField().Usl(1000)});
    SelectCells(1, cnUSL, 2, cnUSL);
    Modals modals;
    modals
        .Then("frmFill",
              [](QWidget& dialog) {
                  ClickMark(Find(dialog, "optLimits_0"));
                  ClickMark(Find(dialog, "optPlusMinus_2"));
                  TypeInto(dialog, "txtLimitValue", "1.7E308");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Invalid Limit value!")
        .Then("frmFill", [](QWidget&) { Press(Qt::Key_Escape); });
    ChooseFill();
    EXPECT_EQ(Cell(1, cnUSL), "1.000");
}

// --- leaving ----------------------------------------------------------------------------------------------

TEST_F(FillDialogTest, CancelEscAndFrameOnTheFirstShowingChangeNothing) {
    LoadLimits();
    const std::function<void(QWidget&)> ways[] = {Cancel, [](QWidget&) { Press(Qt::Key_Escape); },
                                                  [](QWidget& dialog) { dialog.close(); }};
    for (const auto& leave : ways) {
        ClickCell(1, cnUSL);
        Fill([&leave](QWidget& dialog) {
            TypeInto(dialog, "txtConstant", "99");
            leave(dialog);
            EXPECT_FALSE(dialog.isVisible());
        });
        EXPECT_EQ(Cell(1, cnUSL), "10.000");
    }
}

TEST_F(FillDialogTest, FrameAfterAnOkGoesOnWithTheLastOksChoices) {
    LoadLimits();
    ClickCell(1, cnUSL);
    Modals modals;
    modals
        .Then("frmFill",
              [](QWidget&) {
                  Type("abc");
                  Press(Qt::Key_Return);
              })
        .ThenBox("Fill contains invalid data - Could not Fill!\n\nFound: USL = 'abc'")
        .Then("frmFill",
              [](QWidget& dialog) {
                  Type("15");
                  dialog.close();
              })
        .ThenBox("Fill contains invalid data - Could not Fill!\n\nFound: USL = 'abc'")
        .Then("frmFill", [](QWidget& dialog) {
            EXPECT_EQ(TextOf(dialog, "txtConstant"), "15") << "what was typed stays in it";
            Cancel(dialog);
        });
    ChooseFill();
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
}

TEST_F(FillDialogTest, RefusedConstantIsOfferedByTheNextFill) {
    LoadLimits();
    ClickCell(1, cnUSL);
    {
        Modals modals;
        modals
            .Then("frmFill",
                  [](QWidget&) {
                      Type("abc");
                      Press(Qt::Key_Return);
                  })
            .ThenBox("Fill contains invalid data - Could not Fill!\n\nFound: USL = 'abc'")
            .Then("frmFill", Cancel);
        ChooseFill();
    }
    ClickCell(2, cnUSL);
    Fill([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtConstant"), "abc");
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, EmptyConstantBlanksAndIsNotOfferedAgain) {
    Load({aField().Units("kg")});
    Choose("mnuView", "mnuShowAll");
    ClickCell(1, cnUnits);
    Fill([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtConstant"), "kg");
        Press(Qt::Key_Delete);
        Press(Qt::Key_Return);
    });
    EXPECT_EQ(Cell(1, cnUnits), "");
    ClickCell(1, cnVariableName);
    Fill([](QWidget& dialog) {
        EXPECT_EQ(TextOf(dialog, "txtConstant"), "Weight");
        Cancel(dialog);
    });
}

TEST_F(FillDialogTest, WithoutASelectionNothingComesUp) {
    LoadLimits();
    const Modals none;
    ChooseFill();
}

// --- decimal separators -----------------------------------------------------------------------------------

TEST_F(FillDialogTest, BothDecimalSeparatorsAreNumbersUnderEither) {
    for (const char separator : {'.', ','}) {
        screen.locale.separator = separator;
        LoadLimits();
        for (const char* const value : {"2.5", "2,5"}) {
            SCOPED_TRACE(std::string(1, separator) + " " + value);
            const Text wanted = separator == '.' ? "12.500" : "12,500";
            ClickCell(1, cnLSL);
            Fill([value](QWidget& dialog) {
                ClickMark(Find(dialog, "optLimits_0"));
                TypeInto(dialog, "txtLimitValue", value);
                Click(Find(dialog, "cmdOk"));
            });
            EXPECT_EQ(Cell(1, cnLSL), wanted);
            ClickCell(1, cnLCL);
            Fill([value](QWidget& dialog) {
                TypeInto(dialog, "txtConstant", value);
                Press(Qt::Key_Return);
            });
            EXPECT_EQ(Cell(1, cnLCL), separator == '.' ? "2.500" : "2,500");
        }
    }
}

}  // namespace
}  // namespace kd
