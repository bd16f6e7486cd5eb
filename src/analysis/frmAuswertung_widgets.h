#pragma once

#include "analysis/frmAuswertung.h"
#include "widgets/ChoicePicker.h"
#include "widgets/EntryList.h"
#include "widgets/FilterLine.h"
#include "widgets/ResultTableView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <array>

/// The controls of the analysis window, by their names.
struct frmAuswertung::Widgets {
    QTabWidget* SSTab;

    QRadioButton *Option1, *Option2, *Option4, *Option5;
    QPushButton* cmdDescriptives;
    QCheckBox *chkDescGroup, *chkFlipXtab, *chkPreserveLayout, *chkVaridexCreation;
    QComboBox *cbValues, *cbValuesInstruct;

    ChoicePicker *dbcStudy, *dbcStudy_1;
    ChoicePicker *dbcVariable, *dbcVariable_1, *dbcVariableUni;
    ChoicePicker *dbcVariable2, *dbcVariable_2, *dbcVariable2Uni;
    QGroupBox *fraVariable2, *fraComparison;
    QLabel *lblVariable, *lblVariable2;

    std::array<QRadioButton*, 4> Option3;
    QLabel *dt_WeightRE, *dt_WeightHH, *lblWeightUser;
    ChoicePicker *dbcVarGewicht, *dbcVarGewicht_1, *dbcVarGewicht_1Uni;

    std::array<QRadioButton*, 3> optFilter;
    ChoicePicker* dbcParts;
    FilterLine* txtFilter;
    QLabel* lblFilterCheck;

    QLineEdit* txtTitle;
    EntryList *lst_TrendVars, *lst_SavedTrends;
    QPushButton *cmd_AddTrend, *cmd_DeleteFromTrend, *cmd_ClearTrend;
    QPushButton *cmd_LoadTrend, *cmd_SaveTrend, *cmd_DelSavedTrend;

    QLabel *lblLabel, *lblFacts, *lblState;
    QFrame* fraState;
    ResultTableView* mfgGrid;
    QPushButton *cmdCalculate, *cmdSetMissing, *cmdPreview, *cmdPrint;
    QPushButton *cmdCopyTable, *cmdSaveTableAs, *cmdComputeAnew, *cmdStop;

    std::array<QList<QWidget*>, 2> sameWidth; ///< captions below each other: of the left side, of the weights

    /// Every picker of a variable, in the order of their lists: names, labels, both.
    std::array<ChoicePicker*, 9> variablePickers() const {
        return {dbcVariable_1, dbcVariable_2,  dbcVarGewicht_1, dbcVariable,       dbcVariable2,
                dbcVarGewicht, dbcVariableUni, dbcVariable2Uni, dbcVarGewicht_1Uni};
    }
};
