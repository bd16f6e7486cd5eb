#include "config/OptionPaths.h"

#include "app/globals.h"
#include "config/OptionsModel.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

/// True if a field of the dialog is the one of that option.
bool isFieldOf(QString Options::*option, const QString& field) {
    return field == OptionsModel::controlOf(option);
}

const QString accessFilter = u"Microsoft Access Database (*.mdb)|*.mdb|All Files (*.*)|*.*"_s;

/// Title, filter and extension of the dialog that a double click opens; none for other fields.
std::optional<ui::FileChoice> dialogOf(const QString& field) {
    if (isFieldOf(&Options::DatabaseName, field))
        return ui::FileChoice{TranslateText(u"Datenbank auswählen"_s), accessFilter, u"mdb"_s, {}, {}};
    if (isFieldOf(&Options::DataPath, field))
        return ui::FileChoice{TranslateText(u"Auswertungs-Dateien-Pfad auswählen"_s), accessFilter, u"mdb"_s, {}, {}};
    if (isFieldOf(&Options::QuestionnairePath, field))
        return ui::FileChoice{TranslateText(u"Fragebogen-Pfad auswählen"_s),
                              u"Adobe Acrobat Files (*.pdf)|*.pdf|All Files (*.*)|*.*"_s,
                              u"pdf"_s,
                              {},
                              {}};
    if (isFieldOf(&Options::SkinPath, field))
        return ui::FileChoice{TranslateText(u"Skin-Datei auswählen"_s),
                              u"Skin UI Resource File (*.urf)|*.urf|All Files (*.*)|*.*"_s,
                              u"URF"_s,
                              {},
                              {}};
    if (isFieldOf(&Options::SPSSPath, field))
        return ui::FileChoice{TranslateText(u"SPSS-Dateien Pfad auswählen"_s),
                              u"SPSS Data File (*.sav)|*.sav|All Files (*.*)|*.*"_s,
                              u"SAV, POR"_s,
                              {},
                              {}};
    return std::nullopt;
}

/// Asks for a file, beginning where the field points, and gives the field what it keeps of it.
bool takeFile(OptionsModel& model, const QString& field, ui::FileChoice choice) {
    const bool isDatabase = isFieldOf(&Options::DatabaseName, field);
    const QString folderField = isDatabase ? OptionsModel::controlOf(&Options::DatabasePath) : field;
    choice.folder = Paths::native(model.value(folderField));
    const std::optional<QString> file = ui::asker().chooseFile(choice);
    if (!file)
        return false;
    if (isDatabase)
        model.setValue(field, Paths::fileOf(*file));
    model.setValue(folderField, Paths::native(Paths::folderOf(*file)));
    return true;
}

} // namespace

bool OptionPaths::browse(OptionsModel& model, const QString& field) {
    if (isFieldOf(&Options::DatabaseName, field))
        return takeFile(model, field,
                        {TranslateText(u"Datenbankdatei auswählen"_s),
                         TranslateText(u"Datenbank Dateien (*.mdb)|*.mdb"_s),
                         u"mdb"_s,
                         {},
                         {}});
    const std::pair<QString Options::*, QString> folderTitles[] = {
        {&Options::DatabasePath, TranslateText(u"Datenbankpfadsauswahl"_s)},
        {&Options::DataPath, TranslateText(u"Datenpfadauswahl"_s)},
        {&Options::QuestionnairePath, TranslateText(u"Fragebogenpfadauswahl"_s)},
        {&Options::SPSSPath, TranslateText(u"SPSS-Dateien Pfadauswahl"_s)},
    };
    for (const auto& [option, title] : folderTitles) {
        if (!isFieldOf(option, field))
            continue;
        const std::optional<QString> folder = ui::asker().chooseFolder(title, Paths::native(model.value(field)));
        if (folder)
            model.setValue(field, Paths::native(*folder));
        return folder.has_value();
    }
    return browseByDoubleClick(model, field);
}

bool OptionPaths::browseByDoubleClick(OptionsModel& model, const QString& field) {
    if (const std::optional<ui::FileChoice> choice = dialogOf(field))
        return takeFile(model, field, *choice);
    return isFieldOf(&Options::DatabasePath, field) && browse(model, field);
}

QString OptionPaths::chooseIniFile(bool save) {
    ui::FileChoice choice;
    choice.title = TranslateText(save ? u"Optionen in ini-Datei speichern"_s : u"Optionen aus ini-Datei laden"_s);
    choice.filter = TranslateText(u"INI-Dateien (*.ini)|*.ini"_s);
    choice.extension = u"ini"_s;
    choice.save = save;
    return ui::asker().chooseFile(choice).value_or(QString());
}
