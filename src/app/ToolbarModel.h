#pragma once

#include <QString>
#include <vector>

/// One place of the toolbar; a separator has no key.
struct ToolbarButton {
    QString key;
    QString tooltip = QString(); ///< in the user's language
    QString command = QString(); ///< name of the menu entry that does the same
    QString icon = QString();
    bool check = false;   ///< keeps its state
    bool pressed = false; ///< at first
    int view = 0;         ///< the view that an explorer's button opens, whose kind decides the icon

    bool isSeparator() const { return key.isEmpty(); }
};

/// The toolbar of the main window, which depends on the views of the open catalogue. Buttons are numbered from 1.
class ToolbarModel {
public:
    /// Builds the buttons anew from gViews, the options and the language in force.
    void build();

    const std::vector<ToolbarButton>& buttons() const { return buttons_; }
    /// Number of the button with that key; 0 if there is none.
    int index(const QString& key) const;

private:
    std::vector<ToolbarButton> buttons_;

    void addViews();
    void addFixed();
    void addSeparator() { buttons_.push_back({}); }
};
