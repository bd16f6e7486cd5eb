#include "printing/paperNames.h"

#include <QLocale>
#include <QSizeF>
#include <QStringList>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int folio = 14;

} // namespace

const QStringList& Paper::names() {
    static const QStringList all = {u"Letter"_s,
                                    u"LetterSmall"_s,
                                    u"Tabloid"_s,
                                    u"Ledger"_s,
                                    u"Legal"_s,
                                    u"Statement"_s,
                                    u"Executive"_s,
                                    u"A3"_s,
                                    u"A4"_s,
                                    u"A4Small"_s,
                                    u"A5"_s,
                                    u"B4"_s,
                                    u"B5"_s,
                                    u"Folio"_s,
                                    u"Quarto"_s,
                                    u"10x14"_s,
                                    u"11x17"_s,
                                    u"Note"_s,
                                    u"Env9"_s,
                                    u"Env10"_s,
                                    u"Env11"_s,
                                    u"Env12"_s,
                                    u"Env14"_s,
                                    u"CSheet"_s,
                                    u"DSheet"_s,
                                    u"ESheet"_s,
                                    u"EnvDL"_s,
                                    u"EnvC3"_s,
                                    u"EnvC4"_s,
                                    u"EnvC5"_s,
                                    u"EnvC6"_s,
                                    u"EnvC65"_s,
                                    u"EnvB4"_s,
                                    u"EnvB5"_s,
                                    u"EnvB6"_s,
                                    u"EnvItaly"_s,
                                    u"EnvMonarch"_s,
                                    u"EnvPersonal"_s,
                                    u"FanfoldUS"_s,
                                    u"FanfoldStdGerman"_s,
                                    u"FanfoldLglGerman"_s};
    return all;
}

QString Paper::name(int code) {
    return code >= 1 && code <= names().size() ? names()[code - 1] : u"(Default Paper Size)"_s;
}

int Paper::code(const QString& name) {
    const auto found = std::ranges::find_if(
        names(), [&](const QString& known) { return known.compare(name, Qt::CaseInsensitive) == 0; });
    return found == names().end() ? 0 : static_cast<int>(found - names().begin()) + 1;
}

QPageSize Paper::size(int code) {
    if (code < 1 || code > names().size())
        return {};
    // Qt's own folio is another one, which no printer reports under this code.
    if (code == folio)
        return QPageSize(QSizeF(8.5, 13), QPageSize::Inch, name(folio), QPageSize::ExactMatch);
    return QPageSize(QPageSize::id(code));
}

int Paper::code(const QPageSize& paper) {
    if (!paper.isValid())
        return 0;
    // A sheet of this size is the better guess than endless paper.
    if (paper.sizePoints() == size(folio).sizePoints())
        return folio;
    const int known = QPageSize::windowsId(paper.id());
    return known <= names().size() ? std::max(known, 0) : 0;
}

int Paper::byLocale(const QLocale& locale) {
    // The territories to which the common locale data give Letter.
    static const QLocale::Territory withLetter[] = {
        QLocale::Belize,      QLocale::Canada,     QLocale::Chile,        QLocale::Colombia,  QLocale::CostaRica,
        QLocale::ElSalvador,  QLocale::Guatemala,  QLocale::Mexico,       QLocale::Nicaragua, QLocale::Panama,
        QLocale::Philippines, QLocale::PuertoRico, QLocale::UnitedStates, QLocale::Venezuela};
    return std::ranges::find(withLetter, locale.territory()) == std::end(withLetter) ? a4 : letter;
}

int Paper::byLocale() {
    return byLocale(QLocale::system());
}
