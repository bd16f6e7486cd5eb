#include "catalogue/dtaCharacteristics.h"

#include "catalogue/importTexts.h"

#include <QFile>
#include <QRegularExpression>
#include <QtEndian>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maxHead = 1024;
constexpr qint64 maxSection = 64'000'000;

/// Walks the characteristics of a file of format 117 or later.
class CharacteristicsWalk {
public:
    explicit CharacteristicsWalk(const QString& path) : file_(path) {}

    /// Calls `each` with variable ("_dta" for the file), name and content.
    template<class Each>
    void run(Each&& each) {
        if (!file_.open(QIODevice::ReadOnly) || !goToSection())
            return;
        qint64 total = 0;
        while (file_.read(4) == "<ch>") {
            const std::optional<quint64> length = number(4);
            if (!length || *length < 2 * nameBytes_ || (total += static_cast<qint64>(*length)) > maxSection)
                return;
            const QByteArray entry = file_.read(static_cast<qint64>(*length));
            if (file_.read(5) != "</ch>")
                return;
            each(text(entry.left(static_cast<qsizetype>(nameBytes_))),
                 text(entry.mid(static_cast<qsizetype>(nameBytes_), static_cast<qsizetype>(nameBytes_))),
                 text(entry.mid(static_cast<qsizetype>(2 * nameBytes_))));
        }
    }

private:
    QFile file_;
    bool bigEndian_ = false;
    quint64 nameBytes_ = 129;

    static QString text(const QByteArray& bytes) {
        const qsizetype end = bytes.indexOf('\0');
        return QString::fromUtf8(end < 0 ? bytes : bytes.left(end));
    }

    std::optional<quint64> number(int bytes) {
        const QByteArray raw = file_.read(bytes);
        if (raw.size() != bytes)
            return std::nullopt;
        if (bytes == 4)
            return bigEndian_ ? qFromBigEndian<quint32>(raw.constData())
                              : qFromLittleEndian<quint32>(raw.constData());
        return bigEndian_ ? qFromBigEndian<quint64>(raw.constData())
                          : qFromLittleEndian<quint64>(raw.constData());
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
