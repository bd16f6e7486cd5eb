#include "analysis/request/MissingChoice.h"

#include "app/globals.h"
#include "platform/system/NumberFormat.h"
#include "tables/missing.h"

using namespace Qt::StringLiterals;

namespace {

MissingChoice::Last lastChoice;

double numberIn(const QString& box) {
    return dao::textToNumber(box).value_or(0);
}

/// A number as it prints; either separator stands.
bool isPlainNumber(const QString& box) {
    const std::optional<double> number = dao::textToNumber(box);
    if (!number)
        return false;
    QString typed = box.trimmed();
    typed.replace(NumberFormat::decimalSeparator() == u',' ? u'.' : u',', NumberFormat::decimalSeparator());
    return typed == NumberFormat::plain(*number);
}

bool isEmptyOrNumber(const QString& box) {
    return box.isEmpty() || isPlainNumber(box);
}

} // namespace

const MissingChoice::Last& MissingChoice::last() {
    return lastChoice;
}

MissingChoice::MissingChoice(const QString& sMissing) : Option2(Shape::Values) {
    const MissingDefinition definition(sMissing);
    const std::vector<double> numbers = definition.numbers();
    const auto text = [&](size_t i) { return i < numbers.size() ? NumberFormat::plain(numbers[i]) : QString(); };
    if (definition.isRange()) {
        Option2 = Shape::Range;
        Rangevon = text(0);
        Rangebis = text(1);
        EinzelWert = text(2);
    } else {
        EinzelWert = text(0);
        Rangevon = text(1);
        Rangebis = text(2);
    }
}

/// @return the numbers of the boxes that fail, as they stand behind the message; empty if all is well
QString MissingChoice::failedCheck() const {
    if (*Option2 == Shape::Values) {
        if (!isPlainNumber(EinzelWert))
            return u" 1"_s;
        if (!isEmptyOrNumber(Rangevon))
            return u" 2"_s;
        return isEmptyOrNumber(Rangebis) ? QString() : u" 3"_s;
    }
    if (!isEmptyOrNumber(EinzelWert) || !isPlainNumber(Rangevon))
        return u" 1, 2"_s;
    return isPlainNumber(Rangebis) ? QString() : u" 3"_s;
}

QString MissingChoice::definition() const {
    const QString single = NumberFormat::plain(numberIn(EinzelWert));
    if (*Option2 == Shape::Range) {
        const QString range =
            NumberFormat::plain(numberIn(Rangevon)) + u" thru "_s + NumberFormat::plain(numberIn(Rangebis));
        return EinzelWert.isEmpty() ? range : range + u", "_s + single;
    }
    // A blank more than the one behind each comma would count as a third value.
    QString values = single;
    for (const QString& box : {Rangevon, Rangebis})
        if (!box.isEmpty())
            values += u", "_s + box.trimmed();
    return values;
}

std::optional<MissingAnswer> MissingChoice::cmdOK(QString& fault) const {
    const bool settings = Option1 == Calculation::WithSettings;
    if (settings && !Option2) {
        fault = TranslateText(u"Bitte auswählen!"_s);
        return std::nullopt;
    }
    if (const QString boxes = settings ? failedCheck() : QString(); !boxes.isEmpty()) {
        fault = TranslateText(u"Bitte einen gültigen Wert eingeben!"_s) + boxes;
        return std::nullopt;
    }
    lastChoice.kind = !settings ? 0 : *Option2 == Shape::Values ? 1 : 2;
    lastChoice.EinzelWert = numberIn(EinzelWert);
    lastChoice.Rangevon = numberIn(Rangevon);
    lastChoice.Rangebis = numberIn(Rangebis);
    return MissingAnswer{settings ? definition() : QString(), settings};
}
