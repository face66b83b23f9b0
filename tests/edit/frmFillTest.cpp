#include "edit/frmFill.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit/Fill.h"
#include "edit/FillDesk.h"

namespace kd {
namespace {

using testing::ElementsAre;

struct frmFillTest : testing::Test, FillDesk {
    void Run() { Fill(desk, memory); }
};

TEST_F(frmFillTest, CaptionsAndStartStatesAreTheDesignedOnes) {
    frmFill form(g);
    EXPECT_EQ(form.Caption(), "Fill a range of cells");
    EXPECT_EQ(form.optFillConstant.Caption(), "Using a constant value: ");
    EXPECT_TRUE(form.optFillConstant.Value());
    EXPECT_EQ(form.optFillLimit.Caption(), "Using a calculation:");
    EXPECT_FALSE(form.optFillLimit.Value());
    EXPECT_EQ(form.lblLimit.Caption(), "USL  =");
    EXPECT_THAT(form.optLimits.Captions(), ElementsAre("USL", "UCL", "UWL", "TGT", "LWL", "LCL", "LSL"));
    EXPECT_EQ(form.optLimits.Selected(), 3);
    EXPECT_THAT(form.optPlusMinus.Captions(), ElementsAre("Plus", "Minus", "Plus Percent", "Minus Percent"));
    EXPECT_EQ(form.optPlusMinus.Selected(), 0);
    EXPECT_EQ(form.txtLimitValue.Value(), "");
    EXPECT_EQ(form.cmdOk.Caption(), "Ok");
    EXPECT_EQ(form.cmdCancel.Caption(), "Cancel");
    EXPECT_TRUE(form.Cancel());
    EXPECT_FALSE(form.OwnPlace().has_value());
}

TEST_F(frmFillTest, LimitColumnOffersTheCalculationAndNamesTheLimit) {
    AddLimits(cnUSL, {1});
    const std::pair<ColumnNumber, const char*> columns[] = {
        {cnUSL, "USL  ="}, {cnUCL, "UCL  ="}, {cnUWL, "UWL  ="}, {cnTGT, "TGT  ="},
        {cnLWL, "LWL  ="}, {cnLCL, "LCL  ="}, {cnLSL, "LSL  ="}};
    for (const auto& column : columns) {
        const ColumnNumber number = column.first;
        const char* const label = column.second;
        Select(1, number, 1, number);
        Expect([limit = LimitOf(number), label = label](frmFill& form) {
            EXPECT_EQ(form.TargetLimit(), limit);
            EXPECT_EQ(form.lblLimit.Caption(), label);
            EXPECT_TRUE(form.optFillLimit.Enabled());
            EXPECT_TRUE(form.fraLimits.Enabled());
            EXPECT_TRUE(form.optLimits.Enabled());
            EXPECT_TRUE(form.fraPlusMinus.Enabled());
            EXPECT_TRUE(form.optPlusMinus.Enabled());
            EXPECT_TRUE(form.txtLimitValue.Enabled());
            form.cmdCancel.UserClick();
        });
        Run();
    }
}

TEST_F(frmFillTest, OtherColumnsOfferTheConstantOnly) {
    AddLimits(cnUSL, {1});
    for (const ColumnNumber number : {cnVariableName, cnMax, cnMin, cnType, cnUnits}) {
        Select(1, number, 1, number);
        Expect([&](frmFill& form) {
            EXPECT_EQ(form.TargetLimit(), NoLimit) << number;
            EXPECT_EQ(form.lblLimit.Caption(), "USL  =");
            EXPECT_FALSE(form.optFillLimit.Enabled());
            EXPECT_FALSE(form.fraLimits.Enabled());
            EXPECT_FALSE(form.optLimits.Enabled());
            EXPECT_FALSE(form.fraPlusMinus.Enabled());
            EXPECT_FALSE(form.optPlusMinus.Enabled());
            EXPECT_FALSE(form.txtLimitValue.Enabled());
            EXPECT_TRUE(form.txtConstant.Enabled());
            form.cmdCancel.UserClick();
        });
        Run();
    }
}

TEST_F(frmFillTest, TwoVisibleLimitColumnsOfferTheConstantOnly) {
    AddLimits(cnUSL, {1});
    Select(1, cnUSL, 1, cnUCL);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.TargetLimit(), NoLimit);
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(frmFillTest, OneVisibleLimitColumnBesideAHiddenOneOffersTheCalculation) {
    AddLimits(cnUSL, {1});
    SetShown(cnUCL, false);
    Select(1, cnUSL, 1, cnUCL);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.TargetLimit(), 0);
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(frmFillTest, FirstFillStartsWithTheFirstCellsText) {
    AddUnits({"g", "kg"});
    Select(2, cnUnits, 1, cnUnits);
    Expect([](frmFill& form) {
        EXPECT_EQ(form.txtConstant.Value(), "g");
        EXPECT_EQ(form.txtLimitValue.Value(), "");
        form.cmdCancel.UserClick();
    });
    Run();
}

TEST_F(frmFillTest, WholeConstantIsSelectedAtEachShowing) {
    AddLimits(cnUSL, {1});
    Select(1, cnUSL, 1, cnUSL);
    int selected = 0;
    Expect([&](frmFill& form) {
        form.txtConstant.OnSelectAll = [&selected] { ++selected; };
        form.txtConstant.UserType("x");
        form.cmdOk.UserClick();
    });
    toolkit.ExpectBox(InvalidBox("USL", "x"), BoxIcon::Exclamation);
    ExpectCancel();
    Run();
    EXPECT_EQ(selected, 1);
    frmFill form(g);
    form.txtConstant.OnSelectAll = [&selected] { ++selected; };
    Expect([](frmFill& shown) { shown.UserClose(); });
    form.Display();
    EXPECT_EQ(selected, 2);
}

TEST_F(frmFillTest, FocusSelectsTheKindOfFill) {
    frmFill form(g);
    form.txtLimitValue.UserFocus();
    EXPECT_TRUE(form.optFillLimit.Value());
    EXPECT_FALSE(form.optFillConstant.Value());
    form.txtConstant.UserFocus();
    EXPECT_TRUE(form.optFillConstant.Value());
    EXPECT_FALSE(form.optFillLimit.Value());
}

TEST_F(frmFillTest, OptionsOfTheCalculationDoNotSelectTheKindOfFill) {
    frmFill form(g);
    form.optLimits.UserSelect(0);
    form.optPlusMinus.UserSelect(2);
    EXPECT_EQ(form.optLimits.Selected(), 0);
    EXPECT_EQ(form.optPlusMinus.Selected(), 2);
    EXPECT_TRUE(form.optFillConstant.Value());
    EXPECT_FALSE(form.optFillLimit.Value());
}

TEST_F(frmFillTest, ClickOnAKindSelectsItAlone) {
    frmFill form(g);
    form.optFillLimit.UserClick();
    EXPECT_TRUE(form.optFillLimit.Value());
    EXPECT_FALSE(form.optFillConstant.Value());
    form.optFillConstant.UserClick();
    EXPECT_TRUE(form.optFillConstant.Value());
    EXPECT_FALSE(form.optFillLimit.Value());
}

TEST_F(frmFillTest, EachAnswerThatCanBeSetIsReadAsItWasSet) {
    frmFill form(g);
    form.SetFillText("5");
    form.SetTargetLimit(2);
    form.SetLimitType(3);
    form.SetLimitPlusMinus(1);
    form.SetLimitValue("1.5");
    EXPECT_EQ(form.FillText(), "5");
    EXPECT_EQ(form.TargetLimit(), 2);
    EXPECT_EQ(form.LimitType(), 3);
    EXPECT_EQ(form.LimitPlusMinus(), 1);
    EXPECT_EQ(form.LimitValue(), "1.5");
}

TEST_F(frmFillTest, LimitValueThatIsNoNumberIsRefusedAndGetsTheFocus) {
    for (const Text value : {"", " ", "x", "1.5,5", "1e999", "0x10"}) {
        frmFill form(g);
        int focused = 0;
        const std::size_t boxes = toolkit.boxes.size();
        form.txtLimitValue.OnFocusWanted = [&] {
            ++focused;
            EXPECT_EQ(toolkit.boxes.size(), boxes + 1) << "the box comes first";
        };
        Expect([&](frmFill& shown) {
            toolkit.ExpectBox("Invalid Limit value!", BoxIcon::Exclamation);
            shown.txtLimitValue.UserFocus();
            shown.txtLimitValue.UserType(value);
            shown.optLimits.UserSelect(6);
            shown.cmdOk.UserClick();
            EXPECT_TRUE(shown.Shown());
            EXPECT_TRUE(shown.Cancel());
            EXPECT_EQ(shown.FillType(), fkConstant);
            EXPECT_EQ(shown.LimitType(), 0);
            EXPECT_EQ(shown.LimitValue(), "");
            EXPECT_EQ(shown.txtLimitValue.Value(), value);
            shown.UserClose();
        });
        form.Display();
        EXPECT_EQ(focused, 1) << "'" << value << "'";
    }
}

TEST_F(frmFillTest, OkTakesTheChoices) {
    frmFill form(g);
    Expect([](frmFill& shown) {
        shown.txtLimitValue.UserFocus();
        shown.txtLimitValue.UserType("2,5");
        shown.optLimits.UserSelect(6);
        shown.optPlusMinus.UserSelect(3);
        shown.cmdOk.UserClick();
    });
    form.Display();
    EXPECT_FALSE(form.Cancel());
    EXPECT_EQ(form.FillType(), fkCalculation);
    EXPECT_EQ(form.LimitType(), 6);
    EXPECT_EQ(form.LimitPlusMinus(), pmMinusPercent);
    EXPECT_EQ(form.LimitValue(), "2,5");
}

TEST_F(frmFillTest, CancelAfterAnOkCancels) {
    frmFill form(g);
    Expect([](frmFill& shown) { shown.cmdOk.UserClick(); });
    form.Display();
    EXPECT_FALSE(form.Cancel());
    Expect([](frmFill& shown) { shown.UserClose(); });
    form.Display();
    EXPECT_FALSE(form.Cancel()) << "the frame sets nothing";
    Expect([](frmFill& shown) { shown.cmdCancel.UserClick(); });
    form.Display();
    EXPECT_TRUE(form.Cancel());
}

}  // namespace
}  // namespace kd
