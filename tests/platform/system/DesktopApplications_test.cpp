#include "platform/system/DesktopApplications.h"

#include "support/PrintQt.h"
#include "support/TestHome.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// A desktop of the test's own: no setting and no application of this machine is seen.
class Desktop : public testing::Test {
protected:
    TestHome home;

    void SetUp() override {
        set("XDG_CONFIG_HOME", home.path(u"config"_s));
        set("XDG_CONFIG_DIRS", home.path(u"etc"_s));
        set("XDG_DATA_HOME", home.path(u"data"_s));
        // What kinds of file there are is known to the system alone.
        set("XDG_DATA_DIRS", home.path(u"system"_s) + u":/usr/share"_s);
        set("XDG_CURRENT_DESKTOP", u"GNOME"_s);
        write(u"bin/reader"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.new\" && mv \"$0.new\" \"$0.told\"\n", true);
        write(u"studies/QX1 a.pdf"_s, "%PDF-1.4\n");
    }
    void TearDown() override {
        for (auto before = before_.cbegin(); before != before_.cend(); ++before)
            before->isNull() ? qunsetenv(before.key()) : qputenv(before.key(), *before);
    }

    void write(const QString& name, const QByteArray& content, bool program = false) {
        const QString path = home.path(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        if (program)
            file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    }

    /// The entry of an application that is started by the test's reader with these words.
    void install(const QString& name, const QByteArray& words, const QByteArray& more = {}) {
        write(u"data/applications/"_s + name, "[Desktop Entry]\nType=Application\nName=Reader\nExec=" +
                                                  home.path(u"bin/reader"_s).toUtf8() + ' ' + words + '\n' + more);
    }

    QString pdf() const { return home.path(u"studies/QX1 a.pdf"_s); }

    /// The first words that each application would be started with.
    QStringList found(const QString& path) const {
        QStringList words;
        for (const ProgramStart& start : DesktopApplications::startsFor(path))
            words << start.arguments.value(0);
        return words;
    }

private:
    QHash<const char*, QByteArray> before_;

    void set(const char* name, const QString& value) {
        before_.insert(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
        qputenv(name, value.toUtf8());
    }
};

TEST_F(Desktop, ACommandGetsThePathAsOneArgumentWhateverItHolds) {
    const QString path = u"/srv/a b/\"$(x)' %f;.pdf"_s;
    const QString address = u"file:///srv/a%20b/%22$(x)'%20%25f;.pdf"_s;
    const QString self = home.path(u"data/applications/r.desktop"_s);
    struct Case {
        QByteArray words;
        std::optional<QStringList> arguments;
    };
    const Case cases[] = {
        {"%f", QStringList{path}},
        {"--new-window %U", QStringList{u"--new-window"_s, address}},
        {"\"%f\"", QStringList{path}},
        {"--file=%F", QStringList{u"--file="_s + path}},
        {"", QStringList{path}},
        {"%i %c %k %f", QStringList{u"--icon"_s, u"book"_s, u"Reader"_s, self, path}},
        {"%d %m %f 100%%", QStringList{path, u"100%"_s}},
        {R"("a b" "say \\"hi\\"" "cost \\$5" "" %f)",
         QStringList{u"a b"_s, u"say \"hi\""_s, u"cost $5"_s, QString(), path}},
        {R"(one\stwo %f)", QStringList{u"one"_s, u"two"_s, path}},
        {"\"sh -c %f\"", std::nullopt},
        {"-c 'view %f'", std::nullopt},
        {"\"open %f", std::nullopt},
        {"%x %f", std::nullopt},
    };
    for (const Case& c : cases) {
        install(u"r.desktop"_s, c.words, "Icon=book\n");
        const std::optional<ProgramStart> start = startOf(self, path);
        EXPECT_EQ(start.has_value(), c.arguments.has_value()) << c.words.toStdString();
        if (start && c.arguments) {
            EXPECT_EQ(start->program, home.path(u"bin/reader"_s));
            EXPECT_EQ(start->arguments, *c.arguments) << c.words.toStdString();
        }
    }
}

TEST_F(Desktop, WhatCannotShowAFileIsNoApplicationForIt) {
    const QByteArray cases[] = {"Hidden=true\n", "Terminal=true\n", "TryExec=no-such-program\n"};
    for (const QByteArray& more : cases) {
        install(u"r.desktop"_s, "%f", more);
        EXPECT_FALSE(startOf(home.path(u"data/applications/r.desktop"_s), pdf())) << more.toStdString();
    }
    write(u"data/applications/r.desktop"_s, "[Desktop Entry]\nType=Link\nExec=sh %f\n");
    EXPECT_FALSE(startOf(home.path(u"data/applications/r.desktop"_s), pdf()));
    write(u"data/applications/r.desktop"_s, "[Other]\nx=1\n[Desktop Entry]\nType=Application\nExec=gone-program %f\n");
    EXPECT_FALSE(startOf(home.path(u"data/applications/r.desktop"_s), pdf()));
    EXPECT_FALSE(startOf(home.path(u"none.desktop"_s), pdf()));
}

TEST_F(Desktop, TheChosenApplicationComesFirstThenThoseThatTakeTheKindOfFile) {
    EXPECT_TRUE(found(pdf()).isEmpty()) << "nothing is installed";
    install(u"a.desktop"_s, "a %f", "MimeType=text/html;application/pdf;\n");
    install(u"b.desktop"_s, "b %f", "MimeType=application/pdf;\n");
    install(u"c.desktop"_s, "c %f");
    install(u"kde-d.desktop"_s, "d %f");
    EXPECT_EQ(found(pdf()), (QStringList{u"a"_s, u"b"_s})) << "without a list the entries themselves are read";
    write(u"data/applications/mimeinfo.cache"_s, "[MIME Cache]\napplication/pdf=b.desktop;gone.desktop;\n");
    EXPECT_EQ(found(pdf()), QStringList{u"b"_s});
    write(u"config/mimeapps.list"_s, "[Default Applications]\napplication/pdf=gone.desktop;c.desktop\n"
                                     "[Added Associations]\napplication/pdf=a.desktop;\n"
                                     "[Removed Associations]\napplication/pdf=b.desktop;\n");
    EXPECT_EQ(found(pdf()), (QStringList{u"c"_s, u"a"_s}));
    write(u"config/gnome-mimeapps.list"_s, "[Default Applications]\napplication/pdf=../../x.desktop;kde-d.desktop;\n");
    EXPECT_EQ(found(pdf()), (QStringList{u"d"_s, u"c"_s, u"a"_s})) << "the desktop's own list comes before all others";
    // A page is text too; a data set is neither.
    write(u"page.html"_s, "<!DOCTYPE html><html></html>");
    write(u"QX1.sav"_s, "$FL2");
    write(u"etc/mimeapps.list"_s,
          "[Default Applications]\ntext/plain=b.desktop;\napplication/octet-stream=a.desktop;\n");
    EXPECT_EQ(found(home.path(u"page.html"_s)), QStringList{u"b"_s});
    EXPECT_TRUE(found(home.path(u"QX1.sav"_s)).isEmpty());
    EXPECT_FALSE(DesktopApplications::open(home.path(u"QX1.sav"_s)));
}

TEST_F(Desktop, TheApplicationIsStartedOnTheFileAndNotWaitedFor) {
    install(u"b.desktop"_s, "--view %f", "MimeType=application/pdf;\n");
    write(u"bin/reader"_s, "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.new\" && mv \"$0.new\" \"$0.told\"\nexec sleep 5\n",
          true);
    QDeadlineTimer atOnce(4000), told(20000);
    EXPECT_TRUE(DesktopApplications::open(pdf()));
    EXPECT_FALSE(atOnce.hasExpired());
    QFile record(home.path(u"bin/reader.told"_s));
    while (!record.exists() && !told.hasExpired())
        QThread::msleep(10);
    ASSERT_TRUE(record.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(record.readAll()), u"--view\n"_s + pdf() + u'\n');
}

} // namespace
