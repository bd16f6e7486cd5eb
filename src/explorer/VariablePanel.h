#pragma once

#include "explorer/CatalogueTree.h"
#include "explorer/ExplorerState.h"
#include "platform/dao/Recordset.h"
#include "tables/VariableValues.h"

#include <QHash>
#include <QString>

/// Keys of the cells of a facts strip, in their order: seven switches, then six facts.
extern const QStringList factKeys;
inline constexpr int switchCount = 7;

/// A variable panel without its widgets: a result set of its own, bound to one node, and what is shown of its current
/// record. Panel A goes where the list goes; panel B walks its result set in the statement's order.
class VariablePanel {
public:
    enum class Place { A, B };
    enum class Step { First, Back, Next, Last };
    struct Fact {
        QString text, toolTip;
    };

    explicit VariablePanel(Place place) : place_(place) {}

    QString fid, fidName; ///< id and text of the node that the result set was built for
    QString question;
    VariableValues values; ///< of the variable that is shown

    /// Shows a variable of a node; one that is not among the node's variables shows the first of them. The result set
    /// is made anew when the node is another than before.
    /// @param ofList result set of the same node that is at hand already, if any; panel A takes it
    /// @return false if there is nothing to show; a node without variables says so in a box
    bool show(const CatalogueNode& node, const QString& study, const QString& variable, const ExplorerState& state,
              const dao::RecordsetPtr& ofList = {});
    enum class Again { Same, Other, Nothing };
    /// Makes the result set anew and shows the same variable, or the first where that has gone. Without a node, or
    /// where nothing was shown, nothing is, and the next show() makes the result set.
    Again showAgain(const CatalogueNode* node, const ExplorerState& state, const dao::RecordsetPtr& ofList = {});
    /// Moves in the result set, not beyond its ends, and fills. @return false without a record
    bool move(Step step, const ExplorerState& state);
    /// Fills question and facts anew from the current record. @return false if they show none
    bool refill(const ExplorerState& state);
    /// True while question and facts are those of a record.
    bool isFilled() const { return filled_; }
    /// Empties question, values and facts; the result set stays.
    void clear();

    Fact fact(const QString& key) const { return facts_.value(key); }
    /// The variable that is shown; empty without one.
    QString study() const { return facts_.value(QStringLiteral("Studie")).text; }
    QString variable() const { return facts_.value(QStringLiteral("Variable")).text; }

private:
    Place place_;
    dao::RecordsetPtr recordset_;
    QHash<QString, Fact> facts_;
    bool filled_ = false;

    bool isEnglish(const ExplorerState& state) const;
    void bind(const CatalogueNode& node, const ExplorerState& state, const dao::RecordsetPtr& ofList);
    QString statement(const ExplorerState& state) const;
    bool find(const QString& study, const QString& variable);
    void fill(bool english);
    void fillGroup(bool english);
    void readValues();
};
