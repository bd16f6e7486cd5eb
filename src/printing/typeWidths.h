#pragma once

#include <QFont>
#include <QStringView>
#include <unordered_map>
#include <vector>

/// How wide a text is in one line. Lengths in the pixels of the font.
struct TextExtent {
    double width = 0;
    double word = 0;    ///< of its widest word
    bool plain = false; ///< one line of letters that stand side by side: the sum of their widths is that of the text
};

/// Widths of texts from those of their letters, without shaping each: columns of many thousand cells are measured in a
/// few milliseconds. The font must not kern.
class TypeWidths {
public:
    explicit TypeWidths(const QFont& font) : font_(font), known_(0x530, -1) {}

    TextExtent of(QStringView text);
    /// Whether the widths of its letters tell that of a text; any other has to be shaped, which takes its time.
    static bool isSimple(QStringView text);
    const QFont& font() const { return font_; }

    /// The one for a font, kept for the next table in it.
    static TypeWidths& in(const QFont& font);

private:
    QFont font_;
    std::vector<double> known_; ///< of the letters of Latin, Greek and Cyrillic
    std::unordered_map<char16_t, double> others_;

    double letter(char16_t sign);
};

/// A text as a figure in a table.
enum class Figure {
    None,
    Mixed, ///< several numbers, with a percent sign or in brackets
    Number ///< one number
};
Figure figureOf(const QString& text);
/// Where the decimal separator of a number stands; its length without one.
qsizetype separatorIn(const QString& number);
