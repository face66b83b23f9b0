#include "edit/frmFill.h"

#include <cstddef>

#include "grid/CellGate.h"

namespace kd {
namespace {

constexpr std::int32_t TargetIndex = 3;  // of "TGT" in optLimits

}  // namespace

frmFill::frmFill(Globals& g) : Form("frmFill"), m_g(g) {
    SetCaption("Fill a range of cells");
    optFillConstant.SetCaption("Using a constant value: ");
    optFillLimit.SetCaption("Using a calculation:");
    lblLimit.SetCaption("USL  =");
    cmdOk.SetCaption("Ok");
    cmdCancel.SetCaption("Cancel");
    SelectFillType(fkConstant);
    optLimits.SetSelected(TargetIndex);

    optFillConstant.Click = [this] { SelectFillType(fkConstant); };
    optFillLimit.Click = [this] { SelectFillType(fkCalculation); };
    txtConstant.GotFocus = [this] { SelectFillType(fkConstant); };
    txtLimitValue.GotFocus = [this] { SelectFillType(fkCalculation); };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmFill::SelectFillType(FillKind kind) {
    optFillConstant.SetValue(kind == fkConstant);
    optFillLimit.SetValue(kind == fkCalculation);
}

void frmFill::Display() {
    if (!m_loaded) {
        m_loaded = true;
        txtConstant.SetValue(m_fillText);
    }
    if (m_targetLimit == NoLimit) {
        optFillLimit.SetEnabled(false);
        fraLimits.SetEnabled(false);
        optLimits.SetEnabled(false);  // a disabled frame takes its options along
        fraPlusMinus.SetEnabled(false);
        optPlusMinus.SetEnabled(false);
        txtLimitValue.SetEnabled(false);
    } else {
        lblLimit.SetCaption(optLimits.Captions()[static_cast<std::size_t>(m_targetLimit)] + "  =");
    }
    txtConstant.SelectAll();
    m_g.platform.toolkit.ShowModal(*this);
}

void frmFill::cmdOk_Click() {
    const Locale& locale = m_g.platform.locale;
    if (optFillConstant.Value()) {
        m_fillType = fkConstant;
        m_fillText = locale.CodePage().Narrowed(txtConstant.Value());
    }
    if (optFillLimit.Value()) {
        if (!IsNumericText(txtLimitValue.Value(), locale)) {
            m_g.platform.toolkit.Say("Invalid Limit value!", BoxIcon::Exclamation);
            txtLimitValue.SetFocus();
            return;
        }
        m_fillType = fkCalculation;
        m_limitType = optLimits.Selected();
        m_limitPlusMinus = optPlusMinus.Selected();
        m_limitValue = txtLimitValue.Value();
    }
    m_cancel = false;
    Hide();
}

void frmFill::cmdCancel_Click() {
    m_cancel = true;
    Hide();
}

}  // namespace kd
