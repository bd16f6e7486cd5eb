#include "app/frmImport.h"

#include "app/globals.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/ImportGuard.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "widgets/Icons.h"
#include "widgets/faultMark.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmImport::frmImport(const QString& file, const QString& catalogue, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmImport"_s), model_(QString(), Paths::native(catalogue)) {
    setWindowTitle(u"Umfragedatei importieren"_s);
    model_.setFile(Paths::native(file));
    build();
    connectControls();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    showModel();
    (model_.file().isEmpty() ? file_.field : study_.field)->setFocus();
    const int unit = fontMetrics().averageCharWidth();
    resize(QSize(std::max(sizeHint().width(), unit * 90), sizeHint().height())
               .boundedTo(screen()->availableSize() * 0.95));
}

frmImport::~frmImport() = default;

frmImport::Row frmImport::addRow(QGridLayout& grid, const QString& name, const QString& caption, const QString& tip) {
    Row row;
    const int at = grid.rowCount();
    row.field = new QLineEdit(this);
    row.field->setObjectName(u"txt"_s + name);
    auto* label = new QLabel(caption, this);
    label->setObjectName(u"lbl"_s + name);
    label->setBuddy(row.field);
    grid.addWidget(label, at, 0);
    grid.addWidget(row.field, at, 1);
    if (!tip.isEmpty()) {
        row.browse = new QPushButton(Icons::get(u"open"_s), {}, this);
        row.browse->setObjectName(u"cmd"_s + name);
        row.browse->setIconSize(QSize(1, 1) * row.browse->fontMetrics().height());
        row.browse->setToolTip(tip);
        row.browse->setAutoDefault(false);
        grid.addWidget(row.browse, at, 2);
        row.field->installEventFilter(this);
    }
    // One line is kept for the words, so that nothing moves while one types.
    row.words = withOwnText(new QLabel(u" "_s, this), u"lblWords"_s + name);
    row.words->setTextFormat(Qt::PlainText);
    row.words->setWordWrap(true);
    grid.addWidget(row.words, at + 1, 1, 1, 2);
    return row;
}

void frmImport::build() {
    auto* grid = new QGridLayout;
    file_ = addRow(*grid, u"File"_s, u"&Umfragedatei:"_s, u"Umfragedatei auswählen (F4)"_s);
    catalogue_ = addRow(*grid, u"Catalogue"_s, u"&Katalog:"_s, u"Katalog auswählen oder neu benennen (F4)"_s);
    study_ = addRow(*grid, u"Study"_s, u"&Studiennummer:"_s);
    title_ = addRow(*grid, u"Title"_s, u"&Titel:"_s);
    title_.words->hide();
    chkReplace_ = new QCheckBox(u"Studie dieser Nummer &ersetzen"_s, this);
    chkReplace_->setObjectName(u"chkReplace"_s);
    chkEncode_ = new QCheckBox(u"Textvariablen mit &Labels als Zahlen speichern"_s, this);
    chkEncode_->setObjectName(u"chkEncode"_s);
    lblState_ = withOwnText(new QLabel(this), u"lblState"_s);
    lblState_->setTextFormat(Qt::PlainText);
    lblState_->setWordWrap(true);
    lblState_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    pgbProgress_ = new QProgressBar(this);
    pgbProgress_->setObjectName(u"pgbProgress"_s);
    pgbProgress_->hide();
    txtFacts_ = withOwnText(new QPlainTextEdit(this), u"txtFacts"_s);
    txtFacts_->setReadOnly(true);
    txtFacts_->setTabChangesFocus(true);
    txtFacts_->setMinimumHeight(fontMetrics().lineSpacing() * 8);
    txtFacts_->hide();
    auto* column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addWidget(chkReplace_);
    column->addWidget(chkEncode_);
    column->addWidget(lblState_);
    column->addWidget(pgbProgress_);
    column->addWidget(txtFacts_, 1);
    column->addStretch();
    column->addWidget(buildButtons());
}

QWidget* frmImport::buildButtons() {
    auto* bar = new QWidget(this);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    const auto button = [&](const QString& name, const QString& caption) {
        auto* made = new QPushButton(caption, bar);
        made->setObjectName(name);
        row->addWidget(made);
        return made;
    };
    cmdImport_ = button(u"cmdImport"_s, u"&Importieren"_s);
    cmdStop_ = button(u"cmdStop"_s, u"&Anhalten"_s);
    cmdOpen_ = button(u"cmdOpen"_s, u"Katalog &öffnen"_s);
    cmdCancel_ = button(u"cmdCancel"_s, u"S&chließen"_s);
    cmdStop_->hide();
    cmdOpen_->hide();
    cmdImport_->setDefault(true);
    return bar;
}

void frmImport::connectControls() {
    const auto typed = [this](const Row& row, auto&& take) {
        connect(row.field, &QLineEdit::textEdited, this, [this, take](const QString& text) {
            take(text);
            offerImport();
        });
    };
    typed(file_, [this](const QString& text) { model_.setFile(text); });
    typed(catalogue_, [this](const QString& text) { model_.setCatalogue(text); });
    typed(study_, [this](const QString& text) { model_.setStudy(text); });
    typed(title_, [this](const QString& text) { model_.title = text; });
    connect(chkReplace_, &QCheckBox::toggled, this, [this](bool on) {
        model_.replace = on;
        showModel();
    });
    connect(chkEncode_, &QCheckBox::toggled, this, [this](bool on) { model_.encode = on; });
    const auto onClick = [this](QPushButton* button, auto&& handler) {
        connect(button, &QPushButton::clicked, this, [handler] {
            GestureScope::startAnew();
            trapped(handler);
        });
    };
    onClick(file_.browse, [this] { browseFile(); });
    onClick(catalogue_.browse, [this] { browseCatalogue(); });
    onClick(cmdImport_, [this] { cmdImport_Click(); });
    onClick(cmdStop_, [this] { cmdStop_Click(); });
    onClick(cmdOpen_, [this] { cmdOpen_Click(); });
    onClick(cmdCancel_, [this] { cmdCancel_Click(); });
    process_.onProgress = [this](int percent) {
        pgbProgress_->setRange(0, 100);
        pgbProgress_->setValue(percent);
    };
    process_.onEnd = [this](const VdxProcess::End& end) { ended(end); };
}

void frmImport::refreshTitles() {
    for (const Row& row : {file_, catalogue_})
        row.browse->setAccessibleName(row.browse->toolTip());
    title_.field->setPlaceholderText(TranslateText(u"wie in der Datei angegeben"_s));
    pgbProgress_->setAccessibleName(TranslateText(u"Fortschritt des Imports"_s));
    txtFacts_->setAccessibleName(TranslateText(u"Was der Import getan hat"_s));
}

/// Enter imports again once something else is to be.
void frmImport::offerImport() {
    cmdOpen_->setDefault(false);
    cmdImport_->setDefault(true);
    showModel();
}

void frmImport::browseFile() {
    ui::FileChoice choice;
    choice.title = TranslateText(u"Umfragedatei auswählen"_s);
    choice.filter = TranslateText(u"Umfragedateien"_s) + u" (*.sav *.zsav *.por *.dta)|*.sav;*.zsav;*.por;*.dta"_s;
    choice.folder = Paths::folderOf(model_.file());
    if (const std::optional<QString> file = ui::asker().chooseFile(choice)) {
        model_.setFile(Paths::native(*file));
        offerImport();
    }
}

void frmImport::browseCatalogue() {
    ui::FileChoice choice;
    choice.title = TranslateText(u"Katalog auswählen oder neu benennen"_s);
    const QString kind = TranslateText(u"VDX/KLOR-Datenbank Dateien"_s);
    choice.filter = kind + u" (*.mdb)|*.mdb|"_s + kind + u" (*.klor)|*.klor"_s;
    choice.extension = u"mdb"_s;
    choice.folder = Paths::folderOf(model_.catalogue());
    choice.save = choice.mayBeThere = true;
    if (const std::optional<QString> file = ui::asker().chooseFile(choice)) {
        model_.setCatalogue(Paths::native(*file));
        offerImport();
    }
}

void frmImport::showModel() {
    const auto show = [](const Row& row, const QString& text, const QString& fault, const QString& note) {
        if (row.field->text().trimmed() != text)
            row.field->setText(text);
        markFault(*row.field, !fault.isEmpty());
        row.words->setText(!fault.isEmpty() ? fault : note.isEmpty() ? u" "_s : note);
        row.field->setAccessibleDescription(row.words->text().trimmed());
    };
    show(file_, model_.file(), model_.fileFault(), {});
    show(catalogue_, model_.catalogue(), model_.catalogueFault(), model_.catalogueNote());
    show(study_, model_.study(), model_.studyFault(), {});
    const bool runs = process_.isRunning(), isThere = !VdxProcess::program().isEmpty();
    for (QWidget* control :
         std::initializer_list<QWidget*>{file_.field, file_.browse, catalogue_.field, catalogue_.browse, study_.field,
                                         title_.field, chkReplace_, chkEncode_})
        control->setEnabled(!runs);
    cmdImport_->setVisible(!runs);
    cmdImport_->setEnabled(isThere && model_.mayRun());
    cmdStop_->setVisible(runs);
    pgbProgress_->setVisible(runs);
    if (!isThere)
        lblState_->setText(TranslateText(u"Das Programm vdx, das die Datei liest, liegt nicht neben diesem."_s));
}

void frmImport::cmdImport_Click() {
    if (process_.isRunning() || !model_.mayRun())
        return;
    // With a catalogue all windows are closed; this one is to write it and stays.
    beginning_ = true;
    const bool may = !mayWrite || mayWrite(model_.catalogue());
    beginning_ = false;
    if (!may)
        return;
    cmdOpen_->hide();
    txtFacts_->hide();
    lblState_->setText(TranslateText(u"Die Datei wird importiert."_s));
    pgbProgress_->setRange(0, 0);
    process_.start(model_.arguments());
    showModel();
    cmdStop_->setFocus();
}

void frmImport::cmdStop_Click() {
    process_.stop();
}

/// What was begun is gone before anybody looks at the catalogue again.
void frmImport::ended(const VdxProcess::End& end) {
    QString words = end.words;
    if (end.outcome == VdxProcess::Outcome::Stopped || end.outcome == VdxProcess::Outcome::Crashed) {
        try {
            removeLeftovers(model_.catalogue());
        } catch (const ImportError& error) {
            words += u'\n' + error.text();
        }
    }
    const bool done = end.outcome == VdxProcess::Outcome::Done;
    lblState_->setText(done ? TranslateText(u"Die Studie %1 ist im Katalog."_s).arg(model_.study()) +
                                  (words.isEmpty() ? QString() : u'\n' + words)
                            : words);
    txtFacts_->setPlainText(end.facts.join(u'\n'));
    txtFacts_->setVisible(!end.facts.isEmpty());
    cmdOpen_->setVisible(done);
    // What was imported is done with: another file gets a number of its own.
    if (done) {
        imported_ = model_.catalogue();
        model_ = ImportModel({}, imported_);
        title_.field->clear();
        chkReplace_->setChecked(false);
        model_.encode = chkEncode_->isChecked();
    } else {
        model_.setCatalogue(model_.catalogue());
    }
    showModel();
    cmdImport_->setDefault(!done);
    cmdOpen_->setDefault(done);
    (done ? cmdOpen_ : cmdImport_)->setFocus();
    resize(size().expandedTo(sizeHint()).boundedTo(screen()->availableSize() * 0.95));
}

void frmImport::cmdOpen_Click() {
    wanted_ = imported_;
    accept();
}

void frmImport::reject() {
    if (beginning_)
        return;
    if (process_.isRunning()) {
        const ui::Box question{TranslateText(u"Der Import läuft noch. Anhalten?"_s),
                               {},
                               ui::Icon::Question,
                               ui::Buttons::YesNo,
                               ui::Answer::No};
        if (ui::asker().messageBox(question) != ui::Answer::Yes)
            return;
        process_.stop();
        return;
    }
    QDialog::reject();
}

bool frmImport::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F4) {
        GestureScope::startAnew();
        trapped([&] { watched == file_.field ? browseFile() : browseCatalogue(); });
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmImport::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && cmdImport_)
        showModel();
}
