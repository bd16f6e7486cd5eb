#include "explorer/frmExplorerList.h"

#include "app/globals.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Form.h"
#include "widgets/VariableListView.h"
#include "widgets/gestures.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSet>

using namespace Qt::StringLiterals;

frmExplorerList::frmExplorerList(ExplorerModel& model) : model_(model) {
    build();
    connectControls();
}

void frmExplorerList::build() {
    lblTitle1_ = withOwnText(new ElidedLabel, arrayName(u"lblTitle"_s, 1));
    lblRowCount_ = withOwnText(new QLabel, u"lblRowCount"_s);
    txtQuickFilter_ = withOwnText(new QLineEdit, u"txtQuickFilter"_s);
    txtQuickFilter_->setClearButtonEnabled(true);
    txtQuickFilter_->installEventFilter(this);
    lvListView_ = withOwnText(new VariableListView(model_.list), u"lvListView"_s);
    lblTitle1_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* heading = new QHBoxLayout;
    heading->addWidget(lblTitle1_, 3);
    heading->addWidget(lblRowCount_);
    heading->addWidget(txtQuickFilter_, 4);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addLayout(heading);
    column->addWidget(lvListView_, 1);
}

void frmExplorerList::connectControls() {
    const auto tell = [this](std::function<void()> frmExplorerList::*listener) {
        return [this, listener] { onGesture(this->*listener); };
    };
    connect(lvListView_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            tell(&frmExplorerList::onSelected));
    // A click on what is selected already counts too.
    lvListView_->chosenAgain = tell(&frmExplorerList::onChosenAgain);
    connect(lvListView_, &QTableView::pressed, this, lvListView_->chosenAgain);
    lvListView_->opened = tell(&frmExplorerList::onOpened);
    connect(lvListView_, &QTableView::doubleClicked, this, lvListView_->opened);
    lvListView_->headerChosen = [this](int column) { onGesture([&] { headerChosen(column); }); };
    connect(txtQuickFilter_, &QLineEdit::textChanged, this, [this] { onGesture([this] { filterChanged(); }); });
}

bool frmExplorerList::eventFilter(QObject* watched, QEvent* event) {
    if (watched != txtQuickFilter_ || event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Escape:
        txtQuickFilter_->clear();
        return true;
    case Qt::Key_Down:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        lvListView_->setFocus();
        if (lvListView_->firstSelectedPlace() < 0 && !model_.list.shown.empty())
            lvListView_->selectOnly(0);
        return true;
    default:
        return QWidget::eventFilter(watched, event);
    }
}

void frmExplorerList::setTitle(const QString& title) {
    lblTitle1_->setText(title);
}

void frmExplorerList::fill() {
    // Who is typing there while another window edits goes on typing.
    if (txtQuickFilter_->text().trimmed() != model_.filter().trimmed())
        txtQuickFilter_->setText(model_.filter());
    lvListView_->listChanged();
    lvListView_->fitColumns();
    if (standing_ && !standing_->wasEmpty() && standingIn_ == model_.list.Tag)
        standAgain();
    else if (const int place = model_.list.placeOf(model_.list.selectedRow); place >= 0)
        lvListView_->selectOnly(place);
    showRowCount();
}

void frmExplorerList::changing() {
    across_ = lvListView_->horizontalScrollBar()->value();
    standingIn_ = model_.list.Tag;
    standing_.emplace(model_.list, lvListView_->selectedPlaces(), lvListView_->currentPlace(), lvListView_->rowAt(0));
}

void frmExplorerList::standAgain() {
    const ListStanding::Places places = standing_->in(model_.list);
    lvListView_->selectPlaces(places.selected, places.current);
    if (places.top >= 0)
        lvListView_->scrollTo(lvListView_->model()->index(places.top, 0), QAbstractItemView::PositionAtTop);
    lvListView_->horizontalScrollBar()->setValue(across_);
}

void frmExplorerList::changed() {
    standing_.reset();
    showRowCount();
}

void frmExplorerList::focusFilter() {
    txtQuickFilter_->setFocus();
    txtQuickFilter_->selectAll();
}

std::vector<int> frmExplorerList::selectedRows() const {
    std::vector<int> rows = lvListView_->selectedPlaces();
    for (int& row : rows)
        row = model_.list.shown[static_cast<size_t>(row)];
    return rows;
}

int frmExplorerList::rowToShow() const {
    const int first = lvListView_->firstSelectedPlace();
    const int place = first >= 0 ? first : lvListView_->currentPlace();
    return place < 0 ? -1 : model_.list.shown[static_cast<size_t>(place)];
}

// ---- order and extent of the list

std::vector<int> frmExplorerList::selectedPositions() const {
    std::vector<int> positions = selectedRows();
    for (int& row : positions)
        row = model_.list.rows[static_cast<size_t>(row)].Position;
    return positions;
}

int frmExplorerList::currentPosition() const {
    const int place = lvListView_->currentPlace();
    if (place < 0)
        return -1;
    const int row = model_.list.shown[static_cast<size_t>(place)];
    return model_.list.rows[static_cast<size_t>(row)].Position;
}

void frmExplorerList::headerChosen(int column) {
    const std::vector<int> selected = selectedPositions();
    const int current = currentPosition();
    model_.list.headerClicked(column);
    orderChanged(selected, current);
    lvListView_->showColumns();
}

void frmExplorerList::filterChanged() {
    const std::vector<int> selected = selectedPositions();
    const int current = currentPosition();
    const bool wasEmpty = model_.list.rows.empty();
    {
        const BusyScope reading;
        model_.setFilter(txtQuickFilter_->text());
    }
    orderChanged(selected, current);
    if (wasEmpty)
        lvListView_->fitColumns();
    showRowCount();
}

/// Rows that are still in view stay selected; the others are not.
void frmExplorerList::orderChanged(const std::vector<int>& selected, int current) {
    const BusyScope busy;
    const VariableList& list = model_.list;
    lvListView_->listChanged();
    const QSet<int> wanted(selected.begin(), selected.end());
    std::vector<int> places;
    int currentPlace = -1;
    for (size_t place = 0; place < list.shown.size(); ++place) {
        const int position = list.rows[static_cast<size_t>(list.shown[place])].Position;
        if (wanted.contains(position))
            places.push_back(static_cast<int>(place));
        if (position == current)
            currentPlace = static_cast<int>(place);
    }
    lvListView_->selectPlaces(places, currentPlace);
    model_.list.selectedRow = rowToShow();
}

void frmExplorerList::showRowCount() {
    const bool narrowed = !model_.filter().isEmpty();
    const int all = model_.searchesView() && !narrowed ? 0 : model_.searched();
    QString text = QString::number(all) + u' ' + TranslateText(all == 1 ? u"Variable"_s : u"Variablen"_s);
    if (narrowed)
        text = QString::number(model_.found()) + u' ' + TranslateText(u"von"_s) + u' ' + text;
    if (model_.found() > static_cast<int>(model_.list.shown.size()))
        text += u", "_s + TranslateText(u"die ersten %1 gezeigt"_s).arg(model_.list.shown.size());
    lblRowCount_->setText(text);
    showHints();
}

/// What there is to do where nothing is listed.
void frmExplorerList::showHints() {
    const QString search = TranslateText(u"Der Schnellfilter sucht in der ganzen Sicht."_s);
    QString hint = TranslateText(u"Zum Schnellfilter passt keine Variable."_s);
    if (model_.searchesView() && model_.filter().isEmpty())
        hint =
            TranslateText(model_.selectedNode() ? u"Dieser Eintrag hat keine eigenen Variablen."_s
                                                : u"Wählen Sie links einen Eintrag, um seine Variablen zu sehen."_s) +
            u' ' + search;
    lvListView_->setHint(hint);
    lvListView_->setAccessibleDescription(model_.list.shown.empty() ? hint : QString());
    txtQuickFilter_->setPlaceholderText(
        TranslateText(model_.searchesView() ? u"In der ganzen Sicht: Name, Label oder Fragetext enthält …"_s
                                            : u"Name, Label oder Fragetext enthält …"_s));
    txtQuickFilter_->setAccessibleDescription(model_.searchesView() ? search : QString());
}

void frmExplorerList::refreshTitles() {
    lvListView_->setAccessibleName(TranslateText(u"Variablen"_s));
    lvListView_->fitColumns();
    txtQuickFilter_->setAccessibleName(TranslateText(u"Schnellfilter der Variablenliste"_s));
    txtQuickFilter_->setToolTip(txtQuickFilter_->accessibleName() +
                                u" (%1)"_s.arg(QKeySequence(Qt::CTRL | Qt::Key_F).toString(QKeySequence::NativeText)));
    showRowCount();
}
