#include "app/start.h"

#include "app/globals.h"
#include "catalogue/mdDataBase.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QFile>
#include <QFileInfo>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr double shareOfScreen = 0.9;
constexpr int pathNotValid = 3044;

/// A stored number; what is no number counts as not stored.
int storedNumber(const QString& name, int byDefault) {
    bool isNumber = false;
    const int number = storedSetting(name, byDefault).toString().toInt(&isNumber);
    return isNumber ? number : byDefault;
}

bool store(const QString& name, const QString& text) {
    return !CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, name, text, Registry::String);
}

/// Names the catalogue that is being opened at start, for as long as that takes. No setting: it is made and removed at
/// every start, in a small part of the time.
QString openingMark() {
    return Paths::join(Paths::userConfigFolder(), u"opening"_s);
}

bool opening = false;

bool endedAt(const QString& file) {
    QFile mark(openingMark());
    return mark.open(QIODevice::ReadOnly) && QString::fromUtf8(mark.readAll()) == file;
}

/// @return false if the user does not want to open what the last start ended at
bool beginOpening(const QString& file) {
    if (endedAt(file)) {
        const QString question = TranslateText(u"Der letzte Start endete, während diese Datenbank geöffnet wurde:"_s) +
                                 u"\r\n"_s + file + u"\r\n"_s + TranslateText(u"Wollen Sie sie noch einmal öffnen?"_s);
        opening = ui::asker().messageBox({question, {}, ui::Icon::Question, ui::Buttons::YesNo, ui::Answer::No}) ==
                  ui::Answer::Yes;
        return opening;
    }
    opening = true;
    QFile mark(openingMark());
    if (mark.open(QIODevice::WriteOnly))
        mark.write(file.toUtf8());
    return true;
}

} // namespace

void Main::StartServices() {
    ui::asker().setPointer(ui::Pointer::Wait);
    mdLanguage::LoadTextTable();
    OptionsFromRegistry();
    mdLanguage::StartProgram();
}

qint16 Main::OpenDefDB() {
    for (const auto member : {&Options::DatabaseName, &Options::DatabasePath})
        gOptions.*member = storedSetting(optionOf(member).key.toString(), QString()).toString();
    if (gOptions.DatabaseName.isEmpty() || gOptions.DatabasePath.isEmpty())
        return 0;
    const QString file = Paths::join(gOptions.DatabasePath, gOptions.DatabaseName);
    if (!mdDataBase::fileExists(file) || !beginOpening(file))
        return 0;
    // What was opened by hand opens as it did then, also without options of its own.
    return gOptions.ReopenCatalogue ? mdDataBase::OpenQXDatabase(file) : mdDataBase::OpenLastDataBase(file);
}

void Main::reopened() {
    if (std::exchange(opening, false))
        QFile::remove(openingMark());
}

void Main::rememberCatalogue(const QString& file) {
    if (endedAt(file))
        QFile::remove(openingMark());
    if (!gOptions.ReopenCatalogue)
        return;
    // In the very fields that the options dialog shows: it says what the next start opens, and a name that is set there
    // later holds until another catalogue is opened.
    const std::pair<QString Options::*, QString> values[] = {
        {&Options::DatabaseName, Paths::fileOf(file)}, {&Options::DatabasePath, Paths::native(Paths::folderOf(file))}};
    for (const auto& [member, value] : values) {
        gOptions.*member = value;
        if (!store(optionOf(member).key.toString(), value))
            break;
    }
}

void Main::proposeDataFolder(const QString& catalogue) {
    proposeFolder(&Options::DataPath, Paths::folderOf(catalogue));
}

void Main::proposeFolder(QString Options::*path, const QString& folder) {
    if (!(gOptions.*path).isEmpty() || !QFileInfo(folder).isDir())
        return;
    gOptions.*path = Paths::native(folder);
    store(optionOf(path).key.toString(), gOptions.*path);
}

bool Main::openingStep(const std::function<void()>& step) {
    bool pathFound = true;
    const Trap outcome = trapped([&] {
        try {
            step();
        } catch (const dao::Error& error) {
            if (error.number() != pathNotValid)
                throw;
            pathFound = false;
        }
    });
    if (pathFound)
        return outcome != Trap::Aborted;
    ui::asker().messageBox({TranslateText(u"Pfad zur Datenbank"_s) + gOptions.DatabasePath + u'\\' +
                                gOptions.DatabaseName + TranslateText(u"nicht gefunden!"_s) + u"\r\n"_s +
                                TranslateText(u"Geben Sie in den Optionen den korrekten Pfad an."_s),
                            {},
                            ui::Icon::Exclamation,
                            ui::Buttons::Ok});
    ui::asker().setPointer(ui::Pointer::Default);
    return false;
}

Main::WindowPlace Main::StoredPlace(int screenWidth, int screenHeight) {
    const Registry::Reading reading;
    return {storedNumber(u"MainLeft"_s, 0), storedNumber(u"MainTop"_s, 0),
            storedNumber(u"MainWidth"_s, qRound(shareOfScreen * screenWidth)),
            storedNumber(u"MainHeight"_s, qRound(shareOfScreen * screenHeight)),
            storedNumber(u"MainMaximized"_s, 0) == 1};
}

void Main::Stop(const std::optional<WindowPlace>& place) {
    if (place) {
        const OptionDescriptor& contents = optionOf(&Options::EnglishLanguage);
        const std::pair<QString, QString> values[] = {{u"MainLeft"_s, QString::number(place->left)},
                                                      {u"MainTop"_s, QString::number(place->top)},
                                                      {u"MainWidth"_s, QString::number(place->width)},
                                                      {u"MainHeight"_s, QString::number(place->height)},
                                                      {u"MainMaximized"_s, place->maximised ? u"1"_s : u"0"_s},
                                                      {contents.key.toString(), optionText(gOptions, contents, false)}};
        // Where one cannot be written the others cannot either, and one box says so.
        for (const auto& [name, value] : values)
            if (!store(name, value))
                break;
    }
    mdDataBase::CloseDataBase();
}
