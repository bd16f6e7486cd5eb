#pragma once

#include "catalogue/ArchiveDescription.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <functional>

namespace archive {

/// One value of the description and its place; every reader refuses a value of another kind with that place.
class JsonNode {
public:
    JsonNode(const Description& description, QJsonValue value, QString place)
        : description_(description), value_(std::move(value)), place_(std::move(place)) {}

    const QString& place() const { return place_; }
    bool has(const QString& member) const { return value_.toObject().contains(member); }
    JsonNode operator[](const QString& member) const;

    /// @throws ImportError always: the message with the place
    [[noreturn]] void fail(const QString& message) const;
    /// Refuses anything but an object with no other members than these.
    void onlyMembers(const QStringList& allowed) const;

    /// A text; a list of texts is their lines.
    QString text() const;
    QString requiredText(const QString& member) const; ///< not empty
    QString optionalText(const QString& member) const; ///< empty if it is not there
    std::optional<QString> textIfThere(const QString& member) const;
    bool isList() const { return value_.isArray(); }
    bool isFlag() const { return value_.isBool(); }
    bool flag(const QString& member) const;
    QStringList texts(const QString& member) const;
    /// A text, which is the original one, or an object with `original` and `english`.
    Text inBothLanguages(const QString& member) const;
    /// Likewise, but a plain text serves both languages.
    Text forBothLanguages(const QString& member) const;

    /// Calls for each element of the list, in order; nothing if it is not there.
    void each(const QString& member, const std::function<void(const JsonNode&)>& take) const;
    /// Calls for each member of the object.
    void eachMember(const QString& member, const std::function<void(const QString& name, const JsonNode&)>& take) const;
    /// A number, text or truth value as option rows hold it.
    QString optionValue() const;

private:
    const Description& description_;
    QJsonValue value_;
    QString place_;
};

/// Refuses anything but letters (of the alphabet) and digits, a letter first: statements name studies, views
/// and their tables without brackets.
void requirePlainName(const JsonNode& node, const QString& name);

} // namespace archive
