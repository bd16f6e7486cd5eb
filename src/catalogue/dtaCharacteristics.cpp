#include "catalogue/dtaCharacteristics.h"

#include "catalogue/importTexts.h"

#include <QFile>
#include <QRegularExpression>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxHead = 1024;
constexpr qint64 maxSection = 64'000'000;

/// Where a file before format 117 has its characteristics. Its sizes grew with the formats.
struct OldLayout {
    qint64 head, perVariable, perFile; ///< bytes before them: fixed, for each variable, behind the variables
    int nameBytes, lengthBytes;
};

OldLayout oldLayout(int format) {
    const int name = format >= 110 ? 33 : 9;
    const int label = format >= 108 ? 81 : 32;
    const int display = format >= 114 ? 49 : format >= 105 ? 12 : 7;
    const int timeStamp = format >= 105 ? 18 : 0;
    // Of a variable: type, name, place in the sort order, display format, name of its labels, label.
    return {10 + label + timeStamp, 1 + name + 2 + display + name + label, 2, name, format >= 110 ? 4 : 2};
}

/// Walks the characteristics of a file.
class CharacteristicsWalk {
public:
    explicit CharacteristicsWalk(const QString& path) : file_(path) {}

    /// Calls `each` with variable ("_dta" for the file), name and content.
    template<class Each>
    void run(Each&& each) {
        if (!file_.open(QIODevice::ReadOnly))
            return;
        tagged_ = file_.peek(1) == "<";
        if (!(tagged_ ? goToSection() : goToOldSection()))
            return;
        qint64 total = 0;
        for (;;) {
            const std::optional<quint64> length = nextLength();
            if (!length || *length < 2 * nameBytes_ || (total += static_cast<qint64>(*length)) > maxSection)
                return;
            const QByteArray entry = file_.read(static_cast<qint64>(*length));
            if (static_cast<quint64>(entry.size()) != *length || (tagged_ && file_.read(5) != "</ch>"))
                return;
            each(text(entry.left(static_cast<qsizetype>(nameBytes_))),
                 text(entry.mid(static_cast<qsizetype>(nameBytes_), static_cast<qsizetype>(nameBytes_))),
                 text(entry.mid(static_cast<qsizetype>(2 * nameBytes_))));
        }
    }

private:
    QFile file_;
    bool tagged_ = true; ///< format 117 or later
    bool bigEndian_ = false;
    quint64 nameBytes_ = 129;
    int lengthBytes_ = 4;

    static QString text(const QByteArray& bytes) {
        const qsizetype end = bytes.indexOf('\0');
        return QString::fromUtf8(end < 0 ? bytes : bytes.left(end));
    }

    std::optional<quint64> number(int bytes) {
        const QByteArray raw = file_.read(bytes);
        if (raw.size() != bytes)
            return std::nullopt;
        quint64 value = 0;
        for (int i = 0; i < bytes; ++i)
            value = value << 8 | static_cast<uchar>(raw[bigEndian_ ? i : bytes - 1 - i]);
        return value;
    }

    /// Length of the next entry; nothing behind the last one.
    std::optional<quint64> nextLength() {
        const QByteArray mark = file_.read(tagged_ ? 4 : 1);
        // An old file's list ends with the kind 0; 1 is the only other one.
        if (mark != (tagged_ ? QByteArray("<ch>") : QByteArray("\x01")))
            return std::nullopt;
        return number(lengthBytes_);
    }

    bool goToSection() {
        constexpr int characteristicsInMap = 8;
        const QByteArray head = file_.read(maxHead);
        const QByteArray release = "<release>", map = "<map>", section = "<characteristics>";
        const qsizetype mapAt = head.indexOf(map), releaseAt = head.indexOf(release);
        if (mapAt < 0 || releaseAt < 0)
            return false;
        bigEndian_ = head.contains("<byteorder>MSF</byteorder>");
        if (head.mid(releaseAt + release.size(), 3).toInt() < 118)
            nameBytes_ = 33;
        if (!file_.seek(mapAt + map.size() + 8 * characteristicsInMap))
            return false;
        const std::optional<quint64> at = number(8);
        return at && *at < static_cast<quint64>(file_.size()) && file_.seek(static_cast<qint64>(*at)) &&
               file_.read(section.size()) == section;
    }

    bool goToOldSection() {
        constexpr int firstWithCharacteristics = 105;
        const QByteArray start = file_.read(4);
        if (start.size() < 4)
            return false;
        const int format = static_cast<uchar>(start[0]);
        if (format < firstWithCharacteristics)
            return false;
        bigEndian_ = start[1] == 1;
        const std::optional<quint64> variables = number(2);
        const OldLayout layout = oldLayout(format);
        nameBytes_ = static_cast<quint64>(layout.nameBytes);
        lengthBytes_ = layout.lengthBytes;
        return variables &&
               file_.seek(layout.head + layout.perVariable * static_cast<qint64>(*variables) + layout.perFile);
    }
};

} // namespace

QStringList dtaCharacteristics(const QString& path) {
    static const QRegularExpression note(u"\\Anote\\d+\\z"_s);
    int notes = 0, others = 0;
    QString languages;
    CharacteristicsWalk(path).run([&](const QString& variable, const QString& name, const QString& content) {
        const bool ofFile = variable == u"_dta"_s;
        if (name == u"note0"_s) // the number of notes
            return;
        if (ofFile && name == u"_lang_list"_s)
            languages = content.simplified();
        else if (note.match(name).hasMatch())
            notes += !ofFile; // the file's own notes are taken over
        else if (!name.startsWith(u"_lang_"_s))
            ++others;
    });
    QStringList found;
    if (notes > 0)
        found << said(u"%1 Anmerkungen zu Variablen"_s, u"%1 notes on variables"_s).arg(notes);
    if (languages.contains(u' '))
        found << said(u"Labels in anderen Sprachen als der eingestellten (%1)"_s,
                      u"labels in languages other than the current one (%1)"_s)
                     .arg(languages);
    if (others > 0)
        found << said(u"%1 eigene Merkmale (characteristics) der Datei oder ihrer Variablen"_s,
                      u"%1 characteristics of the file or its variables"_s)
                     .arg(others);
    return found;
}
