#include "ImportFixture.h"
#include "catalogue/BuildFolder.h"
#include "catalogue/ImportGuard.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

/// Links and other people's files that stand where the importer keeps or clears away its own.
class ImportLinks : public ImportFixture {
protected:
    QString stranger = home.path(u"stranger/thesis.mdb"_s), survey = home.path(u"survey.sav"_s);

    void SetUp() override {
        QDir().mkpath(home.path(u"stranger"_s));
        write(stranger, "years of work");
        SurveyFileMaker maker;
        maker.number("V1");
        maker.write(survey, {{1.0}});
    }
    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QStringList strangers() const {
        QFile file(stranger);
        const QString content =
            file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        return QDir(home.path(u"stranger"_s)).entryList(QDir::Files | QDir::Hidden) << content;
    }
};

TEST_F(ImportLinks, AreNeverWrittenOrDeletedThrough) {
    const QStringList before = strangers();
    const QString cases = home.path(u"QX1.mdb"_s), note = catalogue + u"-import"_s,
                  buildFolder = home.path(u".my.mdb.vdx-build"_s),
                  nowhere = home.path(u"stranger/none.mdb"_s);
    struct Case {
        QString link, target; ///< the link that stands there; none if empty
        QByteArray note;      ///< of a killed run
        QString words;        ///< of the refusal; empty: the import goes well
    };
    const Case rows[] = {
        {note, stranger, {}, u"my.mdb-import"_s},
        {note, nowhere, {}, u"my.mdb-import"_s},
        {catalogue, nowhere, {}, u"my.mdb"_s},
        {cases, nowhere, {}, u"zeigt ins Leere"_s},
        {cases, stranger, "blank\t" + cases.toUtf8() + "\n", u"QX1.mdb ist schon da"_s},
        {cases, stranger, "made\t" + cases.toUtf8() + "\n", u"QX1.mdb ist schon da"_s},
        {{}, {}, "made\t" + stranger.toUtf8() + "\n", {}},
        {{}, {}, "blank\t" + stranger.toUtf8() + "\n", {}},
        {buildFolder, home.path(u"stranger"_s), {}, {}},
    };
    for (const Case& row : rows) {
        SCOPED_TRACE((row.link + u" -> "_s + row.target).toStdString() + row.note.constData());
        if (!row.link.isEmpty()) {
            ASSERT_TRUE(QFile::link(row.target, row.link));
        }
        if (!row.note.isEmpty())
            write(note, row.note);
        removeLeftovers(catalogue);
        const QString words = outcome(request(survey, u"QX1"_s));
        EXPECT_TRUE(row.words.isEmpty() ? words.isEmpty() : words.contains(row.words)) << words.toStdString();
        EXPECT_EQ(strangers(), before);
        if (!row.link.isEmpty()) {
            EXPECT_EQ(QFile::symLinkTarget(row.link), row.target);
        }
        for (const QString& path : {cases, catalogue, note, buildFolder})
            QFile::remove(path);
    }
}

TEST_F(ImportLinks, ABuildTakesNoFolderAndNoFileOfSomebodyElses) {
    const QStringList before = strangers();
    const QString buildFolder = home.path(u".my.mdb.vdx-build"_s);
    ASSERT_TRUE(QFile::link(home.path(u"stranger"_s), buildFolder));
    EXPECT_THROW(archive::BuildFolder{catalogue}, ImportError);
    EXPECT_EQ(strangers(), before);
    ASSERT_TRUE(QFile::remove(buildFolder));
    // A killed run's note names files beside the catalogue, never any further away.
    QDir().mkpath(buildFolder + u"/new"_s);
    write(buildFolder + u"/new/my.mdb"_s, "new");
    write(buildFolder + u"/ready"_s, "stranger/thesis.mdb\n../stranger/thesis.mdb");
    archive::finishInterruptedBuild(catalogue);
    EXPECT_TRUE(QFile::exists(catalogue));
    EXPECT_EQ(strangers(), before);
}
