#include "search/HitList.h"

#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"
#include "platform/dao/Value.h"

#include <algorithm>
#include <cstring>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype blockBytes = 1 << 20;

QChar letterOf(HitList::Kind kind) {
    switch (kind) {
    case HitList::Kind::Name:
        return u'S';
    case HitList::Kind::Description:
        return u'B';
    case HitList::Kind::Variable:
        break;
    }
    return u'V';
}

} // namespace

QString variableId(const QString& variable, const QString& study) {
    return variable + u"@@"_s + study;
}

int HitList::Hit::icon() const {
    if (kind == Kind::Variable)
        return 5;
    return 2 * view + (kind == Kind::Name ? 4 : 5);
}

void HitList::clear() {
    blocks_.clear();
    places_.clear();
    ways_.clear();
}

int HitList::addWay(const QString& way) {
    ways_.push_back(way);
    return static_cast<int>(ways_.size()) - 1;
}

void HitList::add(Kind kind, int view, const QString& key, const QString& text, int way) {
    const QByteArray keyBytes = key.toUtf8(), textBytes = text.toUtf8();
    const Head head{kind, static_cast<quint8>(view), way, static_cast<qint32>(keyBytes.size()),
                    static_cast<qint32>(textBytes.size())};
    const qsizetype bytes = static_cast<qsizetype>(sizeof head) + keyBytes.size() + textBytes.size();
    // A block never grows beyond what was reserved for it, so that nothing is copied to make room.
    if (blocks_.empty() || blocks_.back().size() + bytes > blocks_.back().capacity()) {
        blocks_.emplace_back();
        blocks_.back().reserve(std::max(blockBytes, bytes));
    }
    QByteArray& block = blocks_.back();
    places_.push_back({static_cast<quint32>(blocks_.size() - 1), static_cast<quint32>(block.size())});
    block.append(reinterpret_cast<const char*>(&head), sizeof head).append(keyBytes).append(textBytes);
}

const char* HitList::bytesAt(int hit) const {
    const Place& place = places_[static_cast<size_t>(hit)];
    return blocks_[place.block].constData() + place.offset;
}

HitList::Head HitList::headAt(int hit) const {
    Head head;
    std::memcpy(&head, bytesAt(hit), sizeof head);
    return head;
}

HitList::Hit HitList::at(int hit) const {
    const Head head = headAt(hit);
    const char* const bytes = bytesAt(hit) + sizeof head;
    const QChar view = head.view > 0 ? viewLetter(head.view) : viewLetter(1);
    return {head.kind, head.view, QString(letterOf(head.kind)) + view + QString::fromUtf8(bytes, head.keyBytes),
            QString::fromUtf8(bytes + head.keyBytes, head.textBytes),
            head.way >= 0 ? ways_[static_cast<size_t>(head.way)] : QString()};
}

QString HitList::text(int hit) const {
    const Head head = headAt(hit);
    return QString::fromUtf8(bytesAt(hit) + sizeof head + head.keyBytes, head.textBytes);
}

std::vector<int> HitList::sorted(By by, bool descending) const {
    std::vector<int> order(places_.size());
    std::iota(order.begin(), order.end(), 0);
    if (by == By::Found) {
        if (descending)
            std::ranges::reverse(order);
        return order;
    }
    // Ways are few, and each stands for many hits.
    std::vector<int> ranks(ways_.size());
    if (by == By::Way) {
        std::vector<int> ways(ways_.size());
        std::iota(ways.begin(), ways.end(), 0);
        const auto named = [this](int i) -> const QString& { return ways_[static_cast<size_t>(i)]; };
        std::ranges::stable_sort(ways, [&](int a, int b) { return dao::compareTexts(named(a), named(b)) < 0; });
        for (size_t i = 0; i < ways.size(); ++i)
            ranks[static_cast<size_t>(ways[i])] = i > 0 && dao::compareTexts(named(ways[i - 1]), named(ways[i])) == 0
                                                      ? ranks[static_cast<size_t>(ways[i - 1])]
                                                      : static_cast<int>(i);
    }
    const auto compare = [&](int a, int b) {
        const Head first = headAt(a), second = headAt(b);
        if (by == By::Way)
            return (first.way < 0 ? -1 : ranks[static_cast<size_t>(first.way)]) -
                   (second.way < 0 ? -1 : ranks[static_cast<size_t>(second.way)]);
        return dao::compareUtf8(bytesAt(a) + sizeof first + first.keyBytes, first.textBytes,
                                bytesAt(b) + sizeof second + second.keyBytes, second.textBytes);
    };
    std::ranges::stable_sort(order, [&](int a, int b) { return descending ? compare(a, b) > 0 : compare(a, b) < 0; });
    return order;
}
