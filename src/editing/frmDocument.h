#pragma once

#include "editing/DescriptionModel.h"
#include "widgets/Form.h"

#include <functional>

class ChoicePicker;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTextEdit;
class QToolButton;
class TextFindBar;

/// The long descriptions of a view, or of the catalogue, as text that can be read and copied.
class frmDocument : public QWidget, public Form {
public:
    /// Creates and shows a window of a view's descriptions with the first of them.
    static frmDocument* openView(int view);
    /// The same with the description of the catalogue.
    static frmDocument* openCatalogue() { return openView(0); }

    explicit frmDocument(int view);
    ~frmDocument() override;

    const DescriptionModel& model() const { return model_; }
    int viewNumber() const override { return model_.ltreetype; }

    /// Shows an entry by its key. @return false, and nothing changes, if it has no description in the window's language
    bool showEntry(const QString& id);
    void setEnglish(bool english);
    QTextEdit* textEdit() const { return txtText_; }
    bool showsFixedFont() const { return font_ == fixedFont_; }
    /// Shows the text in "Courier New", or where it is in it already in "MS Sans Serif".
    void ChangeFont();

    void optionsApplied() override;
    void refreshTitles() override;
    QSize sizeHint() const override;

private:
    DescriptionModel model_;
    QString fixedFont_, propFont_, font_;
    QToolButton *back_, *next_, *english_, *mono_;
    ChoicePicker* cmbAuswahl_;
    QLabel* lblPosition_;
    QTextEdit* txtText_;
    QLineEdit* txtStudyNo_;
    TextFindBar* find_;
    QString shown_; ///< the description that stands in the text

    QToolButton* button(const QString& key, const QString& icon, QKeyCombination keys,
                        const std::function<void()>& action);
    void buildControls();
    QHBoxLayout* buildToolbar();
    void addShortcuts();
    void numberWindow();
    void gesture(const std::function<void()>& steps);
    void showModel();
    void showText();
    void showPosition();
    void setTextFont(const QString& family);
};
