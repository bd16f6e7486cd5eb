#include "catalogue/savExtensions.h"

#include "catalogue/importTexts.h"

#include <QFile>
#include <QRegularExpression>
#include <QtEndian>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 headerSize = 176;
constexpr qint64 layoutCodeAt = 64;
constexpr qint64 maxRecord = 16'000'000;

enum Record { Variable = 2, ValueLabels = 3, LabelledVariables = 4, Documents = 6, ExtensionRecord = 7 };
enum ExtensionType {
    VariableSets = 5,
    ResponseSets = 7,
    FileAttributes = 17,
    VariableAttributes = 18,
    NewResponseSets = 19,
    EncodingName = 20
};

/// Walks the records of the file's dictionary.
class DictionaryWalk {
public:
    explicit DictionaryWalk(const QString& path) : file_(path) {}

    /// Calls `extension` with type and content of each extension record.
    template<class Extension>
    void run(Extension&& extension) {
        if (!file_.open(QIODevice::ReadOnly) || !file_.seek(layoutCodeAt))
            return;
        const std::optional<qint32> layout = number();
        if (!layout)
            return;
        swapped_ = *layout != 2 && *layout != 3;
        if (!file_.seek(headerSize))
            return;
        while (const std::optional<qint32> type = number())
            if (!record(*type, extension))
                return;
    }

private:
    QFile file_;
    bool swapped_ = false;

    std::optional<qint32> number() {
        qint32 value = 0;
        if (file_.read(reinterpret_cast<char*>(&value), sizeof value) != sizeof value)
            return std::nullopt;
        return swapped_ ? qbswap(value) : value;
    }

    bool skip(qint64 bytes) { return bytes >= 0 && file_.seek(file_.pos() + bytes); }

    bool variable() {
        const auto type = number(), hasLabel = number(), missing = number();
        if (!type || !hasLabel || !missing || !skip(4 + 4 + 8))
            return false;
        if (*hasLabel) {
            const auto length = number();
            if (!length || *length < 0 || !skip((qint64{*length} + 3) / 4 * 4))
                return false;
        }
        return skip(std::abs(qint64{*missing}) * 8);
    }

    bool valueLabels() {
        const auto count = number();
        for (qint32 i = 0; count && i < *count; ++i) {
            unsigned char length = 0;
            if (!skip(8) || file_.read(reinterpret_cast<char*>(&length), 1) != 1 || !skip((length + 8) / 8 * 8 - 1))
                return false;
        }
        return count.has_value();
    }

    bool counted(qint64 size) {
        const auto count = number();
        return count && skip(*count * size);
    }

    template<class Extension>
    bool record(qint32 type, Extension&& extension) {
        switch (type) {
        case Variable:
            return variable();
        case ValueLabels:
            return valueLabels();
        case LabelledVariables:
            return counted(4);
        case Documents:
            return counted(80);
        case ExtensionRecord: {
            const auto subtype = number(), size = number(), count = number();
            if (!subtype || !size || !count || *size < 0 || *count < 0)
                return false;
            const qint64 bytes = qint64{*size} * *count;
            if (bytes > maxRecord)
                return skip(bytes);
            extension(*subtype, QString::fromUtf8(file_.read(bytes)));
            return true;
        }
        default:
            return false;
        }
    }
};

QStringList namesBefore(const QString& text, QChar separator) {
    QStringList names;
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts))
        if (const qsizetype end = line.indexOf(separator); end > 0)
            names << line.left(end).trimmed();
    return names;
}

} // namespace

QStringList savExtensions(const QString& path) {
    QStringList responseSets, variableSets;
    bool attributes = false;
    DictionaryWalk(path).run([&](qint32 type, const QString& text) {
        static const QRegularExpression role(u"\\$@Role\\([^)]*\\)"_s);
        switch (type) {
        case ResponseSets:
        case NewResponseSets:
            responseSets << namesBefore(text, u'=');
            break;
        case VariableSets:
            variableSets << namesBefore(text, u'=');
            break;
        case FileAttributes:
            attributes = attributes || text.contains(u'(');
            break;
        // The role of a variable in dialogs is no content.
        case VariableAttributes:
            attributes = attributes || QString(text).remove(role).contains(u'(');
            break;
        default:
            break;
        }
    });
    QStringList found;
    responseSets.removeDuplicates();
    if (!responseSets.isEmpty())
        found << said(u"Mehrfachantworten-Sets %1 (ihre Variablen sind übernommen)"_s,
                      u"multiple response sets %1 (their variables are taken over)"_s)
                     .arg(responseSets.join(u", "_s));
    if (!variableSets.isEmpty())
        found << said(u"Variablengruppen %1"_s, u"variable sets %1"_s).arg(variableSets.join(u", "_s));
    if (attributes)
        found << said(u"eigene Attribute der Datei oder ihrer Variablen"_s,
                      u"custom attributes of the file or its variables"_s);
    return found;
}

QByteArray savEncodingName(const QString& path) {
    QByteArray name;
    DictionaryWalk(path).run([&](qint32 type, const QString& text) {
        if (type == EncodingName)
            name = text.trimmed().toLatin1();
    });
    return name;
}
