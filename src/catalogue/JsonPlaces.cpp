#include "catalogue/JsonPlaces.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace JsonPlaces {

namespace {

struct Level {
    QString path;
    bool array = false;
    bool expectsMember = true; ///< of an object: the next text is a member's name
    int index = 0;
    QSet<QString> members;
};

QString unescaped(const QByteArray& literal) {
    if (!literal.contains('\\'))
        return QString::fromUtf8(literal.mid(1, literal.size() - 2));
    return QJsonDocument::fromJson('[' + literal + ']').array().first().toString();
}

/// Walks over a valid text and reports every member and element: its path, its line, and whether its object
/// had it before.
class Walk {
public:
    using Visitor = std::function<bool(const QString& path, int line, bool repeated)>;

    Walk(const QByteArray& json, Visitor visitor) : json_(json), visitor_(std::move(visitor)) {}

    void run() {
        for (at_ = 0; at_ < json_.size() && goOn_; ++at_)
            take(json_[at_]);
    }

private:
    const QByteArray& json_;
    Visitor visitor_;
    std::vector<Level> levels_;
    QString path_; ///< of the value that comes next
    qsizetype at_ = 0;
    int line_ = 1;
    bool goOn_ = true;

    void take(char c) {
        switch (c) {
        case '\n':
            ++line_;
            break;
        case '{':
        case '[':
            element();
            levels_.push_back({path_, c == '[', c == '{', 0, {}});
            break;
        case '}':
        case ']':
            levels_.pop_back();
            break;
        case ',':
            levels_.back().expectsMember = !levels_.back().array;
            break;
        case '"':
            text();
            break;
        case ' ':
        case '\t':
        case '\r':
        case ':':
            break;
        default:
            scalar();
        }
    }

    /// In an array every value has a place of its own; in an object the member was reported for it.
    void element() {
        if (levels_.empty() || !levels_.back().array)
            return;
        path_ = u"%1[%2]"_s.arg(levels_.back().path).arg(levels_.back().index++);
        goOn_ = visitor_(path_, line_, false);
    }

    void text() {
        const qsizetype start = at_;
        for (++at_; json_[at_] != '"'; ++at_)
            if (json_[at_] == '\\')
                ++at_;
        if (levels_.empty() || levels_.back().array || !levels_.back().expectsMember) {
            element();
            return;
        }
        Level& object = levels_.back();
        object.expectsMember = false;
        const QString name = unescaped(json_.mid(start, at_ - start + 1));
        path_ = object.path.isEmpty() ? name : object.path + u'.' + name;
        const bool repeated = object.members.contains(name);
        object.members.insert(name);
        goOn_ = visitor_(path_, line_, repeated);
    }

    void scalar() {
        element();
        while (at_ + 1 < json_.size() && !QByteArrayView(",]} \t\r\n").contains(json_[at_ + 1]))
            ++at_;
    }
};

} // namespace

int lineOf(const QByteArray& json, const QString& path) {
    int best = 1;
    qsizetype bestLength = 0;
    Walk(json, [&](const QString& here, int line, bool) {
        const bool around = path.startsWith(here) &&
                            (here.size() == path.size() || path[here.size()] == u'.' || path[here.size()] == u'[');
        if (around && here.size() > bestLength) {
            best = line;
            bestLength = here.size();
        }
        return bestLength < path.size();
    }).run();
    return best;
}

QString repeatedMember(const QByteArray& json) {
    QString found;
    Walk(json, [&](const QString& path, int, bool repeated) {
        if (repeated)
            found = path;
        return !repeated;
    }).run();
    return found;
}

int lineAt(const QByteArray& json, qsizetype offset) {
    return 1 + static_cast<int>(json.first(std::min(offset, json.size())).count('\n'));
}

} // namespace JsonPlaces
