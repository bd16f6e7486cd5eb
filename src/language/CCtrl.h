#pragma once

#include "language/SystemTable.h"

#include <QStringList>
#include <optional>
#include <vector>

/// One place of a window that shows a text: a control, or an item within one.
struct ControlText {
    QString type;             ///< "Form", "Menu", "Label", ... as the text table names the types
    QString name;             ///< control name; of a "Form" the window's name
    std::optional<int> index; ///< in a control array, or of the item (button, tab, column, panel, list item)
    QString property = QStringLiteral("Caption");
    QString key = QString(); ///< key of a list column or a status bar panel
    QString tag = QString();
    QString text = QString(); ///< what it shows now
};

/// A window as far as its texts are concerned.
class ControlHost {
public:
    virtual ~ControlHost() = default;
    virtual QString windowName() const = 0;
    /// Every place with a text, the window's caption (type "Form") among them.
    virtual std::vector<ControlText> controls() const = 0;
    /// Gives the place of that type, name and index a text in that property.
    virtual void setControlText(const ControlText& control, const QString& text) = 0;
    /// Builds the titles anew that are made at run time.
    virtual void refreshTitles() {}
};

/// Gives a window's controls the texts of the language that the system database names.
class CCtrl : public ObjectStatus {
public:
    QString FileName;
    QString DatabaseName;
    void setCurrentForm(ControlHost* window) { window_ = window; }

    /// Sets the texts of CurrentForm, type by type, and leaves the old ones in the log "Ctrl.clf" of the
    /// application folder.
    void SetControlProps();
    /// Takes the English texts of tblstatneu over into tblstat.
    void UpdateTblStat();
    /// Writes the texts of CurrentForm to FileName, fields separated by ";".
    void WriteCtrlProps();

private:
    ControlHost* window_ = nullptr;
    dao::DatabasePtr database_;
    bool english_ = false;
    QString log_;
    struct TextRow {
        QString type, name, property;
        dao::Value index, text;
    };
    std::vector<TextRow> rows_; ///< those of CurrentForm in the language in force, as the table has them

    template<class Steps>
    void run(const QString& procedure, Steps&& steps);
    void m_GetLanguage();
    void readRows();
    void setTextsOfType(const QString& type, const std::vector<ControlText>& controls);
    void setText(const ControlText& control);
    std::optional<QString> textInCode(const ControlText& control) const;
    bool isRowOf(const TextRow& row, const ControlText& control) const;
    void logOldText(const ControlText& control);
    void m_CommitTransaktion();
};
