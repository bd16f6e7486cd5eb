#include "ImportFixture.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

ImportRequest ImportFixture::request(const QString& file, const QString& study) const {
    ImportRequest request;
    request.catalogue = catalogue;
    request.file = file;
    request.settings.study = study;
    return request;
}

QString ImportFixture::outcome(const ImportRequest& request) {
    try {
        report = importSurvey(request);
        return {};
    } catch (const ImportError& error) {
        return error.text();
    } catch (const dao::Error& error) {
        return u"%1 %2"_s.arg(error.number()).arg(error.description());
    }
}

QStringList ImportFixture::rows(const QString& file, const QString& statement) {
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(file);
    QStringList lines;
    for (const dao::RecordsetPtr rows = database->OpenRecordset(statement, dao::dbOpenSnapshot); !rows->Eof();
         rows->MoveNext()) {
        QStringList cells;
        for (int i = 0; i < static_cast<int>(rows->Fields().size()); ++i)
            cells << (rows->value(i).isNull() ? u"NULL"_s : rows->value(i).toText());
        lines << cells.join(u'|');
    }
    database->Close();
    return lines;
}

void ImportFixture::execute(const QString& file, const QString& statement) {
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(file);
    database->Execute(statement);
    database->Close();
}

bool ImportFixture::hasFact(const QStringList& words) const {
    return std::any_of(report.facts.begin(), report.facts.end(), [&](const QString& fact) {
        return std::all_of(words.begin(), words.end(), [&](const QString& word) { return fact.contains(word); });
    });
}

QMap<QString, QByteArray> ImportFixture::folder() const {
    QMap<QString, QByteArray> files;
    const QDir dir(home.path());
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden)) {
        QFile file(dir.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        files.insert(name, file.readAll());
    }
    return files;
}
