#include "platform/system/Paths.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A path of the tests in the native form.
QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

void writeFile(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
}

} // namespace

TEST(Paths, BothSeparatorsAreReadAndTheNativeOneIsWritten) {
    struct Case {
        QString folder, name, joined;
    };
    const Case cases[] = {
        {u"a"_s, u"b"_s, u"a/b"_s},
        {u"a/"_s, u"b"_s, u"a/b"_s},
        {u"a\\"_s, u"\\b"_s, u"a/b"_s},
        {u""_s, u"b\\c"_s, u"b/c"_s},
        {u"/"_s, u"b"_s, u"/b"_s},
        {u"C:\\Daten"_s, u"QX1.mdb"_s, u"C:/Daten/QX1.mdb"_s},
        {u"a b"_s, u"Übersicht.mdb"_s, u"a b/Übersicht.mdb"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Paths::join(c.folder, c.name), native(c.joined));
    EXPECT_EQ(Paths::folderOf(u"C:\\a/b\\c.mdb"_s), u"C:\\a/b"_s);
    EXPECT_EQ(Paths::fileOf(u"C:\\a/b\\c.mdb"_s), u"c.mdb"_s);
    EXPECT_EQ(Paths::folderOf(u"c.mdb"_s), QString());
    EXPECT_EQ(Paths::fileOf(u"c.mdb"_s), u"c.mdb"_s);
}

TEST(Paths, ATextBecomesAFileNameThatAnySystemTakes) {
    const std::pair<QString, QString> cases[] = {
        {u"SV2018-LZUFR"_s, u"SV2018-LZUFR"_s},
        {u"a/b\\c:d*e?f\"g<h>i|j\tk"_s, u"a_b_c_d_e_f_g_h_i_j_k"_s},
        {u" .Jahr 2018. ."_s, u"Jahr 2018"_s},
        {u"..."_s, QString()},
        {u"con"_s, u"con_"_s},
        {u"LPT1.Druck"_s, u"LPT1_.Druck"_s},
        {u"Constanze"_s, u"Constanze"_s},
        {u"رضا 😀"_s, u"رضا 😀"_s},
        {QString(200, u'ä'), QString(75, u'ä')},
        {u"x"_s + u"😀"_s.repeated(50), u"x"_s + u"😀"_s.repeated(37)},
    };
    for (const auto& [text, name] : cases)
        EXPECT_EQ(Paths::asFileName(text), name) << text.toStdString();
}

TEST(Paths, AFileIsFoundWithoutRegardToTheCaseOfAnyPartOfItsPath) {
    const TestHome home;
    QDir().mkpath(home.path(u"Daten/Wellen"_s));
    writeFile(home.path(u"Daten/Wellen/Übersicht.mdb"_s));
    const QString real = native(home.path(u"Daten/Wellen/Übersicht.mdb"_s));

    EXPECT_TRUE(Paths::exists(real));
    EXPECT_TRUE(Paths::exists(home.path(u"daten\\WELLEN\\übersicht.MDB"_s)));
    EXPECT_EQ(Paths::onDisk(home.path(u"daten\\WELLEN\\übersicht.MDB"_s)), real);
    EXPECT_TRUE(Paths::exists(home.path(u"DATEN"_s)));
    EXPECT_FALSE(Paths::exists(home.path(u"Daten/Wellen/Uebersicht.mdb"_s)));
    EXPECT_FALSE(Paths::exists(QString()));

    // The exact spelling wins where two files differ only in case.
    writeFile(home.path(u"Daten/WELLE.mdb"_s));
    writeFile(home.path(u"Daten/welle.mdb"_s));
    EXPECT_EQ(Paths::onDisk(home.path(u"Daten/welle.mdb"_s)), native(home.path(u"Daten/welle.mdb"_s)));
}

TEST(Paths, TheEnvironmentMovesApplicationFolderAndConfiguration) {
    const TestHome home;
    EXPECT_EQ(Paths::applicationFolder(), native(home.path(u"home"_s)));
    EXPECT_EQ(Paths::userConfigFolder(), native(home.path(u"config"_s)));
    EXPECT_EQ(Paths::machineConfigFolder(), native(home.path(u"config"_s)));
    qputenv("VARIDEX_HOME", home.path(u"other/"_s).toUtf8());
    EXPECT_EQ(Paths::applicationFolder(), native(home.path(u"home"_s))) << "found once, kept for the run";
    Paths::resetApplicationFolder();
    EXPECT_EQ(Paths::applicationFolder(), native(home.path(u"other"_s)));
}

TEST(Paths, AnInstalledProgramWorksInTheUsersFolderWithItsOwnCopyOfTheFiles) {
    const TestHome home;
    const QString program = home.path(u"prefix/bin"_s), user = home.path(u"user/varidex"_s);
    QDir().mkpath(program);
    EXPECT_EQ(Paths::chooseApplicationFolder(program, user), program) << "a build or unpacked tree";
    EXPECT_FALSE(QFile::exists(user));

    QDir().mkpath(home.path(u"prefix/share/varidex"_s));
    writeFile(home.path(u"prefix/share/varidex/Vx.mdb"_s));
    QFile::setPermissions(home.path(u"prefix/share/varidex/Vx.mdb"_s), QFileDevice::ReadOwner);
    EXPECT_EQ(Paths::chooseApplicationFolder(program, user), user);
    QFile copy(user + u"/Vx.mdb"_s);
    ASSERT_TRUE(copy.open(QIODevice::WriteOnly));
    copy.write("changed by the user");
    copy.close();
    Paths::chooseApplicationFolder(program, user);
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly));
    EXPECT_EQ(copy.readAll(), QByteArray("changed by the user"));
}

TEST(Paths, AUserWithoutAFolderReadsTheInstalledFiles) {
    const TestHome home;
    const QString program = home.path(u"prefix/bin"_s), installed = home.path(u"prefix/share/varidex"_s);
    QDir().mkpath(program);
    QDir().mkpath(installed);
    writeFile(installed + u"/Vx.mdb"_s);
    writeFile(home.path(u"file"_s)); // no folder can be made in it, whoever asks
    EXPECT_EQ(Paths::chooseApplicationFolder(program, home.path(u"file/varidex"_s)), installed);
}

TEST(Paths, ABuildThatMayNotBeWrittenLendsItsFilesToTheUsersFolder) {
    const TestHome home;
    const QString program = home.path(u"build/bin"_s), user = home.path(u"user/varidex"_s);
    for (const QString& folder : {program, home.path(u"user"_s)})
        QDir().mkpath(folder);
    for (const QString& name : {u"Vx.mdb"_s, u"vdx"_s, u"Sql.log"_s, u"Error.log"_s, u"Daojet.LOG"_s, u"Ctrl.clf"_s})
        writeFile(program + u'/' + name);
    const QByteArray files = QFile::encodeName(program), users = QFile::encodeName(home.path(u"user"_s));
    chmod((files + "/Vx.mdb").constData(), 0644);
    chmod((files + "/vdx").constData(), 0755);
    chmod(files.constData(), 0555);
    chmod(users.constData(), 0777);
    chmod(QFile::encodeName(home.path()).constData(), 0755);
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534; // to the superuser every folder is writable
        if (geteuid() == 0 && setuid(nobody) != 0)
            _exit(2);
        _exit(Paths::chooseApplicationFolder(program, user) == user ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(QDir(user).entryList(QDir::Files), QStringList{u"Vx.mdb"_s}) << "neither programs nor their logs";
    chmod(files.constData(), 0755);
}
