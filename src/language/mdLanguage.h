#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

class ControlHost;

/// The procedures between the system database and the rest: they show what went wrong in a box and go on.
namespace mdLanguage {

/// Fills gTextObject from the system database; without one the table stays empty.
void LoadTextTable();
/// Sets up gErrHandler, reads language and start-window flag, and shows the start window if asked.
void StartProgram();
/// Shows the start window modally. The windowed program sets it; without windows none appears.
extern void (*showStartWindow)();

/// Writes language and start-window flag; gLanguage follows whether or not the write succeeded.
void SaveSysSettings(qint16 language, qint16 showForm);
/// Writes the language; gLanguage follows if the write succeeded.
void SetLanguage(qint16 language);
void SetFormStatus(qint16 showForm);
/// 1 if the start window shows, and if that cannot be read.
qint16 GetFormStatus();

/// Gives a window the texts of the language in force.
void SetCtrlProps(ControlHost& window);
/// Gives all open windows their texts after a change of language, titles that are built at run time included.
void RefreshForms(const std::vector<ControlHost*>& windows, bool (*isOpen)(const ControlHost*) = nullptr);

} // namespace mdLanguage
