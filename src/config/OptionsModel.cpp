#include "config/OptionsModel.h"

#include "config/CProfile.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"

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

void OptionsModel::load() {
    values_.clear();
    for (const OptionDescriptor* option : shown()) {
        const QString text = optionText(gOptions, *option, false);
        setValue(option->control.name.toString(), option->control.form == Form::Position ? positionText(text) : text);
    }
    setValue(startWindowBox, QString::number(mdLanguage::GetFormStatus()));
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
    QString& name = values_[controlOf(&Options::DatabaseName)];
    if (!name.toLower().endsWith(u".mdb"))
        name += u".mdb"_s;
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

void OptionsModel::saveOptions() {
    CProfile profile;
    for (const OptionDescriptor& option : optionDescriptors()) {
        // The contents switch is stored at the end of the run, not here.
        if (option.member == OptionDescriptor::Member(&Options::EnglishLanguage))
            continue;
        // What keeps one value from being written keeps all the others too; one box is enough.
        if (profile.SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, option.key.toString(),
                                     optionText(gOptions, option, false)))
            return;
    }
}

bool OptionsModel::apply() {
    normalisePaths();
    for (const OptionDescriptor* option : shown())
        if (trapped([&] { takeOver(*option); }) == Trap::Aborted)
            return false;
    saveOptions();
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
