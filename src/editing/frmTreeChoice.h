#pragma once

#include "platform/ui/Asker.h"
#include "widgets/Form.h"

#include <QDialog>
#include <optional>

class QLabel;
class QLineEdit;
class QModelIndex;
class QPushButton;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTreeView;

/// An entry to be chosen from a tree. What is typed narrows the tree to the entries that have it, with those above
/// them; an entry that cannot be chosen says why.
class frmTreeChoice : public QDialog, public Form {
public:
    frmTreeChoice(const ui::TreeChoice& choice, QWidget* parent);
    ~frmTreeChoice() override;

    /// Shows the window until it is closed. @return the place of the entry that was chosen; nothing on Cancel
    static std::optional<int> ask(const ui::TreeChoice& choice);

    /// Place of the entry that would be chosen; nothing where none can be.
    std::optional<int> chosen() const;
    void cmdOK_Click();
    void cmdCancel_Click();

    void refreshTitles() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const ui::TreeChoice& choice_;
    QStandardItemModel* entries_;
    QSortFilterProxyModel* shown_;
    QLineEdit* txtFind_;
    QTreeView* tvChoice_;
    QLabel* lblWhy_;
    QPushButton* cmdOK_ = nullptr;

    void fill();
    void build();
    void connectControls();
    int placeOf(const QModelIndex& index) const;
    void goTo(const QModelIndex& index);
    void narrow(const QString& text);
    QModelIndex firstMatch(const QModelIndex& parent, const QString& text) const;
    void currentChanged();
};
