#include "catalogue/SurveyReader.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/SurveyEncoding.h"
#include "catalogue/SurveyHeadPass.h"
#include "catalogue/SurveyInput.h"
#include "catalogue/SurveyRowPass.h"
#include "catalogue/dtaCharacteristics.h"
#include "catalogue/dtaData.h"
#include "catalogue/importTexts.h"
#include "catalogue/savExtensions.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <readstat.h>

using namespace Qt::StringLiterals;

namespace {

QString damaged() {
    return said(u"Die Datei ist abgeschnitten oder beschädigt"_s, u"The file is cut off or damaged"_s);
}

} // namespace

SurveyReader::SurveyReader(const QString& path, const QString& encoding) : path_(path), encoding_(encoding.toUtf8()) {
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
    stamp_ = fileStamp(path);
    if (file.peek(16).contains("ENCRYPTED"))
        throw ImportError(said(u"%1: Die Datei ist mit einem Kennwort verschlüsselt"_s,
                               u"%1: The file is encrypted with a password"_s)
                              .arg(path));
    if (kind_ == Kind::Por && !encoding_.isEmpty())
        throw ImportError(
            said(u"%1: Eine .por-Datei hat einen festen Zeichensatz, --encoding gilt für sie nicht; nehmen Sie .sav"_s,
                 u"%1: A .por file has one fixed set of characters, --encoding does not apply to it; use .sav"_s)
                .arg(path));
    if (kind_ == Kind::Por)
        portable_ = portableText(path);
    if (kind_ == Kind::Sav && encoding_.isEmpty())
        encoding_ = ownEncoding(path);
    if (!encoding_.isEmpty() && !EncodingCheck(encoding_).isKnown())
        throw ImportError(
            said(u"Zeichenkodierung '%1' ist unbekannt"_s, u"Character encoding '%1' is unknown"_s).arg(encoding));
}

std::unique_ptr<QIODevice> SurveyReader::source() const {
    if (!portable_ || portable_->spelledOut.isEmpty())
        return std::make_unique<QFile>(path_);
    auto buffer = std::make_unique<QBuffer>();
    buffer->setData(portable_->spelledOut);
    return buffer;
}

template<class Pass>
int SurveyReader::parse(Pass& pass, bool convert, qint64 rows) const {
    const std::unique_ptr<readstat_parser_t, void (*)(readstat_parser_t*)> parser(readstat_parser_init(),
                                                                                  readstat_parser_free);
    readstat_set_metadata_handler(parser.get(), [](readstat_metadata_t* meta, void* context) {
        auto& p = *static_cast<Pass*>(context);
        p.formatIs(readstat_get_file_format_version(meta));
        return p.guarded([&] { p.metadata(meta); });
    });
    readstat_set_note_handler(parser.get(), [](int index, const char* note, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.note(index, note); });
    });
    readstat_set_variable_handler(parser.get(),
                                  [](int, readstat_variable_t* variable, const char* labels, void* context) {
                                      auto& p = *static_cast<Pass*>(context);
                                      return p.guarded([&] { p.variable(variable, p.setOfVariable(labels)); });
                                  });
    readstat_set_fweight_handler(parser.get(), [](readstat_variable_t* variable, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.weight(variable); });
    });
    readstat_set_value_label_handler(parser.get(),
                                     [](const char* set, readstat_value_t value, const char* label, void* context) {
                                         auto& p = *static_cast<Pass*>(context);
                                         return p.guarded([&] { p.valueLabel(p.setOfLabels(set), value, label); });
                                     });
    readstat_set_progress_handler(parser.get(), [](double share, void* context) {
        auto& p = *static_cast<Pass*>(context);
        return p.guarded([&] { p.progress(share); });
    });
    if (Pass::wantsValues)
        readstat_set_value_handler(parser.get(),
                                   [](int row, readstat_variable_t* variable, readstat_value_t value, void* context) {
                                       auto& p = *static_cast<Pass*>(context);
                                       return p.guarded([&] { p.value(row, variable, value); });
                                   });
    SurveyInput input(source());
    input.serve(parser.get());
    // Without it, the library takes an uncompressed .sav file that does not say its number of cases for empty.
    readstat_set_row_limit(parser.get(), static_cast<long>(rows));
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
        reason = said(u"Die Datei ist abgeschnitten oder nicht lesbar"_s, u"The file is cut off or cannot be read"_s);
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
    refuse(u"%1 (ReadStat %2: %3)"_s.arg(reason).arg(code).arg(
        QString::fromUtf8(readstat_error_message(static_cast<readstat_error_t>(code)))));
}

void SurveyReader::refuse(const QString& reason) const {
    throw ImportError(path_ + u": "_s + reason);
}

void SurveyReader::checkRows(SurveyFile& head) {
    if (kind_ == Kind::Sav) {
        savCases_.emplace(path_);
        if (!savCases_->isReadable())
            refuse(damaged());
        if (!head.saysRows)
            head.rows = savCases_->byLength().value_or(-1);
    } else if (kind_ == Kind::Por) {
        // What is not understood could lose more than the library tells.
        if (!portable_)
            refuse(
                said(u"Die Datei ist abgeschnitten oder beschädigt, oder hinter ihrem letzten Fall steht noch etwas"_s,
                     u"The file is cut off or damaged, or there is something else behind its last case"_s));
        head.rows = portable_->rows;
        head.saysRows = true;
    }
}

void SurveyReader::checkRows(const SurveyFile& head, qint64 read) const {
    if (kind_ != Kind::Sav) {
        if (read != head.rows)
            refuse(countNotKept(head.rows, read));
        return;
    }
    const SavCases::Count held = savCases_->count();
    if (head.saysRows && held.whole != head.rows)
        refuse(countNotKept(head.rows, held.whole));
    if (!held.isClean)
        refuse(said(u"Die Datei ist abgeschnitten oder beschädigt: Hinter %1 ganzen Fällen steht noch etwas, das kein "
                    u"ganzer Fall ist"_s,
                    u"The file is cut off or damaged: behind %1 whole cases there is something else that is no whole "
                    u"case"_s)
                   .arg(held.whole));
    if (read != held.whole)
        refuse(countNotKept(held.whole, read));
}

QString SurveyReader::unreadableInHead(const QByteArray& fileEncoding) const {
    SurveyTextCheck diagnosis(!encoding_.isEmpty() ? encoding_ : !fileEncoding.isEmpty() ? fileEncoding : "UTF-8");
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

void SurveyReader::checkUnchanged() const {
    if (fileStamp(path_) != stamp_)
        refuse(
            said(u"Die Datei hat sich geändert, während sie gelesen wurde"_s, u"The file changed while it was read"_s));
}

SurveyFile SurveyReader::readHead() {
    SurveyHeadPass pass;
    pass.file.stata = kind_ == Kind::Dta;
    const int code = parse(pass, true);
    const std::optional<QString> fault = kind_ == Kind::Dta ? dtaDataFault(path_) : QString();
    // Reported before the library's own message: a wrong number of cases makes it stumble over what stands behind them.
    if (fault && !fault->isEmpty())
        refuse(*fault);
    const QString unreadable = kind_ == Kind::Por ? QString() : unreadableInHead(pass.encoding);
    if (code != READSTAT_OK || !unreadable.isEmpty())
        fail(code == READSTAT_OK ? READSTAT_ERROR_CONVERT_BAD_STRING : code, unreadable);
    if (!fault)
        refuse(damaged());
    pass.checkLabels();
    if (pass.file.variables.empty())
        throw ImportError(
            said(u"%1: Die Datei enthält keine Variablen"_s, u"%1: The file holds no variables"_s).arg(path_));
    if (pass.file.weight >= static_cast<int>(pass.file.variables.size()))
        pass.file.weight = -1;
    checkRows(pass.file);
    if (kind_ == Kind::Sav)
        pass.file.extras = savExtensions(path_);
    if (kind_ == Kind::Dta)
        pass.file.extras = pass.unusedSets() + dtaCharacteristics(path_);
    lostInHead_ = pass.lostTexts;
    return std::move(pass.file);
}

qint64 SurveyReader::readRows(const SurveyFile& head, RowReceiver& receiver,
                              const std::function<bool(double)>& progress) {
    SurveyRowPass pass(head, receiver, progress);
    const int code = parse(pass, true, kind_ == Kind::Sav && !head.saysRows ? std::max<qint64>(head.rows, 0) : 0);
    checkUnchanged();
    if (code != READSTAT_OK && code != READSTAT_ERROR_ROW_COUNT_MISMATCH)
        // Only strings are converted, so the next one after the last value is the one that failed.
        fail(code, stringAfter(head, pass.last));
    if (pass.row >= 0)
        receiver.endRow();
    checkRows(head, pass.row + 1);
    if (code != READSTAT_OK)
        fail(code, {});
    if (kind_ == Kind::Por)
        lostTexts_ = lostInHead_ + pass.lostTexts;
    inexact_ = std::move(pass.inexact);
    return pass.cutTexts;
}
