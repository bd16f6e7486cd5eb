#include "editing/DocumentList.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/schema.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "explorer/EntryColumns.h"
#include "explorer/missingFolder.h"
#include "platform/dao/TextOrder.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The parts of every study, in the order of their table.
class StudyParts {
public:
    void read() {
        // Older catalogues have no such table.
        if (!gDatabase.TableExist(u"tkey_Parts"_s))
            return;
        const dao::RecordsetPtr rows = CDaoPersistance().GetRecordset(gDatabase.CurrentDatabase(), u"tkey_Parts"_s,
                                                                      dao::dbOpenTable, isMissingFolder);
        if (!rows)
            return;
        const int study = rows->indexOf(u"fi_StudyNo"_s), number = rows->indexOf(u"dt_PartNo"_s);
        const int name = rows->indexOf(u"dt_PartName"_s);
        for (; !rows->Eof(); rows->MoveNext())
            parts_[dao::foldedText(rows->value(study).toText())].push_back(
                {rows->value(number).toText(), rows->value(name).toText()});
    }

    /// Nothing for a study whose parts have no numbers.
    std::vector<StudyPart> of(const QString& study) const {
        const std::vector<StudyPart> parts = parts_.value(dao::foldedText(study));
        const bool numbered = std::ranges::any_of(parts, [](const StudyPart& part) { return !part.number.isEmpty(); });
        return numbered ? parts : std::vector<StudyPart>();
    }

private:
    QHash<QString, std::vector<StudyPart>> parts_;
};

void reportFilling(const dao::Error& error) {
    if (!reportMissingFolder(error))
        reportError(error);
}

bool tellOfFile(const QString& text, ui::Icon icon = ui::Icon::Exclamation) {
    ui::asker().messageBox({.text = text, .icon = icon});
    return false;
}

} // namespace

void DocumentList::fill() {
    const ProcedureScope scope(kind_ == Kind::Questionnaires ? u"[frmFragebogen.Form_Load]"_s
                                                             : u"[frmDatensatz.Form_Load]"_s);
    lines_.clear();
    bool told = false; // of a folder that is gone, whatever lies in it
    const auto reading = [&told](const auto& step) {
        const auto once = [&] {
            try {
                step();
            } catch (const dao::Error& error) {
                if (!isMissingFolder(error) || !std::exchange(told, true))
                    throw;
            }
        };
        attempt(once, reportFilling);
    };
    StudyParts parts;
    if (kind_ == Kind::Questionnaires)
        reading([&] { parts.read(); });
    for (int view = 1; view <= gCatalogueOptions.NumberOfFrmExplorers; ++view) {
        if (!isStudyView(view))
            continue;
        reading([&] {
            const QString statement = u"Select * from "_s + schema::entryTableName(gViews.at(view, ViewTable::Table)) +
                                      u" Where dt_IsGroup = 0;"_s;
            const dao::RecordsetPtr rows = CDaoPersistance().GetRecordset(gDatabase.CurrentDatabase(), statement,
                                                                          dao::dbOpenDynaset, isMissingFolder);
            if (!rows)
                return;
            // A questionnaire is in the language in which it was asked, whatever the contents' is.
            const EntryColumns columns(true, kind_ == Kind::DataSets && gOptions.EnglishLanguage);
            const int key = rows->indexOf(columns.key), title = rows->indexOf(columns.text);
            for (; !rows->Eof(); rows->MoveNext())
                addStudy(rows->value(key).toText(), rows->value(title).toText(), parts.of(rows->value(key).toText()));
        });
    }
}

void DocumentList::addStudy(const QString& number, const QString& title, const std::vector<StudyPart>& parts) {
    const QString suffix = kind_ == Kind::Questionnaires ? u".pdf"_s : u".sav"_s;
    const QString text = number + u": "_s + title;
    if (parts.empty())
        lines_.push_back({text, number + suffix});
    for (const StudyPart& part : parts)
        lines_.push_back({text + u" - "_s + part.name, number + part.number + suffix});
}

int DocumentList::lineOf(const QString& study) const {
    const QString wanted = dao::foldedText(study);
    const auto found =
        std::ranges::find_if(lines_, [&](const Line& line) { return dao::foldedText(line.text).startsWith(wanted); });
    return study.isEmpty() || found == lines_.end() ? -1 : static_cast<int>(found - lines_.begin());
}

bool DocumentList::open(int line) const {
    if (line < 0 || line >= static_cast<int>(lines_.size()))
        return tellOfFile(TranslateText(u"Bitte einen Eintrag aus der Liste auswählen"_s));
    const QString folder = kind_ == Kind::Questionnaires ? gOptions.QuestionnairePath : gOptions.SPSSPath;
    if (folder.isEmpty())
        return true;
    const QString& name = lines_[static_cast<size_t>(line)].file;
    const QString path = Paths::join(folder, name);
    // The number comes from the catalogue, which may be a stranger's: it names a file and never a way to one.
    const bool isName = Paths::fileOf(name) == name && !name.contains(QChar::Null);
    if (isName && !QFileInfo(Paths::onDisk(path)).isFile())
        return tellOfFile(TranslateText(u"Datei"_s) + u' ' + path + u' ' + TranslateText(u"nicht gefunden!"_s));
    const QString file = isName ? Paths::fileWithin(folder, name) : QString();
    if (file.isEmpty())
        return tellOfFile(TranslateText(u"Die Datei liegt nicht im eingestellten Ordner und wird nicht geöffnet:"_s) +
                          u' ' + path);
    const ui::WaitPointer wait;
    if (!ui::asker().openFile(file)) {
        ui::asker().setPointer(ui::Pointer::Default);
        ui::asker().messageBox(
            {.text = TranslateText(u"Die Einstellungen für den Pfad zu den Fragebogen-Dateien sind "
                                   "nicht korrekt. Überprüfen Sie die Optionen!"_s),
             .icon = ui::Icon::Exclamation,
             .details = TranslateText(u"Kein Programm ist dafür eingerichtet, die Datei zu öffnen:"_s) + u' ' +
                        Paths::native(file)});
    }
    return true;
}
