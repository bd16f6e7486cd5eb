#include "charts/StoredGraph.h"
#include "platform/system/NumberFormat.h"

#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

class StoredGraphTest : public testing::Test {
protected:
    ~StoredGraphTest() override { NumberFormat::setDecimalSeparator(u'.'); }
};

} // namespace

TEST_F(StoredGraphTest, IsWrittenInThePlatformsNumbersAndReadInEither) {
    StoredGraph graph;
    graph.title = u"Wahl \"2018\", N = 3"_s;
    graph.width = 10205;
    graph.height = 6236.22F;
    graph.jpeg = QByteArray("\xFF\xD8\0x", 4);
    NumberFormat::setDecimalSeparator(u',');
    EXPECT_EQ(BuildGraphString(graph), u"\"Wahl \"2018\", N = 3\";10205;6236,22;\"\";"_s);
    graph.explanation = u"1 = \"ja\";\r\n2 = \"nein\""_s;
    for (const QChar separator : {u',', u'.'}) {
        NumberFormat::setDecimalSeparator(separator);
        const QString text = BuildGraphString(graph);
        NumberFormat::setDecimalSeparator(u'.');
        const std::optional<StoredGraph> read = readStoredGraph(memoOf(graph.jpeg), text);
        ASSERT_TRUE(read);
        EXPECT_EQ(read->title, u"Wahl "_s) << "up to its first quote";
        EXPECT_EQ(read->width, 10205);
        EXPECT_EQ(read->height, 6236.22F);
        EXPECT_EQ(read->explanation, graph.explanation) << "its own \"; reads back";
        EXPECT_EQ(read->jpeg, graph.jpeg);
    }
    EXPECT_EQ(readGraphLayout(u"\"t\";1,5E+03;9;\"1 = \"ja\", 2; 3\";"_s).explanation, u"1 = \"ja\", 2; 3"_s);
    EXPECT_EQ(readGraphLayout(u"\"t\";1,5E+03;9;\"\";"_s).width, 1500);
}

TEST_F(StoredGraphTest, ADamagedLayoutKeepsWhatStandsInFrontOfTheDamage) {
    const QString whole = u"\"t\";100;200,5;\"e\";"_s;
    for (qsizetype size = 0; size < whole.size(); ++size) {
        bool read = true;
        const StoredGraph graph = readGraphLayout(whole.first(size), &read);
        EXPECT_FALSE(read) << size;
        EXPECT_EQ(graph.title, size < 4 ? QString() : u"t"_s);
        EXPECT_FALSE(readStoredGraph(u"x"_s, whole.first(size)));
    }
    EXPECT_FALSE(readStoredGraph(QString(), whole));
    for (const QString& size : {u"-1"_s, u"1E+300"_s, u"1E+07"_s, u"x"_s, QString(), u"0x10"_s, u"inf"_s})
        EXPECT_FALSE(readStoredGraph(u"x"_s, u"\"t\";"_s + size + u";2;\"\";"_s)) << size.toStdString();
    std::mt19937 random(3);
    for (int times = 0; times < 20'000; ++times) {
        QString text = whole;
        for (int changes = 0; changes < 3; ++changes)
            text[static_cast<qsizetype>(random() % static_cast<size_t>(text.size()))] = u"\";09,E"[random() % 6];
        EXPECT_LE(readGraphLayout(text).width, 1e6F);
    }
}

TEST_F(StoredGraphTest, BytesAreOneCharacterEachAlsoWhereWindowsHasMadeOthersOfThem) {
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    EXPECT_EQ(memoOf(all).size(), 256);
    EXPECT_EQ(bytesOf(memoOf(all)), all);
    // The bytes 80 to 9F as iconv reads them from Windows-1252; the five that it has no character for stay.
    const QString windows = u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ"_s;
    EXPECT_EQ(bytesOf(windows), all.sliced(0x80, 0x20));
    EXPECT_EQ(bytesOf(u"\u0080€"_s), QByteArray("\x80\x80"));
    for (const QString& text : {u"Ā"_s, u"\uFFFD"_s, u"a😀"_s})
        EXPECT_EQ(bytesOf(text), std::nullopt) << text.toStdString();
}
