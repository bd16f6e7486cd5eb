#include "catalogue/SurveyReader.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/SurveyEncoding.h"
#include "catalogue/SurveyInput.h"
#include "catalogue/dtaCharacteristics.h"
#include "catalogue/importTexts.h"
#include "catalogue/portableNumbers.h"
#include "catalogue/savExtensions.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringDecoder>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iconv.h>
#include <readstat.h>

using namespace Qt::StringLiterals;

namespace {

// What a file may claim; more than any statistics program writes.
constexpr int maxVariables = 120'000;
constexpr qint64 maxLabels = 5'000'000;
constexpr qint64 maxNoteCharacters = 10'000'000;
constexpr int maxTextBytes = 16'000'000;
constexpr qint64 maxRows = 2'000'000'000;

constexpr int firstUnicodeStata = 118;

/// Decodes strictly; nothing for bytes that are no UTF-8.
std::optional<QString> decoded(const char* utf8, qsizetype bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(QByteArrayView(utf8, bytes));
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

/// Length without a last character that is not all there.
int lengthOfWholeCharacters(const char* text, int bytes) {
    int start = bytes;
    while (start > 0 && bytes - start < 3 && (text[start - 1] & 0xC0) == 0x80)
        --start;
    if (start == 0)
        return bytes;
    const unsigned char lead = static_cast<unsigned char>(text[start - 1]);
    const int needed = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return bytes - start + 1 < needed ? start - 1 : bytes;
}

QString unreadableText(const QString& where) {
    return said(u"%1: Der Text kann nicht gelesen werden. Geben Sie die Zeichenkodierung der Datei mit "
                u"--encoding "
                "an, z.B. --encoding WINDOWS-1252"_s,
                u"%1: The text cannot be read. Name the file's character encoding with --encoding, for "
                u"example "
                "--encoding WINDOWS-1252"_s)
        .arg(where);
}

QString variableWord(const QString& name) {
    return said(u"Variable %1"_s, u"Variable %1"_s).arg(name);
}

SurveyLabel labelCode(const readstat_value_t& value) {
    SurveyLabel label;
    if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING) {
        label.kind = SurveyLabel::Text;
    } else if (readstat_value_is_tagged_missing(value)) {
        label.kind = SurveyLabel::Letter;
        label.letter = readstat_value_tag(value);
    } else if (readstat_value_is_system_missing(value)) {
        label.kind = SurveyLabel::SystemMissing;
    } else {
        label.number = readstat_double_value(value);
    }
    return label;
}

/// True if a number of single precision is another one than the shortest decimal that stands for it.
bool hasRemainder(float number) {
    if (!std::isfinite(number) || std::trunc(number) == number)
        return false;
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, number).ptr;
    double shortest = 0;
    std::from_chars(text, end, shortest);
    return shortest != static_cast<double>(number);
}

} // namespace

/// What every pass shares: a failure of ours leaves the C reader by its own way out and is thrown afterwards.
struct PassBase {
    std::exception_ptr failure;

    template<class Step>
    int guarded(Step&& step) {
        try {
            step();
            return READSTAT_HANDLER_OK;
        } catch (...) {
            failure = std::current_exception();
            return READSTAT_HANDLER_ABORT;
        }
    }

    void metadata(readstat_metadata_t*) {}
    void note(int, const char*) {}
    void variable(readstat_variable_t*, const char*) {}
    void weight(const readstat_variable_t*) {}
    void valueLabel(const char*, const readstat_value_t&, const char*) {}
    void value(int, readstat_variable_t*, const readstat_value_t&) {}
    void progress(double) {}
    static constexpr bool wantsValues = false;
};

struct SurveyReader::HeadPass : PassBase {
    SurveyFile file;
    QByteArray encoding; ///< of the file, empty if it does not say
    QHash<QByteArray, int> sets;
    int unreadableSet = -1; ///< its variables may be told only later
    QSet<int> usedSets;
    qint64 labels = 0, noteCharacters = 0;
    qint64 lostTexts = 0; ///< with characters that the file did not keep

    QString text(const char* utf8, const QString& where) {
        if (!utf8)
            return {};
        const std::optional<QString> result = decoded(utf8, static_cast<qsizetype>(strlen(utf8)));
        if (!result)
            throw ImportError(unreadableText(where));
        lostTexts += result->contains(QChar::ReplacementCharacter);
        return *result;
    }

    int setOf(const char* name) {
        const auto found = sets.constFind(name);
        if (found != sets.constEnd())
            return *found;
        sets.insert(name, static_cast<int>(file.labelSets.size()));
        file.labelSets.emplace_back();
        return static_cast<int>(file.labelSets.size()) - 1;
    }

    void metadata(readstat_metadata_t* meta) {
        file.rows = readstat_get_row_count(meta);
        encoding = readstat_get_file_encoding(meta);
        if (encoding.isEmpty() && file.stata)
            encoding = readstat_get_file_format_version(meta) < firstUnicodeStata ? "WINDOWS-1252" : "UTF-8";
        if (readstat_get_var_count(meta) > maxVariables || file.rows > maxRows)
            throw ImportError(said(u"Die Datei behauptet mehr Variablen oder Fälle, als gelesen werden"_s,
                                   u"The file claims more variables or cases than are read"_s));
        file.label =
            text(readstat_get_file_label(meta), said(u"Dateibezeichnung"_s, u"File label"_s)).trimmed();
    }

    void note(int index, const char* text_) {
        // Stata's note 0 is the number of notes.
        if (file.stata && index == 0)
            return;
        const QString line = text(text_, said(u"Anmerkungen der Datei"_s, u"Notes of the file"_s));
        noteCharacters += line.size();
        if (noteCharacters > maxNoteCharacters)
            throw ImportError(
                said(u"Die Anmerkungen der Datei sind zu lang"_s, u"The notes of the file are too long"_s));
        file.notes << line;
    }

    void variable(readstat_variable_t* source, const char* labelSet) {
        if (file.variables.size() >= maxVariables)
            throw ImportError(
                said(u"Die Datei hat zu viele Variablen"_s, u"The file has too many variables"_s));
        SurveyVariable variable;
        variable.name =
            text(readstat_variable_get_name(source),
                 said(u"Name der Variable %1"_s, u"Name of variable %1"_s).arg(file.variables.size() + 1));
        variable.label = text(readstat_variable_get_label(source), variableWord(variable.name));
        variable.format = text(readstat_variable_get_format(source), variableWord(variable.name));
        variable.isText = readstat_variable_get_type_class(source) == READSTAT_TYPE_CLASS_STRING;
        if (variable.isText && readstat_variable_get_type(source) != READSTAT_TYPE_STRING_REF)
            variable.width = widthOf(source, variable.format);
        variable.hasMeasure = readstat_variable_get_measure(source) != READSTAT_MEASURE_UNKNOWN;
        if (labelSet) {
            variable.labelSet = setOf(labelSet);
            usedSets.insert(variable.labelSet);
        }
        missing(source, variable);
        file.variables.push_back(std::move(variable));
    }

    int widthOf(const readstat_variable_t* source, const QString& format) const {
        const int stored =
            static_cast<int>(std::min<size_t>(readstat_variable_get_storage_width(source), INT_MAX));
        if (file.stata)
            return stored - 1; // a zero ends each string
        // An SPSS file's own width is in the format; the storage is rounded up.
        const int exact = format.mid(1).toInt();
        return exact > 0 ? exact : stored;
    }

    static void missing(const readstat_variable_t* source, SurveyVariable& variable) {
        for (int i = 0; i < readstat_variable_get_missing_ranges_count(source); ++i) {
            const readstat_value_t low = readstat_variable_get_missing_range_lo(source, i);
            const readstat_value_t high = readstat_variable_get_missing_range_hi(source, i);
            if (readstat_value_type_class(low) == READSTAT_TYPE_CLASS_STRING)
                variable.missingTexts = true;
            else
                variable.missing.push_back({readstat_double_value(low), readstat_double_value(high)});
        }
    }

    void weight(const readstat_variable_t* source) { file.weight = readstat_variable_get_index(source); }

    void valueLabel(const char* set, const readstat_value_t& value, const char* label) {
        if (++labels > maxLabels)
            throw ImportError(
                said(u"Die Datei hat zu viele Wertelabels"_s, u"The file has too many value labels"_s));
        const int index = setOf(set);
        const auto read = [&](const char* utf8) {
            if (!utf8)
                return QString(); // a damaged file's label may have no code
            const std::optional<QString> result = decoded(utf8, static_cast<qsizetype>(strlen(utf8)));
            if (!result)
                unreadableSet = index;
            else
                lostTexts += result->contains(QChar::ReplacementCharacter);
            return result.value_or(QString());
        };
        SurveyLabel entry = labelCode(value);
        if (entry.kind == SurveyLabel::Text)
            entry.code = read(readstat_string_value(value));
        entry.label = read(label);
        file.labelSets[static_cast<size_t>(index)].push_back(std::move(entry));
    }

    QStringList unusedSets() const {
        QStringList names;
        for (auto set = sets.begin(); set != sets.end(); ++set)
            if (!usedSets.contains(*set))
                names << QString::fromUtf8(set.key());
        names.sort();
        if (names.isEmpty())
            return {};
        return {said(u"Wertelabel-Sätze, die keine Variable benutzt: %1"_s,
                     u"sets of value labels that no variable uses: %1"_s)
                    .arg(names.join(u", "_s))};
    }

    void checkLabels() const {
        if (unreadableSet < 0)
            return;
        QString name;
        for (const SurveyVariable& variable : file.variables)
            if (variable.labelSet == unreadableSet && name.isEmpty())
                name = variable.name;
        throw ImportError(unreadableText(
            said(u"Wertelabels der Variable %1"_s, u"Value labels of variable %1"_s).arg(name)));
    }
};

/// Reads the head once more without conversion to find a text that a conversion chokes on: the reader cuts
/// some of them off without a word.
struct SurveyReader::Diagnosis : PassBase {
    EncodingCheck check;
    QString found;
    QHash<QByteArray, QString> owners; ///< first variable of each label set
    QByteArrayList badSets;

    explicit Diagnosis(const QByteArray& encoding) : check(encoding) {}

    bool bad(const char* text) const { return text && !check.reads(text); }

    void variable(readstat_variable_t* source, const char* labelSet) {
        const char* name = readstat_variable_get_name(source);
        const QString plain = QString::fromLatin1(name);
        if (labelSet && !owners.contains(labelSet))
            owners.insert(labelSet, plain);
        if (found.isEmpty() && (bad(name) || bad(readstat_variable_get_label(source))))
            found = plain;
    }
    void valueLabel(const char* set, const readstat_value_t& value, const char* label) {
        const bool text = readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING;
        if (bad(label) || (text && bad(readstat_string_value(value))))
            badSets << set;
    }
    /// The first variable with such a text; labels come before variables in some files, after them in others.
    QString variableName() const {
        if (found.isEmpty())
            for (const QByteArray& set : badSets)
                if (owners.contains(set))
                    return owners.value(set);
        return found;
    }
};

struct SurveyReader::RowPass : PassBase {
    static constexpr bool wantsValues = true;
    const SurveyFile& head;
    RowReceiver& receiver;
    const std::function<bool(double)>& report;
    int row = -1;
    int last = -1; ///< variable that was read last
    qint64 rowsPerReport, nextReport = 0;
    qint64 cutTexts = 0, lostTexts = 0;
    std::vector<bool> inexact; ///< variables of single precision whose numbers have a binary remainder

    RowPass(const SurveyFile& file, RowReceiver& rows, const std::function<bool(double)>& progressReport)
        : head(file), receiver(rows), report(progressReport), rowsPerReport(std::max<qint64>(file.rows / 100, 1)),
          inexact(file.variables.size()) {}

    void value(int rowIndex, readstat_variable_t* variable, const readstat_value_t& value) {
        if (rowIndex != row) {
            if (row >= 0)
                receiver.endRow();
            row = rowIndex;
            if (row >= nextReport && head.rows > 0) {
                nextReport = row + rowsPerReport;
                tell(static_cast<double>(row) / static_cast<double>(head.rows));
            }
        }
        const int index = variable->index;
        if (index < 0 || index >= static_cast<int>(head.variables.size()))
            throw ImportError(said(u"Die Datei widerspricht sich"_s, u"The file contradicts itself"_s));
        // Most values by far; the library's own questions would take longer than the answer.
        if (value.type == READSTAT_TYPE_DOUBLE && !value.is_system_missing && !value.is_tagged_missing)
            receiver.number(index, value.v.double_value);
        else if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING)
            text(index, readstat_string_value(value));
        else if (readstat_value_is_tagged_missing(value))
            receiver.letter(index, readstat_value_tag(value));
        else if (!readstat_value_is_system_missing(value))
            otherNumber(index, value);
        last = index;
    }

    void otherNumber(int index, const readstat_value_t& value) {
        if (value.type == READSTAT_TYPE_FLOAT && !inexact[static_cast<size_t>(index)])
            inexact[static_cast<size_t>(index)] = hasRemainder(value.v.float_value);
        receiver.number(index, readstat_double_value(value));
    }

    void text(int index, const char* utf8) {
        if (!utf8)
            return;
        const size_t size = strlen(utf8);
        const SurveyVariable& variable = head.variables[static_cast<size_t>(index)];
        if (size > maxTextBytes)
            throw ImportError(said(u"Variable %1, Fall %2: Der Text ist länger als %3 Zeichen"_s,
                                   u"Variable %1, case %2: The text is longer than %3 characters"_s)
                                  .arg(variable.name)
                                  .arg(row + 1)
                                  .arg(maxTextBytes));
        int bytes = static_cast<int>(size);
        if (!QByteArrayView(utf8, bytes).isValidUtf8()) {
            // A writer that fills the field to its last byte may have cut a character in two; nothing else is
            // forgiven.
            const int whole =
                bytes >= variable.width && variable.width > 0 ? lengthOfWholeCharacters(utf8, bytes) : bytes;
            if (whole == bytes || !QByteArrayView(utf8, whole).isValidUtf8())
                throw ImportError(unreadableText(said(u"Variable %1, Fall %2"_s, u"Variable %1, case %2"_s)
                                                     .arg(variable.name)
                                                     .arg(row + 1)));
            bytes = whole;
            ++cutTexts;
        }
        lostTexts += strstr(utf8, "\xEF\xBF\xBD") != nullptr;
        receiver.text(index, utf8, lengthWithoutTrailingBlanks(utf8, bytes));
    }

    /// What the library tells may come only once, at the beginning; it counts where the rows are not known.
    void progress(double share) {
        if (head.rows <= 0)
            tell(share);
    }

    void tell(double share) {
        if (report && !report(share))
            throw importCancelled();
    }
};

SurveyReader::SurveyReader(const QString& path, const QString& encoding)
    : path_(path), encoding_(encoding.toUtf8()) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"sav"_s || suffix == u"zsav"_s)
        kind_ = Kind::Sav;
    else if (suffix == u"por"_s)
        kind_ = Kind::Por;
    else if (suffix == u"dta"_s)
        kind_ = Kind::Dta;
    else
        throw ImportError(said(u"%1: Gelesen werden .sav, .zsav, .por und .dta"_s,
                               u"%1: What can be read is .sav, .zsav, .por and .dta"_s)
                              .arg(path));
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        throw ImportError(said(u"%1: Die Datei ist nicht da oder nicht lesbar"_s,
                               u"%1: There is no such file, or it cannot be read"_s)
                              .arg(path));
    if (file.peek(16).contains("ENCRYPTED"))
        throw ImportError(said(u"%1: Die Datei ist mit einem Kennwort verschlüsselt"_s,
                               u"%1: The file is encrypted with a password"_s)
                              .arg(path));
    if (kind_ == Kind::Por && !encoding_.isEmpty())
        throw ImportError(
            said(
                u"%1: Eine .por-Datei hat einen festen Zeichensatz, --encoding gilt für sie nicht; nehmen Sie .sav"_s,
                u"%1: A .por file has one fixed set of characters, --encoding does not apply to it; use .sav"_s)
                .arg(path));
    if (kind_ == Kind::Por)
        spelledOut_ = withNumbersSpelledOut(path);
    if (kind_ == Kind::Sav && encoding_.isEmpty())
        encoding_ = ownEncoding(path);
    if (!encoding_.isEmpty()) {
        iconv_t converter = iconv_open("UTF-8", encoding_.constData());
        if (converter == reinterpret_cast<iconv_t>(-1))
            throw ImportError(
                said(u"Zeichenkodierung '%1' ist unbekannt"_s, u"Character encoding '%1' is unknown"_s)
                    .arg(encoding));
        iconv_close(converter);
    }
}

template<class Pass>
int SurveyReader::parse(Pass& pass, bool convert) const {
    const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t*)> parser(readstat_parser_init(),
                                                                                  readstat_parser_free);
    readstat_set_metadata_handler(parser.get(), [](readstat_metadata_t* meta, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.metadata(meta); });
    });
    readstat_set_note_handler(parser.get(), [](int index, const char* note, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.note(index, note); });
    });
    readstat_set_variable_handler(parser.get(),
                                  [](int, readstat_variable_t* variable, const char* labels, void* context) {
                                      auto& p = *static_cast<Pass*>(context);
                                      return p.guarded([&] { p.variable(variable, labels); });
                                  });
    readstat_set_fweight_handler(parser.get(), [](readstat_variable_t* variable, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.weight(variable); });
    });
    readstat_set_value_label_handler(
        parser.get(), [](const char* set, readstat_value_t value, const char* label, void* context) {
            auto& p = *static_cast<Pass*>(context);
            return p.guarded([&] { p.valueLabel(set, value, label); });
        });
    readstat_set_progress_handler(parser.get(), [](double share, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.progress(share); });
    });
    if (Pass::wantsValues)
        readstat_set_value_handler(
            parser.get(), [](int row, readstat_variable_t* variable, readstat_value_t value, void* context) {
                auto& p = *static_cast<Pass*>(context);
                return p.guarded([&] { p.value(row, variable, value); });
            });
    SurveyInput input(spelledOut_ ? spelledOut_->fileName() : path_);
    input.serve(parser.get());
    if (!encoding_.isEmpty())
        readstat_set_file_character_encoding(parser.get(), encoding_.constData());
    if (!convert)
        readstat_set_handler_character_encoding(parser.get(), nullptr);
    const QByteArray path = QFile::encodeName(path_);
    readstat_error_t result = READSTAT_OK;
    switch (kind_) {
    case Kind::Sav:
        result = readstat_parse_sav(parser.get(), path.constData(), &pass);
        break;
    case Kind::Por: {
        const Utf8Characters characters;
        result = readstat_parse_por(parser.get(), path.constData(), &pass);
        break;
    }
    case Kind::Dta:
        result = readstat_parse_dta(parser.get(), path.constData(), &pass);
        break;
    }
    if (pass.failure)
        std::rethrow_exception(pass.failure);
    return result;
}

void SurveyReader::fail(int code, const QString& detail) const {
    QString reason;
    switch (code) {
    case READSTAT_ERROR_OPEN:
    case READSTAT_ERROR_READ:
    case READSTAT_ERROR_SEEK:
        reason = said(u"Die Datei ist abgeschnitten oder nicht lesbar"_s,
                      u"The file is cut off or cannot be read"_s);
        break;
    case READSTAT_ERROR_ROW_COUNT_MISMATCH:
        reason = said(u"Die Datei ist abgeschnitten: Sie hat weniger Fälle, als sie angibt"_s,
                      u"The file is cut off: it has fewer cases than it says"_s);
        break;
    case READSTAT_ERROR_UNSUPPORTED_CHARSET:
        reason = said(u"Die Zeichenkodierung der Datei ist unbekannt. Geben Sie eine mit --encoding an"_s,
                      u"The file's character encoding is unknown. Name one with --encoding"_s);
        break;
    case READSTAT_ERROR_CONVERT:
    case READSTAT_ERROR_CONVERT_BAD_STRING:
    case READSTAT_ERROR_CONVERT_SHORT_STRING:
    case READSTAT_ERROR_CONVERT_LONG_STRING:
        reason = unreadableText(detail.isEmpty() ? said(u"Texte der Datei"_s, u"Texts of the file"_s)
                                                 : variableWord(detail));
        break;
    default:
        reason = said(
            u"Die Datei ist beschädigt, von anderer Art, als ihre Endung sagt, oder enthält etwas, das nicht "
            u"gelesen "
            "werden kann"_s,
            u"The file is damaged, of another kind than its extension says, or holds something that cannot be read"_s);
    }
    throw ImportError(
        u"%1: %2 (ReadStat %3: %4)"_s.arg(path_, reason)
            .arg(code)
            .arg(QString::fromUtf8(readstat_error_message(static_cast<readstat_error_t>(code)))));
}

QString SurveyReader::unreadableInHead(const QByteArray& fileEncoding) const {
    Diagnosis diagnosis(!encoding_.isEmpty() ? encoding_ : !fileEncoding.isEmpty() ? fileEncoding : "UTF-8");
    parse(diagnosis, false);
    return diagnosis.variableName();
}

QString SurveyReader::stringAfter(const SurveyFile& head, int variable) {
    const int count = static_cast<int>(head.variables.size());
    for (int step = 1; step <= count; ++step) {
        const SurveyVariable& next = head.variables[static_cast<size_t>((variable + step) % count)];
        if (next.isText)
            return next.name;
    }
    return {};
}

SurveyFile SurveyReader::readHead() {
    HeadPass pass;
    pass.file.stata = kind_ == Kind::Dta;
    const int code = parse(pass, true);
    const QString unreadable = kind_ == Kind::Por ? QString() : unreadableInHead(pass.encoding);
    if (code != READSTAT_OK || !unreadable.isEmpty())
        fail(code == READSTAT_OK ? READSTAT_ERROR_CONVERT_BAD_STRING : code, unreadable);
    pass.checkLabels();
    if (pass.file.variables.empty())
        throw ImportError(
            said(u"%1: Die Datei enthält keine Variablen"_s, u"%1: The file holds no variables"_s)
                .arg(path_));
    if (pass.file.weight >= static_cast<int>(pass.file.variables.size()))
        pass.file.weight = -1;
    if (kind_ == Kind::Sav)
        pass.file.extras = savExtensions(path_);
    if (kind_ == Kind::Dta)
        pass.file.extras = pass.unusedSets() + dtaCharacteristics(path_);
    lostInHead_ = pass.lostTexts;
    return std::move(pass.file);
}

qint64 SurveyReader::readRows(const SurveyFile& head, RowReceiver& receiver,
                              const std::function<bool(double)>& progress) {
    RowPass pass(head, receiver, progress);
    if (const int code = parse(pass, true))
        // Only strings are converted, so the next one after the last value is the one that failed.
        fail(code, stringAfter(head, pass.last));
    if (pass.row >= 0)
        receiver.endRow();
    if (kind_ == Kind::Por)
        lostTexts_ = lostInHead_ + pass.lostTexts;
    inexact_ = std::move(pass.inexact);
    return pass.cutTexts;
}
