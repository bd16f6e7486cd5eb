#pragma once

class OptionsModel;
class QString;

/// Choosing the files and folders of the options dialog, for the fields that hold one.
namespace OptionPaths {

/// What the browse button of a field does, by the field's name. @return false if nothing was chosen
bool browse(OptionsModel& model, const QString& field);
/// What the double click on the field does.
bool browseByDoubleClick(OptionsModel& model, const QString& field);

/// The ini file to load the options from, or to save them to; empty if none was chosen.
QString chooseIniFile(bool save);

} // namespace OptionPaths
