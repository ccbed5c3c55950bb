// The check and option modes of lvButtons_H, kept for compatibility with the
// program's published interface. The program itself does not use them: every
// window makes push buttons (lvButtons_H::create's default mode).

#include "ui/widgets/lvButtons_H.h"

namespace vantorel::ui {

void lvButtons_H::setValue(bool on) {
    design_.setDefault(isDefault());
    if (const auto text = design_.setValue(on)) {
        notice(text);
        return;
    }
    if (!on && autoExclusive() && isChecked()) {
        // Qt keeps one member of a group checked; a Value set to false is cleared all the same.
        setAutoExclusive(false);
        setChecked(false);
        setAutoExclusive(true);
    } else {
        setChecked(on);
    }
}

void lvButtons_H::nextCheckState() {
    // A click on an option button sets it; only another member clears it.
    if (s().Mode == button::Option) setChecked(true);
    else QPushButton::nextCheckState();
}

}  // namespace vantorel::ui
