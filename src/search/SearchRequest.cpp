#include "search/SearchRequest.h"

#include "app/globals.h"
#include "explorer/EntryColumns.h"

using namespace Qt::StringLiterals;

namespace {

QString tableOf(int view) {
    return u"tkey_"_s + gViews.at(view, ViewTable::Table);
}

QString joinWord(const SearchRequest& request) {
    return request.join == SearchRequest::Join::Or ? u"OR "_s : u"AND "_s;
}

SearchPass entryPass(const SearchRequest& request, SearchPass::Kind kind, int view) {
    const EntryColumns columns(isStudyView(view), request.english);
    const QString column = kind == SearchPass::Kind::Names ? columns.text : columns.description;
    QString statement = u"SELECT "_s + columns.key + u", "_s + column + u" FROM "_s + tableOf(view) + u" WHERE "_s +
                        column + u" LIKE '*"_s + request.sFind + u"*' "_s;
    if (request.sFind2.isEmpty())
        statement += u" ORDER BY "_s + column + u';';
    else
        statement += joinWord(request) + column + u" LIKE '*"_s + request.sFind2 + u"*' ORDER BY "_s + column + u';';
    return {kind, view, statement, {columns.key, column}};
}

/// What one of the boxes of the variables adds to the condition.
QString variableCondition(const SearchRequest& request, const QString& column) {
    const QString first = u'(' + column + u" LIKE '*"_s + request.sFind + u"*' "_s;
    return request.sFind2.isEmpty() ? first + u')'
                                    : first + joinWord(request) + column + u" LIKE '*"_s + request.sFind2 + u"*')"_s;
}

SearchPass variablePass(const SearchRequest& request) {
    const QString name = u"id_Varname"_s;
    const QString label = request.english ? u"dt_EnVarLabel"_s : u"dt_VarLabel"_s;
    const QString question = request.english ? u"dt_EnQuestionText"_s : u"dt_QuestionText"_s;
    const bool names = request.chkSearch[SearchRequest::names], labels = request.chkSearch[SearchRequest::labels];
    SearchPass pass{SearchPass::Kind::Variables, 0, u"SELECT * FROM tkey_Variable WHERE ("_s, {u"fi_StudyNo"_s, name}};
    if (labels) {
        pass.statement += variableCondition(request, label);
        pass.columns << label;
    }
    if (names) {
        pass.statement += (labels ? u" OR"_s : QString()) + u' ' + variableCondition(request, name);
        pass.columns << name;
    }
    if (request.chkSearch[SearchRequest::questions]) {
        pass.statement += (labels || names ? u" OR"_s : QString()) + variableCondition(request, question);
        pass.columns << question;
    }
    pass.statement += u") ORDER BY fi_StudyNo, dt_Position;"_s;
    return pass;
}

} // namespace

QStringList SearchRequest::terms() const {
    return sFind2.isEmpty() ? QStringList{sFind} : QStringList{sFind, sFind2};
}

bool SearchRequest::searchesVariables() const {
    return chkSearch[names] || chkSearch[labels] || chkSearch[questions];
}

SearchFault faultOf(const SearchRequest& request) {
    if (request.sFind.isEmpty())
        return SearchFault::NoTerm;
    return !request.sFind2.isEmpty() && request.join == SearchRequest::Join::None ? SearchFault::NoJoin
                                                                                  : SearchFault::None;
}

QString faultText(SearchFault fault) {
    switch (fault) {
    case SearchFault::NoTerm:
        return TranslateText(u"Bitte einen Suchbegriff eingeben"_s);
    case SearchFault::NoJoin:
        return TranslateText(u"Bitte eine Verknüpfung (und bzw. oder) eingeben"_s);
    case SearchFault::None:
        break;
    }
    return {};
}

std::vector<SearchPass> searchPasses(const SearchRequest& request) {
    std::vector<SearchPass> passes;
    const int views = gCatalogueOptions.NumberOfFrmExplorers;
    for (int view = 1; view <= views; ++view)
        if (request.chkSearch[static_cast<size_t>(view - 1)])
            passes.push_back(entryPass(request, SearchPass::Kind::Names, view));
    for (int view = 1; view <= views; ++view)
        if (request.chkSearch[static_cast<size_t>(SearchRequest::descriptions + view - 1)] &&
            !gViews.at(view, ViewTable::DescName).isEmpty())
            passes.push_back(entryPass(request, SearchPass::Kind::Descriptions, view));
    if (request.searchesVariables())
        passes.push_back(variablePass(request));
    return passes;
}

QString refusalHint(const SearchRequest& request) {
    const QString both = request.terms().join(u' ');
    if (both.contains(u'\''))
        return TranslateText(u"Wahrscheinlich liegt es an dem Anführungszeichen (') im Suchbegriff; zwei davon "
                             u"hintereinander stehen für eines."_s);
    if (both.contains(u'['))
        return TranslateText(u"Wahrscheinlich liegt es an der eckigen Klammer im Suchbegriff; [[] steht für eine."_s);
    return {};
}
