#pragma once

#include <QMessageBox>
#include <QSize>

namespace kd {

/// Lets the user read and take along all of a box's text, however long. Where it would push the box or its
/// buttons off a screen of this size (in the toolkit's pixels) it stands in a read-only field that scrolls,
/// named "MessageText", of six tenths of the screen each way at most, and no wider than Qt shows of a box;
/// any text can be selected with the mouse, and the keys for Copy copy what is selected, else all. The box's
/// own text() stays as it is. To be called once, when text, icon and buttons are set and before the box is
/// shown.
void SettleBoxText(QMessageBox& box, const QSize& screen);

}  // namespace kd
