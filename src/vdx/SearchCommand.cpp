#include "config/Options.h"
#include "explorer/EntryColumns.h"
#include "search/ExtendedSearch.h"
#include "search/hitTarget.h"
#include "vdx/Command.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// vdx search: whatever has a term, in the whole catalogue.
class SearchCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    int run(Session& session) override;

private:
    std::string catalogue_, term_, and_, or_;
    std::vector<std::string> in_;
    CLI::Option *andGiven_ = nullptr, *orGiven_ = nullptr;

    SearchRequest request() const;
    bool searches(const char* part) const {
        return in_.empty() || std::ranges::find(in_, std::string(part)) != in_.end();
    }
};

CLI::App* SearchCommand::declare(CLI::App& program) {
    CLI::App* command = program.add_subcommand("search", "Entries and variables that have a term");
    command->add_option("CATALOGUE", catalogue_, "catalogue file")->required();
    command->add_option("TERM", term_, "what is looked for; * and ? stand for any characters and for one")->required();
    andGiven_ = command->add_option("--and", and_, "a second term, which has to be there too")->type_name("TERM2");
    orGiven_ = command->add_option("--or", or_, "a second term, either of which has to be there")->type_name("TERM2");
    andGiven_->excludes(orGiven_);
    command
        ->add_option("--in", in_,
                     "where, separated by commas: names, descriptions, variables, labels, questions (default: all)")
        ->delimiter(',')
        ->check(CLI::IsMember({"names", "descriptions", "variables", "labels", "questions"}))
        ->type_name("PLACES");
    return command;
}

SearchRequest SearchCommand::request() const {
    SearchRequest request;
    request.sFind = QString::fromStdString(term_);
    request.sFind2 = QString::fromStdString(and_.empty() ? or_ : and_);
    request.join = or_.empty() ? SearchRequest::Join::And : SearchRequest::Join::Or;
    request.english = gOptions.EnglishLanguage;
    auto* const boxes = request.chkSearch.data();
    std::fill_n(boxes, SearchRequest::descriptions, searches("names"));
    std::fill_n(boxes + SearchRequest::descriptions, SearchRequest::descriptions, searches("descriptions"));
    boxes[SearchRequest::names] = searches("variables");
    boxes[SearchRequest::labels] = searches("labels");
    boxes[SearchRequest::questions] = searches("questions");
    return request;
}

int SearchCommand::run(Session& session) {
    // An empty term is in everything: somebody's variable that was not set.
    if (term_.empty() || (andGiven_->count() > 0 && and_.empty()) || (orGiven_->count() > 0 && or_.empty()))
        throw UsageError{said(u"Ein Suchbegriff ist leer."_s, u"A search term is empty."_s)};
    if (!session.open(QString::fromStdString(catalogue_)))
        return 1;
    ExtendedSearch search;
    search.begin(request());
    while (search.goOn()) {
    }
    if (search.state() != ExtendedSearch::State::Done) {
        if (!search.hint().isEmpty())
            session.say(search.hint());
        return 1;
    }
    std::vector<QStringList> rows;
    rows.reserve(static_cast<size_t>(search.hits().size()));
    for (int i = 0; i < search.hits().size(); ++i) {
        const HitList::Hit hit = search.hits().at(i);
        const HitTarget target = hitTarget(hit.key).value_or(HitTarget{});
        const bool study = hit.kind != HitList::Kind::Variable && hit.view > 0 && isStudyView(hit.view);
        rows.push_back({hit.key, hit.view > 0 ? QString::number(hit.view) : QString(),
                        study ? target.entryKey : target.study, target.variable, hit.text});
    }
    session.printer().print({u"key"_s, u"view"_s, u"study"_s, u"variable"_s, u"text"_s}, rows);
    return 0;
}

} // namespace

std::unique_ptr<Command> makeSearchCommand() {
    return std::make_unique<SearchCommand>();
}
