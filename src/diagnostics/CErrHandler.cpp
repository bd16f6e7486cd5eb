#include "diagnostics/CErrHandler.h"

#include "app/globals.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>

using namespace Qt::StringLiterals;

CErrHandler gErrHandler;

namespace {

constexpr qsizetype reportedCharacters = 255;

QString line(const QString& text) {
    return text + u"\r\n"_s;
}

QString additionalInformation() {
    return line(u"Additional Information"_s) + line(u"----------------------"_s) +
           line(u"Current Directory: "_s + QDir::toNativeSeparators(QDir::currentPath())) +
           line(u"App Title: "_s + ApplicationInfo::title) +
           line(u"App CompanyName: "_s + ApplicationInfo::companyName) +
           line(u"App Major: "_s + QString::number(ApplicationInfo::majorVersion)) +
           line(u"App Minor: "_s + QString::number(ApplicationInfo::minorVersion)) +
           line(u"App Revision: "_s + QString::number(ApplicationInfo::revision)) +
           line(u"App Path: "_s + Paths::applicationFolder()) +
           line(u"App ProductName: "_s + ApplicationInfo::productName);
}

/// Replaces the report; one that cannot be written leaves none behind.
void replaceReport(const QString& path, const QString& text) {
    const QString file = Paths::native(path);
    QSaveFile report(file);
    if (!report.open(QIODevice::WriteOnly) || report.write(text.toUtf8()) < 0 || !report.commit())
        QFile::remove(file);
}

/// What stands before the cause, in boxes of both kinds.
QString placeOfError(const QString& procedure, int lineNumber) {
    return said(u"Folgender Fehler ist in der Prozedur: \r\n"_s, u"Error in Procedure: \r\n"_s) + procedure +
           said(u" in Zeile  "_s, u" at Line  "_s) + QString::number(lineNumber) +
           said(u" aufgetreten: \r\n"_s, u"\r\n"_s);
}

void showError(const QString& text, const QString& title) {
    ui::asker().beep();
    ui::asker().messageBox({text, title, ui::Icon::Critical, ui::Buttons::Ok});
}

} // namespace

void CErrHandler::Push(const QString& label) {
    ++top_;
    // Deep recursion must not fail in the handler: labels beyond the depth vanish, the count goes on.
    if (top_ <= maxDepth_)
        stack_[static_cast<size_t>(top_)] = label;
}

void CErrHandler::Pop() {
    if (top_ <= maxDepth_)
        stack_[static_cast<size_t>(top_)].clear();
    if (top_ > 0)
        --top_;
}

QString CErrHandler::current() const {
    return top_ < static_cast<int>(stack_.size()) ? stack_[static_cast<size_t>(top_)] : QString();
}

QString CErrHandler::title() {
    if (AppTitle.isEmpty())
        AppTitle = ApplicationInfo::title;
    return AppTitle;
}

void CErrHandler::HandleError(int number, const QString& description, bool show) {
    ui::asker().setPointer(ui::Pointer::Default);
    errorNumber_ = number;
    errorLine_ = 0;
    errorText_ = description;
    errorProcedure_ = current();
    title();
    writeProgramReport();
    if (!DisplayMsgOnError || !show)
        return;
    const QString cause = said(u"Fehler: ("_s, u"Error: ("_s) + QString::number(number) + u") "_s;
    showError(placeOfError(errorProcedure_, errorLine_) + cause + description, AppTitle);
}

void CErrHandler::HandleDBError(const QString& text, bool show) {
    ui::asker().setPointer(ui::Pointer::Default);
    title();
    writeDatabaseReport(text);
    if (DisplayMsgOnError && show)
        showError(placeOfError(current(), errorLine_) + text, AppTitle);
}

QString CErrHandler::stackText() const {
    QString text;
    for (size_t i = 0; i < stack_.size(); ++i) {
        if (!stack_[i].isEmpty())
            text += line(QString::number(i).rightJustified(2, u'0') + QString(2 * static_cast<qsizetype>(i), u' ') +
                         stack_[i]);
    }
    return text;
}

QString CErrHandler::reportText(const QString& heading, const QString& errorText, const QString& numbers) const {
    const QString now = QLocale::system().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    return line(AppTitle + heading) + line(QString(36, u'=')) + line(u"Current Time   : "_s + now) +
           line(u"Error String   : "_s + errorText.left(reportedCharacters)) + numbers +
           line(u"Error Procedure: "_s + current()) + line({}) + line(u"Procedure Stack"_s) +
           line(u"---------------"_s) + line(stackText()) + line({}) + additionalInformation();
}

void CErrHandler::writeProgramReport() const {
    const QString numbers = line(u"Error Number   : "_s + QString::number(errorNumber_)) +
                            line(u"Error Line     : "_s + QString::number(errorLine_));
    replaceReport(Destination, reportText(u" Application Error Information"_s, errorText_, numbers));
}

void CErrHandler::writeDatabaseReport(const QString& text) const {
    replaceReport(Paths::join(Paths::applicationFolder(), u"Daojet.log"_s),
                  reportText(u" Datenbankzugriffsfehler-Informationen"_s, text, {}));
}
