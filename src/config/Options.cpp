#include "config/Options.h"

#include "config/CProfile.h"
#include "diagnostics/errors.h"
#include "platform/dao/Value.h"

#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

Options gOptions;

namespace {

/// @throws dao::Error 13 for a text that is no truth value
bool toBoolean(const QString& text) {
    const QString word = text.trimmed().toLower();
    if (word == u"true" || word == u"wahr")
        return true;
    if (word == u"false" || word == u"falsch")
        return false;
    return dao::Value(text).toDouble() != 0;
}

/// @throws dao::Error 13 for a text that is no number, 6 beyond 32 bits
qint32 toLong(const QString& text) {
    const qint64 number = dao::Value(text).toInteger();
    if (number < std::numeric_limits<qint32>::min() || number > std::numeric_limits<qint32>::max())
        dao::raiseRuntimeError(6);
    return static_cast<qint32>(number);
}

template<class... Cases>
struct Overload : Cases... {
    using Cases::operator()...;
};
template<class... Cases>
Overload(Cases...) -> Overload<Cases...>;

/// Runs a conversion under its label; a text that does not convert is reported and the default stands.
template<class Result>
Result converted(const QString& label, const QString& text, Result byDefault, Result (*convert)(const QString&)) {
    const ProcedureScope scope(label);
    if (text.isEmpty())
        return byDefault;
    try {
        return convert(text);
    } catch (const dao::Error& error) {
        gErrHandler.HandleError(error.number(), error.description());
        return byDefault;
    }
}

/// The options of the ini form in its order.
std::vector<const OptionDescriptor*> iniOrder() {
    std::vector<const OptionDescriptor*> order;
    const auto add = [&](IniPlace place) {
        for (const OptionDescriptor& option : optionDescriptors())
            if (option.iniPlace == place)
                order.push_back(&option);
    };
    for (const OptionDescriptor& option : optionDescriptors()) {
        if (option.member == OptionDescriptor::Member(&Options::NoColumnLabels))
            add(IniPlace::BeforeNoColumnLabels);
        if (option.iniPlace == IniPlace::InOrder)
            order.push_back(&option);
    }
    add(IniPlace::AtEnd);
    return order;
}

void setFromIni(Options& options, const OptionDescriptor& option, const QString& text) {
    std::visit(Overload{
                   [&](bool Options::*member) { options.*member = CBool_me(text, iniDefaults().*member); },
                   [&](int Options::*member) { options.*member = CLng_me(text, iniDefaults().*member); },
                   [&](QString Options::*member) { options.*member = text.isEmpty() ? iniDefaults().*member : text; },
               },
               option.member);
}

} // namespace

QString optionText(const Options& options, const OptionDescriptor& option, bool iniForm) {
    return std::visit(Overload{
                          [&](bool Options::*member) {
                              const bool on = options.*member;
                              return iniForm ? (on ? u"True"_s : u"False"_s) : (on ? u"1"_s : u"0"_s);
                          },
                          [&](int Options::*member) { return QString::number(options.*member); },
                          [&](QString Options::*member) { return options.*member; },
                      },
                      option.member);
}

void convertOption(Options& options, const OptionDescriptor& option, const QString& text) {
    std::visit(Overload{
                   [&](bool Options::*member) { options.*member = toBoolean(text); },
                   [&](int Options::*member) { options.*member = toLong(text); },
                   [&](QString Options::*member) { options.*member = text; },
               },
               option.member);
}

bool setOptionFromText(Options& options, const OptionDescriptor& option, const QString& text) {
    try {
        convertOption(options, option, text);
        return true;
    } catch (const dao::Error&) {
        return false;
    }
}

bool CBool_me(const QString& value, bool byDefault) {
    return converted(u"[Module1.CBool_me]"_s, value, byDefault, toBoolean);
}

qint32 CLng_me(const QString& value, qint32 byDefault) {
    return converted(u"[Module1.CLng_me]"_s, value, byDefault, toLong);
}

void OptionsFromRegistry() {
    gErrorTrapping = true;
    const Options defaults;
    const Registry::Reading reading;
    for (const OptionDescriptor& option : optionDescriptors()) {
        const QString stored = storedSetting(option.key.toString(), optionText(defaults, option, false)).toString();
        if (!setOptionFromText(gOptions, option, stored))
            setOptionFromText(gOptions, option, u"0"_s);
    }
}

bool OptionToRegistry(const OptionDescriptor::Member& member) {
    const OptionDescriptor& option = optionOf(member);
    return !CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, option.key.toString(),
                                        optionText(gOptions, option, false));
}

void OptionsFromIniFile(const QString& file) {
    const ProcedureScope scope(u"[Module1.OptionsFromIniFile]"_s);
    CProfile profile;
    profile.ApplicationIniFile = file;
    for (const OptionDescriptor* option : iniOrder())
        setFromIni(gOptions, *option, profile.ReadProfileString(profile.ApplicationExeFile(), option->key.toString()));
}

void OptionsToIniFile(const QString& file) {
    const ProcedureScope scope(u"[Module1.OptionsToIniFile]"_s);
    CProfile profile;
    profile.ApplicationIniFile = file;
    std::vector<QPair<QString, QString>> entries;
    for (const OptionDescriptor* option : iniOrder())
        entries.push_back({option->key.toString(), optionText(gOptions, *option, true)});
    profile.WriteProfileEntries(profile.ApplicationExeFile(), entries);
}
