#include "printing/ReportReader.h"

#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "diagnostics/engineWords.h"
#include "platform/dao/TextOrder.h"
#include "platform/system/Paths.h"
#include "printing/textBlocks.h"

#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Somebody else's writing is over by then, or something is wrong.
constexpr int patience = 20'000;
/// Opening has to answer at once.
constexpr int openingWait = 300;
/// Variables that may fail before the catalogue counts as unreadable.
constexpr int mostFailures = 20;
/// Variables that are read together at most, and characters of their long texts and pictures.
constexpr size_t mostTogether = 64, mostWithGraphs = 16;
constexpr qsizetype mostCharacters = 700'000;

} // namespace

ReportReader::ReportReader(const ReportRequest& request)
    : request_(request), languages_(ReportLanguages::of(request.LANGUAGE, request.ReportLanguage)), views_(gViews),
      options_(gCatalogueOptions) {
    if (!request_.DatabaseFile.isEmpty())
        request_.DatabaseFile = QFileInfo(request_.DatabaseFile).absoluteFilePath();
}

ReportReader::~ReportReader() = default;

QString ReportReader::open() {
    if (request_.DatabaseFile.isEmpty())
        return word(u"Es ist kein Katalog geöffnet."_s);
    const BriefReading brief(openingWait);
    try {
        catalogue_.open(request_.DatabaseFile);
        QString reason = makeOutline();
        if (reason.isEmpty() && !spool_.fault().isEmpty())
            reason = word(u"Der Bericht kann nicht zwischengespeichert werden: %1"_s).arg(spool_.fault());
        return reason;
    } catch (const dao::Error& error) {
        return word(u"Der Katalog kann nicht gelesen werden: %1"_s).arg(engineWords(error));
    }
}

ReportReader::Study ReportReader::study(const QString& number) const {
    const auto found = studies_.constFind(dao::foldedText(number));
    return found == studies_.constEnd() ? Study{.number = number, .year = {}, .weights = {}, .title = {}} : *found;
}

bool ReportReader::read(int milliseconds) {
    if (!fault_.isEmpty() || !catalogue_.isOpen())
        return false;
    QElapsedTimer elapsed;
    elapsed.start();
    const BriefReading brief(0);
    try {
        do {
            readNext();
        } while (catalogue_.isOpen() && spool_.fault().isEmpty() && elapsed.elapsed() < milliseconds);
        locked_.invalidate();
    } catch (const dao::Error& error) {
        if (!tryAgain(error))
            fault_ = word(u"Der Katalog kann nicht gelesen werden: %1"_s).arg(engineWords(error));
    } catch (const std::bad_alloc&) {
        fault_ = word(u"Der Speicher reicht für den Bericht nicht aus."_s);
    }
    if (fault_.isEmpty() && !spool_.fault().isEmpty())
        fault_ = word(u"Der Bericht kann nicht zwischengespeichert werden: %1"_s).arg(spool_.fault());
    if (!fault_.isEmpty()) {
        batch_.reset();
        catalogue_.close();
    }
    return catalogue_.isOpen();
}

/// A lock goes when its holder has written. Where variables cannot be read together, each is tried by itself, and the
/// place of one that can't be read says so.
bool ReportReader::tryAgain(const dao::Error& error) {
    if (isLocked(error)) {
        if (!locked_.isValid())
            locked_.start();
        return locked_.elapsed() < patience;
    }
    if (!batch_ || ++failures_ > mostFailures)
        return false;
    if (batchEntries_.size() > 1) {
        singly_ = batchEntries_.size();
        batch_.reset();
        return true;
    }
    VariableRecord damaged = batch_->asked().front();
    damaged.fault = word(u"Diese Variable kann nicht gelesen werden: %1"_s).arg(engineWords(error));
    keep(batchEntries_.front(), damaged.toBytes());
    batch_.reset();
    return true;
}

void ReportReader::readNext() {
    if (batch_) {
        if (!batch_->step())
            finishBatch();
        return;
    }
    while (next_ < static_cast<int>(sources_.size()) && sources_[static_cast<size_t>(next_)].place >= 0)
        ++next_;
    ready_ = next_;
    if (next_ == static_cast<int>(sources_.size())) {
        catalogue_.close();
        return;
    }
    if (Source& source = sources_[static_cast<size_t>(next_)]; source.what == Source::What::Study)
        readStudyChapter(source);
    else
        beginBatch();
}

/// The next variables of one study, chapters between them left out.
void ReportReader::beginBatch() {
    const size_t most = singly_ > 0 ? 1 : together_;
    const QString key = sources_[static_cast<size_t>(next_)].key;
    batchEntries_.clear();
    std::vector<VariableRecord> asked;
    const Study of = study(key);
    for (size_t i = static_cast<size_t>(next_); i < sources_.size() && asked.size() < most; ++i) {
        const Source& source = sources_[i];
        if (source.what != Source::What::Variable)
            continue;
        if (source.key != key)
            break;
        VariableRecord record;
        record.name = outline_.entries[i].name;
        record.study = key;
        record.year = of.year;
        record.title = of.title;
        record.label = labels_[i];
        asked.push_back(std::move(record));
        batchEntries_.push_back(static_cast<int>(i));
    }
    singly_ -= singly_ > 0 ? 1 : 0;
    batch_.emplace(catalogue_, spool_, wishes_, std::move(asked));
}

void ReportReader::finishBatch() {
    if (batch_->isTooLarge()) {
        together_ = std::max<size_t>(1, batchEntries_.size() / 4);
        batch_.reset();
        return;
    }
    for (size_t i = 0; i < batchEntries_.size(); ++i)
        keep(batchEntries_[i], batch_->variables()[i].toBytes());
    // As many next time as are short enough to be held together, by what these took.
    const qsizetype each = std::max<qsizetype>(1, batch_->characters() / static_cast<qsizetype>(batchEntries_.size()));
    const size_t most = std::min(2 * together_, wishes_.graph ? mostWithGraphs : mostTogether);
    together_ = std::clamp<size_t>(static_cast<size_t>(mostCharacters / each), 1, most);
    batch_.reset();
}

void ReportReader::keep(int entry, const QByteArray& bytes) {
    sources_[static_cast<size_t>(entry)].place = spool_.put(bytes);
}

void ReportReader::readStudyChapter(Source& source) {
    const Study of = study(source.key);
    std::vector<Block> blocks;
    const int level = outline_.entries[static_cast<size_t>(next_)].level;
    blocks.push_back(headingBlock(outline_.entries[static_cast<size_t>(next_)].title, level));
    addOtherName(blocks, languages_.otherName(of.title), languages_);
    FactsBlock facts;
    facts.facts.emplace_back(word(u"Studiennummer"_s), of.number);
    if (!of.year.isEmpty())
        facts.facts.emplace_back(word(u"Jahr"_s), of.year);
    if (!of.weights.isEmpty())
        facts.facts.emplace_back(word(u"Gewichte"_s), of.weights);
    blocks.push_back(std::move(facts));
    const QString table = schema::entryTableName(studyTable());
    const QStringList columns = catalogue_.present(table, {u"dt_StudyDescription"_s, u"dt_EnStudyDescription"_s});
    if (!columns.isEmpty()) {
        const dao::RecordsetPtr rows = catalogue_.rows(u"SELECT "_s + columns.join(u", "_s) + u" FROM "_s + table +
                                                       u" WHERE id_StudyNo = "_s + quoted(of.number) + u';');
        if (!rows->Eof())
            addTexts(blocks, TextBlock::Style::Body,
                     {textIn(*rows, u"dt_StudyDescription"_s), textIn(*rows, u"dt_EnStudyDescription"_s)}, languages_);
    }
    source.place = spool_.put(toBytes(blocks));
}

std::vector<Block> ReportReader::blocks(int entry) const {
    const Source& source = sources_.at(static_cast<size_t>(entry));
    const QByteArray bytes = spool_.get(source.place);
    if (bytes.isEmpty())
        return {textBlock(TextBlock::Style::Fault,
                          word(u"Der Zwischenspeicher des Berichts kann nicht gelesen werden."_s))};
    if (source.what != Source::What::Variable)
        return blocksFrom(bytes);
    return blocksOf(VariableRecord::fromBytes(bytes), languages_, Paths::fileOf(request_.DatabaseFile), spool_);
}
