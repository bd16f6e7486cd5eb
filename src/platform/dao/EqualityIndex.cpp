#include "platform/dao/EqualityIndex.h"

#include "platform/dao/SqliteValue.h"
#include "platform/dao/TextOrder.h"

#include <algorithm>

namespace dao {

namespace {

template<typename Hash, typename Key>
void addFirst(Hash& hash, const Key& key, quint32 place) {
    if (!hash.contains(key)) {
        hash.insert(key, place);
    }
}

template<typename Hash, typename Key>
void takeEarlier(std::optional<size_t>& found, const Hash& hash, const Key& key) {
    const auto entry = hash.constFind(key);
    if (entry != hash.constEnd()) {
        found = std::min<size_t>(found.value_or(*entry), *entry);
    }
}

/// -0 and 0 are one number.
double numberKey(double number) {
    return number == 0 ? 0.0 : number;
}

} // namespace

void EqualityIndex::build(size_t rows, const std::function<Value(size_t)>& valueAt) {
    for (size_t row = 0; row < rows; ++row) {
        const Value value = valueAt(row);
        const auto place = static_cast<Place>(row);
        switch (value.kind()) {
        case Value::Kind::Null:
            break;
        case Value::Kind::Integer:
            hasOthers_ = hasOthers_ || !isWhole(value.toDouble());
            addFirst(numbers_, numberKey(value.toDouble()), place);
            break;
        case Value::Kind::Double:
            addFirst(numbers_, numberKey(value.toDouble()), place);
            break;
        case Value::Kind::Text: {
            const QString text = value.toText();
            addFirst(texts_, foldedText(text), place);
            if (const auto number = textToNumber(text)) {
                addFirst(spelledNumbers_, numberKey(*number), place);
            }
            break;
        }
        case Value::Kind::Bytes:
            hasOthers_ = true;
            break;
        }
    }
}

std::optional<size_t> EqualityIndex::find(const Value& sought) const {
    std::optional<size_t> found;
    if (sought.kind() == Value::Kind::Text) {
        const QString text = sought.toText();
        takeEarlier(found, texts_, foldedText(text));
        if (const auto number = textToNumber(text)) {
            takeEarlier(found, numbers_, numberKey(*number));
        }
    } else if (!sought.isNull()) {
        takeEarlier(found, numbers_, numberKey(sought.toDouble()));
        takeEarlier(found, spelledNumbers_, numberKey(sought.toDouble()));
    }
    return found;
}

} // namespace dao
