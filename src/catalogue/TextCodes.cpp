#include "catalogue/TextCodes.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "platform/dao/Value.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString textCode(const QString& code) {
    qsizetype length = code.size();
    while (length > 0 && code[length - 1] == u' ')
        --length;
    return code.first(length);
}

bool TextCodes::hasCodes(int variable) const {
    const SurveyVariable& one = file_.variables[static_cast<size_t>(variable)];
    return one.isText &&
           (one.missingTexts || (one.labelSet >= 0 && !file_.labelSets[static_cast<size_t>(one.labelSet)].empty()));
}

void TextCodes::encode(int variable, bool isAskedFor) {
    const SurveyVariable& source = file_.variables[static_cast<size_t>(variable)];
    std::unique_ptr<Variable>& one = variables_[static_cast<size_t>(variable)];
    if (one)
        return;
    one = std::make_unique<Variable>();
    one->isAskedFor = isAskedFor;
    if (source.labelSet >= 0)
        for (const SurveyLabel& label : file_.labelSets[static_cast<size_t>(source.labelSet)])
            if (label.kind == SurveyLabel::Text)
                addKnown(variable, label.code);
    for (const QString& code : source.missingCodes)
        addKnown(variable, code);
    putInOrder(*one);
    becameText_ = false; // no case was written yet
}

void TextCodes::addKnown(int variable, const QString& code) {
    const QByteArray text = textCode(code).toUtf8();
    const auto& numbers = variables_[static_cast<size_t>(variable)]->numbers;
    if (!text.isEmpty() && !numbers.contains(text.toStdString()))
        insert(variable, {text.constData(), static_cast<size_t>(text.size())});
}

int TextCodes::addCode(int variable, std::string_view text) {
    const QString code = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (code.size() > mostCharacters || code.contains(u'\n') || code.contains(u'\r')) {
        giveUp(variable,
               said(u"freie Texte wie '%1…'"_s, u"free texts such as '%1…'"_s).arg(code.left(30).simplified()));
        return 0;
    }
    return insert(variable, text);
}

int TextCodes::insert(int variable, std::string_view text) {
    Variable& one = *variables_[static_cast<size_t>(variable)];
    if (!one.reason.isEmpty())
        return 0;
    if (one.numbers.size() >= mostCodes || codesInAll_ >= mostCodesInAll) {
        const bool isItsOwn = one.numbers.size() >= mostCodes;
        giveUp(variable,
               isItsOwn ? said(u"mehr als %1 verschiedene Texte"_s, u"more than %1 different texts"_s).arg(mostCodes)
                        : said(u"mehr als %1 verschiedene Texte in allen Variablen zusammen"_s,
                               u"more than %1 different texts in all variables together"_s)
                              .arg(mostCodesInAll));
        return 0;
    }
    ++codesInAll_;
    const int number = static_cast<int>(one.numbers.size()) + 1;
    one.numbers.emplace(text, number);
    return number;
}

void TextCodes::giveUp(int variable, const QString& reason) {
    Variable& one = *variables_[static_cast<size_t>(variable)];
    if (one.isAskedFor)
        throw EncodeError(said(u"Variable %1 kann nicht in Zahlen umgesetzt werden: %2"_s,
                               u"Variable %1 cannot be encoded as numbers: %2"_s)
                              .arg(file_.variables[static_cast<size_t>(variable)].name, reason));
    if (!one.reason.isEmpty())
        return;
    one.reason = reason;
    codesInAll_ -= static_cast<int>(one.numbers.size());
    one.numbers.clear();
    becameText_ = true;
}

bool TextCodes::putInOrder(Variable& variable) {
    std::vector<std::pair<QString, int*>> codes;
    codes.reserve(variable.numbers.size());
    for (auto& [text, number] : variable.numbers)
        codes.emplace_back(QString::fromStdString(text), &number);
    std::sort(codes.begin(), codes.end(), [](const auto& a, const auto& b) {
        const int order = dao::compareTexts(a.first, b.first);
        return order != 0 ? order < 0 : a.first < b.first;
    });
    bool moved = false;
    int number = 0;
    for (const auto& [text, old] : codes) {
        ++number;
        moved = moved || *old != number;
        *old = number;
    }
    return moved;
}

bool TextCodes::settle() {
    bool moved = becameText_;
    becameText_ = false;
    for (const std::unique_ptr<Variable>& one : variables_)
        if (one && putInOrder(*one))
            moved = true;
    return moved;
}

QStringList TextCodes::codes(int variable) const {
    const auto& numbers = variables_[static_cast<size_t>(variable)]->numbers;
    QStringList codes(static_cast<qsizetype>(numbers.size()));
    for (const auto& [text, number] : numbers)
        codes[number - 1] = QString::fromStdString(text);
    return codes;
}

QString TextCodes::whyStillText(int variable) const {
    const Variable* one = variables_[static_cast<size_t>(variable)].get();
    return one ? one->reason : QString();
}
