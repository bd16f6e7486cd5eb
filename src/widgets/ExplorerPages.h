#pragma once

#include <QWidget>
#include <functional>

class ElidedLabel;
class PanelPages;
class PictureSurface;
class QLabel;
class QPlainTextEdit;
class QSlider;
class QTabBar;
class QToolButton;
class ResultTableView;

/// The tabs beside a variable panel: show card, stored table and stored graph of its variable.
class ExplorerPages : public QWidget {
public:
    /// @param pages  what it shows; not owned
    /// @param suffix of the control names: nothing or "2"
    ExplorerPages(PanelPages& pages, const QString& suffix, QWidget* parent = nullptr);

    std::function<void(int page)> turned; ///< the user wants another page

    QTabBar* tabShowCard;
    PictureSurface* picShowCard;
    QSlider* sldShowCard;
    ResultTableView* mfgTable;
    QLabel* lblTableTitle; ///< in up to three lines; its tip has all
    ElidedLabel* lblTableValues;
    QPlainTextEdit* lblGraphExplain;

    /// Shows the pages as they are now.
    void showPages();
    /// Names and tips in the language in force.
    void refreshTexts();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    PanelPages& pages_;
    QWidget *pictureRow_, *zoomRow_;
    QLabel* lblZoom_;
    QToolButton* cmdFit_;

    void build(const QString& suffix);
    void connectControls();
    void showTabs();
    void showZoom();
    void fitTexts();
    QString emptyWords() const;
    QString faultWords() const;
    void copyTable();
    void copyPicture();
};
