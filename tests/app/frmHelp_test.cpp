#include "app/frmMain.h"
#include "app/globals.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

class HelpPages : public WindowTest {
protected:
    const QDir resources{QStringLiteral(VARIDEX_SOURCE_ROOT) + u"/resources"_s};

    QString page(const QString& language) const {
        QFile file(resources.filePath(u"help/Varidex-%1.html"_s.arg(language)));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll());
    }
    static QStringList all(const QString& text, const QString& pattern) {
        QStringList found;
        for (auto match = QRegularExpression(pattern).globalMatch(text); match.hasNext();)
            found << match.next().captured(1).simplified();
        return found;
    }
    /// What a reader sees of a caption, without regard to case.
    static QString seen(QString caption) {
        static const QRegularExpression mnemonic(u"&|\\.\\.\\.$|:$"_s);
        return caption.remove(mnemonic).toLower();
    }
    QSet<QString> captions(int column) const {
        QSet<QString> result;
        for (const QString& name : QDir(resources.filePath(u"controls"_s)).entryList({u"*.tsv"_s})) {
            QFile file(resources.filePath(u"controls/"_s + name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            for (const QString& row : QString::fromUtf8(file.readAll()).split(u'\n'))
                if (row.section(u'\t', 3, 3) == u"Caption")
                    result << seen(row.section(u'\t', column, column));
        }
        return result;
    }
};

} // namespace

TEST_F(HelpPages, OpenInTheProgramsLanguageElseTheAssignedFileElseABox) {
    const QDir folder(Paths::applicationFolder());
    frmMain main;
    main.mnuHelpContents_Click();
    EXPECT_EQ(asker.lastText(),
              u"Hilfeinhalt konnte nicht angezeigt werden. Dieser Anwendung ist keine Hilfedatei zugeordnet."_s);
    main.load();
    main.show();
    settle();
    EXPECT_TRUE(main.findChild<QAction*>(u"mnuHelpContents"_s)->isEnabled()) << "also without a catalogue";
    main.mnuHelpContents_Click();
    const QString assigned = Paths::join(Paths::applicationFolder(), u"Varidex.chm"_s);
    EXPECT_EQ(asker.lastText(),
              u"Hilfeinhalt konnte nicht angezeigt werden. Datei nicht gefunden. ("_s + assigned + u')');
    for (const QString& name : {u"Varidex.chm"_s, u"Varidex-de.html"_s, u"Varidex-en.html"_s})
        QFile::copy(resources.filePath(u"help/Varidex-de.html"_s), folder.filePath(name));
    main.mnuHelpContents_Click();
    setLanguage(1);
    main.mnuHelpContents_Click();
    QFile::remove(folder.filePath(u"Varidex-en.html"_s));
    main.mnuHelpContents_Click();
    EXPECT_EQ(asker.opened, (QStringList{folder.filePath(u"Varidex-de.html"_s), folder.filePath(u"Varidex-en.html"_s),
                                         folder.filePath(u"Varidex.chm"_s)}));
    EXPECT_TRUE(asker.boxes.back().details.isEmpty());
    asker.opens = false;
    main.mnuHelpContents_Click();
    EXPECT_TRUE(asker.boxes.back().details.startsWith(u"No program is set up to open the file:"_s));
}

// Captions change; a page that sends a reader to a button that is called otherwise is worse than none.
TEST_F(HelpPages, NameControlsAsTheyAreCalledAndHaveTheSameSectionsInBothLanguages) {
    int column = 5;
    for (const QString& language : {u"de"_s, u"en"_s}) {
        const QSet<QString> known = captions(column++);
        const QStringList named = all(page(language), u"<b>([^<]*)</b>"_s);
        EXPECT_GT(named.size(), 30);
        for (const QString& name : named)
            EXPECT_TRUE(known.contains(name.toLower())) << language.toStdString() << ": " << name.toStdString();
    }
    const QString sections = u"<h2 id=\"([^\"]*)\""_s, links = u"href=\"#([^\"]*)\""_s;
    EXPECT_EQ(all(page(u"de"_s), sections), all(page(u"en"_s), sections));
    EXPECT_EQ(all(page(u"de"_s), links), all(page(u"de"_s), sections));
    EXPECT_EQ(all(page(u"en"_s), links), all(page(u"en"_s), sections));
}
