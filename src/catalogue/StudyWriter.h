#pragma once

#include "catalogue/StudyReferences.h"
#include "catalogue/studyContent.h"
#include "platform/dao/Database.h"

#include <QHash>
#include <optional>
#include <vector>

/// Writes the entries of one study into an open catalogue; of a study that is there already it keeps
/// everything that a survey file does not tell.
class StudyWriter {
public:
    /// @param study as the user gave it; a study that is there keeps its own spelling
    StudyWriter(dao::Database& catalogue, const QString& studyTable, const QString& study);

    const QString& study() const { return study_; }
    bool exists() const { return exists_; }
    bool isGroup() const { return isGroup_; }
    /// True if there is a group of that number.
    bool groupExists(const QString& number) const;

    /// Fields of a study that is there, by case-folded variable name.
    QHash<QString, QString> fieldsBefore() const;

    /// Title, weights and the like. @return facts about what was not taken over
    QStringList writeStudy(const SurveyFile& file, const ImportSettings& settings, const QString& fileWeight,
                           const std::vector<VariableEntry>& variables, const std::vector<CaseTable>& tables);
    /// Writes variables and labels, also where stored comparisons hold copies; those of the study that are
    /// not among them go. @return facts about what now reads other data
    QStringList writeContent(const StudyContent& content);
    const QStringList& vanished() const { return vanished_; }

private:
    dao::Database& catalogue_;
    QString studyTable_, study_;
    bool exists_ = false, isGroup_ = false;
    std::vector<StudyReferences::Place> before_; ///< where the variables of a study that is there lay
    QString query_;                              ///< its `dt_query`
    QStringList vanished_;
    QStringList changedKind_;   ///< variables that were text and are numbers now, or the other way round
    QStringList resultsBefore_; ///< variables with a table or chart of the data before
    QStringList renumbered_;    ///< encoded variables whose numbers stood for other codes before

    int nextOrder(const QString& group) const;
    QString weightFor(const std::optional<QString>& wish, const QString& fromFile, const QString& present,
                      const std::vector<VariableEntry>& variables, const SurveyFile& file, QStringList& facts) const;
    void updateVariables(const std::vector<VariableEntry>& variables, std::vector<bool>& written);
    void updateLabels(const std::vector<LabelEntry>& labels, std::vector<bool>& written);
    void noteOtherCode(const LabelEntry& label, const QString& labelBefore);
    void noteRenumbered(const QString& variable);
    QStringList changedCodes(const QStringList& elsewhere) const;
    QStringList otherwiseElsewhere(const std::vector<LabelEntry>& labels) const;
};

/// The table of the study view that holds a study or group of that number, else of the first one; the
/// catalogue's options name the views, "tkey_Study" is the one if they name none.
QString studyTableOf(dao::Database& catalogue, const QString& study);
