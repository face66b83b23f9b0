#pragma once

#include "model/Columns.h"
#include "model/Globals.h"
#include "platform/Toolkit.h"

namespace kd {

/// What a range is filled with, as frmFill::FillType gives it.
enum FillKind : std::int32_t { fkConstant = 0, fkCalculation = 1 };
/// How a limit is calculated from another one, as frmFill::LimitPlusMinus gives it.
enum PlusMinus : std::int32_t { pmPlus = 0, pmMinus = 1, pmPlusPercent = 2, pmMinusPercent = 3 };

/// The dialog that asks what to fill a range of cells with. It only collects: the command does the work, and
/// shows it again after a refusal, with what was typed still in it. Each answer can be set as well as read;
/// this program sets FillText and TargetLimit alone.
class frmFill : public Form {
public:
    explicit frmFill(Globals& g);

    std::int32_t FillType() const noexcept { return m_fillType; }
    /// True from the start; Ok sets it false, the Cancel button true. Closing by the frame leaves it.
    bool Cancel() const noexcept { return m_cancel; }
    /// The constant; shown when the dialog is first displayed.
    const Text& FillText() const noexcept { return m_fillText; }
    void SetFillText(Text value) { m_fillText = std::move(value); }
    /// Index into optLimits of the limit that is filled; NoLimit, and a calculation is not offered.
    std::int32_t TargetLimit() const noexcept { return m_targetLimit; }
    void SetTargetLimit(std::int32_t value) noexcept { m_targetLimit = value; }
    /// Index into optLimits of the limit to calculate from.
    std::int32_t LimitType() const noexcept { return m_limitType; }
    void SetLimitType(std::int32_t value) noexcept { m_limitType = value; }
    /// Index into optPlusMinus.
    std::int32_t LimitPlusMinus() const noexcept { return m_limitPlusMinus; }
    void SetLimitPlusMinus(std::int32_t value) noexcept { m_limitPlusMinus = value; }
    /// Text of txtLimitValue.
    const Text& LimitValue() const noexcept { return m_limitValue; }
    void SetLimitValue(Text value) { m_limitValue = std::move(value); }

    /// Shows the dialog. When it is shown again, the focus stays where it was.
    void Display();

    OptionButton optFillConstant{"optFillConstant"};  // of a pair with optFillLimit
    TextBox txtConstant{"txtConstant"};
    OptionButton optFillLimit{"optFillLimit"};
    Label lblLimit{"lblLimit"};
    Label fraLimits{"fraLimits"};  // frame around optLimits
    OptionGroup optLimits{"optLimits", {"USL", "UCL", "UWL", "TGT", "LWL", "LCL", "LSL"}};
    Label fraPlusMinus{"fraPlusMinus"};  // frame around optPlusMinus
    OptionGroup optPlusMinus{"optPlusMinus", {"Plus", "Minus", "Plus Percent", "Minus Percent"}};
    TextBox txtLimitValue{"txtLimitValue"};
    Button cmdOk{"cmdOk"};          // default button
    Button cmdCancel{"cmdCancel"};  // cancel button

private:
    void SelectFillType(FillKind kind);
    void cmdOk_Click();
    void cmdCancel_Click();

    Globals& m_g;
    std::int32_t m_fillType = fkConstant;
    bool m_cancel = true;
    Text m_fillText;
    std::int32_t m_targetLimit = NoLimit;
    std::int32_t m_limitType = 0;
    std::int32_t m_limitPlusMinus = pmPlus;
    Text m_limitValue;
    bool m_loaded = false;
};

}  // namespace kd
