#pragma once

#include "edit/EditDesk.h"
#include "edit/frmFill.h"

namespace kd {

/// A desk with a script for the dialog of Fill.
struct FillDesk : EditDesk {
    void Expect(const std::function<void(frmFill&)>& user) { toolkit.ExpectForm<frmFill>("frmFill", user); }
    void ExpectCancel() {
        Expect([](frmFill& form) { form.cmdCancel.UserClick(); });
    }
    void ExpectConstant(const Text& text) {
        Expect([text](frmFill& form) {
            form.txtConstant.UserFocus();
            form.txtConstant.UserType(text);
            form.cmdOk.UserClick();
        });
    }
    void ExpectCalculation(ColumnNumber from, PlusMinus how, const Text& value) {
        Expect([=](frmFill& form) {
            form.txtLimitValue.UserFocus();
            form.optLimits.UserSelect(from - cnUSL);
            form.optPlusMinus.UserSelect(how);
            form.txtLimitValue.UserType(value);
            form.cmdOk.UserClick();
        });
    }
    static Text InvalidBox(const Text& column, const Text& value) {
        return "Fill contains invalid data - Could not Fill!\r\n\r\nFound: " + column + " = '" + value + "'";
    }
    static constexpr const char* ReadOnlyBox = "Cannot Fill over Read-Only Cells!";
    static constexpr const char* BlankOrCalcBox = "Cannot calculate using Blank or Calc limits!";
};

}  // namespace kd
