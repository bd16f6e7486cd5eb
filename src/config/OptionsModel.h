#pragma once

#include "config/Options.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

/// What the options dialog shows and does, without widgets: pending values apart from the options in force, which
/// change at apply() only.
///
/// Values are texts: a check box "1" or "0", an option array the index chosen, a position its text in the user's
/// language, anything else as it is typed.
class OptionsModel {
public:
    /// The options that have a control, in the order of writing.
    static const std::vector<const OptionDescriptor*>& shown();
    /// Name of the control behind which a field stands.
    static QString controlOf(const OptionDescriptor::Member& member);
    /// Names of the controls of one form.
    static QStringList controlsOf(OptionControl::Form form);

    OptionsModel() { load(); }
    /// Takes every value from the options in force, and the start-window flag.
    void load();

    QString value(const QString& control) const { return values_.value(control); }
    bool isOn(const QString& control) const { return value(control) == QLatin1String("1"); }
    void setValue(const QString& control, const QString& value);
    /// False for a box whose governing box is off.
    bool isEnabled(const QString& control) const;

    /// What is wrong with the folder or file that a field of paths names, in the user's language; empty for one that is
    /// there and for an empty field.
    QString faultOf(const QString& control) const;
    /// Gives the controls named the values of a fresh installation, but for paths that it leaves open; nothing is in
    /// force before apply().
    void restoreDefaults(const QStringList& controls);

    /// Normalises the paths, takes the values over into the options in force in the order of shown(), then writes
    /// all options and the start-window flag. A number that does not convert shows the standard error box: Ignore
    /// leaves that option as it was, Abort that one and all that follow, and nothing is written.
    /// @return false after Abort
    bool apply();

    /// The seven positions in the user's language, in the order of their list.
    static QStringList positionTexts();
    /// What is stored for a position's text; `otherwise` for a text that is none.
    static QString storedPosition(const QString& text, const QString& otherwise);
    /// The text of a stored position; empty if it is none.
    static QString positionText(const QString& stored);

private:
    QMap<QString, QString> values_;

    void takeFrom(const Options& options, const OptionDescriptor& option);
    void normalisePaths();
    void takeOver(const OptionDescriptor& option) const;
    static bool saveOptions();
};

/// The message for an error about a missing drive, path or file; empty for any other.
QString missingPlaceText(int errorNumber);
