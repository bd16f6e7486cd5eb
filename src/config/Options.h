#pragma once

#include <QString>
#include <QStringList>
#include <span>
#include <variant>

/// A default of optionRows.h as the field takes it.
template<class Type>
Type optionValue(Type value) {
    return value;
}
template<class Type>
Type optionValue(const char16_t* text) {
    return QString::fromUtf16(text);
}

/// The user's settings, one field a key (see optionRows.h), at the defaults of the registry.
struct Options {
#define OPTION(Type, key, registryDefault, iniDefault, iniPlace, control) Type key = optionValue<Type>(registryDefault);
#include "config/optionRows.h"
};
extern Options gOptions;

/// The control of the options dialog behind which an option stands.
struct OptionControl {
    enum class Form { None, CheckBox, Text, Number, Path, FontList, SizeList, Choices, Position };

    Form form = Form::None;
    int place = 0;              ///< in the order of writing, from 1 on
    QStringView name = {};      ///< a member of an array with its index: "chkHeader(4)"
    QStringView caption = {};   ///< in the designed German; an option array has one a choice, which its page gives
    QStringView tip = {};       ///< tool tip of a path's browse button
    int least = 0, most = 0;    ///< of a number as it is typed; one from elsewhere that lies beyond stays
    QStringView otherwise = {}; ///< stored place for a text that names no position
    /// The box without which this one means nothing, and whether this one loses its mark with it.
    bool Options::*governing = nullptr;
    bool losesMark = false;
};

/// Where an option stands in the ini form: in the order of the table, but for a few.
enum class IniPlace { InOrder, BeforeNoColumnLabels, AtEnd, NotHeld };

/// One option: its key, the field that holds it, its place in the ini form, and its control.
struct OptionDescriptor {
    using Member = std::variant<bool Options::*, int Options::*, QString Options::*>;
    QStringView key;
    Member member;
    IniPlace iniPlace;
    OptionControl control;
};

/// All options in the order of reading from the registry.
std::span<const OptionDescriptor> optionDescriptors();
/// Same, by key (without regard to case); nullptr if there is none.
const OptionDescriptor* findOption(QStringView key);
/// The option that a field holds.
const OptionDescriptor& optionOf(const OptionDescriptor::Member& member);

/// The defaults of an ini file that lacks the keys.
const Options& iniDefaults();

/// The text form of an option in its place, and back. A boolean is "1" or "0" in the registry, "True" or "False" in an
/// ini file.
QString optionText(const Options& options, const OptionDescriptor& option, bool iniForm);
/// Sets an option from text for one run. @throws dao::Error 13 for a text that does not convert, 6 beyond 32 bits
void convertOption(Options& options, const OptionDescriptor& option, const QString& text);
/// The same; false if the text does not convert.
bool setOptionFromText(Options& options, const OptionDescriptor& option, const QString& text);

void OptionsFromRegistry();
/// Stores one option as it is in force. @return false after a failure, whose box has been shown
bool OptionToRegistry(const OptionDescriptor::Member& option);
void OptionsFromIniFile(const QString& file);
void OptionsToIniFile(const QString& file);

bool CBool_me(const QString& value, bool byDefault);
qint32 CLng_me(const QString& value, qint32 byDefault);
