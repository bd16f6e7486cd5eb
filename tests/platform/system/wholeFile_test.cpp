#include "platform/system/wholeFile.h"

#include "support/FullDisk.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

TEST(WholeFile, TakesThePlaceOfAFileAndOfNothingElse) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.csv"_s), link = folder.filePath(u"link"_s),
                  pipe = folder.filePath(u"pipe"_s);
    EXPECT_EQ(saveBytes(file, "first"), QString());
    ASSERT_TRUE(QFile::link(file, link));
    EXPECT_EQ(saveBytes(link, "second"), QString());
    QFile written(file);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), "second");
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_NE(saveBytes(pipe, "third"), QString());
    EXPECT_FALSE(QFileInfo(pipe).isFile()) << "the pipe is still one";
    EXPECT_NE(saveBytes(folder.path(), "third"), QString());
}

TEST(WholeFile, ADiskThatTakesAPartTakesNothing) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"a.csv"_s);
    ASSERT_EQ(saveBytes(file, "first"), QString());
    for (const int size : {100, 50000}) {
        const FullDisk full(size - 50);
        EXPECT_NE(saveBytes(file, QByteArray(size, 'x')), QString()) << size;
        EXPECT_EQ(QFileInfo(file).size(), 5) << size;
    }
}
