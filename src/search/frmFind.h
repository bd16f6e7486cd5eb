#pragma once

#include "search/ExtendedSearch.h"
#include "search/hitTarget.h"
#include "widgets/Form.h"
#include "widgets/RunGuard.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <array>
#include <optional>

class HitListModel;
class HitListView;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QShortcut;
class frmDocument;
class frmExplorer;

/// The extended search: terms, where to look, and the list of hits, each of which leads to what was found. There is one
/// such window at a time. A search goes on from the event loop while the user works; only while one of its statements
/// runs does nothing but stopping and closing get through.
class frmFind : public QWidget, public Form {
public:
    /// Opens the window, or brings it to the front. The catalogue must be open.
    static void showFind();

    frmFind();
    ~frmFind() override;

    void cmd_Find_Click();
    void cmd_Stop_Click();
    void cmd_Close_Click();
    /// Goes to what the hit in view was found in.
    void openHit();
    /// The same for the next hit, or the one before.
    void openNextHit(bool backwards);

    const ExtendedSearch& search() const { return search_; }
    void refreshTitles() override;
    QSize sizeHint() const override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ExtendedSearch search_;
    QTimer slice_;
    QElapsedTimer sinceTurn_;
    std::optional<RunGuard::Scope> guard_; ///< while a statement runs that takes longer than a moment

    QComboBox *txtFind_, *cmbAndOr_, *txtFind2_, *cmbLanguage_;
    QPushButton *cmd_Find_, *cmd_Stop_, *cmd_Close_;
    std::array<QCheckBox*, SearchRequest::boxes> chkSearch_{};
    std::vector<QLabel*> viewNames_;
    HitListModel* hits_;
    HitListView* list_;
    QLabel *status_, *count_;
    QPointer<QShortcut> nextHit_, previousHit_;
    bool led_ = false; ///< a hit of this search has been opened

    void build();
    QWidget* buildTerms();
    QWidget* buildBoxes();
    QWidget* buildFoot();
    void connectControls();
    void followKeys();
    void offerTerms();
    SearchRequest request() const;
    void work();
    void turn();
    void showState();
    void lead(const HitTarget& target);
    frmExplorer* leadToNode(const HitTarget& target);
    frmDocument* leadToDescription(const HitTarget& target);
};
