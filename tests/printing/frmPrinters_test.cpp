#include "printing/HandmadeReport.h"
#include "printing/PrinterChoice.h"
#include "printing/ReportLayout.h"
#include "printing/ReportRequest.h"
#include "printing/outlets.h"
#include "support/PrintQt.h"
#include "support/TestHome.h"
#include "widgets/QtAsker.h"

#include <QDir>
#include <QFile>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

void writeText(const QString& path, const QString& text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

/// A print server of the test's own, on a socket in its folder, with two printers that forget what they get: one with
/// papers and a place of its own. It keeps what it was handed.
class PrintServer {
public:
    explicit PrintServer(const QDir& folder) : folder_(folder) {
        for (const QString& name : {u"root/ppd"_s, u"spool"_s, u"cache"_s, u"state"_s})
            folder_.mkpath(name);
        const QString at = folder_.absolutePath();
        writeText(at + u"/root/cupsd.conf"_s,
                  u"Listen %1/s\nPreserveJobFiles Yes\nBrowsing Off\nWebInterface No\n<Location />\nOrder "
                  u"allow,deny\nAllow all\n</Location>\n<Policy default>\n<Limit All>\n"
                  u"Order deny,allow\nAllow all\n</Limit>\n</Policy>\n"_s.arg(at));
        writeText(
            at + u"/root/cups-files.conf"_s,
            u"ServerRoot %1/root\nRequestRoot %1/spool\nCacheDir %1/cache\nStateDir %1/state\nTempDir "
            u"%1/spool\nAccessLog %1/access\nErrorLog %1/error\nPageLog %1/page\nPrintcap\nFileDevice Yes\n"_s.arg(at));
        const QString forgetting = u"DeviceURI file:///dev/null\nState Idle\nAccepting Yes\nShared No\n"_s;
        writeText(
            at + u"/root/printers.conf"_s,
            u"<Printer Akte>\n%1</Printer>\n<DefaultPrinter Nichts>\nLocation Raum 7\n%1</DefaultPrinter>\n"_s.arg(
                forgetting));
        writeText(at + u"/root/ppd/Nichts.ppd"_s, papers);
    }
    ~PrintServer() { stop(); }

    /// @return why it doesn't run; empty if it does
    QString start() {
        const QString program = QStandardPaths::findExecutable(u"cupsd"_s, qEnvironmentVariable("PATH").split(u':') +
                                                                               QStringList{u"/usr/sbin"_s, u"/sbin"_s});
        if (program.isEmpty())
            return u"there is no cupsd"_s;
        const QString root = folder_.absoluteFilePath(u"root"_s);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(program, {u"-f"_s, u"-c"_s, root + u"/cupsd.conf"_s, u"-s"_s, root + u"/cups-files.conf"_s});
        const bool up =
            QTest::qWaitFor([&] { return process_.state() == QProcess::NotRunning || folder_.exists(u"s"_s); }, 10000);
        if (!up || process_.state() != QProcess::Running)
            return u"cupsd does not start: "_s + QString::fromLocal8Bit(process_.readAll());
        qputenv("CUPS_SERVER", QFile::encodeName(folder_.absoluteFilePath(u"s"_s)));
        return {};
    }
    void stop() {
        process_.terminate();
        process_.waitForFinished();
    }
    /// The document of a job, from 1.
    QByteArray document(int job) const {
        QFile file(folder_.absoluteFilePath(u"spool/d%1-001"_s.arg(job, 5, 10, QChar(u'0'))));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QDir folder_;
    QProcess process_;

    static inline const QString papers =
        u"*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n*LanguageVersion: English\n"
        u"*LanguageEncoding: ISOLatin1\n*PCFileName: \"NULL.PPD\"\n*Manufacturer: \"None\"\n*Product: \"(None)\"\n"
        u"*PSVersion: \"(3010) 0\"\n*ModelName: \"None\"\n*ShortNickName: \"None\"\n*NickName: \"None\"\n"
        u"*ColorDevice: True\n*cupsFilter: \"application/pdf 0 -\"\n*OpenUI *PageSize/Size: PickOne\n"
        u"*DefaultPageSize: A5\n*PageSize A5/A5: \"\"\n*PageSize A4/A4: \"\"\n*CloseUI: *PageSize\n"
        u"*OpenUI *PageRegion/Size: PickOne\n*DefaultPageRegion: A5\n*PageRegion A5/A5: \"\"\n*PageRegion A4/A4: "
        u"\"\"\n*CloseUI: *PageRegion\n*DefaultImageableArea: A5\n*ImageableArea A5/A5: \"10 10 410 585\"\n"
        u"*ImageableArea A4/A4: \"10 10 585 832\"\n*DefaultPaperDimension: A5\n*PaperDimension A5/A5: \"420 595\"\n"
        u"*PaperDimension A4/A4: \"595 842\"\n"_s;
};

qsizetype pagesIn(const QByteArray& pdf) {
    return pdf.count("/Type /Page\n") + pdf.count("/Type /Page ");
}

} // namespace

TEST(SystemPrinters, AreAskedOfTheirServerTakeAReportAndMayBeGone) {
    const TestHome home;
    PrintServer server(QDir(home.path()));
    if (const QString why = server.start(); !why.isEmpty())
        GTEST_SKIP() << qPrintable(why);
    QtAsker asker;
    const std::vector<ui::Printer> printers = asker.printers();
    ASSERT_EQ(printers.size(), 2u);
    PrinterChoice choice(printers);
    EXPECT_EQ(choice.names(), (QStringList{u"Akte"_s, u"Nichts"_s}));
    EXPECT_EQ(choice.printername(u"auf"_s), u"A5 auf Raum 7   Nichts"_s) << "the default one";
    choice.choose(u"Akte"_s);
    EXPECT_TRUE(choice.printername(u"auf"_s).endsWith(u" auf Akte   Akte"_s)) << "it stands nowhere";
    EXPECT_TRUE(printers[1].color && !printers[1].landscape);

    ReportRequest request = HandmadeReport::asked();
    request.Orientation = 2;
    const std::unique_ptr<ReportRun> run = HandmadeReport::run({.variables = 5}, request);
    ASSERT_EQ(run->open(), QString());
    while (run->step(1000))
        ;
    const ReportLayout& layout = run->layout();
    ASSERT_GT(layout.pageCount(), 3);
    for (const QString& name : choice.names()) {
        const std::shared_ptr<QPagedPaintDevice> device = asker.openPrinter({.printer = name, .title = u"Bericht"_s});
        ASSERT_TRUE(device) << qPrintable(name);
        EXPECT_EQ(printPages(layout, *device, 1, 2), QString()) << qPrintable(name);
    }
    for (const int job : {1, 2})
        EXPECT_EQ(pagesIn(server.document(job)), 2) << job;

    EXPECT_FALSE(asker.openPrinter({.printer = u"Weg"_s, .title = {}}));
    server.stop();
    EXPECT_FALSE(asker.openPrinter({.printer = u"Nichts"_s, .title = {}})) << "no file is written in its stead";
    EXPECT_EQ(asker.printers().size(), 0u);
}
