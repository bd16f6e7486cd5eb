#pragma once

class Form;

/// Disables the controls of a window that this version has no function for, and says so in their tooltips. Called after
/// every rule that enables controls.
void applyNotBuilt(Form& form);
