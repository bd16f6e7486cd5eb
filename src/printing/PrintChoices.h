#pragma once

#include "printing/PrintSource.h"

#include <array>

/// What can be printed: the places of the dialog's choices. Those without a name here are of no report.
enum class PrintChoice { Names = 0, NoReport = 1, Variable = 3, NodeVariables = 4, Description = 9 };

/// What the print dialog offers of a source: which choices it enables, which of them it begins with, and the words for
/// them. Which choice is set stands here, since that may be one that is not in sight.
class PrintChoices {
public:
    /// The choices that are shown, in the order in which OK asks whether they are set.
    static constexpr std::array shown = {PrintChoice::Variable, PrintChoice::NodeVariables, PrintChoice::Description,
                                         PrintChoice::Names};

    explicit PrintChoices(const PrintSource& source);

    /// Number of the choice that the dialog begins with; -1: the window has nothing to print.
    int P() const { return P_; }
    bool isEnabled(PrintChoice choice) const { return enabled_[static_cast<size_t>(choice)]; }
    /// Whether the dialog that begins with a choice lists the printers; what is printed from two pages of the analysis
    /// does not ask for one.
    static bool listsPrinters(int P) { return P != 7 && P != 8; }

    PrintChoice chosen() const { return chosen_; }
    /// Nothing changes for a choice that is not enabled.
    void choose(PrintChoice choice);
    /// Whether a report comes of what is chosen.
    bool isReport() const;

    /// The choice in the language of the words, with its mnemonic; "&&" for an "&" in names.
    /// @param longest characters of a name in it, beyond which it is cut
    QString caption(PrintChoice choice, int longest) const;

    QString stno, varno, Cat_id; ///< the selection: number of a study, name of a variable, id of a category
    QString studie, variable;    ///< what is shown beside the choice of a variable
    QString studie_2, kategorie; ///< beside that of a node's variables, by the kind of view
    QString kategorie_2;         ///< beside that of a description

private:
    PrintSource source_;
    std::array<bool, 10> enabled_{};
    int P_ = -1;
    PrintChoice chosen_ = PrintChoice::NoReport;

    void enable(PrintChoice choice) { enabled_[static_cast<size_t>(choice)] = true; }
    void ofExplorer();
    void ofDocument();
    void ofAnalysis();
    void label();
};

/// The entry whose description is printed of a source: what is selected, else where the selected row stands.
struct PrintEntry {
    QString id, text;
};
PrintEntry describedEntry(const PrintSource& source);
