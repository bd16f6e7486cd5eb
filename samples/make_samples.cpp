// Makes the sample archive: survey files, show cards and questionnaires of an invented country, beside a copy
// of the archive's description. The same call makes the same data on every system.
//
//     make_samples FOLDER DESCRIPTION.json

#include "Documents.h"
#include "SurveyWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QSaveFile>

#include <cstdio>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

const std::vector<Survey>& surveys() {
    static const std::vector<Survey> all{
        {u"SVP2013"_s, u"Leben in Solvarden, Pretest 2013"_s,
         u"Pretest zur Erhebung 2014.\nMündliche Interviews, Oktober 2013."_s, Wave::Pretest2013, 150, false},
        {u"SV2014"_s, u"Leben in Solvarden 2014"_s,
         u"Feldzeit: 3. März bis 30. Mai 2014.\nZufallsauswahl aus dem Einwohnerregister."_s, Wave::Wave2014, 1200,
         false},
        {u"SV2018"_s, u"Leben in Solvarden 2018"_s,
         u"Feldzeit: 3. April bis 30. Juni 2018.\nZwei Fassungen des Fragebogens."_s, Wave::Wave2018, 1200, true},
        {u"SV2022"_s, u"Leben in Solvarden 2022"_s,
         u"Feldzeit: 3. März bis 30. Mai 2022.\nErstmals mit Fragen zum Homeoffice."_s, Wave::Wave2022, 1200, true},
    };
    return all;
}

void writeShowCards(const QString& folder) {
    // karten\wohnen.png is named by the description and not made: a show card that got lost.
    writeShowCard(folder + u"/zufriedenheit.png"_s, u"Karte 1: Zufriedenheit"_s,
                  {u"0   ganz und gar unzufrieden"_s, u"1 – 4"_s, u"5   teils, teils"_s, u"6 – 9"_s,
                   u"10  ganz und gar zufrieden"_s});
    writeShowCard(
        folder + u"/satisfaction.png"_s, u"Card 1: Satisfaction"_s,
        {u"0   completely dissatisfied"_s, u"1 – 4"_s, u"5   so-so"_s, u"6 – 9"_s, u"10  completely satisfied"_s});
    writeShowCard(folder + u"/vertrauen.png"_s, u"Karte 2: Vertrauen"_s,
                  {u"1   überhaupt kein Vertrauen"_s, u"2 – 3"_s, u"4   mittleres Vertrauen"_s, u"5 – 6"_s,
                   u"7   großes Vertrauen"_s});
    writeShowCard(
        folder + u"/trust.png"_s, u"Card 2: Trust"_s,
        {u"1   no trust at all"_s, u"2 – 3"_s, u"4   some trust"_s, u"5 – 6"_s, u"7   a great deal of trust"_s});
    writeShowCard(folder + u"/parteien.png"_s, u"Karte 3: Parteien"_s,
                  {u"Bürgerbund"_s, u"Arbeiterunion"_s, u"Grüne Küste"_s, u"Liberale Liste"_s, u"Heimatpartei"_s});
}

void writeQuestionnaires(const QString& folder, const QJsonObject& texts) {
    for (const Survey& survey : surveys()) {
        if (survey.wave != Wave::Wave2018) {
            writeQuestionnaire(folder + u'/' + survey.study + u".pdf"_s, survey.fileLabel, survey, texts);
            continue;
        }
        writeQuestionnaire(folder + u'/' + survey.study + u"A.pdf"_s, survey.fileLabel + u", Fassung A"_s, survey,
                           texts, {u"UMLAGE2"_s});
        writeQuestionnaire(folder + u'/' + survey.study + u"B.pdf"_s, survey.fileLabel + u", Fassung B"_s, survey,
                           texts, {u"UMLAGE1"_s});
    }
}

QByteArray readDescription(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error((path + u": "_s + file.errorString()).toStdString());
    return file.readAll();
}

void makeSamples(const QString& folder, const QString& description) {
    for (const QString& part : {u"karten"_s, u"fragebogen"_s, u"daten"_s})
        if (!QDir().mkpath(folder + u'/' + part))
            throw std::runtime_error((folder + u'/' + part + u": cannot be made"_s).toStdString());
    const QByteArray json = readDescription(description);
    const QJsonObject texts = QJsonDocument::fromJson(json).object().value(u"variables"_s).toObject();
    if (texts.isEmpty())
        throw std::runtime_error((description + u": no JSON object with the texts of variables"_s).toStdString());
    for (const Survey& survey : surveys())
        writeSurvey(survey, folder + u"/daten/"_s + survey.study + u".sav"_s);
    writeShowCards(folder + u"/karten"_s);
    writeQuestionnaires(folder + u"/fragebogen"_s, texts);
    // Last, so that a description that is there has all its files.
    QSaveFile copy(folder + u"/archive.json"_s);
    if (!copy.open(QIODevice::WriteOnly) || copy.write(json) != json.size() || !copy.commit())
        throw std::runtime_error((copy.fileName() + u": "_s + copy.errorString()).toStdString());
}

} // namespace

int main(int argc, char** argv) {
    // Pictures and PDF files need the text layout of a graphical program, not a screen.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: make_samples FOLDER DESCRIPTION.json\n", stderr);
        return 2;
    }
    try {
        makeSamples(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
