#include <QMouseEvent>

#include "base/NumberTexts.h"
#include "qt/WindowFixture.h"

namespace kd {
namespace {

/// Walk, Restore, Cut, Copy and Paste through the main window: mouse, keyboard, menus and pop-up menu.
class EditCommandsTest : public WindowFixture {
protected:
    static constexpr std::int32_t RowCount = 6;

    void SetUp() override {
        WindowFixture::SetUp();
        std::vector<FieldBuilder> fields;
        for (int row = 1; row <= RowCount; ++row) {
            fields.push_back(
                aField().Name("V" + Digits(row)).Usl(row * 10).Ucl(row).Units("u" + Digits(row)));
        }
        Load(fields);
    }
    Text& Clipboard() { return screen.suite.clipboard; }
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(Focused(), key, modifiers);
    }
    void Copy() { Key(Qt::Key_C, Qt::ControlModifier); }
    void Paste() { Key(Qt::Key_V, Qt::ControlModifier); }
    void PasteRefused(const char* message, QMessageBox::Icon icon) {
        Modals modals;
        modals.ThenBox(message, icon);
        Paste();
    }
    /// Presses on a cell, moves to another and lets the button go there.
    void Drag(std::int32_t firstRow, ColumnNumber first, std::int32_t lastRow, ColumnNumber last) {
        const QPoint from = Middle(firstRow, first);
        const QPoint to = Middle(lastRow, last);
        QWidget* const view = Widget().viewport();
        QTest::mousePress(view, Qt::LeftButton, {}, from);
        for (const QPoint at : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, view->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(view, &move);
        }
        QTest::mouseRelease(view, Qt::LeftButton, {}, to);
    }
    void HideRow(std::int32_t row) { desk.Grid.SetRowHidden(row, true); }
    /// The shown texts of a column, top to bottom.
    std::vector<Text> Column(ColumnNumber number) {
        std::vector<Text> texts;
        for (std::int32_t row = 1; row < desk.Grid.Rows(); ++row) {
            texts.push_back(Cell(row, number));
        }
        return texts;
    }
    /// Right click on a cell; what the pop-up menu offers, or nothing where none comes up.
    std::optional<QStringList> PopUpOver(std::int32_t row, ColumnNumber number) {
        std::optional<QStringList> offered;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (auto* const popup = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                timer.stop();
                offered = QStringList();
                for (const QAction* const action : popup->actions()) {
                    if (action->isEnabled() && !action->isSeparator()) {
                        *offered << action->objectName();
                    }
                }
                QTest::keyClick(popup, Qt::Key_Escape);
            }
        });
        timer.start(0);
        QTest::mouseClick(Widget().viewport(), Qt::RightButton, {}, Middle(row, number));
        QApplication::processEvents();
        return offered;
    }
};

using Texts = std::vector<Text>;

// --- selecting and copying --------------------------------------------------------------------------------

TEST_F(EditCommandsTest, ADraggedBlockIsCopiedRowByRow) {
    Drag(2, cnUSL, 3, cnUCL);
    Copy();
    EXPECT_EQ(Clipboard(), "20.000\t2.000\r30.000\t3.000");
}

TEST_F(EditCommandsTest, ABlockDrawnBackwardsIsTheSameBlock) {
    Drag(3, cnUCL, 2, cnUSL);
    Copy();
    EXPECT_EQ(Clipboard(), "20.000\t2.000\r30.000\t3.000");
    EXPECT_EQ(desk.Grid.Row(), 3) << "the corner where it began";
    EXPECT_EQ(desk.Grid.Col(), cnUCL - 1);
}

TEST_F(EditCommandsTest, ShiftAndArrowsSelectByKeyboard) {
    ClickCell(4, cnUSL);
    Key(Qt::Key_Down, Qt::ShiftModifier);
    Key(Qt::Key_Right, Qt::ShiftModifier);
    Copy();
    EXPECT_EQ(Clipboard(), "40.000\t4.000\r50.000\t5.000");
}

TEST_F(EditCommandsTest, ASingleCellIsItsTextAlone) {
    ClickCell(RowCount, cnUSL);
    Copy();
    EXPECT_EQ(Clipboard(), "60.000");
}

TEST_F(EditCommandsTest, HiddenRowsInsideASelectionAreLeftOut) {
    HideRow(3);
    HideRow(4);
    Drag(2, cnUSL, 5, cnUSL);
    Copy();
    EXPECT_EQ(Clipboard(), "20.000\r50.000");
}

TEST_F(EditCommandsTest, ASelectionThatBeginsHiddenUsesThatRowAndLosesItsLastVisibleOne) {
    Drag(2, cnUSL, 5, cnUSL);
    HideRow(2);
    Copy();
    EXPECT_EQ(Clipboard(), "20.000\r30.000\r40.000");
}

TEST_F(EditCommandsTest, HiddenRowsAtTheEndAreLeftOut) {
    Drag(2, cnUSL, 5, cnUSL);
    HideRow(5);
    Copy();
    EXPECT_EQ(Clipboard(), "20.000\r30.000\r40.000");
}

TEST_F(EditCommandsTest, HiddenColumnsInsideASelectionAreLeftOut) {
    Drag(1, cnUSL, 1, cnUWL);
    desk.Grid.SetColHidden(cnUCL - 1, true);
    Copy();
    EXPECT_EQ(Clipboard(), "10.000\t" + Cell(1, cnUWL));
}

TEST_F(EditCommandsTest, ABlockDraggedFromAFrozenColumnTakesAllBetween) {
    Choose("mnuView", "mnuShowPaths");
    ASSERT_GT(desk.Grid.FrozenCols(), 0);
    Drag(1, cnVariableName, 2, cnUSL);
    Copy();
    EXPECT_EQ(Clipboard(), "V1\t" + Cell(1, cnMax) + "\t10.000\rV2\t" + Cell(2, cnMax) + "\t20.000");
}

TEST_F(EditCommandsTest, WithoutASelectionNothingHappens) {
    Clipboard() = "before";
    for (const char* const entry :
         {"mnuEditRestore", "mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditFill", "mnuEditReplace"}) {
        ASSERT_EQ(desk.Grid.Row(), 0);
        Choose("mnuEdit", entry);
    }
    EXPECT_EQ(Clipboard(), "before");
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "20.000", "30.000", "40.000", "50.000", "60.000"}));
}

// --- pasting ----------------------------------------------------------------------------------------------

TEST_F(EditCommandsTest, ABlockIsLaidOverVisibleRowsAlone) {
    HideRow(3);
    Clipboard() = "7\t8\r9\t10";
    ClickCell(2, cnUSL);
    Paste();
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "7.000", "30.000", "9.000", "50.000", "60.000"}));
    EXPECT_EQ(Column(cnUCL), (Texts{"1.000", "8.000", "3.000", "10.000", "5.000", "6.000"}));
    EXPECT_TRUE(Marked(2, cnUSL));
    EXPECT_FALSE(Marked(3, cnUSL));
    EXPECT_TRUE(Marked(4, cnUCL));
}

TEST_F(EditCommandsTest, ASingleValueGoesIntoTheCurrentCellAlone) {
    Clipboard() = "7";
    Drag(2, cnUSL, 4, cnUSL);
    Paste();
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "7.000", "30.000", "40.000", "50.000", "60.000"}));
}

TEST_F(EditCommandsTest, ALineOfAnotherWidthIsDropped) {
    Clipboard() = "1\t2\r3\r4\t5";
    ClickCell(1, cnUSL);
    Paste();
    EXPECT_EQ(Column(cnUSL), (Texts{"1.000", "4.000", "30.000", "40.000", "50.000", "60.000"}));
    EXPECT_EQ(Column(cnUCL), (Texts{"2.000", "5.000", "3.000", "4.000", "5.000", "6.000"}));
}

TEST_F(EditCommandsTest, OnTheLastRowASingleLineFits) {
    Clipboard() = "7";
    ClickCell(RowCount, cnUSL);
    Paste();
    EXPECT_EQ(Cell(RowCount, cnUSL), "7.000");
}

TEST_F(EditCommandsTest, ABlockPastTheLastRowIsRefusedWhole) {
    Clipboard() = "7\r8";
    ClickCell(RowCount, cnUSL);
    PasteRefused("The clipboard's block does not fit from the current cell.", QMessageBox::Warning);
    EXPECT_EQ(Cell(RowCount, cnUSL), "60.000");
    EXPECT_FALSE(Marked(RowCount, cnUSL));
}

TEST_F(EditCommandsTest, ARefusedValueLeavesEveryCellAsItWas) {
    ClickCell(1, cnUSL);
    Clipboard() = "7\rx\r8";
    PasteRefused("Clipboard contains invalid data.\n\nFound: USL = 'x'", QMessageBox::Warning);
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "20.000", "30.000", "40.000", "50.000", "60.000"}));
}

TEST_F(EditCommandsTest, ReadOnlyCellsAreNotPastedOver) {
    Clipboard() = "7";
    ClickCell(1, cnVarNo);
    PasteRefused("Cannot Paste over Read-Only Cells!", QMessageBox::NoIcon);
    EXPECT_EQ(Cell(1, cnVarNo), "1");
}

TEST_F(EditCommandsTest, CarriageReturnsAloneEndLines) {
    Choose("mnuView", "mnuShowAll");
    ClickCell(1, cnUnits);
    Clipboard() = "a\nb\rc";
    Paste();
    EXPECT_EQ(Cell(1, cnUnits), "a\nb");
    EXPECT_EQ(Cell(2, cnUnits), "c");
    ClickCell(3, cnUnits);
    Clipboard() = "d\r\ne";
    Paste();
    EXPECT_EQ(Cell(3, cnUnits), "d");
    EXPECT_EQ(Cell(4, cnUnits), "\ne");
}

TEST_F(EditCommandsTest, ATextOfSeveralLinesOnWhichNobodyTypesComesOutOfFillAsItWas) {
    Clipboard() = "m\ng";
    ClickCell(1, cnVariableName);
    Choose("mnuEdit", "mnuEditPaste");
    ASSERT_EQ(Cell(1, cnVariableName), "m\ng");
    Modals modals;
    modals.Then("frmFill", [](QWidget&) { Press(Qt::Key_Return); });
    Choose("mnuEdit", "mnuEditFill");
    EXPECT_EQ(Cell(1, cnVariableName), "m\ng");
}

TEST_F(EditCommandsTest, AnEmptyClipboardPastesNothing) {
    Clipboard().clear();
    ClickCell(1, cnUSL);
    Paste();
    EXPECT_EQ(Cell(1, cnUSL), "10.000");
}

TEST_F(EditCommandsTest, MegabytesOnTheClipboardAreRefusedWithoutHarm) {
    Text block;
    for (int line = 0; line < 200000; ++line) {
        block += "1.25\t2.5\t3.75\r";
    }
    Clipboard() = block;
    ClickCell(1, cnUSL);
    PasteRefused("The clipboard's block does not fit from the current cell.", QMessageBox::Warning);
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "20.000", "30.000", "40.000", "50.000", "60.000"}));
}

TEST_F(EditCommandsTest, TheDecimalCommaIsTakenInEveryLocale) {
    Clipboard() = "7,5\r8.25";
    ClickCell(1, cnUSL);
    Paste();
    EXPECT_EQ(Cell(1, cnUSL), "7.500");
    EXPECT_EQ(Cell(2, cnUSL), "8.250");
}

// --- cutting and restoring --------------------------------------------------------------------------------

TEST_F(EditCommandsTest, CutTakesTextsToTheClipboardAndRestoreBringsThemBack) {
    Choose("mnuView", "mnuShowAll");
    Drag(2, cnUnits, 3, cnUnits);
    Choose("mnuEdit", "mnuEditCut");
    EXPECT_EQ(Clipboard(), "u2\ru3");
    EXPECT_EQ(Column(cnUnits), (Texts{"u1", "", "", "u4", "u5", "u6"}));
    EXPECT_TRUE(Marked(2, cnUnits));
    Choose("mnuEdit", "mnuEditRestore");
    EXPECT_EQ(Column(cnUnits), (Texts{"u1", "u2", "u3", "u4", "u5", "u6"}));
    EXPECT_FALSE(Marked(2, cnUnits));
}

TEST_F(EditCommandsTest, ALimitIsNeverCut) {
    Clipboard() = "before";
    ClickCell(2, cnUSL);
    {
        Modals modals;
        modals.ThenBox("Some cells could not be cut!\n\nFound: USL = Blank");
        Choose("mnuEdit", "mnuEditCut");
    }
    EXPECT_EQ(Cell(2, cnUSL), "20.000");
    EXPECT_EQ(Clipboard(), "before");
}

TEST_F(EditCommandsTest, ReadOnlyCellsAreNotCut) {
    ClickCell(2, cnVarNo);
    Modals modals;
    modals.ThenBox("Cannot Cut Read-Only Cells!", QMessageBox::NoIcon);
    Choose("mnuEdit", "mnuEditCut");
}

TEST_F(EditCommandsTest, RestoreOverAFilteredBlockLeavesHiddenRowsChanged) {
    Clipboard() = "7\r8\r9";
    ClickCell(1, cnUSL);
    Paste();
    Drag(1, cnUSL, 3, cnUSL);
    HideRow(2);
    Choose("mnuEdit", "mnuEditRestore");
    EXPECT_EQ(Column(cnUSL), (Texts{"10.000", "8.000", "30.000", "40.000", "50.000", "60.000"}));
    EXPECT_TRUE(Marked(2, cnUSL));
}

// --- the pop-up menu --------------------------------------------------------------------------------------

TEST_F(EditCommandsTest, PopUpOffersPasteOnlyWhenTheClipboardHoldsText) {
    Clipboard().clear();
    ClickCell(2, cnUSL);
    const auto without = PopUpOver(2, cnUSL);
    ASSERT_TRUE(without.has_value());
    EXPECT_FALSE(without->contains("mnuPaste")) << without->join(' ').toStdString();
    EXPECT_TRUE(without->contains("mnuCopy")) << without->join(' ').toStdString();
    Clipboard() = "7";
    const auto with = PopUpOver(2, cnUSL);
    ASSERT_TRUE(with.has_value());
    EXPECT_TRUE(with->contains("mnuPaste")) << with->join(' ').toStdString();
}

TEST_F(EditCommandsTest, NoPopUpComesUpOverAReadOnlyColumn) {
    EXPECT_FALSE(PopUpOver(2, cnVarNo).has_value());
}

// --- an open cell editor ----------------------------------------------------------------------------------

TEST_F(EditCommandsTest, AMenuSettlesAnAcceptedTextAndItsCommandSeesIt) {
    ClickCell(2, cnUSL);
    Type("7");
    Choose("mnuEdit", "mnuEditCopy");
    EXPECT_EQ(Cell(2, cnUSL), "7.000");
    EXPECT_EQ(Clipboard(), "7.000");
    EXPECT_EQ(desk.Grid.EditWindow(), 0);
}

TEST_F(EditCommandsTest, AMenuOverAnUntouchedEditorClosesIt) {
    ClickCell(2, cnUSL);
    Key(Qt::Key_F2);
    ASSERT_NE(desk.Grid.EditWindow(), 0);
    Choose("mnuEdit", "mnuEditCopy");
    EXPECT_EQ(Clipboard(), "20.000");
    EXPECT_EQ(desk.Grid.EditWindow(), 0);
    EXPECT_FALSE(Marked(2, cnUSL));
}

TEST_F(EditCommandsTest, AMenuOverARefusedTextSaysSoAndItsCommandWorksOnTheOldText) {
    ClickCell(2, cnUSL);
    Type("x");
    Text said;
    {
        Modals modals;
        modals.Then("MessageBox", [&said](QWidget& shown) {
            said = FromQt(dynamic_cast<QMessageBox&>(shown).text());
            ClickBoxButton(shown, QMessageBox::Ok);
        });
        QMenu& menu = Open("mnuEdit");
        Activate();
        QTest::mouseClick(&menu, Qt::LeftButton, {},
                          menu.actionGeometry(&Find<QAction>(window, "mnuEditCopy")).center());
    }
    EXPECT_NE(said, "");
    EXPECT_EQ(Clipboard(), "20.000");
    EXPECT_NE(desk.Grid.EditWindow(), 0) << "the editor stays";
    Key(Qt::Key_Escape);
    EXPECT_EQ(Cell(2, cnUSL), "20.000");
}

TEST_F(EditCommandsTest, TheEditorKeepsCopyAndPasteToItself) {
    Clipboard() = "cells";
    ClickCell(2, cnUSL);
    Key(Qt::Key_F2);
    auto* const editor = qobject_cast<QLineEdit*>(Focused());
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    Copy();
    Key(Qt::Key_End);
    Paste();
    EXPECT_EQ(editor->text(), "20.00020.000");
    EXPECT_EQ(Clipboard(), "cells") << "the command was not run";
    Key(Qt::Key_Escape);
}

TEST_F(EditCommandsTest, ClosingTheWindowSettlesAnAcceptedTextAndAsks) {
    ClickCell(2, cnUSL);
    Type("7");
    Modals modals;
    modals.Then("MessageBox", [](QWidget& shown) {
        EXPECT_TRUE(dynamic_cast<QMessageBox&>(shown).text().startsWith("You have outstanding changes."));
        ClickBoxButton(shown, QMessageBox::No);
    });
    EXPECT_FALSE(window.close());
    EXPECT_EQ(Cell(2, cnUSL), "7.000");
}

TEST_F(EditCommandsTest, ClosingTheWindowOverARefusedTextTellsItOnceAndGivesItUp) {
    ClickCell(2, cnUSL);
    Type("x");
    Modals modals;
    modals.Then("MessageBox", [](QWidget& shown) { ClickBoxButton(shown, QMessageBox::Ok); });
    EXPECT_TRUE(window.close());
    EXPECT_FALSE(desk.Grid.EditWindow());
    EXPECT_NE(Cell(2, cnUSL), "x");
}

TEST_F(EditCommandsTest, ClosingTheWindowOverAnUntouchedEditorAsksNothing) {
    ClickCell(2, cnUSL);
    Key(Qt::Key_F2);
    EXPECT_TRUE(window.close());
}

}  // namespace
}  // namespace kd
