#include "tables/labels.h"

using namespace Qt::StringLiterals;

std::optional<QString> labelOf(dao::Recordset& labels, const dao::Value& value, const QString& further) {
    if (labels.Bof() && labels.Eof())
        return std::nullopt;
    QString number = value.toText().trimmed();
    number.replace(u',', u'.');
    const bool emptyCode = value.isNull() || !value.isNumeric() || number == "-1.79769313486232E+308"_L1;
    labels.FindFirst(emptyCode ? u"dt_Value like ''"_s + further : u"dt_Value = "_s + number + further);
    if (labels.NoMatch())
        return std::nullopt;
    return labels.text(u"dt_Label"_s);
}
