#include "ImportFixture.h"
#include "catalogue/BuildFolder.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QFile::Permissions owners = QFile::ReadOwner | QFile::WriteOwner;
const QFile::Permissions groups = owners | QFile::ReadGroup | QFile::WriteGroup;

/// Without what the current user may do, which depends on who runs the test.
QFile::Permissions rightsOf(const QString& path) {
    return QFile::permissions(path) & QFile::Permissions(0x7077);
}

void make(const QString& path, QFile::Permissions rights = {}) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
    file.close();
    if (rights)
        file.setPermissions(rights);
}

} // namespace

class FileRights : public ImportFixture {};

TEST_F(FileRights, ImportsGiveNewCaseFilesTheCataloguesAndKeepThoseOfOldOnes) {
    const QString file = home.path(u"wave.sav"_s);
    SurveyFileMaker maker;
    maker.number("V1");
    maker.number("V2");
    maker.write(file, {{1.0, 2.0}});
    ASSERT_EQ(outcome(request(file, u"QX1"_s)), QString());
    ASSERT_TRUE(QFile::setPermissions(catalogue, owners));
    ASSERT_TRUE(QFile::setPermissions(home.path(u"QX1.mdb"_s), groups));
    ImportRequest wish = request(file, u"QX1"_s);
    wish.settings.replace = true;
    wish.settings.furtherTables = {{{u"V2"_s}, true}};
    ASSERT_EQ(outcome(wish), QString());
    EXPECT_EQ(rightsOf(home.path(u"QX1.mdb"_s)), groups);
    EXPECT_EQ(rightsOf(home.path(u"QX1-2.mdb"_s)), owners);
    EXPECT_EQ(rightsOf(catalogue), owners);
}

TEST_F(FileRights, ABuiltArchiveTakesThoseOfTheOneThatItReplaces) {
    make(catalogue, owners);
    make(home.path(u"QX1.mdb"_s), groups);
    {
        archive::BuildFolder folder(catalogue);
        for (const QString& name : {u"my.mdb"_s, u"QX1.mdb"_s, u"QX2.mdb"_s})
            make(folder.files() + u'/' + name);
        EXPECT_EQ(rightsOf(folder.files()), owners | QFile::ExeOwner) << "nobody else looks in before";
        folder.moveIntoPlace({u"QX1.mdb"_s});
    }
    EXPECT_EQ(rightsOf(catalogue), owners);
    EXPECT_EQ(rightsOf(home.path(u"QX1.mdb"_s)), groups);
    EXPECT_EQ(rightsOf(home.path(u"QX2.mdb"_s)), owners) << "a new case file";
}
