#include "app/globals.h"
#include "explorer/iconNames.h"
#include "search/frmFind.h"
#include "widgets/HitListView.h"
#include "widgets/Icons.h"
#include "widgets/PageArea.h"
#include "widgets/gestures.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

QLabel* label(const QString& name, const QString& text, QWidget* buddy = nullptr) {
    auto* made = new QLabel(text);
    made->setObjectName(name);
    made->setBuddy(buddy);
    return made;
}

QPushButton* button(const QString& name, const QString& text) {
    auto* made = new QPushButton(text);
    made->setObjectName(name);
    made->setAutoDefault(true);
    return made;
}

QComboBox* list(const QString& name, const QStringList& items) {
    auto* made = new QComboBox;
    made->setObjectName(name);
    made->addItems(items);
    return made;
}

/// A field that offers the last terms, and takes what is typed as it is.
QComboBox* termField(const QString& name, QObject* watcher) {
    auto* field = withOwnText(new QComboBox, name);
    field->setEditable(true);
    field->setInsertPolicy(QComboBox::NoInsert);
    field->setCompleter(nullptr);
    field->setMinimumContentsLength(12);
    field->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    field->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    field->installEventFilter(watcher);
    return field;
}

} // namespace

void frmFind::build() {
    setWindowIcon(Icons::get(u"search-extended"_s));
    hits_ = new HitListModel(this);
    list_ = new HitListView(*hits_);
    list_->setObjectName(u"lstHits"_s);
    auto* column = new QVBoxLayout(this);
    column->addWidget(buildTerms());
    // In a low window the hits need the room more.
    auto* boxes = new PageArea(buildBoxes());
    boxes->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    column->addWidget(boxes);
    column->addWidget(list_, 1);
    column->addWidget(buildFoot());
}

QWidget* frmFind::buildTerms() {
    auto* area = new QWidget(this);
    auto* grid = new QGridLayout(area);
    grid->setContentsMargins({});
    txtFind_ = termField(u"txtFind"_s, this);
    txtFind2_ = termField(u"txtFind2"_s, this);
    cmbAndOr_ = list(u"cmbAndOr"_s, {u"und"_s, u"oder"_s});
    cmbLanguage_ = list(u"cmbLanguage"_s, {u"Originalsprache"_s, u"Englisch"_s});
    cmd_Find_ = button(u"cmd_Find"_s, u"&Suchen"_s);
    cmd_Stop_ = button(u"cmd_Stop"_s, u"S&topp"_s);
    cmd_Close_ = button(u"cmd_Close"_s, u"S&chließen"_s);
    grid->addWidget(label(u"lblFind"_s, u"Suchbe&griff:"_s, txtFind_), 0, 0);
    grid->addWidget(txtFind_, 0, 1, 1, 2);
    grid->addWidget(cmd_Find_, 0, 4);
    grid->addWidget(label(u"lblFind2"_s, u"&Zweiter:"_s, txtFind2_), 1, 0);
    grid->addWidget(cmbAndOr_, 1, 1);
    grid->addWidget(txtFind2_, 1, 2);
    grid->addWidget(cmd_Stop_, 1, 4);
    grid->addWidget(label(u"lblLanguage"_s, u"Sp&rache:"_s, cmbLanguage_), 2, 0);
    grid->addWidget(cmbLanguage_, 2, 1, 1, 2, Qt::AlignLeft);
    grid->addWidget(cmd_Close_, 2, 4);
    grid->setColumnStretch(2, 1);
    grid->setColumnMinimumWidth(3, fontMetrics().averageCharWidth());
    return area;
}

/// Views with a box for the names and one for the descriptions of their entries, beside them what of variables is
/// searched.
QWidget* frmFind::buildBoxes() {
    auto* area = new QWidget(this);
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins({});
    auto* fraEntries = new QGroupBox(u"Einträge"_s);
    fraEntries->setObjectName(u"fraEntries"_s);
    auto* grid = new QGridLayout(fraEntries);
    grid->setHorizontalSpacing(fontMetrics().averageCharWidth() * 3);
    grid->addWidget(label(u"lblNames"_s, u"Namen"_s), 0, 1, Qt::AlignHCenter);
    grid->addWidget(label(u"lblDescriptions"_s, u"Beschreibungen"_s), 0, 2, Qt::AlignHCenter);
    auto* fraVariables = new QGroupBox(u"Variablen"_s);
    fraVariables->setObjectName(u"fraVariables"_s);
    auto* variables = new QVBoxLayout(fraVariables);
    const QString captions[] = {u"&Namen"_s, u"&Labels"_s, u"Fragete&xte"_s};
    for (int i = 0; i < SearchRequest::boxes; ++i) {
        const bool ofVariables = i >= SearchRequest::names;
        QCheckBox*& box = chkSearch_[static_cast<size_t>(i)];
        box = new QCheckBox(ofVariables ? captions[i - SearchRequest::names] : QString(), this);
        box->setObjectName(arrayName(u"chkSearch"_s, i));
        if (ofVariables) {
            variables->addWidget(box);
            continue;
        }
        // The view's name stands beside its two boxes.
        box->setProperty("CtrlTyp", QString());
        const int view = i % SearchRequest::descriptions + 1;
        const bool exists = view <= gCatalogueOptions.NumberOfFrmExplorers;
        const bool description = i >= SearchRequest::descriptions;
        box->setVisible(exists && (!description || !gViews.at(view, ViewTable::DescName).isEmpty()));
        if (!exists)
            continue;
        if (!description) {
            viewNames_.push_back(withOwnText(new QLabel, arrayName(u"lblView"_s, view)));
            viewNames_.back()->setTextFormat(Qt::PlainText);
            grid->addWidget(viewNames_.back(), view, 0);
        }
        grid->addWidget(box, view, description ? 2 : 1, Qt::AlignHCenter);
    }
    variables->addStretch();
    row->addWidget(fraEntries);
    row->addWidget(fraVariables);
    row->addStretch();
    // Through the boxes as they stand: row by row.
    QWidget* last = cmd_Close_;
    for (int view = 0; view < SearchRequest::descriptions; ++view)
        for (const int i : {view, view + SearchRequest::descriptions}) {
            setTabOrder(last, chkSearch_[static_cast<size_t>(i)]);
            last = chkSearch_[static_cast<size_t>(i)];
        }
    return area;
}

QWidget* frmFind::buildFoot() {
    auto* area = new QWidget(this);
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins({});
    status_ = withOwnText(new QLabel, u"sbStatus"_s);
    status_->setTextFormat(Qt::PlainText);
    status_->setWordWrap(true);
    status_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    count_ = withOwnText(new QLabel, u"lblCount"_s);
    row->addWidget(status_, 1);
    row->addWidget(count_, 0, Qt::AlignTop);
    return area;
}

void frmFind::connectControls() {
    connect(cmd_Find_, &QPushButton::clicked, this, [this] { onGesture([this] { cmd_Find_Click(); }); });
    // These two get through while a statement runs.
    connect(cmd_Stop_, &QPushButton::clicked, this, [this] { cmd_Stop_Click(); });
    connect(cmd_Close_, &QPushButton::clicked, this, [this] { cmd_Close_Click(); });
    connect(&slice_, &QTimer::timeout, this, [this] { work(); });
    list_->opened = [this] { onGesture([this] { openHit(); }); };
}

void frmFind::refreshTitles() {
    setWindowTitle(TranslateText(u"Erweiterte Suche"_s));
    for (size_t i = 0; i < viewNames_.size(); ++i)
        viewNames_[i]->setText(viewName(static_cast<int>(i) + 1));
    for (int i = 0; i < SearchRequest::names; ++i)
        chkSearch_[static_cast<size_t>(i)]->setAccessibleName(
            viewName(i % SearchRequest::descriptions + 1) + u": "_s +
            TranslateText(i < SearchRequest::descriptions ? u"Namen"_s : u"Beschreibungen"_s));
    const QString variables = TranslateText(u"Variablen"_s) + u": "_s;
    for (size_t i = SearchRequest::names; i < chkSearch_.size(); ++i)
        chkSearch_[i]->setAccessibleName(variables + chkSearch_[i]->text().remove(u'&'));
    txtFind_->setAccessibleName(TranslateText(u"Suchbegriff"_s));
    txtFind2_->setAccessibleName(TranslateText(u"Zweiter Suchbegriff"_s));
    const QString wildcards = TranslateText(u"* steht für beliebige Zeichen, ? für eines, # für eine Ziffer."_s);
    for (QComboBox* field : {txtFind_, txtFind2_})
        field->setToolTip(wildcards);
    cmbAndOr_->setAccessibleName(TranslateText(u"Verknüpfung der Begriffe"_s));
    cmbAndOr_->setPlaceholderText(TranslateText(u"und/oder"_s));
    cmbLanguage_->setAccessibleName(TranslateText(u"Sprache der Inhalte"_s));
    list_->setAccessibleName(TranslateText(u"Treffer der Suche"_s));
    status_->setAccessibleName(QString());
    hits_->headingsChanged();
    showState();
}

QSize frmFind::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 38};
}
