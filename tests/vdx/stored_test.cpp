#include "platform/dao/DBEngine.h"
#include "vdx/VdxRunner.h"

#include <QBuffer>
#include <QFile>
#include <QImage>

using namespace Qt::StringLiterals;

namespace {

class VdxStored : public VdxArchive {
protected:
    /// Puts texts into fields of V5.
    void keep(std::initializer_list<std::pair<const char*, dao::Value>> fields) {
        const dao::DatabasePtr database = dao::DBEngine::instance().Workspaces(0).OpenDatabase(catalogue_);
        {
            const dao::RecordsetPtr row = database->OpenRecordset(
                u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = 'V5'"_s);
            row->Edit();
            for (const auto& [field, value] : fields)
                row->setValue(QString::fromLatin1(field), value);
            row->Update();
        }
        database->Close();
    }
    VdxResult stored(const QStringList& more = {}) {
        return runVdx(QStringList{u"stored"_s, catalogue_, u"QX1919"_s, u"V5"_s} + more);
    }
};

} // namespace

TEST_F(VdxStored, PrintsTheTableAsItWasStored) {
    keep({{"dt_Table", u"\"Title, (N=3)\";Xtab;Z;N;2;3;\"\";\"\";\"1\";\"\";\"a \"b\"\";\"2 (5,0%)\";V3;"_s}});
    const VdxResult text = stored({u"--language"_s, u"en"_s});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(text.out.contains(u"Title, (N=3)"_s) && text.out.contains(u"a \"b\""_s)) << text.out.toStdString();
    EXPECT_TRUE(
        text.out.contains(u"Stored table, not computed again · Study: QX1919 · V5: Zufriedenheit · Weight: V3"_s))
        << text.out.toStdString();
    EXPECT_TRUE(text.out.contains(u"row percent"_s));
    EXPECT_TRUE(stored({u"--table"_s, u"--format"_s, u"csv"_s, u"--plain"_s, u"--decimal"_s, u"point"_s})
                    .out.contains(u"1,\"2 (5,0%)\"\r\n"_s));
    EXPECT_TRUE(stored({u"--format"_s, u"json"_s}).out.contains(u"\"values\":\"row\""_s));
}

TEST_F(VdxStored, WritesThePicturesOwnBytesOrNothing) {
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QImage picture(40, 30, QImage::Format_RGB32);
    picture.fill(0x336699);
    ASSERT_TRUE(picture.save(&buffer, "jpeg", 100));
    const QString path = home_.path(u"chart.jpg"_s);
    keep({{"dt_Graph", QString::fromLatin1(jpeg)}, {"dt_GraphLayout", u"\"T\";600;450;\"a = 1\r\nb = 2\";"_s}});
    const VdxResult written = stored({u"--graph"_s, path});
    EXPECT_EQ(written.status, 0) << written.err.toStdString();
    EXPECT_EQ(written.out, u"T\na = 1\nb = 2\n"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), jpeg);

    for (const QByteArray& damaged : {jpeg.first(jpeg.size() / 2), QByteArray("<svg/>")}) {
        keep({{"dt_Graph", QString::fromLatin1(damaged)}});
        const VdxResult refused = stored({u"--graph"_s, home_.path(u"damaged.jpg"_s)});
        EXPECT_EQ(refused.status, 1);
        EXPECT_FALSE(refused.err.isEmpty());
        EXPECT_FALSE(QFile::exists(home_.path(u"damaged.jpg"_s)));
    }
    keep({{"dt_Graph", QString::fromLatin1(jpeg)}});
    EXPECT_EQ(stored({u"--graph"_s, home_.path(u"none/chart.jpg"_s)}).status, 1);
}

TEST_F(VdxStored, SaysWhatIsNotThere) {
    const auto refused = [](const VdxResult& result) { return result.status == 1 && result.out.isEmpty(); };
    EXPECT_TRUE(refused(stored()));
    EXPECT_TRUE(refused(stored({u"--graph"_s, home_.path(u"x.jpg"_s)})));
    EXPECT_TRUE(refused(runVdx({u"stored"_s, catalogue_, u"QX1919"_s, u"V99"_s})));
    EXPECT_TRUE(refused(runVdx({u"stored"_s, catalogue_, u"QX9"_s, u"V5"_s})));
    EXPECT_EQ(stored({u"--graph"_s, u"x.jpg"_s, u"--table"_s}).status, 2);
    keep({{"dt_Table", u"\"T\";Freq;;;9;9;\"x\";;"_s}});
    EXPECT_TRUE(refused(stored()));
}
