#include "analysis/frmAuswertungChart.h"

#include "analysis/frmAuswertung.h"
#include "analysis/frmAuswertungState.h"
#include "analysis/frmAuswertungStored.h"
#include "analysis/frmSaveChart.h"
#include "analysis/result/saveTable.h"
#include "app/globals.h"
#include "charts/chartFile.h"
#include "charts/frmGraphicOptions.h"
#include "platform/system/Paths.h"
#include "platform/system/wholeFile.h"
#include "platform/ui/Asker.h"
#include "widgets/ChartView.h"
#include "widgets/ContextMenu.h"
#include "widgets/FlowLayout.h"
#include "widgets/Form.h"
#include "widgets/gestures.h"

#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct FileKind {
    QString ending, name;
};
const FileKind kinds[] = {{u"png"_s, u"PNG-Bilder"_s},
                          {u"svg"_s, u"SVG-Grafiken"_s},
                          {u"pdf"_s, u"PDF-Dokumente"_s},
                          {u"jpg"_s, u"JPEG-Bilder"_s}};

const FileKind* kindOf(const QString& ending) {
    const auto found = std::ranges::find(kinds, ending, &FileKind::ending);
    return found == std::end(kinds) ? nullptr : found;
}

QString choiceOf(const FileKind& kind) {
    const QString pattern = u"*."_s + kind.ending;
    return TranslateText(kind.name) + u" ("_s + pattern + u")|"_s + pattern;
}

/// What a chart can be saved as, the kind that was chosen last before the others.
QString fileKinds(const QString& first) {
    QStringList choices;
    for (const FileKind& kind : kinds)
        choices.insert(kind.ending == first ? 0 : choices.size(), choiceOf(kind));
    return choices.join(u'|');
}

/// @param reason empty where there was none
void tellOfFailure(const QString& path, const QString& reason) {
    if (!reason.isEmpty())
        ui::asker().messageBox({.text = TranslateText(u"Die Grafik konnte nicht gespeichert werden:"_s) + u"\r\n"_s +
                                        path + u"\r\n"_s + reason,
                                .icon = ui::Icon::Exclamation});
}

} // namespace

frmAuswertungChart::frmAuswertungChart(frmAuswertung& window) : frmAuswertungPart(window), page_(build()) {
    connectControls();
}

const WindowChart& frmAuswertungChart::chart() const {
    return model_.chart();
}

QWidget* frmAuswertungChart::build() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    UniLabel1_ = factLabel(u"UniLabel1"_s, page);
    QFont heading = UniLabel1_->font();
    heading.setBold(true);
    UniLabel1_->setFont(heading);
    cbChartValues_ = valuesPicker(u"cbChartValues"_s, page);
    addRow(column, {{UniLabel1_, 1}, {cbChartValues_, 0}});
    column->addWidget(buildPicture(), 1);
    state_ = withOwnText(new frmAuswertungState(u"Chart"_s, page), u"fraChartState"_s);
    column->addWidget(state_);
    column->addWidget(buildCommands());
    stored_ = new frmAuswertungStored(
        window_, frmAuswertungStored::Kind::Graph, [this] { touch(); }, page);
    column->addWidget(stored_);
    return page;
}

/// The box, the picture, or why there is none.
QWidget* frmAuswertungChart::buildPicture() {
    auto* area = new QWidget;
    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    txtExplain_ = withOwnText(new QPlainTextEdit(area), u"txtExplain"_s);
    txtExplain_->hide();
    txtExplain_->setReadOnly(true);
    txtExplain_->setLineWrapMode(QPlainTextEdit::NoWrap);
    txtExplain_->setTabChangesFocus(true);
    txtExplain_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    picChart_ = withOwnText(new ChartView(u"picChart"_s, area), u"picChart"_s);
    lblNoChart_ = factLabel(u"lblNoChart"_s, area);
    lblNoChart_->setAlignment(Qt::AlignCenter);
    row->addWidget(txtExplain_);
    row->addWidget(picChart_, 1);
    row->addWidget(lblNoChart_, 1);
    return area;
}

QWidget* frmAuswertungChart::buildCommands() {
    auto* bar = new QWidget;
    auto* row = new FlowLayout(bar);
    cmd_ShowOptions_ = control<QPushButton>(u"cmd_ShowOptions"_s, u"G&rafikoptionen..."_s, bar);
    cmdFirstValue_ = control<QPushButton>(u"cmdFirstValue"_s, u"Erster &Wert..."_s, bar);
    cmdCopyChart_ = control<QPushButton>(u"cmdCopyChart"_s, u"Grafik kop&ieren"_s, bar);
    cmdSaveChartAs_ = control<QPushButton>(u"cmdSaveChartAs"_s, u"Grafik s&peichern unter..."_s, bar);
    for (QPushButton* button : {cmd_ShowOptions_, cmdFirstValue_, cmdCopyChart_, cmdSaveChartAs_})
        row->add(button);
    row->addStretch();
    cmdPreview_ = control<QPushButton>(u"cmdChartPreview"_s, u"&Vorschau"_s, bar);
    cmdPrint_ = control<QPushButton>(u"cmdChartPrint"_s, u"Dr&ucken..."_s, bar);
    row->add(cmdPreview_);
    row->add(cmdPrint_);
    return bar;
}

void frmAuswertungChart::connectControls() {
    const auto onClick = [this](QPushButton* button, const Step& step) {
        connect(button, &QPushButton::clicked, this, [step] { step(); });
    };
    onClick(cmd_ShowOptions_, [this] { showOptions(); });
    onClick(cmdFirstValue_, [this] { act([this] { model_.chooseFirstValue(); }); });
    onClick(cmdCopyChart_, [this] { window_.copyChart(); });
    onClick(cmdSaveChartAs_, [this] { saveAs(); });
    onClick(cmdPreview_, [this] { window_.cmdPreview(frmAuswertung::Printed::Chart); });
    onClick(cmdPrint_, [this] { window_.cmdPrint(frmAuswertung::Printed::Chart); });
    onClick(state_->cmdComputeAnew(), [this] { run([this] { model_.computeAnew(); }); });
    onClick(state_->cmdStop(), [this] { model_.stop(); });
    connect(cbChartValues_, &QComboBox::activated, this, [this](int view) { act([&] { model_.chooseValues(view); }); });
    picChart_->onChosen = [this](int series, int category) {
        showOptions(std::max(0, itemsAreCategories(chart().model()) ? category : series));
    };
    new ContextMenu(*picChart_, [this](QMenu& menu) {
        for (QPushButton* button : {cmdCopyChart_, cmdSaveChartAs_})
            ContextMenu::addButton(menu, *button);
        menu.addSeparator();
        for (QPushButton* button : {cmd_ShowOptions_, cmdFirstValue_, state_->cmdComputeAnew()})
            ContextMenu::addButton(menu, *button);
        menu.addSeparator();
        for (QPushButton* button : {cmdPreview_, cmdPrint_})
            ContextMenu::addButton(menu, *button);
    });
}

QPushButton* frmAuswertungChart::cmdStop() const {
    return state_->cmdStop();
}

void frmAuswertungChart::showRunning() {
    state_->showRunning();
    picChart_->clear();
    picChart_->show();
    lblNoChart_->hide();
    txtExplain_->hide();
    UniLabel1_->clear();
    resultChanged();
}

void frmAuswertungChart::showChanges(const Changes& changes) {
    if (model_.tab() == 2 && (changes.touched() || changes.has(RequestPart::Values)))
        showChart();
    for (QPushButton* button : {cmdPreview_, cmdPrint_})
        button->setEnabled(model_.view().chartCommands);
    stored_->showOffered();
    state_->showState(model_, model_.stored().shownGraph()
                                  ? TranslateText(u"Das ist die gespeicherte Grafik; sie wurde nicht neu gezeichnet."_s)
                                  : QString());
}

/// The picture as it was stored, until a step of the window's brings its own chart back.
void frmAuswertungChart::showStoredGraph(const StoredResults::Shown& shown) {
    UniLabel1_->setText(shown.graph.title);
    for (QWidget* own : {static_cast<QWidget*>(cbChartValues_), static_cast<QWidget*>(lblNoChart_),
                         static_cast<QWidget*>(cmdFirstValue_)})
        own->hide();
    picChart_->showPicture(shown.picture, QSizeF(shown.graph.width, shown.graph.height));
    picChart_->show();
    showExplanation(shown.graph.explanation);
    cmd_ShowOptions_->setEnabled(false);
    for (QPushButton* button : {cmdCopyChart_, cmdSaveChartAs_})
        button->setEnabled(true);
    nameForReaders();
}

void frmAuswertungChart::showChart() {
    if (model_.stored().shownGraph()) {
        showStoredGraph(*model_.stored().shownGraph());
        return;
    }
    const bool drawn = chart().state() == WindowChart::State::Drawn;
    const ChartModel& model = chart().model();
    UniLabel1_->setText(model.caption);
    cbChartValues_->setVisible(model_.view().cbValuesShown);
    cbChartValues_->setCurrentIndex(model_.request().cbValues);
    lblNoChart_->setText(chart().reason());
    lblNoChart_->setVisible(!drawn);
    picChart_->setVisible(drawn);
    if (drawn)
        picChart_->showChart(model, chart().picture.millimetres, ChartParts::Plot);
    else
        picChart_->clear();
    nameForReaders();
    showExplanation(picChart_->shownLayout().explanation);
    for (QPushButton* button : {cmd_ShowOptions_, cmdCopyChart_, cmdSaveChartAs_})
        button->setEnabled(drawn);
    cmdFirstValue_->setVisible(chart().isPart());
}

void frmAuswertungChart::showExplanation(const QString& text) {
    QStringList lines = text.split(u"\r\n"_s, Qt::SkipEmptyParts);
    for (QString& line : lines)
        line = line.trimmed();
    txtExplain_->setPlainText(lines.join(u'\n'));
    txtExplain_->setVisible(!text.isEmpty());
    fitExplanation();
}

/// As wide as its lines are, and never more than a third of the page; they go on below then.
void frmAuswertungChart::fitExplanation() {
    int widest = 0;
    for (const QString& line : txtExplain_->toPlainText().split(u'\n'))
        widest = std::max(widest, txtExplain_->fontMetrics().horizontalAdvance(line));
    const int frame = 2 * (txtExplain_->frameWidth() + static_cast<int>(txtExplain_->document()->documentMargin())) +
                      txtExplain_->verticalScrollBar()->sizeHint().width();
    const int most = page_->width() / 3;
    txtExplain_->setLineWrapMode(widest + frame > most ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
    txtExplain_->setFixedWidth(std::min(widest + frame, most));
}

/// The options compute anew where marks were changed: a gesture of the window like any other.
void frmAuswertungChart::showOptions(int item) {
    if (AnalysisModel::running() || model_.stored().shownGraph() || chart().state() != WindowChart::State::Drawn)
        return;
    onGesture([&] {
        frmGraphicOptions dialog(chart().model(), chart().ownLabelTable(), chart().picture.millimetres,
                                 model_.chartMarksOffered(), &window_);
        dialog.choose(item);
        dialog.exec();
        if (!dialog.answer())
            return;
        const Step take = [&] { model_.changeChart(*dialog.answer()); };
        if (dialog.marksChanged())
            run(take);
        else
            act(take);
    });
}

bool frmAuswertungChart::hasPicture() const {
    return model_.stored().shownGraph() || chart().state() == WindowChart::State::Drawn;
}

bool frmAuswertungChart::copy() {
    if (!hasPicture())
        return false;
    if (const auto& stored = model_.stored().shownGraph()) {
        ui::asker().copyPicture(stored->picture, {});
        return true;
    }
    const ChartLayout layout = layOut(chart().model(), chart().picture.millimetres, ChartParts::Whole);
    const QImage picture = chartImage(layout, chart().picture.dpi);
    if (picture.isNull()) {
        ui::asker().messageBox({.text = TranslateText(u"Für ein Bild dieser Größe reicht der Speicher nicht."_s),
                                .icon = ui::Icon::Exclamation});
        return false;
    }
    ui::asker().copyPicture(picture, chartSvg(chart().model(), layout));
    return true;
}

/// Its own bytes: another encoding would lose something of them.
void frmAuswertungChart::saveStored(const StoredResults::Shown& shown) {
    onGesture([&] {
        const std::optional<QString> path =
            ui::asker().chooseFile({.title = TranslateText(u"Grafik speichern"_s),
                                    .filter = choiceOf(*kindOf(u"jpg"_s)),
                                    .extension = u"jpg"_s,
                                    .folder = chart().picture.folder,
                                    .name = Paths::asFileName(shown.study + u'-' + shown.variable) + u".jpg"_s,
                                    .save = true});
        if (path)
            tellOfFailure(*path, saveBytes(*path, shown.graph.jpeg));
    });
}

void frmAuswertungChart::saveAs() {
    if (model_.stored().shownGraph()) {
        saveStored(*model_.stored().shownGraph());
        return;
    }
    if (AnalysisModel::running() || chart().state() != WindowChart::State::Drawn)
        return;
    onGesture([this] {
        frmSaveChart dialog(chart().picture, &window_);
        dialog.exec();
        if (!dialog.answer())
            return;
        WindowChart::Picture& picture = model_.chart().picture;
        picture = *dialog.answer();
        act([] {}); // the window shows the chart in the size that it is saved in
        const std::optional<QString> path =
            ui::asker().chooseFile({.title = TranslateText(u"Grafik speichern"_s),
                                    .filter = fileKinds(picture.ending),
                                    .extension = picture.ending,
                                    .folder = picture.folder,
                                    .name = tableFileName(model_.result().facts->request) + u'.' + picture.ending,
                                    .save = true});
        if (!path)
            return;
        picture.folder = Paths::folderOf(*path);
        if (const QString ending = path->section(u'.', -1).toLower(); kindOf(ending))
            picture.ending = ending;
        tellOfFailure(*path, saveChart(chart().model(), *path, picture.millimetres, picture.dpi));
    });
}

void frmAuswertungChart::nameForReaders() {
    cbChartValues_->setAccessibleName(TranslateText(u"Werte der Grafik"_s));
    txtExplain_->setAccessibleName(TranslateText(u"Erklärung der Beschriftung"_s));
    const auto& stored = model_.stored().shownGraph();
    const QString& caption = stored ? stored->graph.title : chart().model().caption;
    picChart_->setAccessibleName(TranslateText(u"Grafik"_s) + (caption.isEmpty() ? QString() : u": "_s + caption));
}
