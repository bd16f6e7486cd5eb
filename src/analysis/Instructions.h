#pragma once

#include "analysis/BatchRun.h"

#include <memory>

/// The commands of the analysis window on the instructions of a study: those of the variable that is chosen, and those
/// of all. Failures of the catalogue are reported; what can't be done is told as "Fehler", with the reason behind it.
class Instructions {
public:
    explicit Instructions(RequestEditor& editor) : editor_(editor) {}

    /// @return whether the variable has a new instruction
    bool cmdInstructionSave();
    /// @return whether the request is the one that was kept
    bool cmdInstructionLoad();
    /// @return whether the variable had an instruction and has none now
    bool cmdInstructionDelete();
    /// All variables of the study, or none. @return whether they have it
    bool cmdInstructionSaveForAll();
    bool cmdInstructionDeleteForAll();

    using Progress = std::function<void(const QString& text, int done, int total)>;
    /// Asks, and runs the instructions of all variables of the study (see BatchRun); what became of them is told at the
    /// end, and the first variable is chosen. @return whether they were run
    bool cmdInstructionRunTableForAll(const TextWidth& textWidth, const Progress& progress);
    bool cmdInstructionRunGraphForAll(const TextWidth& textWidth, const Progress& progress);
    /// Ends a run for all: see BatchRun::stop().
    void stop();
    /// True once a run for all is to end.
    bool stops() const { return batch_ && batch_->stops(); }

private:
    RequestEditor& editor_;
    std::unique_ptr<BatchRun> batch_; ///< the one that goes on

    QString keptText() const;
    bool hasVariable() const;
    bool hasStudy() const;
    bool writeToAll(const dao::Value& value);
    bool runForAll(BatchRequest request, const QString& question);
};
