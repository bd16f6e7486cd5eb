#include "language/CCtrl.h"

#include "app/globals.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QFile>
#include <QSaveFile>
#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

const QString typesInOrder[] = {u"Form"_s,    u"Menu"_s,          u"OptionButton"_s, u"CheckBox"_s, u"Label"_s,
                                u"Toolbar"_s, u"CommandButton"_s, u"SSCommand"_s,    u"TextBox"_s,  u"TabStrip"_s,
                                u"SSTab"_s,   u"Frame"_s,         u"ListView"_s,     u"ComboBox"_s, u"Statusbar"_s};

/// What the maintenance export writes.
const QString exportedProperties[] = {u"Caption"_s, u"TabCaption"_s, u"Text"_s, u"TooltipText"_s, u"DialogTitle"_s};

[[noreturn]] void raiseWriteFailure() {
    throw dao::Error(75, u"Path/File access error"_s);
}

/// Writes a file whole or not at all. @throws dao::Error 75 if it cannot be written
void writeText(const QString& path, const QString& text) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.commit())
        raiseWriteFailure();
}

bool samePlace(const ControlText& a, const ControlText& b) {
    return a.type == b.type && a.name == b.name && a.index == b.index;
}

/// Whether the text of a control of this type is looked up in this window at all.
bool isTranslated(const ControlText& control, const QString& window) {
    if (control.type == u"TextBox")
        return window == u"frmGraphicOptions";
    if (control.type == u"Statusbar")
        return window == u"frmExplorer";
    return control.type != u"ComboBox" || control.tag != u"user_defined";
}

} // namespace

/// Runs the steps of an operation; the first failure ends it.
template<class Steps>
void CCtrl::run(const QString& procedure, Steps&& steps) {
    succeed();
    database_ = open(DatabaseName);
    if (!database_)
        return;
    try {
        steps();
        database_->Close();
    } catch (const dao::Error& error) {
        fail(SystemTable::errorText(procedure, error));
    }
    database_.reset();
}

void CCtrl::m_GetLanguage() {
    const dao::RecordsetPtr setting = database_->OpenRecordset(u"qdfSysLanguage"_s, dao::dbOpenSnapshot);
    english_ = setting->value(u"wert"_s).toInteger() != 0;
    setting->Close();
}

void CCtrl::SetControlProps() {
    if (!window_) {
        fail(u"No Form defined"_s);
        return;
    }
    run(u"SetControlProps"_s, [this] {
        m_GetLanguage();
        readRows();
        log_ = u'[' + window_->windowName() + u"]\r\n"_s;
        ui::asker().eventTurn();
        const std::vector<ControlText> controls = window_->controls();
        for (const QString& type : typesInOrder)
            setTextsOfType(type, controls);
        m_CommitTransaktion();
    });
}

void CCtrl::setTextsOfType(const QString& type, const std::vector<ControlText>& controls) {
    const ControlText* before = nullptr;
    for (const ControlText& control : controls) {
        if (control.type != type || !isTranslated(control, window_->windowName()))
            continue;
        logOldText(control);
        // Caption and tooltip of a button come with one statement.
        if (!before || !samePlace(*before, control))
            setText(control);
        before = &control;
    }
}

/// A text that no table holds, for the few controls that depend on the catalogue.
std::optional<QString> CCtrl::textInCode(const ControlText& control) const {
    if (window_->windowName() != u"frmExplorer")
        return std::nullopt;
    const QString group = english_ ? gCatalogueOptions.VarGroupInfoNameEnglish : gCatalogueOptions.VarGroupInfoName;
    if (control.type == u"Statusbar" && control.key == u"Welle")
        return group;
    if (control.type != u"ListView" || control.name != u"lvListView")
        return std::nullopt;
    if (control.key == u"VN")
        return u"Variable"_s;
    if (control.key == u"SN")
        return english_ ? u"Study"_s : u"Studie"_s;
    if (control.key == u"WE")
        return group;
    if (control.key == u"SY")
        return u"Jahr"_s;
    if (control.key == u"EL")
        return english_ ? u"Label (English)"_s : u"Label (Englisch)"_s;
    if (control.key == u"VL")
        return english_ ? u"Label (Original Language)"_s : u"Label (Originalsprache)"_s;
    return std::nullopt;
}

/// One statement for all controls: windows have up to a hundred, and a change of language reaches every window.
void CCtrl::readRows() {
    rows_.clear();
    const dao::RecordsetPtr rows = database_->OpenRecordset(
        u"select CtrlTyp, CtrlName, Property, Index, "_s + (english_ ? u"Englisch"_s : u"Deutsch"_s) +
            u" from tblStat where FormName = '"_s + window_->windowName() + u"'"_s,
        dao::dbOpenSnapshot);
    for (; !rows->Eof(); rows->MoveNext())
        rows_.push_back({rows->value(0).toText(), rows->value(1).toText(), rows->value(2).toText(), rows->value(3),
                         rows->value(4)});
    rows->Close();
}

bool CCtrl::isRowOf(const TextRow& row, const ControlText& control) const {
    const auto hasIndex = [&row](int index) {
        return !row.index.isNull() && dao::compareValues(row.index, index) == 0;
    };
    if (dao::compareTexts(row.type, control.type) != 0)
        return false;
    if (control.type == u"Form")
        return window_->windowName() != u"frmExplorer" || hasIndex(0);
    return (!control.index || hasIndex(*control.index)) && dao::compareTexts(row.name, control.name) == 0;
}

void CCtrl::setText(const ControlText& control) {
    if (const std::optional<QString> text = textInCode(control)) {
        window_->setControlText(control, *text);
        return;
    }
    for (const TextRow& row : rows_) {
        if (!isRowOf(row, control))
            continue;
        ControlText place = control;
        if (control.type == u"CommandButton")
            place.property = row.property;
        if (!row.text.isNull())
            window_->setControlText(place, row.text.toText());
        if (control.type != u"CommandButton")
            break;
    }
}

void CCtrl::logOldText(const ControlText& control) {
    const QString index = control.index ? u'(' + QString::number(*control.index) + u')' : QString();
    log_ += control.name + index + u'=' + control.text + u"\r\n"_s;
}

/// Closes the log; it commits nothing, whatever its name says. Nobody reads it, so it need not wait for the disk.
void CCtrl::m_CommitTransaktion() {
    QFile file(Paths::join(Paths::applicationFolder(), u"Ctrl.clf"_s));
    const QByteArray log = log_.toUtf8();
    // Written over: emptying it first makes some file systems wait for the disk all the same.
    if (!file.open(QIODevice::ReadWrite) || file.write(log) != log.size() || !file.resize(log.size()))
        raiseWriteFailure();
}

void CCtrl::UpdateTblStat() {
    int count = 0;
    run(u"UpdateTblStat"_s, [&] {
        const dao::RecordsetPtr rows = database_->OpenRecordset(u"tblstat"_s, dao::dbOpenDynaset);
        ui::Progress progress(ui::Progress::Stop::No, [&] { return rows->RecordCount(); });
        for (; !rows->Eof(); rows->MoveNext()) {
            progress.next(TranslateText(u"Die Texte werden abgeglichen:"_s) + u' ' + rows->text(u"FormName"_s));
            const dao::Value index = rows->value(u"Index"_s);
            const QString property = u"property = '"_s + rows->text(u"Property"_s) + u"'"_s;
            const QString condition = index.isNull()
                                          ? u" and "_s + property
                                          : u" and index = "_s + index.toText() + u" and "_s + property + u" "_s;
            const dao::RecordsetPtr newer = database_->OpenRecordset(
                u"select englisch from tblstatneu where formname = '"_s + rows->text(u"FormName"_s) +
                    u"' and ctrltyp = '"_s + rows->text(u"CtrlTyp"_s) + u"' and ctrlname = '"_s +
                    rows->text(u"CtrlName"_s) + u"'"_s + condition,
                dao::dbOpenSnapshot);
            if (!newer->Eof()) {
                rows->Edit();
                rows->setValue(u"Englisch"_s, newer->value(0));
                rows->Update();
                ++count;
            }
            newer->Close();
        }
        rows->Close();
    });
    if (Status() == 0)
        ui::asker().messageBox({u"Es wurden "_s + QString::number(count) + u" Sätze aktualisiert"_s,
                                {},
                                ui::Icon::Information,
                                ui::Buttons::Ok});
}

void CCtrl::WriteCtrlProps() {
    succeed();
    if (!window_) {
        fail(u"No Form defined"_s);
        return;
    }
    const QString window = window_->windowName();
    const QString file = FileName.isEmpty() ? Paths::join(Paths::applicationFolder(), window + u".txt"_s) : FileName;
    QString text;
    int count = 0;
    for (const ControlText& control : window_->controls()) {
        const bool exported =
            std::any_of(std::begin(exportedProperties), std::end(exportedProperties),
                        [&](auto& name) { return control.property.compare(name, Qt::CaseInsensitive) == 0; });
        if (!exported)
            continue;
        const QString index = control.index ? QString::number(*control.index) : QString();
        text += QStringList{window, control.type, control.name, index, control.property, control.text}.join(u';') +
                u"\r\n"_s;
        ++count;
    }
    try {
        writeText(file, text);
        ui::asker().messageBox(
            {u"Es wurden: "_s + QString::number(count) + u" Controls in die \r\nDatei: "_s + file + u" exportiert!"_s,
             {},
             ui::Icon::Information,
             ui::Buttons::Ok});
    } catch (const dao::Error& error) {
        fail(SystemTable::errorText(u"WriteCtrlProps"_s, error));
    }
}
