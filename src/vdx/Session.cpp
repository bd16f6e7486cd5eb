#include "vdx/Session.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "diagnostics/CErrHandler.h"
#include "language/mdLanguage.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/NumberFormat.h"
#include "platform/system/Paths.h"

#include <QLocale>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A warning does not end the run: only what reports an error, or offers to try a failed step again, does.
bool reportsError(const ui::Box& box) {
    return box.icon == ui::Icon::Critical || box.buttons == ui::Buttons::AbortRetryIgnore;
}

bool speaksGerman(const QString& language) {
    if (!language.isEmpty())
        return language == u"de";
    return QLocale::system().language() == QLocale::German;
}

QChar decimalSeparator(const QString& decimal) {
    if (!decimal.isEmpty())
        return decimal == u"comma" ? u',' : u'.';
    return QLocale::system().decimalPoint() == u"."_s ? u'.' : u',';
}

void setOptions(const QStringList& settings) {
    for (const QString& setting : settings) {
        const qsizetype equals = setting.indexOf(u'=');
        const QString key = setting.left(equals);
        const OptionDescriptor* option = equals > 0 ? findOption(key) : nullptr;
        if (!option)
            throw UsageError{said(u"--set %1: Eine Option dieses Namens gibt es nicht (Form: KEY=VALUE)"_s,
                                  u"--set %1: there is no option of that name (write KEY=VALUE)"_s)
                                 .arg(setting)};
        if (!setOptionFromText(gOptions, *option, setting.mid(equals + 1)))
            throw UsageError{said(u"--set %1: Die Option nimmt diesen Wert nicht an"_s,
                                  u"--set %1: the option does not take this value"_s)
                                 .arg(setting)};
    }
}

} // namespace

Session::Session(const CommonOptions& options, std::FILE* out, std::FILE* err)
    : common_(options), err_(err), printer_(options.format, out, options.plain), askerIn_(&noInput_),
      askerOut_(&boxText_), asker_(std::make_unique<ui::TerminalAsker>(askerIn_, askerOut_, false)) {
    gLanguage = speaksGerman(options.language) ? 0 : 1;
    // Before all else, since a wrong option ends it here: nothing is to be put back then.
    gOptions = Options();
    setOptions(options.set);
    asker_->isFailure = reportsError;
    askerBefore_ = ui::setAsker(asker_.get());
    gErrorTrapping = true;
    NumberFormat::setDecimalSeparator(decimalSeparator(options.decimal));
    gErrHandler.Destination = Paths::join(Paths::applicationFolder(), u"Error.log"_s);
    gErrHandler.AppTitle = ApplicationInfo::title;
    dao::DBEngine::instance().setDefinitionsInMemory(true);
    mdLanguage::LoadTextTable();
}

Session::~Session() {
    mdDataBase::CloseDataBase();
    flushBoxes();
    progressLine({});
    dao::DBEngine::instance().setDefinitionsInMemory(false);
    ui::setAsker(askerBefore_);
}

bool Session::open(const QString& catalogue, bool readOnly) {
    const bool opened = mdDataBase::OpenQXDatabase(catalogue, readOnly) == 1;
    if (!gDatabase.leftovers().isEmpty())
        say(gDatabase.leftovers());
    flushBoxes();
    if (!opened || failed())
        return false;
    if (!common_.contents.isEmpty())
        gOptions.EnglishLanguage = common_.contents == u"english";
    return true;
}

void Session::takeWarningsAsFailures() {
    asker_->isFailure = [](const ui::Box& box) { return reportsError(box) || box.icon == ui::Icon::Exclamation; };
}

void Session::flushBoxes() {
    askerOut_.flush();
    if (boxText_.isEmpty())
        return;
    progressLine({});
    const QByteArray utf8 = cleanLines(boxText_).toUtf8();
    std::fwrite(utf8.constData(), 1, static_cast<size_t>(utf8.size()), err_);
    std::fflush(err_);
    boxText_.clear();
    askerOut_.seek(0);
}

void Session::say(const QString& line) {
    flushBoxes();
    progressLine({});
    std::fputs((oneLine(line) + u'\n').toUtf8().constData(), err_);
    std::fflush(err_);
}

bool Session::errIsTerminal() const {
    return isatty(fileno(err_)) == 1;
}

void Session::progressLine(const QString& text) {
    if (!progressShown_ && text.isEmpty())
        return;
    std::fputs(("\r\x1b[K" + text.toUtf8()).constData(), err_);
    std::fflush(err_);
    progressShown_ = !text.isEmpty();
}

std::function<bool(double)> Session::progress(bool inLines) {
    if (inLines)
        return [this, told = -1](double share) mutable {
            if (const int percent = static_cast<int>(share * 100); std::exchange(told, percent) != percent)
                say(u"progress %1"_s.arg(percent));
            return true;
        };
    if (!errIsTerminal())
        return {};
    return [this](double share) {
        progressLine(u"%1 %"_s.arg(static_cast<int>(share * 100)));
        return true;
    };
}
