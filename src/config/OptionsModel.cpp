#include "config/OptionsModel.h"

#include "config/CProfile.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"

#include <QFileInfo>
#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Form = OptionControl::Form;

/// A place of date and page number: as it is stored, and in the user's language.
struct Position {
    QString stored, text;
};
std::array<Position, 7> positions() {
    return {{
        {u"topleft"_s, TranslateText(u"oben, links"_s)},
        {u"topmiddle"_s, TranslateText(u"oben, mitte"_s)},
        {u"topright"_s, TranslateText(u"oben, rechts"_s)},
        {u"botleft"_s, TranslateText(u"unten, links"_s)},
        {u"botmiddle"_s, TranslateText(u"unten, mitte"_s)},
        {u"botright"_s, TranslateText(u"unten, rechts"_s)},
        {u"none"_s, TranslateText(u"keine"_s)},
    }};
}

/// Box of the start-window flag, which is no option.
const QString startWindowBox = u"chkbSys"_s;

/// The name of a catalogue's file as it is kept. Catalogues have one of two extensions; the second comes here when one
/// was opened from the menu.
QString asCatalogueName(const QString& typed) {
    const QString name = typed.toLower();
    return name.endsWith(u".mdb") || name.endsWith(u".klor") ? typed : typed + u".mdb"_s;
}

bool isFolder(const QString& path) {
    return QFileInfo(Paths::onDisk(Paths::native(path))).isDir();
}

/// The settings of a machine on which nobody has chosen anything: the installation's, else the program's own.
Options freshOptions() {
    Options fresh;
    for (const OptionDescriptor& option : optionDescriptors())
        setOptionFromText(fresh, option,
                          CProfile()
                              .GetRegistryEntry(Registry::LocalMachine, SettingsKeys::machine, option.key.toString(),
                                                optionText(fresh, option, false), Registry::LocalMachine,
                                                SettingsKeys::machine)
                              .toString());
    return fresh;
}

/// Without the separator at its end. The root of all paths stays, since there is no other way to write it.
QString withoutSeparator(const QString& path) {
    const bool ends = path.endsWith(u'\\') || path.endsWith(u'/');
    return ends && path != u"/" ? path.chopped(1) : path;
}

} // namespace

const std::vector<const OptionDescriptor*>& OptionsModel::shown() {
    static const std::vector<const OptionDescriptor*> inOrder = [] {
        std::vector<const OptionDescriptor*> options;
        for (const OptionDescriptor& option : optionDescriptors())
            if (option.control.form != Form::None)
                options.push_back(&option);
        std::ranges::sort(options, {}, [](const OptionDescriptor* option) { return option->control.place; });
        return options;
    }();
    return inOrder;
}

QString OptionsModel::controlOf(const OptionDescriptor::Member& member) {
    return optionOf(member).control.name.toString();
}

QStringList OptionsModel::controlsOf(OptionControl::Form form) {
    QStringList names;
    for (const OptionDescriptor* option : shown())
        if (option->control.form == form)
            names << option->control.name.toString();
    return names;
}

void OptionsModel::takeFrom(const Options& options, const OptionDescriptor& option) {
    const QString text = optionText(options, option, false);
    setValue(option.control.name.toString(), option.control.form == Form::Position ? positionText(text) : text);
}

void OptionsModel::load() {
    values_.clear();
    for (const OptionDescriptor* option : shown())
        takeFrom(gOptions, *option);
    setValue(startWindowBox, QString::number(mdLanguage::GetFormStatus()));
}

void OptionsModel::restoreDefaults(const QStringList& controls) {
    const Options fresh = freshOptions();
    for (const OptionDescriptor* option : shown())
        // A path has no default of the program's own, and finding it again is work.
        if (controls.contains(option->control.name.toString()) &&
            (option->control.form != Form::Path || !optionText(fresh, *option, false).isEmpty()))
            takeFrom(fresh, *option);
    if (controls.contains(startWindowBox))
        setValue(startWindowBox, u"0"_s);
}

QString OptionsModel::faultOf(const QString& control) const {
    const QString text = value(control).trimmed();
    if (text.isEmpty() || !controlsOf(Form::Path).contains(control))
        return {};
    if (control != controlOf(&Options::DatabaseName))
        return isFolder(text) ? QString() : TranslateText(u"Diesen Ordner gibt es nicht."_s);
    const QString folder = value(controlOf(&Options::DatabasePath)).trimmed();
    // A folder that is not there is said beside its own field.
    if (folder.isEmpty() || !isFolder(folder) || Paths::exists(Paths::join(folder, asCatalogueName(text))))
        return {};
    return TranslateText(u"Diese Datei gibt es in dem Ordner nicht."_s);
}

void OptionsModel::setValue(const QString& control, const QString& value) {
    values_[control] = value;
    for (const OptionDescriptor* option : shown()) {
        const OptionControl& dependent = option->control;
        if (!dependent.losesMark)
            continue;
        const QString governing = controlOf(dependent.governing);
        if (values_.contains(governing) && !isOn(governing))
            values_[dependent.name.toString()] = u"0"_s;
    }
}

bool OptionsModel::isEnabled(const QString& control) const {
    return std::ranges::all_of(shown(), [&](const OptionDescriptor* option) {
        return !option->control.governing || option->control.name != control ||
               isOn(controlOf(option->control.governing));
    });
}

void OptionsModel::normalisePaths() {
    values_[controlOf(&Options::DatabaseName)] = asCatalogueName(value(controlOf(&Options::DatabaseName)));
    // The folder of the case data stays as it is typed.
    for (const auto member : {&Options::DatabasePath, &Options::QuestionnairePath, &Options::SPSSPath}) {
        QString& folder = values_[controlOf(member)];
        folder = withoutSeparator(folder);
    }
}

void OptionsModel::takeOver(const OptionDescriptor& option) const {
    const QString text = value(option.control.name.toString());
    convertOption(gOptions, option,
                  option.control.form == Form::Position ? storedPosition(text, option.control.otherwise.toString())
                                                        : text);
}

bool OptionsModel::saveOptions() {
    for (const OptionDescriptor& option : optionDescriptors()) {
        // The contents switch is stored at the end of the run, not here.
        if (option.member == OptionDescriptor::Member(&Options::EnglishLanguage))
            continue;
        // What keeps one value from being written keeps all the others too; one box is enough.
        if (!OptionToRegistry(option.member))
            return false;
    }
    return true;
}

bool OptionsModel::apply() {
    normalisePaths();
    for (const OptionDescriptor* option : shown())
        if (trapped([&] { takeOver(*option); }) == Trap::Aborted)
            return false;
    if (saveOptions())
        CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, SettingsKeys::startWindow,
                                    value(startWindowBox));
    mdLanguage::SetFormStatus(isOn(startWindowBox) ? 1 : 0);
    return true;
}

QStringList OptionsModel::positionTexts() {
    QStringList texts;
    for (const Position& place : positions())
        texts << place.text;
    return texts;
}

QString OptionsModel::storedPosition(const QString& text, const QString& otherwise) {
    const auto places = positions();
    const auto found = std::ranges::find(places, text, &Position::text);
    return found == places.end() ? otherwise : found->stored;
}

QString OptionsModel::positionText(const QString& stored) {
    const auto places = positions();
    const auto found = std::ranges::find(places, stored, &Position::stored);
    return found == places.end() ? QString() : found->text;
}

QString missingPlaceText(int errorNumber) {
    // The language's own numbers, and the engine's for the same.
    switch (errorNumber) {
    case 71:
    case 3043:
        return TranslateText(u"Laufwerk nicht bereit."_s);
    case 76:
    case 3044:
        return TranslateText(u"Pfad nicht gefunden."_s);
    case 53:
    case 3024:
        return TranslateText(u"Datei nicht gefunden."_s);
    default:
        return {};
    }
}
