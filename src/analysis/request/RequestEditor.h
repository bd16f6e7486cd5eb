#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "catalogue/fileStamp.h"
#include "platform/dao/Recordset.h"

#include <functional>
#include <optional>
#include <vector>

/// What a change of the request is about; who shows a part of it listens for its own.
enum class RequestPart {
    Opened,    ///< everything
    Study,     ///< study, its variables, weights and parts
    Variables, ///< the first or second variable, what belongs to it
    Mode,      ///< mode, grouping, flip, creation mode
    Weight,
    Filter,
    Statistics,
    Missing,
    Entries, ///< the entries of a comparison and its title
    Values   ///< the view of a table that is chosen
};

/// The text of the statement that lists the studies, from the view definitions; empty for a catalogue without any.
QString studyQuerySource();
/// The same for the variables of a study, in their order.
QString variableQuerySource(const QString& study);

/// What the catalogue keeps with a variable, beside what documents it.
struct KeptWithVariable {
    bool instruction = false, table = false, graph = false;
};

/// The request of one analysis and the one way to change it: what follows from a choice (the fields of a variable, the
/// weights and parts of a study) is set with it. Works on the catalogue open in gDatabase; makes no table.
///
/// Operations that return bool answer false for a choice that is not offered (a weight that the study has not got, an
/// unknown variable); the request is then as before. They show no box unless their comment says so.
class RequestEditor {
public:
    RequestEditor() = default;
    RequestEditor(const RequestEditor&) = delete;
    RequestEditor& operator=(const RequestEditor&) = delete;

    const AnalysisRequest& request() const { return request_; }
    /// Changes the request by a step of the caller's, for what nothing else follows from; who listens hears of it.
    void change(RequestPart part, const std::function<void(AnalysisRequest&)>& step);
    /// Takes a request in place of this one, as a run has left it. @param catalogue how the catalogue's file lay then
    void replace(const AnalysisRequest& request, const FileStamp& catalogue);
    /// Calls back after every change. @return a number for forget()
    int listen(std::function<void(RequestPart)> listener);
    void forget(int listener);

    // ---- study and variables
    /// What happens when a window opens: creation mode, studies, an empty variable list.
    void open();
    /// The language of studies, parts and labels: that of the contents when this was opened.
    bool englishContents() const { return englishContents_; }
    bool creationOffered() const { return creationOffered_; }
    /// True if the catalogue has fields for what is kept with a variable, whether creation mode is offered or not.
    bool canKeep() const { return canKeep_; }
    /// The studies of the catalogue, value the number and text the title.
    std::vector<BoundPicker> studies();
    const std::vector<StudyVariable>& variables() const { return variables_; }
    /// The choices for a variable, "<id_Varname>: <label>", in order of position.
    const QStringList& variableChoices() const { return variableChoices_; }
    /// Loads all that depends on a study. @return false if the catalogue lists no such study
    bool StudyClick(const QString& study);
    /// Sets the first variable and runs dbcVariable_Change.
    bool chooseVariable(const QString& name);
    bool chooseVariable2(const QString& name);
    /// Loads the fields of the variable in dbcVariable, and what is kept with it; what the user has said of its missing
    /// values stays.
    void dbcVariable_Change();
    /// As dbcVariable_Change has found it last; nothing without a variable.
    const KeptWithVariable& kept() const { return kept_; }
    void dbcVariable2_Change();
    /// Brings the fields of the variables up to the catalogue as it is now; what the user has said of missing values
    /// stays. A variable that has gone has no fields any more, a part or weight that has gone is chosen no more.
    /// @return false after a failure whose message has been shown
    bool refresh();
    /// How the catalogue's file lay when the fields were read.
    const FileStamp& stamp() const { return stamp_; }
    /// Carries out a step that writes to the catalogue nothing that the fields stand on: they need not be read again
    /// for it.
    void besideFields(const std::function<void()>& write);
    /// A definition that stands in place of the catalogue's for the first variable, in dtMissing and sMissing, through
    /// every change of variable until it is taken back with nothing. An empty text: no value is missing.
    void overrideMissing(const std::optional<QString>& definition);
    /// The same for the second variable, in dtMissing2.
    void overrideMissing2(const std::optional<QString>& definition);
    /// Runs nothing.
    void chooseMode(AnalysisMode mode);

    // ---- cases
    /// @param variable the weight's variable for WeightUser, else not read
    bool chooseWeight(WeightKind kind, const QString& variable = QString());
    /// A standard weight for which a variable of the study stands, whatever the study itself has for it, until study or
    /// mode are chosen anew.
    bool chooseNamedWeight(WeightKind kind, const QString& variable);
    /// The user's own weight, with the variable that was chosen for it last or none yet.
    void chooseUserWeight();
    bool hasParts() const { return hasParts_; }
    /// The parts of the study for separate analysis.
    std::vector<BoundPicker> parts();
    /// FilterParts needs a study with parts; FilterUser brings back its last text.
    bool chooseFilter(FilterKind kind);
    /// Sets FilterUser and the text, which is read at the run.
    void chooseFilterText(const QString& text);
    /// The same while the text is still being typed: an entry of a comparison does not follow yet.
    void typeFilterText(const QString& text);
    /// Sets FilterParts and the part. May show "Variable zum Datensatz-Teil nicht gefunden:". @param id id_Part
    bool choosePart(const QString& id);
    void dbcParts_Change();
    void Update_Filter();
    /// A key in dbcParts: 46 (Delete) empties it; every other key is refused. @return true if it was taken
    bool dbcParts_KeyDown(int key);
    /// Who follows a change of weight or filter before others hear of it: an entry of a comparison. Nothing: nobody.
    void followCases(std::function<void()> follower) { casesFollower_ = std::move(follower); }

private:
    /// A recordset with the statement that it came from.
    struct DataHolder {
        QString source;
        dao::RecordsetPtr recordset;
    };

    AnalysisRequest request_;
    DataHolder dtData1, dtData2, dtData5; ///< studies, variables, parts
    std::vector<std::pair<int, std::function<void(RequestPart)>>> listeners_;
    int lastListener_ = 0;
    std::function<void()> casesFollower_;
    FileStamp stamp_;
    bool englishContents_ = false, creationOffered_ = false, canKeep_ = false, hasParts_ = false;
    QStringList variableChoices_;
    std::vector<StudyVariable> variables_;
    std::optional<QString> missingOverride_, missingOverride2_;
    KeptWithVariable kept_;
    struct NamedWeight {
        WeightKind kind;
        QString variable;
    };
    std::optional<NamedWeight> namedWeight_;
    QString lastFilterText_, selectionVariable_;
    BoundPicker describedStudy_, describedVariable_; ///< whose statistics dtDesc chooses

    void changed(RequestPart part);
    void readAgain();
    void openNow();
    bool clickStudy(const QString& study);
    void loadVariables(const QString& statement);
    void loadVariable(bool keepChoices);
    void loadVariable2();
    void loadGroup();
    void loadWeights();
    void keepNamedWeight();
    QString& standardWeight(WeightKind kind);
    void loadParts();
    void readParts();
    bool isPart(const QString& id);
    void loadPart();
    void leaveComparison();
    void forgetStatistics();
    void setFilterKind(FilterKind kind);
    void casesChanged(RequestPart part);
    const QString& contentField(const QString& original, const QString& english) const;
    bool findStudy(const QString& study);
    bool findVariable(const QString& name);
    BoundPicker pickedVariable() const;
};
