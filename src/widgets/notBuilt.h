#pragma once

class Form;
class QString;

/// Disables the controls of a window that this version has no function for, and says so in their tooltips. Called after
/// every rule that enables controls.
void applyNotBuilt(Form& form);
/// Whether a control of a window has no function yet; of an array all have or none.
bool isNotBuilt(const QString& window, const QString& control);
