#include "charts/pictures.h"
#include "printing/Spool.h"
#include "printing/VariableRecord.h"
#include "printing/storedBlocks.h"
#include "printing/textBlocks.h"
#include "tables/StoredTable.h"
#include "tables/missing.h"

#include <algorithm>

// What a report prints of a variable.

using namespace Qt::StringLiterals;

namespace {

class VariablePrint {
public:
    VariablePrint(const VariableRecord& variable, const ReportLanguages& languages, const QString& catalogue,
                  const Spool& spool)
        : variable_(variable), languages_(languages), catalogue_(catalogue), spool_(spool) {}

    std::vector<Block> blocks() {
        addHeading();
        if (!variable_.fault.isEmpty()) {
            blocks_.push_back(textBlock(TextBlock::Style::Fault, variable_.fault));
            return std::move(blocks_);
        }
        addOrigin();
        addQuestion();
        addValues();
        if (!variable_.table.isEmpty())
            addTable();
        if (variable_.hasGraph)
            addGraph();
        for (const VariableRecord::Picture& card : variable_.cards)
            addCard(card);
        return std::move(blocks_);
    }

private:
    const VariableRecord& variable_;
    const ReportLanguages& languages_;
    const QString& catalogue_;
    const Spool& spool_;
    std::vector<Block> blocks_;

    QString word(const QString& german) const { return languages_.word(german); }

    void addHeading() {
        TextBlock heading{.style = TextBlock::Style::Entry,
                          .name = variable_.name,
                          .runs = {{.text = languages_.name(variable_.label)}}};
        const QString other = languages_.otherName(variable_.label);
        if (!other.isEmpty())
            heading.mark = languages_.markOf(false);
        blocks_.push_back(std::move(heading));
        addOtherName(blocks_, other, languages_);
    }

    void addOrigin() {
        FactsBlock facts;
        facts.facts.emplace_back(word(u"Studie"_s), studyName(variable_.study, languages_.name(variable_.title)));
        if (!variable_.year.isEmpty())
            facts.facts.emplace_back(word(u"Jahr"_s), variable_.year);
        if (const QString group = languages_.name(variable_.group); !group.isEmpty())
            facts.facts.emplace_back(variable_.groupWord, group);
        blocks_.push_back(std::move(facts));
    }

    /// One text stands beside its caption, several beside the names of their languages.
    void addQuestion() {
        if (languages_.shown(variable_.question).size() == 1)
            blocks_.push_back(textBlock(TextBlock::Style::Caption, word(u"Fragetext"_s)));
        addTexts(blocks_, TextBlock::Style::Question, variable_.question, languages_);
    }

    void addValues() {
        VariableValues values = VariableValues::from(variable_.values, variable_.missing);
        std::ranges::stable_partition(values.values, [](const DocumentedValue& value) { return !value.missing; });
        if (!values.values.empty()) {
            ValuesBlock block{.title = word(u"Werte"_s), .rows = {}};
            for (const DocumentedValue& value : values.values)
                block.rows.push_back({value.code, value.label, value.missing});
            blocks_.push_back(std::move(block));
        }
        if (variable_.valuesCut)
            blocks_.push_back(textBlock(
                TextBlock::Style::Note,
                word(u"Nur die ersten %1 Werte werden gezeigt; der Katalog hat mehr."_s).arg(VariableValues::most)));
        FactsBlock facts;
        if (!values.missing.trimmed().isEmpty()) {
            const std::optional<MissingDefinition> definition = MissingDefinition::readable(values.missing);
            facts.facts.emplace_back(
                word(u"Fehlende Werte"_s),
                definition
                    ? definition->inWords(reportWord, languages_.words)
                    : word(u"„%1“: nicht zu deuten, kein Wert ist als fehlend gekennzeichnet"_s).arg(values.missing));
        }
        for (const VariableRecord::Assigned& assigned : variable_.assigned)
            facts.facts.emplace_back(assigned.view, assigned.categories);
        if (!facts.facts.empty())
            blocks_.push_back(std::move(facts));
    }

    /// Who copies a number out of a report must know what it is of.
    QString source() const {
        return word(u"Quelle: gespeichert im Katalog %1 (ohne Datum), Studie %2"_s)
            .arg(catalogue_, studyName(variable_.study, languages_.name(variable_.title), variable_.year));
    }

    void addTable() {
        const std::optional<StoredTable> stored = readStoredTable(variable_.table, variable_.tableLayout);
        if (!stored) {
            blocks_.push_back(storedTableBlock(variable_.table, {}, languages_.words));
            return;
        }
        TableBlock table = tableBlockOf(*stored, languages_.words);
        if (table.title.isEmpty())
            table.title = variable_.name;
        if (stored->weight.isEmpty())
            table.notes << word(u"Kein Gewicht vermerkt"_s);
        table.notes << source();
        blocks_.push_back(std::move(table));
    }

    void addGraph() {
        PictureBlock graph = storedGraphBlock({}, variable_.graphLayout, languages_.words);
        graph.bytes = spool_.get(variable_.graph);
        if (!graph.bytes.isEmpty())
            graph.fault.clear();
        else
            graph.fault = word(faultWords(PictureFault::Damaged));
        if (graph.title.isEmpty())
            graph.title = variable_.name;
        blocks_.push_back(std::move(graph));
        blocks_.push_back(textBlock(TextBlock::Style::Note, source()));
    }

    void addCard(const VariableRecord::Picture& card) {
        PictureBlock picture{.kind = PictureBlock::Kind::ShowCard,
                             .title = word(u"ShowCard"_s),
                             .bytes = {},
                             .size = {},
                             .explanation = {},
                             .fault = card.fault};
        if (!card.mark.isEmpty())
            picture.title += u" ("_s + card.mark + u')';
        if (card.fault.isEmpty())
            picture.bytes = spool_.get(card.bytes);
        else
            picture.fault += u' ' + card.name;
        if (picture.fault.isEmpty() && picture.bytes.isEmpty())
            picture.fault = word(faultWords(PictureFault::Missing));
        blocks_.push_back(std::move(picture));
    }
};

} // namespace

std::vector<Block> blocksOf(const VariableRecord& variable, const ReportLanguages& languages, const QString& catalogue,
                            const Spool& spool) {
    return VariablePrint(variable, languages, catalogue, spool).blocks();
}
