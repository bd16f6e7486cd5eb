#pragma once

#include "widgets/Form.h"

#include <QDialog>
#include <optional>

class QPlainTextEdit;

/// The editor of a plain text, such as a description. What is left as it was keeps its line breaks.
class frmEdit : public QDialog, public Form {
public:
    /// @param kept what is left anyway: to give up another text is asked for first
    frmEdit(const QString& caption, const QString& text, const QString& kept, QWidget* parent);
    ~frmEdit() override;

    /// Shows the window until it is closed. @return the text; nothing on Cancel
    static std::optional<QString> ask(const QString& caption, const QString& text, const QString& kept);

    void cmdOK_Click();
    /// Asks first where something that was typed would be lost.
    void cmdCancel_Click();
    /// The text as it is to be stored.
    QString text() const;

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

private:
    QString caption_, before_, kept_;
    QPlainTextEdit* txtText_;

    void build();
};
