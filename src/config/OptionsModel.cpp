#include "config/OptionsModel.h"

#include "config/CProfile.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Form = OptionControl::Form;

struct Position {
    QString stored, german, english;
};
const std::array<Position, 7> positions = {{
    {u"topleft"_s, u"oben, links"_s, u"top, left"_s},
    {u"topmiddle"_s, u"oben, mitte"_s, u"top, middle"_s},
    {u"topright"_s, u"oben, rechts"_s, u"top, right"_s},
    {u"botleft"_s, u"unten, links"_s, u"bottom, left"_s},
    {u"botmiddle"_s, u"unten, mitte"_s, u"bottom, middle"_s},
    {u"botright"_s, u"unten, rechts"_s, u"bottom, right"_s},
    {u"none"_s, u"keine"_s, u"none"_s},
}};

QString textOf(const Position& position) {
    return gLanguage == 0 ? position.german : position.english;
}

/// A box that means something only while another is on.
struct Dependence {
    QString dependent, governing;
    bool cleared; ///< loses its mark with the governing box
};
const Dependence dependences[] = {
    {u"chkHeader(5)"_s, u"chkHeader(4)"_s, true},
    {u"chkIncludeMissingInPercentXtab"_s, u"chkIncludeMissingXtab"_s, false},
    {u"chkIncludeNinXTabPercentNFirst"_s, u"chkIncludeNinXTabPercent"_s, false},
};

/// Box of the start-window flag, which is no option.
const QString startWindowBox = u"chkbSys"_s;

OptionControl bound(const QString& control, const QString& key) {
    const OptionDescriptor* option = findOption(key);
    Form form = Form::Text;
    if (std::holds_alternative<bool Options::*>(option->member))
        form = Form::CheckBox;
    else if (std::holds_alternative<int Options::*>(option->member))
        form = control == u"optWeight" ? Form::OptionArray : Form::Number;
    return {control, option, form};
}

OptionControl position(const QString& control, const QString& key, const QString& otherwise) {
    return {control, findOption(key), Form::Position, otherwise};
}

/// Without the separator at its end. The root of all paths stays, since there is no other way to write it.
QString withoutSeparator(const QString& path) {
    const bool ends = path.endsWith(u'\\') || path.endsWith(u'/');
    return ends && path != u"/" ? path.chopped(1) : path;
}

} // namespace

const std::vector<OptionControl>& OptionsModel::controls() {
    static const std::vector<OptionControl> table = {
        bound(u"txtDatabaseName"_s, u"DatabaseName"_s),
        bound(u"txtDataPath"_s, u"DataPath"_s),
        bound(u"txtDatabasePath"_s, u"DatabasePath"_s),
        bound(u"txtQuestionnairePath"_s, u"QuestionnairePath"_s),
        bound(u"chkArrangeTwoWindows"_s, u"SortByPosition"_s),
        bound(u"chkTakeSameVarWindow"_s, u"TakeSameVarWindow"_s),
        bound(u"chkbAlignSBVTop"_s, u"AlignSBVTop"_s),
        bound(u"chkDataOnCD"_s, u"DataOnCD"_s),
        bound(u"chkbAutoVarWidth"_s, u"AutomaticVariableColumnWidth"_s),
        bound(u"txtSPSSPath"_s, u"SPSSPath"_s),
        bound(u"chkbSkin"_s, u"Skin"_s),
        bound(u"txtSkinPath"_s, u"SkinPath"_s),
        bound(u"chkbShowCards"_s, u"ShowCards"_s),
        bound(u"chkShowValidSums"_s, u"ShowValidSums"_s),
        bound(u"cmbFixedFont"_s, u"FixedFont"_s),
        bound(u"cmbPropFont"_s, u"PropFont"_s),
        bound(u"chkIncludeMissing"_s, u"IncludeMissing"_s),
        bound(u"chkIncludeMissingXtab"_s, u"IncludeMissingXTab"_s),
        bound(u"chkIncludeMissingDesc"_s, u"IncludeMissingDesc"_s),
        bound(u"chkIncludeMissingInPercentXtab"_s, u"IncludeMissingInPercentXTab"_s),
        bound(u"chkIncludeNinXTab"_s, u"IncludeNinXTab"_s),
        bound(u"chkIncludeNinXTabPercentNFirst"_s, u"IncludeNinXTabPercentNFirst"_s),
        bound(u"txtFontName"_s, u"FontName"_s),
        bound(u"chkTakeAbsolutValues"_s, u"TakeAbsolutValues"_s),
        bound(u"chkGraphColor"_s, u"GraphColor"_s),
        bound(u"chkLandscape"_s, u"Landscape"_s),
        bound(u"chkTrendGraphLine"_s, u"TrendGraphLine"_s),
        bound(u"chkHeader(0)"_s, u"HeaderStudy"_s),
        bound(u"chkHeader(1)"_s, u"HeaderVar"_s),
        bound(u"chkHeader(2)"_s, u"HeaderYear"_s),
        bound(u"chkHeader(3)"_s, u"HeaderGroup"_s),
        bound(u"chkHeader(4)"_s, u"HeaderValFirst"_s),
        bound(u"chkHeader(5)"_s, u"HeaderValAddVar"_s),
        bound(u"chkHeader(6)"_s, u"HeaderAddWeight"_s),
        bound(u"chkHeader(7)"_s, u"HeaderAddFilter"_s),
        bound(u"txtMaxItems"_s, u"MaxItems"_s),
        bound(u"txtStartItem"_s, u"StartItem"_s),
        bound(u"optWeight"_s, u"ComparisonWeight"_s),
        bound(u"chkCumulatedPercent"_s, u"CumulatedPercent"_s),
        bound(u"chkAutoColWidth"_s, u"AutoColWidth"_s),
        bound(u"chkSeparateValidCases"_s, u"SeparateValidCases"_s),
        bound(u"txtAssignListHeight"_s, u"AssignListHeight"_s),
        bound(u"chkShowPercentSign"_s, u"ShowPercentSign"_s),
        bound(u"chkCommaInPercent"_s, u"CommaInPercent"_s),
        bound(u"chkAskMissing"_s, u"AskMissing"_s),
        position(u"cmbPageNumber"_s, u"PrintPageNumberPosition"_s, u"botright"_s),
        position(u"cmbDate"_s, u"PrintDatePosition"_s, u"botleft"_s),
        bound(u"zoomfactor"_s, u"ZoomFactor"_s),
        bound(u"maxlevel"_s, u"PrintMaxLevels"_s),
        bound(u"cmbFontSize"_s, u"FontSize"_s),
        bound(u"chkIncludeVars"_s, u"ReportIncludeQuestionText"_s),
        bound(u"chkIncludeTables"_s, u"ReportIncludeTables"_s),
        bound(u"chkIncludeGraphs"_s, u"ReportIncludeGraphs"_s),
        bound(u"chkIncludeShowCards"_s, u"ReportIncludeShowCards"_s),
        bound(u"chkNoColumnLabels"_s, u"NoColumnLabels"_s),
        bound(u"chkNoRowLabels"_s, u"NoRowLabels"_s),
        bound(u"chkIncludeNinXTabPercent"_s, u"IncludeNinXTabPercent"_s),
    };
    return table;
}

const OptionControl* OptionsModel::find(const QString& control) {
    const auto& table = controls();
    const auto found = std::ranges::find(table, control, &OptionControl::control);
    return found == table.end() ? nullptr : &*found;
}

void OptionsModel::load() {
    values_.clear();
    for (const OptionControl& control : controls()) {
        const QString text = optionText(gOptions, *control.option, false);
        setValue(control.control, control.form == Form::Position ? positionText(text) : text);
    }
    setValue(startWindowBox, QString::number(mdLanguage::GetFormStatus()));
}

void OptionsModel::setValue(const QString& control, const QString& value) {
    values_[control] = value;
    for (const Dependence& rule : dependences)
        if (rule.cleared && values_.contains(rule.governing) && !isOn(rule.governing))
            values_[rule.dependent] = u"0"_s;
}

bool OptionsModel::isEnabled(const QString& control) const {
    return std::ranges::all_of(
        dependences, [&](const Dependence& rule) { return rule.dependent != control || isOn(rule.governing); });
}

void OptionsModel::normalisePaths() {
    QString& name = values_[u"txtDatabaseName"_s];
    if (!name.toLower().endsWith(u".mdb"))
        name += u".mdb"_s;
    // The folder of the case data stays as it is typed.
    for (const QString& control : {u"txtDatabasePath"_s, u"txtQuestionnairePath"_s, u"txtSPSSPath"_s})
        values_[control] = withoutSeparator(values_[control]);
}

void OptionsModel::takeOver(const OptionControl& control) const {
    const QString text = value(control.control);
    convertOption(gOptions, *control.option,
                  control.form == Form::Position ? storedPosition(text, control.otherwise) : text);
}

void OptionsModel::saveOptions() {
    CProfile profile;
    for (const OptionDescriptor& option : optionDescriptors()) {
        const QString key = QString::fromUtf16(option.key);
        // The contents switch is stored at the end of the run, not here.
        if (key == u"EnglishLanguage")
            continue;
        // What keeps one value from being written keeps all the others too; one box is enough.
        if (profile.SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key,
                                     optionText(gOptions, option, false)))
            return;
    }
}

bool OptionsModel::apply() {
    normalisePaths();
    for (const OptionControl& control : controls())
        if (trapped([&] { takeOver(control); }) == Trap::Aborted)
            return false;
    saveOptions();
    mdLanguage::SetFormStatus(isOn(startWindowBox) ? 1 : 0);
    return true;
}

QStringList OptionsModel::positionTexts() {
    QStringList texts;
    for (const Position& place : positions)
        texts << textOf(place);
    return texts;
}

QString OptionsModel::storedPosition(const QString& text, const QString& otherwise) {
    const auto found = std::ranges::find(positions, text, textOf);
    return found == positions.end() ? otherwise : found->stored;
}

QString OptionsModel::positionText(const QString& stored) {
    const auto found = std::ranges::find(positions, stored, &Position::stored);
    return found == positions.end() ? QString() : textOf(*found);
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
