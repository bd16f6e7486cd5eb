#include "diagnostics/LogFile.h"
#include "support/TestHome.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

} // namespace

TEST(LogFile, ALogThatGrowsTooLargeKeepsItsNewestLinesWhole) {
    const TestHome home;
    const QString log = home.path(u"Sql.log"_s);
    constexpr qsizetype lineBytes = 8 * 1024;
    const auto line = [](int number) {
        return (u"%1 ü"_s.arg(number)).leftJustified(lineBytes - 3, u'x') + u"\r\n"_s; // two bytes are the letter's
    };
    // As many lines as fit fill the log to the last byte.
    for (int i = 1; i <= 128; ++i)
        LogFile::append(log, line(i));
    EXPECT_EQ(contents(log).size(), LogFile::mostBytes);
    EXPECT_TRUE(contents(log).startsWith("1 "));

    LogFile::append(log, u"last\r\n"_s);
    const QByteArray cut = contents(log);
    EXPECT_EQ(cut.size(), 63 * lineBytes + 6);
    EXPECT_TRUE(cut.startsWith("66 \xC3\xBCx"));
    EXPECT_TRUE(cut.endsWith("x\r\nlast\r\n"));
}

TEST(LogFile, ALineLongerThanALogIsKeptWholeAndAlone) {
    const TestHome home;
    const QString log = home.path(u"Sql.log"_s);
    const QString tooLong = QString(LogFile::mostBytes, u'x') + u'\n';
    LogFile::append(log, u"first\n"_s);
    LogFile::append(log, tooLong);
    EXPECT_EQ(contents(log), tooLong.toUtf8());
    LogFile::append(log, u"next\n"_s);
    EXPECT_EQ(contents(log), "next\n");
    LogFile::append(home.path(u"nowhere/Sql.log"_s), tooLong);
    EXPECT_FALSE(QFile::exists(home.path(u"nowhere"_s)));
}

/// A log of the time when none was cut may be of any size: no more of it is read than can stay.
TEST(LogFile, OfALogWithoutALimitOnlyTheEndIsRead) {
    const TestHome home;
    const QString log = home.path(u"Sql.log"_s);
    QFile file(log);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(qint64{300} << 20)); // takes no room on the disk
    file.close();
    LogFile::append(log, u"next\n"_s);
    EXPECT_LT(QFile(log).size(), LogFile::mostBytes);
    EXPECT_TRUE(contents(log).endsWith("next\n"));
}
