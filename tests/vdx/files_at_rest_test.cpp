#include "VdxRunner.h"

#include "platform/dao/DBEngine.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSet>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Databases below a folder that this process has open right now, with "w" behind those that it may write.
QStringList openBelow(const QString& folder) {
    QStringList found;
    for (const QFileInfo& entry : QDir(u"/proc/self/fd"_s).entryInfoList(QDir::Files | QDir::System)) {
        const QString target = entry.symLinkTarget();
        // The texts of the program itself are no part of the archive.
        if (target.startsWith(folder) && target.endsWith(u".mdb"_s) && !target.endsWith(u"/Vx.mdb"_s)) {
            const int flags = fcntl(entry.fileName().toInt(), F_GETFL);
            found << QFileInfo(target).fileName() + ((flags & O_ACCMODE) == O_RDONLY ? u""_s : u" w"_s);
        }
    }
    return found;
}

class FilesAtRest : public VdxArchive {
protected:
    /// What a command had open of the archive at any of its statements.
    QSet<QString> opened(QStringList arguments) {
        QSet<QString> names;
        dao::DBEngine::instance().setTrace([&](const QString&, const QString&) {
            for (const QString& name : openBelow(QFileInfo(catalogue_).path()))
                names << name;
        });
        arguments.insert(1, catalogue_);
        EXPECT_EQ(runVdx(arguments).status, 0) << arguments.join(u' ').toStdString();
        dao::DBEngine::instance().setTrace({});
        return names;
    }
};

} // namespace

TEST_F(FilesAtRest, ACommandThatOnlyReadsOpensNothingForWriting) {
    const QString main = QFileInfo(catalogue_).fileName();
    const std::vector<std::pair<QStringList, bool>> commands{
        {{u"studies"_s}, false},
        {{u"variables"_s, u"QX1919"_s}, false},
        {{u"frequency"_s, u"QX1919"_s, u"V5"_s, u"--data"_s, data_}, true},
        {{u"crosstab"_s, u"QX1919"_s, u"V5"_s, u"V7"_s, u"--data"_s, data_}, true},
        {{u"descriptives"_s, u"QX1919"_s, u"V9"_s, u"--data"_s, data_}, true},
        {{u"compare"_s, u"--entry"_s, u"QX1919 V5"_s, u"--data"_s, data_}, true},
        {{u"comparisons"_s}, false},
    };
    for (const auto& [command, readsCases] : commands) {
        const QSet<QString> names = opened(command);
        EXPECT_TRUE(names.contains(main)) << command[0].toStdString();
        EXPECT_EQ(names.contains(u"QX1919.mdb"_s), readsCases) << command[0].toStdString();
        for (const QString& name : names)
            EXPECT_FALSE(name.endsWith(u" w"_s)) << command[0].toStdString() << ": " << name.toStdString();
    }
    EXPECT_TRUE(opened({u"compare"_s, u"--entry"_s, u"QX1919 V5"_s, u"--data"_s, data_, u"--save"_s, u"one"_s})
                    .contains(main + u" w"_s));
}

TEST_F(FilesAtRest, AFileThatMayGrowNoFurtherEndsInAMessage) {
    QProcess program;
    program.setChildProcessModifier([] {
        const rlimit most{100'000, 100'000};
        setrlimit(RLIMIT_FSIZE, &most);
    });
    const QString catalogue = home_.path(u"new.mdb"_s);
    program.start(QStringLiteral(VARIDEX_BINARIES "/vdx"),
                  {u"import"_s, catalogue, QStringLiteral(VARIDEX_BINARIES "/../samples/daten/SV2014.sav"),
                   u"--study"_s, u"SV2014"_s, u"--language"_s, u"en"_s});
    ASSERT_TRUE(program.waitForFinished(30'000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    const QByteArray words = program.readAllStandardError();
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_TRUE(words.contains("Not enough space on disk")) << words.constData();
    EXPECT_FALSE(QFile::exists(catalogue));
}
