#pragma once

#include <QByteArray>
#include <QString>
#include <deque>
#include <vector>

/// What a search has found, in the order in which it was found, kept as short as half a million hits ask for.
class HitList {
public:
    enum class Kind : quint8 { Name, Description, Variable };

    struct Hit {
        Kind kind = Kind::Name;
        int view = 0; ///< 0 for a variable of a study that no view holds
        QString key;  ///< tells the kind and leads to what was found, see hitTarget()
        QString text; ///< on one line
        QString way;  ///< to it in its view
        int icon() const;
    };

    int size() const { return static_cast<int>(places_.size()); }
    void clear();
    /// @param key   of the entry, or variableId() of a variable
    /// @param way a number that addWay() gave
    void add(Kind kind, int view, const QString& key, const QString& text, int way);
    /// Keeps a way that one or many hits have.
    int addWay(const QString& way);

    Hit at(int hit) const;
    QString text(int hit) const;

    /// Hits in the order of their texts or ways, equal ones as they were found.
    enum class By { Found, Text, Way };
    std::vector<int> sorted(By by, bool descending) const;

private:
    struct Place {
        quint32 block, offset;
    };
    struct Head {
        Kind kind;
        quint8 view;
        qint32 way, keyBytes, textBytes;
    };
    std::deque<QByteArray> blocks_;
    std::vector<Place> places_;
    std::vector<QString> ways_;

    Head headAt(int hit) const;
    const char* bytesAt(int hit) const;
};

/// A variable in a hit's key: its name, "@@", the number of its study.
QString variableId(const QString& variable, const QString& study);
