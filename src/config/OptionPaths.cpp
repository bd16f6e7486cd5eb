#include "config/OptionPaths.h"

#include "app/globals.h"
#include "config/OptionsModel.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

struct InBothLanguages {
    QString german, english;
    QString text() const { return gLanguage == 0 ? german : english; }
};

/// True if a field of the dialog is the one of that option.
bool isFieldOf(QString Options::*option, const QString& field) {
    return field == OptionsModel::controlOf(option);
}

struct FolderButton {
    QString Options::*option;
    InBothLanguages title;
};
const FolderButton folderButtons[] = {
    {&Options::DatabasePath, {u"Datenbankpfadsauswahl"_s, u"Database Path Selection"_s}},
    {&Options::DataPath, {u"Datenpfadauswahl"_s, u"Data Path Selection"_s}},
    {&Options::QuestionnairePath, {u"Fragebogenpfadauswahl"_s, u"QuestionnairePath Selection"_s}},
    {&Options::SPSSPath, {u"SPSS-Dateien Pfadauswahl"_s, u"SPSS Files Path Selection"_s}},
};

const InBothLanguages databaseTitle = {u"Datenbankdatei auswählen"_s, u"Select Database File"_s};
const InBothLanguages databaseFilter = {u"Datenbank Dateien (*.mdb)|*.mdb"_s, u"Database Files (*.mdb)|*.mdb"_s};

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
        return takeFile(model, field, {databaseTitle.text(), databaseFilter.text(), u"mdb"_s, {}, {}});
    for (const FolderButton& button : folderButtons) {
        if (!isFieldOf(button.option, field))
            continue;
        const std::optional<QString> folder =
            ui::asker().chooseFolder(button.title.text(), Paths::native(model.value(field)));
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
    const bool german = gLanguage == 0;
    ui::FileChoice choice;
    if (save)
        choice.title = german ? u"Optionen in ini-Datei speichern"_s : u"Save options to ini-File"_s;
    else
        choice.title = german ? u"Optionen aus ini-Datei laden"_s : u"Load options from ini-File"_s;
    choice.filter = german ? u"INI-Dateien (*.ini)|*.ini"_s : u"INI-Files (*.ini)|*.ini"_s;
    choice.extension = u"ini"_s;
    choice.save = save;
    return ui::asker().chooseFile(choice).value_or(QString());
}
