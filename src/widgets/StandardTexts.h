#pragma once

/// The texts of the window system's own dialogs and menus (file choice, the menu of a text field).
namespace StandardTexts {

/// Gives them the language of the program, gLanguage; called after that changes. German where its file is not installed
/// stays English.
void followLanguage();

} // namespace StandardTexts
