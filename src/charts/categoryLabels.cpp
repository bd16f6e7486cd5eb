#include "charts/categoryLabels.h"

#include "charts/palette.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double belowAxis = 1.1;                 ///< millimetres from the axis to its labels
constexpr double secondLevelType = 0.8;           ///< of the first level's
constexpr double smallestLabel = 6 * onePoint;    ///< that is still read
constexpr double sideGap = 0.5, wrappedGap = 0.4; ///< between neighbours, in heights of the type
constexpr int mostLines = 3;
constexpr double flatTypes[] = {1, 0.9, 0.8}; ///< parts of the type's size that are tried before labels are slanted

struct Slant {
    double angle, sine, cosine;
    explicit Slant(double degrees)
        : angle(degrees), sine(std::sin(degrees * std::numbers::pi / 180)),
          cosine(degrees == 90 ? 0 : std::cos(degrees * std::numbers::pi / 180)) {}

    double pitchFor(double size) const { return lineHeight * size / sine; }
    double heightOf(double width, double size) const { return (ascent + descent) * size * cosine + width * sine; }
    double widthIn(double height, double size) const { return (height - (ascent + descent) * size * cosine) / sine; }
    /// From the middle of the category to the leftmost corner.
    double leftOf(double width, double size) const { return width * cosine + (ascent - 0.33) * size * sine; }
    /// A text that ends below the middle of its category.
    QPointF start(double width, double size, double top) const {
        return {0.33 * size * sine - width * cosine, top + ascent * size * cosine + width * sine};
    }
};

const std::vector<Slant>& slants() {
    static const std::vector<Slant> all = {Slant(45), Slant(60), Slant(90)};
    return all;
}

class Layer {
public:
    Layer(Typesetter& type, const QStringList& texts, const LabelRoom& room, double top, double size)
        : type_(type), texts_(texts), room_(room), top_(top), size_(size) {
        labels_.left = room.left;
        labels_.height = top;
        for (const QString& text : texts)
            widest_ = std::max(widest_, type.width(text, size));
    }

    CategoryLabels take() { return std::move(labels_); }

    bool inOneLine(QRgb color = inkColor) {
        if (widest_ > room_.pitch - sideGap * size_ || top_ + lineHeight * size_ > room_.height)
            return false;
        for (int i = 0; i < texts_.size(); ++i)
            centred(i, {{texts_[i], type_.width(texts_[i], size_)}}, color);
        return true;
    }

    bool inLines() {
        std::vector<std::vector<TextLine>> lines;
        size_t most = 0;
        for (const QString& text : texts_) {
            lines.push_back(type_.wrappedAtWords(text, size_, room_.pitch - wrappedGap * size_, mostLines));
            if (lines.back().empty())
                return false;
            most = std::max(most, lines.back().size());
        }
        if (top_ + lineHeight * size_ * static_cast<double>(most) > room_.height)
            return false;
        for (int i = 0; i < texts_.size(); ++i)
            centred(i, lines[static_cast<size_t>(i)]);
        return true;
    }

    bool slanted(const Slant& slant) {
        if (room_.pitch < slant.pitchFor(size_) || top_ + slant.heightOf(widest_, size_) > room_.height)
            return false;
        double left = 0;
        for (int i = 0; i < texts_.size(); ++i)
            left = std::max(left, slant.leftOf(type_.width(texts_[i], size_), size_) - room_.pitch * (i + 0.5));
        if (left > room_.mostLeft)
            return false;
        for (int i = 0; i < texts_.size(); ++i)
            addSlanted(i, texts_[i], slant);
        labels_.left = std::max(labels_.left, left);
        return true;
    }

    /// Room for a text, in full or not, at every `stride`-th category.
    void cutSlanted(const Slant& slant, int stride) {
        for (int i = 0; i < texts_.size(); i += stride) {
            const double byHeight = slant.widthIn(room_.height - top_, size_);
            const double toTheLeft =
                std::max(room_.left, 0.6 * room_.mostLeft) + room_.pitch * (i + 0.5) - slant.leftOf(0, size_);
            const double bySide = slant.cosine > 0 ? toTheLeft / slant.cosine : byHeight;
            const QString text = type_.shortened(texts_[i], size_, std::min(byHeight, bySide));
            labels_.shortened = labels_.shortened || text != texts_[i];
            labels_.left =
                std::max(labels_.left, slant.leftOf(type_.width(text, size_), size_) - room_.pitch * (i + 0.5));
            addSlanted(i, text, slant);
        }
        labels_.shortened = labels_.shortened || stride > 1;
    }

    /// Three lines across say as much as a slanted one and leave the plot more, where words have the room for it.
    bool cutLines() {
        const double width = room_.pitch - wrappedGap * size_;
        if (width < 4 * size_ || top_ + mostLines * lineHeight * size_ > room_.height)
            return false;
        for (const QString& text : texts_)
            for (const QString& word : text.split(u' '))
                if (type_.width(word, size_) > width)
                    return false;
        for (int i = 0; i < texts_.size(); ++i) {
            std::vector<TextLine> lines = type_.wrapped(texts_[i], size_, width);
            if (lines.size() > mostLines) {
                const QString rest = lines[mostLines - 1].text + u' ' + lines[mostLines].text;
                lines.resize(mostLines);
                lines.back().text = type_.shortened(rest, size_, width);
                lines.back().width = type_.width(lines.back().text, size_);
                labels_.shortened = true;
            }
            centred(i, lines);
        }
        return true;
    }

private:
    Typesetter& type_;
    const QStringList& texts_;
    const LabelRoom& room_;
    double top_, size_, widest_ = 0;
    CategoryLabels labels_;

    void centred(int category, const std::vector<TextLine>& lines, QRgb color = inkColor) {
        double baseline = top_ + ascent * size_;
        for (const TextLine& line : lines) {
            add(category, {line.text, {-line.width / 2, baseline}, size_, line.width, 0, false, false, color});
            labels_.height = std::max(labels_.height, baseline + (lineHeight - ascent) * size_);
            baseline += lineHeight * size_;
        }
    }

    void addSlanted(int category, const QString& text, const Slant& slant) {
        const double width = type_.width(text, size_);
        add(category, {text, slant.start(width, size_, top_), size_, width, slant.angle, false, false, inkColor});
        labels_.height = std::max(labels_.height, top_ + slant.heightOf(width, size_));
    }

    void add(int category, ChartText text) {
        text.rightToLeft = isRightToLeft(texts_[category]);
        if (!text.text.isEmpty())
            labels_.labels.push_back({category, std::move(text)});
    }
};

bool anyText(const QStringList& texts) {
    return std::any_of(texts.begin(), texts.end(), [](const QString& text) { return !text.isEmpty(); });
}

} // namespace

std::optional<CategoryLabels> fullLabels(Typesetter& type, const LabelTexts& texts, const LabelRoom& room) {
    std::vector<CategoryLabels::Label> codes;
    double top = belowAxis;
    if (anyText(texts.second)) {
        const bool alone = !anyText(texts.first);
        Layer row(type, texts.second, room, top, room.type * (alone ? 1 : secondLevelType));
        if (!row.inOneLine(alone ? inkColor : quietColor))
            return std::nullopt;
        CategoryLabels laid = row.take();
        if (alone)
            return laid;
        top = laid.height;
        codes = std::move(laid.labels);
    }
    const auto withCodes = [&codes](CategoryLabels labels) {
        labels.labels.insert(labels.labels.begin(), codes.begin(), codes.end());
        return labels;
    };
    // A little smaller is read more easily than slanted.
    for (const double part : flatTypes) {
        Layer layer(type, texts.first, room, top, part * room.type);
        if ((part == 1 && layer.inOneLine()) || layer.inLines())
            return withCodes(layer.take());
    }
    for (const Slant& slant : slants()) {
        Layer layer(type, texts.first, room, top, room.type);
        if (layer.slanted(slant))
            return withCodes(layer.take());
    }
    return std::nullopt;
}

namespace {

/// Texts that look alike once they are cut lose the words that they begin with together, instead of those that tell
/// them apart.
QStringList toldApart(const QStringList& texts, const CategoryLabels& cut) {
    QStringList shown(texts.size());
    for (const CategoryLabels::Label& label : cut.labels)
        shown[label.category] += label.text.text + u' ';
    QHash<QString, QString> together; // what is shown, and the beginning of all that are shown so
    for (int i = 0; i < texts.size(); ++i) {
        const auto known = together.find(shown[i]);
        if (known == together.end()) {
            together.insert(shown[i], texts[i]);
            continue;
        }
        if (*known == texts[i])
            continue;
        qsizetype same = 0;
        while (same < std::min(known->size(), texts[i].size()) && known->at(same) == texts[i][same])
            ++same;
        known->truncate(same);
        known->truncate(known->lastIndexOf(u' ') + 1);
    }
    QStringList apart = texts;
    for (int i = 0; i < texts.size(); ++i) {
        const QString& beginning = together[shown[i]];
        if (beginning.endsWith(u' ') && beginning.size() < texts[i].size())
            apart[i] = u'…' + texts[i].mid(beginning.size());
    }
    return apart;
}

CategoryLabels cutLabels(Typesetter& type, const QStringList& texts, const LabelRoom& room) {
    for (double size = room.type; size > smallestLabel - 1e-9; size -= onePoint) {
        Layer flat(type, texts, room, belowAxis, size);
        if (flat.inOneLine())
            return flat.take();
    }
    for (const double part : flatTypes) {
        Layer lines(type, texts, room, belowAxis, part * room.type);
        if (lines.cutLines())
            return lines.take();
    }
    for (double size = room.type; size > smallestLabel - 1e-9; size -= onePoint) {
        for (const Slant& slant : slants()) {
            if (room.pitch < slant.pitchFor(size))
                continue;
            Layer layer(type, texts, room, belowAxis, size);
            layer.cutSlanted(slant, 1);
            return layer.take();
        }
    }
    const Slant& upright = slants().back();
    const int stride = static_cast<int>(std::ceil(upright.pitchFor(smallestLabel) / std::max(room.pitch, 1e-6)));
    Layer layer(type, texts, room, belowAxis, smallestLabel);
    layer.cutSlanted(upright, std::max(stride, 1));
    return layer.take();
}

} // namespace

CategoryLabels shortLabels(Typesetter& type, const QStringList& texts, const LabelRoom& room) {
    CategoryLabels labels = cutLabels(type, texts, room);
    if (!labels.shortened)
        return labels;
    const QStringList apart = toldApart(texts, labels);
    if (apart == texts)
        return labels;
    labels = cutLabels(type, apart, room);
    labels.shortened = true;
    return labels;
}
