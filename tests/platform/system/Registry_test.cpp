#include "platform/system/IniFile.h"
#include "platform/system/Registry.h"
#include "support/TestHome.h"

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

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

const QString awkwardValues[] = {
    u"x;y"_s,    u"C:\\neu\\"_s,  u"\"quoted\""_s, u"\""_s,          u" blanks "_s,  u"\" mixed\" "_s,    u""_s,
    u" "_s,      u"äöüß€ 日本"_s, u"a=b"_s,        u"#no comment"_s, u"[section]"_s, u"<<<END_OF_TEXT"_s, u"\t tab"_s,
    u"%1 \\n"_s, u"1:2"_s,
};

const QString key = u"Software\\Norvik\\Varidex\\3.6\\"_s;

} // namespace

TEST(IniFile, EveryValueComesBackAsItWasWritten) {
    const TestHome home;
    const QString path = home.path(u"Ä options.ini"_s);
    for (const QString& value : awkwardValues) {
        IniFile written;
        written.setValue(u"Varidex"_s, u"Before"_s, u"1"_s);
        written.setValue(u"Varidex"_s, u"Key"_s, value);
        written.setValue(u"Varidex"_s, u"After"_s, u"2"_s);
        ASSERT_TRUE(written.save(path));
        IniFile read;
        ASSERT_TRUE(read.load(path));
        EXPECT_EQ(read.value(u"varidex"_s, u"KEY"_s), value);
        EXPECT_EQ(read.value(u"Varidex"_s, u"After"_s), u"2"_s) << qPrintable(value);
    }
}

TEST(IniFile, ALineBreakInAValueCannotBringKeysOfItsOwn) {
    const TestHome home;
    IniFile file;
    file.setValue(u"Varidex"_s, u"Key"_s, u"one\r\n[Other]\nEvil=1"_s);
    ASSERT_TRUE(file.save(home.path(u"a.ini"_s)));
    IniFile read;
    ASSERT_TRUE(read.load(home.path(u"a.ini"_s)));
    EXPECT_EQ(read.value(u"Varidex"_s, u"Key"_s), u"one [Other] Evil=1"_s);
    EXPECT_FALSE(read.hasSection(u"Other"_s));
}

TEST(IniFile, AFileFromElsewhereIsReadWithItsCommentsAndOldCharacters) {
    const TestHome home;
    writeFile(home.path(u"a.ini"_s),
              "; written by hand\r\n[VARIDEX]\r\nDataPath = C:\\M\xFCller \r\nFixedFont=\"Courier New\"\r\n");
    IniFile file;
    ASSERT_TRUE(file.load(home.path(u"a.ini"_s)));
    EXPECT_EQ(file.value(u"Varidex"_s, u"datapath"_s), u"C:\\Müller"_s);
    EXPECT_EQ(file.value(u"Varidex"_s, u"FixedFont"_s), u"Courier New"_s);
    EXPECT_EQ(file.value(u"Varidex"_s, u"None"_s), std::nullopt);
    EXPECT_FALSE(IniFile().load(home.path(u"home"_s))) << "a folder is no ini file";
}

TEST(Registry, ValuesKeepContentAndTypeAndKeysIgnoreCase) {
    const TestHome home;
    for (const QString& value : awkwardValues) {
        ASSERT_EQ(Registry::write(Registry::CurrentUser, key, u"Text"_s, {Registry::String, value, 0}),
                  Registry::Outcome::Done);
        Registry::Entry entry;
        ASSERT_EQ(Registry::read(Registry::CurrentUser, u"SOFTWARE\\norvik\\Varidex\\3.6"_s, u"TEXT"_s, entry),
                  Registry::Outcome::Done);
        EXPECT_EQ(entry.text, value);
        EXPECT_EQ(entry.type, Registry::String);
    }
    Registry::write(Registry::CurrentUser, key, u"Number"_s, {Registry::Number, {}, 4294967295u});
    Registry::write(Registry::CurrentUser, key, u"Binary"_s, {3, u"00ff"_s, 0});
    Registry::Entry number, binary, none;
    Registry::read(Registry::CurrentUser, key, u"Number"_s, number);
    Registry::read(Registry::CurrentUser, key, u"Binary"_s, binary);
    EXPECT_EQ(number.number, 4294967295u);
    EXPECT_EQ(binary.type, 3);
    EXPECT_EQ(binary.text, u"00ff"_s);
    EXPECT_EQ(Registry::read(Registry::CurrentUser, key, u"None"_s, none), Registry::Outcome::NotFound);
    EXPECT_FALSE(Registry::keyExists(Registry::LocalMachine, key)) << "the hives are apart";
}

TEST(Registry, AHiveThatCannotBeReadIsNeverOverwritten) {
    const TestHome home;
    QDir().mkpath(home.path(u"config/user.ini"_s)); // a folder in the file's place
    Registry::Entry entry;
    EXPECT_EQ(Registry::write(Registry::CurrentUser, key, u"A"_s, {Registry::String, u"1"_s, 0}),
              Registry::Outcome::Corrupted);
    EXPECT_EQ(Registry::read(Registry::CurrentUser, key, u"A"_s, entry), Registry::Outcome::Corrupted);

    writeFile(home.path(u"blocked"_s), "a file in the folder's place");
    qputenv("VARIDEX_CONFIG", home.path(u"blocked"_s).toUtf8());
    EXPECT_EQ(Registry::write(Registry::CurrentUser, key, u"A"_s, {Registry::String, u"1"_s, 0}),
              Registry::Outcome::NotWritable);
    EXPECT_EQ(readFile(home.path(u"blocked"_s)), QByteArray("a file in the folder's place"));
}
