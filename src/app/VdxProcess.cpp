#include "app/VdxProcess.h"

#include "app/globals.h"
#include "platform/system/Paths.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <utility>

using namespace Qt::StringLiterals;

QString VdxProcess::programInTests;

QString VdxProcess::program() {
    const QString beside = Paths::join(QCoreApplication::applicationDirPath(), u"vdx"_s);
    for (const QString& file : {programInTests, beside, beside + u".exe"_s})
        if (QFileInfo(file).isFile() && QFileInfo(file).isExecutable())
            return file;
    return {};
}

VdxProcess::VdxProcess() {
    process_.setStandardInputFile(QProcess::nullDevice());
    QObject::connect(&process_, &QProcess::readyReadStandardError, &process_, [this] { readErrors(); });
    QObject::connect(&process_, &QProcess::errorOccurred, &process_, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end(Outcome::NotStarted, TranslateText(u"Das Programm vdx konnte nicht gestartet werden."_s));
    });
    QObject::connect(&process_, &QProcess::finished, &process_, [this](int status, QProcess::ExitStatus how) {
        readErrors();
        takeLine(QString::fromUtf8(std::exchange(pending_, {})));
        printed_ = QString::fromUtf8(process_.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        const QString words = said_.join(u'\n');
        if (stopped_)
            end(Outcome::Stopped, TranslateText(u"Der Vorgang wurde angehalten; es ist nichts davon geblieben."_s));
        else if (how == QProcess::CrashExit)
            end(Outcome::Crashed, TranslateText(u"Das Programm vdx ist abgestürzt; es ist nichts davon geblieben."_s) +
                                      (words.isEmpty() ? QString() : u'\n' + words));
        else if (status != 0)
            end(Outcome::Refused,
                words.isEmpty() ? TranslateText(u"Das Programm vdx endete ohne ein Wort (%1)."_s).arg(status) : words);
        else
            end(Outcome::Done, words);
    });
}

VdxProcess::~VdxProcess() {
    process_.disconnect();
    if (!isRunning())
        return;
    process_.kill();
    process_.waitForFinished();
}

void VdxProcess::start(const QStringList& arguments) {
    pending_.clear();
    said_.clear();
    printed_.clear();
    stopped_ = ended_ = false;
    process_.start(program(), arguments + QStringList{u"--progress"_s, u"--language"_s, said(u"de"_s, u"en"_s)});
}

void VdxProcess::stop() {
    if (!isRunning())
        return;
    stopped_ = true;
    process_.kill();
}

void VdxProcess::readErrors() {
    pending_ += process_.readAllStandardError();
    for (qsizetype end = 0; (end = pending_.indexOf('\n')) >= 0;) {
        takeLine(QString::fromUtf8(pending_.left(end)));
        pending_.remove(0, end + 1);
    }
}

void VdxProcess::takeLine(const QString& line) {
    bool isNumber = false;
    const int percent = line.startsWith(u"progress ") ? line.mid(9).toInt(&isNumber) : 0;
    if (!isNumber && !line.trimmed().isEmpty())
        said_ << line;
    if (isNumber && onProgress)
        onProgress(percent);
}

void VdxProcess::end(Outcome outcome, const QString& words) {
    if (std::exchange(ended_, true) || !onEnd)
        return;
    onEnd({outcome, words, printed_});
}
