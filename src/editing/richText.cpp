#include "editing/richText.h"

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t deepest = 200;

/// Changes of style in one paragraph. To lay it out takes time by their square; what comes behind them is plain.
constexpr int mostChanges = 2000;

/// Groups whose content is no text of the document.
bool isApart(const QString& word) {
    static const QSet<QString> words = {
        u"fonttbl"_s, u"colortbl"_s,   u"stylesheet"_s,  u"info"_s,      u"pict"_s,      u"object"_s,
        u"header"_s,  u"headerl"_s,    u"headerr"_s,     u"headerf"_s,   u"footer"_s,    u"footerl"_s,
        u"footerr"_s, u"footerf"_s,    u"footnote"_s,    u"filetbl"_s,   u"listtable"_s, u"revtbl"_s,
        u"rsidtbl"_s, u"fldinst"_s,    u"themedata"_s,   u"generator"_s, u"template"_s,  u"bkmkstart"_s,
        u"bkmkend"_s, u"nonshppict"_s, u"annotation"_s,  u"xmlnstbl"_s,  u"private"_s,   u"tc"_s,
        u"xe"_s,      u"datastore"_s,  u"latentstyles"_s};
    return words.contains(word);
}

/// The character that a word stands for; Null for none.
QChar characterOf(const QString& word) {
    static const std::array<std::pair<QStringView, char16_t>, 16> words{{{u"par", u'\n'},
                                                                         {u"sect", u'\n'},
                                                                         {u"page", u'\n'},
                                                                         {u"row", u'\n'},
                                                                         {u"line", u'\u2028'},
                                                                         {u"tab", u'\t'},
                                                                         {u"cell", u'\t'},
                                                                         {u"emdash", u'\u2014'},
                                                                         {u"endash", u'\u2013'},
                                                                         {u"bullet", u'\u2022'},
                                                                         {u"lquote", u'\u2018'},
                                                                         {u"rquote", u'\u2019'},
                                                                         {u"ldblquote", u'\u201C'},
                                                                         {u"rdblquote", u'\u201D'},
                                                                         {u"emspace", u'\u2003'},
                                                                         {u"enspace", u'\u2002'}}};
    const auto found = std::ranges::find(words, QStringView(word), &std::pair<QStringView, char16_t>::first);
    return found == words.end() ? QChar() : QChar(found->second);
}

/// Reads bytes as characters of a code page; what it does not know becomes U+FFFD. A page that is not known itself is
/// read as the most usual one.
class CodePage {
public:
    explicit CodePage(const QByteArray& name) : converter_(iconv_open("UTF-16LE", name.constData())) {
        if (!isOpen())
            converter_ = iconv_open("UTF-16LE", "CP1252");
    }
    ~CodePage() {
        if (isOpen())
            iconv_close(converter_);
    }
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    QString decode(QByteArray bytes) const {
        if (!isOpen())
            return QString::fromLatin1(bytes);
        QString text;
        char* from = bytes.data();
        size_t left = static_cast<size_t>(bytes.size());
        while (left > 0) {
            std::array<char16_t, 256> room{};
            char* to = reinterpret_cast<char*>(room.data());
            size_t free = sizeof room;
            const bool whole = iconv(converter_, &from, &left, &to, &free) != size_t(-1);
            const bool stuck = !whole && errno != E2BIG && left > 0;
            text += QStringView(room.data(), qsizetype((sizeof room - free) / 2));
            if (stuck) {
                text += QChar::ReplacementCharacter;
                ++from;
                --left;
            }
        }
        return text;
    }

private:
    iconv_t converter_;

    bool isOpen() const { return converter_ != iconv_t(-1); }
};

/// The code page of a font that is for another script than the document's; empty for any other.
QByteArray pageOfCharset(int charset) {
    static const QHash<int, QByteArray> pages = {
        {77, "MACINTOSH"}, {128, "CP932"},  {129, "CP949"},  {130, "JOHAB"},  {134, "CP936"},  {136, "CP950"},
        {161, "CP1253"},   {162, "CP1254"}, {163, "CP1258"}, {177, "CP1255"}, {178, "CP1256"}, {186, "CP1257"},
        {204, "CP1251"},   {222, "CP874"},  {238, "CP1250"}, {254, "CP437"},  {255, "CP850"}};
    return pages.value(charset);
}

class RtfReader {
public:
    explicit RtfReader(const QString& document) : document_(document) {}

    std::optional<std::vector<TextRun>> read() {
        while (at_ < document_.size() && !ended_ && !tooDeep_)
            readNext();
        flushBytes();
        flush();
        if (tooDeep_ || !isRestEmpty() || (!ended_ && runs_.empty()))
            return std::nullopt;
        // The mark that ends the last paragraph begins none.
        if (!runs_.empty() && runs_.back().text.endsWith(u'\n')) {
            runs_.back().text.chop(1);
            if (runs_.back().text.isEmpty())
                runs_.pop_back();
        }
        return runs_;
    }

private:
    struct State {
        bool bold = false, italic = false, hidden = false, apart = false, fonts = false;
        int unicodeSkip = 1;
        int font = -1; ///< -1: that of the document
    };

    const QString& document_;
    qsizetype at_ = 0;
    State now_;
    std::vector<State> outer_;
    std::vector<TextRun> runs_;
    QString text_;     ///< in the style of now_
    QByteArray bytes_; ///< given by their codes, one behind the other
    QByteArray page_ = "CP1252";
    QHash<int, QByteArray> fontPages_; ///< of fonts that are for another script
    QByteArray opened_;                ///< name of the page that was needed last
    std::unique_ptr<CodePage> codePage_;
    int defaultFont_ = -1;
    int changes_ = 0; ///< of style in the paragraph
    int skip_ = 0;    ///< characters that stand for the one before where Unicode is not known
    bool star_ = false, ended_ = false, tooDeep_ = false;

    bool isRestEmpty() const {
        return std::all_of(document_.begin() + at_, document_.end(), [](QChar c) { return c.isSpace() || c.isNull(); });
    }

    void readNext() {
        const QChar c = document_[at_++];
        if (c == u'{') {
            open();
        } else if (c == u'}') {
            close();
        } else if (c == u'\\') {
            readControl();
        } else if (c != u'\r' && c != u'\n') {
            put(c);
        }
    }

    void open() {
        flushBytes();
        skip_ = 0;
        star_ = false;
        outer_.push_back(now_);
        tooDeep_ = outer_.size() > deepest;
    }

    void close() {
        flushBytes();
        flush();
        skip_ = 0;
        star_ = false;
        now_ = outer_.back();
        outer_.pop_back();
        ended_ = outer_.empty();
    }

    void put(QChar c) {
        flushBytes();
        if (skip_ > 0)
            --skip_;
        else if (!now_.apart && !now_.hidden && (c >= u' ' || c == u'\n' || c == u'\t'))
            text_ += c;
    }

    void flushBytes() {
        if (bytes_.isEmpty())
            return;
        if (const QByteArray page = fontPages_.value(now_.font, page_); page != opened_) {
            codePage_ = std::make_unique<CodePage>(page);
            opened_ = page;
        }
        for (const QChar c : codePage_->decode(std::exchange(bytes_, {})))
            if (c >= u' ' || c == u'\t')
                text_ += c;
    }

    /// What was read so far is in a style of its own.
    void flush() {
        if (text_.isEmpty())
            return;
        const bool styled = changes_ < mostChanges;
        const bool bold = styled && now_.bold, italic = styled && now_.italic;
        if (!runs_.empty() && runs_.back().bold == bold && runs_.back().italic == italic) {
            runs_.back().text += text_;
        } else {
            runs_.push_back({text_, bold, italic});
            ++changes_;
        }
        if (text_.contains(u'\n'))
            changes_ = 0;
        text_.clear();
    }

    void readControl() {
        if (at_ >= document_.size())
            return;
        const QChar c = document_[at_];
        if (isLetter(c)) {
            readWord();
            return;
        }
        ++at_;
        if (c == u'\'')
            readCode();
        else if (c == u'*')
            star_ = true;
        else if (c == u'\\' || c == u'{' || c == u'}')
            put(c);
        else if (c == u'~')
            put(QChar::Nbsp);
        else if (c == u'_')
            put(u'\u2011');
        else if (c == u'\r' || c == u'\n')
            put(u'\n');
    }

    static bool isLetter(QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
    static bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

    static int hexDigit(QChar c) {
        const char16_t u = c.toLower().unicode();
        return isDigit(c) ? u - u'0' : u >= u'a' && u <= u'f' ? u - u'a' + 10 : -1;
    }

    void readCode() {
        const int high = at_ + 1 < document_.size() ? hexDigit(document_[at_]) : -1;
        const int low = high < 0 ? -1 : hexDigit(document_[at_ + 1]);
        if (low < 0)
            return; // no code: what follows is text
        at_ += 2;
        if (skip_ > 0)
            --skip_;
        else if (!now_.apart && !now_.hidden)
            bytes_ += static_cast<char>(high * 16 + low);
    }

    void readWord() {
        const qsizetype start = at_;
        while (at_ < document_.size() && isLetter(document_[at_]))
            ++at_;
        const QString word = document_.mid(start, std::min<qsizetype>(at_ - start, 32));
        const bool negative = at_ + 1 < document_.size() && document_[at_] == u'-' && isDigit(document_[at_ + 1]);
        at_ += negative ? 1 : 0;
        std::optional<int> number;
        for (; at_ < document_.size() && isDigit(document_[at_]); ++at_)
            number = std::min(number.value_or(0) * 10 + (document_[at_].unicode() - u'0'), 100'000'000);
        if (negative)
            number = -*number;
        if (at_ < document_.size() && document_[at_] == u' ')
            ++at_;
        apply(word, number);
    }

    void apply(const QString& word, std::optional<int> number) {
        if (word == u"bin") {
            at_ = std::min<qsizetype>(at_ + std::max(number.value_or(0), 0), document_.size());
            return;
        }
        if (std::exchange(star_, false) || isApart(word)) {
            flushBytes();
            now_.apart = true;
            now_.fonts = word == u"fonttbl";
        } else if (const QChar c = characterOf(word); !c.isNull()) {
            put(c);
        } else if (word == u"u") {
            putUnicode(number.value_or(0));
        } else if (skip_ > 0) {
            --skip_;
        } else {
            applyStyle(word, number);
        }
    }

    void usePage(const QByteArray& name) {
        flushBytes();
        page_ = name;
    }

    /// Within the table of fonts what it says is kept for the text that is written in one.
    void applyFont(const QString& word, int number) {
        flushBytes();
        if (word == u"f")
            now_.font = number;
        else if (const QByteArray page = pageOfCharset(number); now_.fonts && !page.isEmpty())
            fontPages_.insert(now_.font, page);
    }

    void putUnicode(int number) {
        flushBytes();
        const int code = number < 0 ? number + 0x10000 : number;
        skip_ = 0;
        if (code >= ' ' && code <= 0xFFFF)
            put(QChar(static_cast<char16_t>(code)));
        skip_ = now_.unicodeSkip;
    }

    void applyStyle(const QString& word, std::optional<int> number) {
        const bool on = number.value_or(1) != 0;
        if (word == u"uc") {
            now_.unicodeSkip = std::clamp(number.value_or(1), 0, 100);
        } else if (word == u"ansicpg" && number.value_or(0) > 0) {
            usePage(*number == 10000 ? "MACINTOSH" : *number == 65001 ? "UTF-8" : "CP" + QByteArray::number(*number));
        } else if (word == u"mac" || word == u"pc" || word == u"pca") {
            usePage(word == u"mac" ? "MACINTOSH" : word == u"pc" ? "CP437" : "CP850");
        } else if (word == u"deff") {
            now_.font = defaultFont_ = number.value_or(0);
        } else if (word == u"f" || word == u"fcharset") {
            applyFont(word, number.value_or(0));
        } else if (word == u"b" || word == u"i" || word == u"v" || word == u"plain") {
            flushBytes();
            flush();
            if (word == u"b" || word == u"plain")
                now_.bold = word == u"b" && on;
            if (word == u"i" || word == u"plain")
                now_.italic = word == u"i" && on;
            if (word == u"v" || word == u"plain")
                now_.hidden = word == u"v" && on;
            if (word == u"plain")
                now_.font = defaultFont_;
        }
    }
};

/// Half a character shows as a mark of its own; half of a pair is none to any reader of the text.
void mendSurrogates(QString& text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
}

} // namespace

std::optional<std::vector<TextRun>> readRtf(const QString& document) {
    const QString mark = u"{\\rtf"_s;
    if (!document.startsWith(mark) || (document.size() > mark.size() && document[mark.size()].isLetter()))
        return std::nullopt;
    std::optional<std::vector<TextRun>> runs = RtfReader(document).read();
    if (runs)
        for (TextRun& run : *runs)
            mendSurrogates(run.text);
    return runs;
}

std::vector<TextRun> textRuns(const QString& description) {
    if (std::optional<std::vector<TextRun>> runs = readRtf(description))
        return *runs;
    return {{description}};
}
