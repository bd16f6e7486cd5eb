#include "config/CProfile.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include "app/globals.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

class Profile : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;

    void writeHives(const QByteArray& user, const QByteArray& machine) {
        writeFile(home.path(u"config/user.ini"_s), user);
        writeFile(home.path(u"config/machine.ini"_s), machine);
    }
};

const QByteArray userKey = "[Software\\Norvik\\Varidex\\3.6]\n";
const QByteArray machineKey = "[Software\\Norvik\\Varidex\\3.6\\Default]\n";

} // namespace

TEST_F(Profile, AValueComesFromTheUsersKeyElseTheMachinesElseTheDefault) {
    struct Case {
        const char *rule, *user, *machine, *expected;
    };
    const Case cases[] = {
        {"the user's comes first", "A=1:user\n", "A=1:machine\n", "user"},
        {"absent under the user's key", "B=1:x\n", "A=1:machine\n", "machine"},
        {"blanks hide the machine's key", "A=\"1:  \"\n", "A=1:machine\n", "default"},
        {"an empty text is absent content too", "A=1:\n", "A=1:machine\n", "default"},
        {"absent in both", "B=1:x\n", "B=1:x\n", "default"},
        {"a number is read as one", "A=4:17\n", "A=1:machine\n", "17"},
        {"another type is not understood", "A=3:00ff\n", "A=1:machine\n", "default"},
        {"blanks under the machine's key", "", "A=\"1: \"\n", "default"},
        {"typed by hand, without a type", "", "A=C:\\Daten\n", "C:\\Daten"},
    };
    for (const Case& c : cases) {
        writeHives(*c.user ? userKey + c.user : QByteArray(), machineKey + c.machine);
        EXPECT_EQ(storedSetting(u"A"_s, u"default"_s).toString(), QString::fromUtf8(c.expected)) << c.rule;
    }
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Profile, AnEmptyTextWrittenReadsBackAsTheDefault) {
    CProfile profile;
    EXPECT_FALSE(profile.SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, u"DataPath"_s, QString()));
    EXPECT_EQ(storedSetting(u"DataPath"_s, u"default"_s).toString(), u"default"_s);
    EXPECT_FALSE(profile.SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, u"DataPath"_s, u"D:\\Ä\\"_s));
    EXPECT_EQ(storedSetting(u"datapath"_s, u"default"_s).toString(), u"D:\\Ä\\"_s);
}

TEST_F(Profile, AFailedWriteSaysSoAndReturnsTrue) {
    QDir().mkpath(home.path(u"config/user.ini"_s)); // a folder in the file's place
    asker.setPointer(ui::Pointer::Wait);
    EXPECT_TRUE(CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, u"A"_s, u"1"_s));
    EXPECT_EQ(asker.lastText(), u"Fehlerhafte Registrierdatenbank\r\nFehler bei: SetValueEx\r\nFehlernummer: 1\r\n"
                                "Beschreibung: Fehlerhafte Registrierdatenbank\r\n"_s);
    EXPECT_EQ(asker.boxes[0].title, u"Fehler"_s);
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);

    writeFile(home.path(u"blocked"_s), "");
    qputenv("VARIDEX_CONFIG", home.path(u"blocked"_s).toUtf8());
    gLanguage = 1;
    EXPECT_TRUE(CProfile().SetRegistryEntry(Registry::CurrentUser, u"K"_s, u"A"_s, u"1"_s));
    EXPECT_EQ(asker.lastText(), u"Key: K cannot be written\r\nError at: SetValueEx\r\nNumber: 5\r\n"
                                "Description: Key: K cannot be written\r\n"_s);
    EXPECT_EQ(asker.boxes[1].title, u"Error"_s);
}

TEST_F(Profile, AnIniFileIsReadByTextAndByNumber) {
    CProfile profile;
    EXPECT_EQ(profile.ApplicationIniFile, QDir::toNativeSeparators(home.path(u"home/Varidex.ini"_s)));
    EXPECT_EQ(profile.ApplicationPath(), QDir::toNativeSeparators(home.path(u"home/"_s)));
    EXPECT_EQ(profile.ApplicationVersion(), u"Varidex360"_s);
    profile.WriteProfileEntry(u"Varidex"_s, u"Long"_s, QString(300, u'ä'));
    profile.WriteProfileEntry(u"Varidex"_s, u"Number"_s, u"-12 Stück"_s);
    profile.WriteProfileEntry(u"Varidex"_s, u"Text"_s, u"C:\\neu"_s);
    EXPECT_EQ(profile.ReadProfileString(u"Varidex"_s, u"Long"_s), QString(255, u'ä'));
    EXPECT_EQ(profile.ReadProfileString(u"Varidex"_s, u"Absent"_s), QString());
    EXPECT_EQ(profile.ReadProfileInt(u"Varidex"_s, u"Number"_s), -12);
    EXPECT_EQ(profile.ReadProfileInt(u"Varidex"_s, u"Text"_s), 0);
    EXPECT_EQ(profile.ReadProfileInt(u"Varidex"_s, u"Absent"_s), -100);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Profile, AMissingIniFileIsReportedForEachKeyRead) {
    CProfile profile;
    profile.ApplicationIniFile = u"none.ini"_s;
    EXPECT_EQ(profile.ReadProfileString(u"Varidex"_s, u"A"_s), QString());
    EXPECT_EQ(asker.lastText(), u"Die Konfigurationsdatei: none.ini existiert nicht!\r\n"
                                "Fehler bei: GetPrivateProfileString\r\nFehlernummer: -2\r\n"
                                "Beschreibung: Die Konfigurationsdatei: none.ini existiert nicht!\r\n"_s);
    gLanguage = 1;
    profile.ReadProfileInt(u"Varidex"_s, u"A"_s);
    EXPECT_TRUE(
        asker.lastText().startsWith(u"The Config-File: none.ini don't exist!\"\r\nError at: GetPrivateProfileInt"_s));
    profile.ApplicationIniFile = home.path(u"nowhere/a.ini"_s);
    profile.WriteProfileEntry(u"Varidex"_s, u"A"_s, u"1"_s);
    EXPECT_TRUE(
        asker.lastText().startsWith(u"Missing key in *.ini-File\r\nError at: WriteProfileEntry\r\nNumber: 100"_s));
    EXPECT_EQ(asker.boxes.size(), 3u);
}
