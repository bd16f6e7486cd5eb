#include "catalogue/JsonNode.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace archive {

JsonNode JsonNode::operator[](const QString& member) const {
    return {description_, value_.toObject().value(member), place_.isEmpty() ? member : place_ + u'.' + member};
}

void JsonNode::fail(const QString& message) const {
    throw ImportError(description_.at(place_, message));
}

void JsonNode::onlyMembers(const QStringList& allowed) const {
    if (!value_.isObject())
        fail(said(u"hier wird ein Objekt erwartet"_s, u"an object is expected here"_s));
    const QJsonObject object = value_.toObject();
    for (const QString& name : object.keys())
        if (!allowed.contains(name))
            (*this)[name].fail(
                said(u"unbekannte Angabe '%1'; bekannt sind: %2"_s, u"unknown member '%1'; known are: %2"_s)
                    .arg(name, allowed.join(u", "_s)));
}

QString JsonNode::text() const {
    if (value_.isString())
        return value_.toString();
    if (!value_.isArray())
        fail(said(u"hier wird ein Text erwartet"_s, u"a text is expected here"_s));
    QStringList lines;
    for (const QJsonValue& line : value_.toArray()) {
        if (!line.isString())
            fail(said(u"hier werden die Zeilen eines Textes erwartet"_s, u"the lines of a text are expected here"_s));
        lines << line.toString();
    }
    return lines.join(u"\r\n"_s);
}

QString JsonNode::requiredText(const QString& member) const {
    if (!has(member))
        fail(said(u"'%1' fehlt"_s, u"'%1' is missing"_s).arg(member));
    const QString text = (*this)[member].text();
    if (text.trimmed().isEmpty())
        (*this)[member].fail(said(u"der Text ist leer"_s, u"the text is empty"_s));
    return text;
}

QString JsonNode::optionalText(const QString& member) const {
    return has(member) ? (*this)[member].text() : QString();
}

std::optional<QString> JsonNode::textIfThere(const QString& member) const {
    return has(member) ? std::optional((*this)[member].text()) : std::nullopt;
}

bool JsonNode::flag(const QString& member) const {
    const JsonNode node = (*this)[member];
    if (!node.value_.isUndefined() && !node.value_.isBool())
        node.fail(said(u"hier wird true oder false erwartet"_s, u"true or false is expected here"_s));
    return node.value_.toBool();
}

QStringList JsonNode::texts(const QString& member) const {
    QStringList all;
    each(member, [&all](const JsonNode& element) { all << element.text(); });
    return all;
}

Text JsonNode::inBothLanguages(const QString& member) const {
    if (!has(member))
        return {};
    const JsonNode node = (*this)[member];
    if (!node.value_.isObject())
        return {node.text(), std::nullopt};
    node.onlyMembers({u"original"_s, u"english"_s});
    return {node.textIfThere(u"original"_s), node.textIfThere(u"english"_s)};
}

Text JsonNode::forBothLanguages(const QString& member) const {
    Text text = inBothLanguages(member);
    if (!text.english)
        text.english = text.original;
    return text;
}

void JsonNode::each(const QString& member, const std::function<void(const JsonNode&)>& take) const {
    if (!has(member))
        return;
    const JsonNode list = (*this)[member];
    if (!list.value_.isArray())
        list.fail(said(u"hier wird eine Liste erwartet"_s, u"a list is expected here"_s));
    const QJsonArray elements = list.value_.toArray();
    for (qsizetype i = 0; i < elements.size(); ++i)
        take({description_, elements[i], u"%1[%2]"_s.arg(list.place_).arg(i)});
}

void JsonNode::eachMember(const QString& member,
                          const std::function<void(const QString&, const JsonNode&)>& take) const {
    if (!has(member))
        return;
    const JsonNode object = (*this)[member];
    if (!object.value_.isObject())
        object.fail(said(u"hier wird ein Objekt erwartet"_s, u"an object is expected here"_s));
    for (const QString& name : object.value_.toObject().keys())
        take(name, object[name]);
}

QString JsonNode::optionValue() const {
    if (value_.isBool())
        return value_.toBool() ? u"1"_s : u"0"_s;
    if (value_.isDouble())
        return QString::number(value_.toInteger());
    return text();
}

void requirePlainName(const JsonNode& node, const QString& name) {
    static const QRegularExpression plain(u"\\A[A-Za-z][A-Za-z0-9]*\\z"_s);
    if (!plain.match(name).hasMatch())
        node.fail(
            said(u"'%1' ist hier nicht erlaubt: nur Buchstaben (ohne Umlaute) und Ziffern, zuerst ein Buchstabe"_s,
                 u"'%1' is not allowed here: only letters (of the alphabet) and digits, a letter first"_s)
                .arg(name));
}

} // namespace archive
