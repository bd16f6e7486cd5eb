#include "search/termPlaces.h"

#include "platform/dao/TextOrder.h"
#include "platform/dao/Value.h"

#include <QStringMatcher>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What stands between two "*" of a term: a text, or places of which some take several characters.
class Piece {
public:
    struct Place {
        enum class Takes { Letter, Any, Digit, List } takes = Takes::Letter;
        char32_t letter = 0;
        QString list; ///< with its brackets
    };

    explicit Piece(std::vector<Place> places) : places_(std::move(places)) {
        if (std::ranges::any_of(places_, [](const Place& one) { return one.takes != Place::Takes::Letter; }))
            return;
        QString letters;
        for (const Place& place : places_)
            letters += QString::fromUcs4(&place.letter, 1);
        plain_ = QStringMatcher(letters);
    }

    /// The first stretch from `from` on; length 0 if there is none.
    TermPlace find(const QString& folded, qsizetype from) const {
        if (!plain_.pattern().isEmpty()) {
            const qsizetype found = plain_.indexIn(folded, from);
            return found < 0 ? TermPlace{} : TermPlace{found, plain_.pattern().size()};
        }
        for (qsizetype start = from; start < folded.size();) {
            if (const qsizetype end = endAt(folded, start); end > start)
                return {start, end - start};
            dao::takeCodePoint(folded, start);
        }
        return {};
    }

private:
    std::vector<Place> places_;
    QStringMatcher plain_;

    qsizetype endAt(const QString& folded, qsizetype at) const {
        for (const Place& place : places_) {
            if (at >= folded.size())
                return -1;
            const qsizetype begin = at;
            const char32_t letter = dao::takeCodePoint(folded, at);
            if (!takes(place, letter, QStringView(folded).mid(begin, at - begin)))
                return -1;
        }
        return at;
    }

    static bool takes(const Place& place, char32_t letter, QStringView same) {
        switch (place.takes) {
        case Place::Takes::Any:
            return true;
        case Place::Takes::Digit:
            return letter >= U'0' && letter <= U'9';
        case Place::Takes::List:
            return dao::matchesPattern(same, place.list);
        case Place::Takes::Letter:
            break;
        }
        return letter == place.letter;
    }
};

/// A list in brackets that begins at `at`, which moves behind it. @return false if it doesn't end
bool takeList(const QString& term, qsizetype& at, Piece::Place& place) {
    const qsizetype end = term.indexOf(u']', at);
    if (end < 0)
        return false;
    place.takes = Piece::Place::Takes::List;
    place.list = term.mid(at, end + 1 - at);
    at = end + 1;
    // "[*]" is how a wildcard itself is looked for.
    if (const QList<uint> letters = place.list.mid(1, place.list.size() - 2).toUcs4();
        letters.size() == 1 && letters[0] != U'!') {
        place.takes = Piece::Place::Takes::Letter;
        place.letter = dao::foldCase(letters[0]);
    }
    return true;
}

/// The pieces of a term; none for one that LIKE refuses.
std::vector<Piece> piecesOf(QString term) {
    term.replace(u"''"_s, u"'"_s);
    std::vector<Piece> pieces;
    std::vector<Piece::Place> places;
    const auto close = [&] {
        if (!places.empty())
            pieces.emplace_back(std::exchange(places, {}));
    };
    for (qsizetype at = 0; at < term.size();) {
        Piece::Place place;
        if (term[at] == u'[') {
            if (!takeList(term, at, place))
                return {};
            places.push_back(place);
            continue;
        }
        const char32_t letter = dao::takeCodePoint(term, at);
        if (letter == U'*') {
            close();
            continue;
        }
        place.takes = letter == U'?'   ? Piece::Place::Takes::Any
                      : letter == U'#' ? Piece::Place::Takes::Digit
                                       : Piece::Place::Takes::Letter;
        place.letter = dao::foldCase(letter);
        places.push_back(place);
    }
    close();
    return pieces;
}

void findAll(const QString& folded, const std::vector<Piece>& pieces, std::vector<TermPlace>& places) {
    std::vector<TermPlace> found;
    for (qsizetype from = 0; !pieces.empty();) {
        found.clear();
        for (const Piece& piece : pieces) {
            const TermPlace place = piece.find(folded, from);
            if (place.length == 0)
                return;
            found.push_back(place);
            from = place.start + place.length;
        }
        places.insert(places.end(), found.begin(), found.end());
    }
}

/// In order, with what lies upon another made one.
std::vector<TermPlace> united(std::vector<TermPlace> places) {
    std::ranges::sort(places, {}, &TermPlace::start);
    std::vector<TermPlace> united;
    for (const TermPlace& place : places) {
        if (!united.empty() && place.start < united.back().start + united.back().length)
            united.back().length = std::max(united.back().length, place.start + place.length - united.back().start);
        else
            united.push_back(place);
    }
    return united;
}

} // namespace

std::vector<TermPlace> termPlaces(const QString& text, const QString& term) {
    return termPlaces(text, QStringList{term});
}

std::vector<TermPlace> termPlaces(const QString& text, const QStringList& terms) {
    const QString folded = dao::foldedText(text);
    std::vector<TermPlace> places;
    if (folded.size() != text.size())
        return places;
    for (const QString& term : terms)
        findAll(folded, piecesOf(term), places);
    return united(std::move(places));
}

TermContext termContext(const QString& text, const QStringList& terms, int before, int behind) {
    std::vector<TermPlace> places = termPlaces(text, terms);
    qsizetype first = 0;
    for (const QString& term : terms)
        if (const std::vector<TermPlace> own = termPlaces(text, term); !own.empty()) {
            first = own.front().start;
            break;
        }
    // A word is not cut, unless it is longer than any word.
    constexpr qsizetype longestWord = 20;
    qsizetype start = std::max<qsizetype>(0, first - before);
    if (start > 0 && text[start - 1] != u' ')
        if (const qsizetype blank = text.indexOf(u' ', start);
            blank >= 0 && blank < std::min(first, start + longestWord))
            start = blank + 1;
    qsizetype end = std::min(text.size(), first + behind);
    if (end < text.size())
        if (const qsizetype blank = text.lastIndexOf(u' ', end); blank > std::max(first, end - longestWord))
            end = blank;
    TermContext context;
    const QString dots = start > 0 ? u"… "_s : QString();
    context.text = dots + text.mid(start, end - start) + (end < text.size() ? u" …"_s : QString());
    for (const TermPlace& place : places)
        if (place.start >= start && place.start < end)
            context.places.push_back({place.start - start + dots.size(), std::min(place.length, end - place.start)});
    return context;
}
