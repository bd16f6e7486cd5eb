#pragma once

#include "charts/pictures.h"
#include "explorer/PictureView.h"
#include "explorer/ScaledPicture.h"
#include "explorer/VariablePanel.h"
#include "tables/ResultTable.h"

#include <QSet>
#include <array>
#include <optional>

/// The tabbed area beside a variable panel, without its widgets: the show card, the stored table and the stored graph
/// of the panel's variable, of which one page is in view.
class PanelPages {
public:
    enum Page { ShowCard, Table, Graph };
    static constexpr int pageCount = 3;

    explicit PanelPages(VariablePanel::Place place) : place_(place) {}

    PictureView view; ///< zoom and offsets of the picture; they stay when the variable changes

    /// Shows a variable: says which pages have something, and reads the one in view. A table that cannot be read says
    /// so in a box the first time; other failures are reported.
    void fill(const QString& study, const QString& variable, bool english);
    /// Shows no variable; the page in view stays so.
    void empty();
    /// Brings a page into view, which shows nothing until it is filled.
    void turnTo(int page) { page_ = page; }
    /// What is out of sight isn't read; catchUp() reads it when it comes into view.
    void setInSight(bool inSight);
    void catchUp();
    /// Reads the variable anew if what the catalogue has of it, or the file, is another than what is shown. Nobody has
    /// asked for it, so that a catalogue that can't be read says nothing. @return whether there is something new
    bool refresh();

    bool hasVariable() const { return !study_.isEmpty() || !variable_.isEmpty(); }
    int page() const { return page_; }
    /// Whether a page can be chosen: fill() has found something for it.
    bool isEnabled(int page) const { return enabled_[static_cast<size_t>(page)]; }
    /// Path of the show card as the catalogue gives it, "Table" or "Graph"; empty while nothing is shown.
    const QString& Tag() const { return tag_; }
    /// The picture of the page in view; null without one.
    const ScaledPicture& picSC() const { return picture_; }
    /// Why there is no picture though the page has one, or no table (Damaged).
    PictureFault fault() const { return fault_; }
    /// The table of the page in view; null without one.
    const ResultTable* table() const { return table_ ? &*table_ : nullptr; }
    QString lblTableTitle() const { return title_; }
    /// What the numbers of a crosstab are, in the language in force; else empty.
    QString lblTableValues() const;
    QString lblGraphExplain() const { return explanation_; }

private:
    /// What the catalogue has of a variable for these pages; Null and absent columns are empty.
    struct Row {
        QString card, table, tableLayout, graph, graphLayout;
        bool operator==(const Row&) const = default;
    };

    VariablePanel::Place place_;
    int page_ = ShowCard;
    std::array<bool, pageCount> enabled_ = {};
    QString study_, variable_;
    bool english_ = false;
    bool inSight_ = true, stale_ = false;
    QSet<QString> told_; ///< damaged tables that a box has told of

    Row row_;
    QString tag_, title_, explanation_;
    std::optional<ResultTable> table_;
    QString viewWords_; ///< for the view of a crosstab, as the texts are kept; empty for other tables
    ScaledPicture picture_;
    QString pictureFile_; ///< file that the picture was read from, with its time and size; empty of a stored graph
    PictureFault fault_ = PictureFault::None;

    Row readRow(bool silent = false) const;
    void clear();
    void show(const Row& row);
    void showCard(const QString& name);
    void FillSC(const QString& file);
    void showTable(const Row& row);
    void showGraph(const Row& row);
    void takePicture(const Picture& picture);
    QString label(const QString& procedure) const;
};
