#include "tables/Descriptives.h"

using namespace Qt::StringLiterals;

/// What the choice of statistics is made of: titles, the selection as a number, the types that statistics
/// take.

const QStringList& titlesOf(Statistic statistic) {
    static const std::array<QStringList, statisticCount> titles{
        QStringList{u"Count"_s},
        {u"Minimum"_s},
        {u"Maximum"_s},
        {u"ArithmeticMean"_s},
        {u"StandardDeviation"_s},
        {u"ValidN"_s},
        {u"Range"_s},
        {u"Sum"_s},
        {u"Variance"_s},
        {u"Skewness"_s},
        {u"Kurtosis"_s},
        {u"Mode"_s},
        {u"Median"_s},
        {u"25%-Percentile"_s, u"50%-Percentile"_s, u"75%-Percentile"_s}};
    return titles[static_cast<size_t>(statistic)];
}

namespace {
int powerOf(size_t index) {
    return 2 << index;
}
} // namespace

int maskOf(const StatisticSelection& selection) {
    int mask = 0;
    for (size_t i = 0; i < selection.size(); ++i)
        mask += selection[i] ? powerOf(i) : 0;
    return mask;
}

StatisticSelection selectionOf(int mask) {
    StatisticSelection selection{};
    for (size_t i = selection.size(); i-- > 0;) {
        selection[i] = mask >= powerOf(i);
        mask -= selection[i] ? powerOf(i) : 0;
    }
    return selection;
}

QString fieldTypeName(int type, int attributes) {
    constexpr int fixedWidth = 1;
    constexpr int hyperlink = 0x8000;
    static const std::array<QString, 23> simple{
        u"Yes/No"_s,  u"Byte"_s,      u"Integer"_s, u"Long Integer"_s, u"Currency"_s,   u"Single"_s,
        u"Double"_s,  u"Date/Time"_s, u"Binary"_s,  u"Text"_s,         u"OLE Object"_s, u"Memo"_s,
        u""_s,        u""_s,          u"GUID"_s,    u"Big Integer"_s,  u"VarBinary"_s,  u"Char"_s,
        u"Numeric"_s, u"Decimal"_s,   u"Float"_s,   u"Time"_s,         u"Time Stamp"_s};
    static const std::array<QString, 9> complex{u"Attachment"_s,   u"Complex Byte"_s,    u"Complex Integer"_s,
                                                u"Complex Long"_s, u"Complex Single"_s,  u"Complex Double"_s,
                                                u"Complex GUID"_s, u"Complex Decimal"_s, u"Complex Text"_s};
    constexpr int firstComplex = 101;
    if (type == dao::dbLong && (attributes & dao::dbAutoIncrField) != 0)
        return u"AutoNumber"_s;
    if (type == dao::dbText && (attributes & fixedWidth) != 0)
        return u"Text (fixed width)"_s;
    if (type == dao::dbMemo && (attributes & hyperlink) != 0)
        return u"Hyperlink"_s;
    QString name;
    if (type >= 1 && type <= static_cast<int>(simple.size()))
        name = simple[static_cast<size_t>(type - 1)];
    else if (type >= firstComplex && type < firstComplex + static_cast<int>(complex.size()))
        name = complex[static_cast<size_t>(type - firstComplex)];
    return name.isEmpty() ? u"Field type %1 unknown"_s.arg(type) : name;
}

bool isStatisticField(const dao::Field& field) {
    static const QStringList numeric{u"Integer"_s,  u"Long Integer"_s, u"Numeric"_s,
                                     u"Currency"_s, u"Single"_s,       u"Double"_s};
    return numeric.contains(fieldTypeName(field.Type, field.Attributes));
}
