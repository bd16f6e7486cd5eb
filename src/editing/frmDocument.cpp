#include "editing/frmDocument.h"

#include "app/globals.h"
#include "config/Options.h"
#include "editing/richText.h"
#include "language/mdLanguage.h"
#include "widgets/ChoicePicker.h"
#include "widgets/Desktop.h"
#include "widgets/Icons.h"
#include "widgets/TextFindBar.h"
#include "widgets/gestures.h"
#include "widgets/oneLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QTextEdit>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmDocument* frmDocument::openView(int view) {
    frmDocument* window = nullptr;
    {
        const BusyScope busy;
        window = new frmDocument(view);
        desktop().adopt(*window);
    }
    desktop().panelsChanged();
    return window;
}

frmDocument::frmDocument(int view) : Form(*this, u"frmDocument"_s), model_(view) {
    const BusyScope busy;
    buildControls();
    addShortcuts();
    mdLanguage::SetCtrlProps(*this);
    numberWindow();
    setWindowIcon(view == 0 ? Icons::get(u"catalogue-description"_s) : Icons::withNumber(u"description"_s, view));
    fixedFont_ = gOptions.FixedFont;
    propFont_ = gOptions.PropFont;
    setTextFont(propFont_);
    refreshTitles();
    model_.FillDescriptionForm(DescriptionModel::Move::First);
    showModel();
    txtText_->setFocus();
}

frmDocument::~frmDocument() = default;

/// One above the highest number among the windows of the view.
void frmDocument::numberWindow() {
    int number = 1;
    for (const Form* form : Form::open())
        if (form != this && form->windowName() == windowName() && form->viewNumber() == viewNumber() &&
            form->Tag.toInt() >= number)
            number = form->Tag.toInt() + 1;
    Tag = QString::number(number);
}

void frmDocument::buildControls() {
    txtText_ = withOwnText(new QTextEdit(this), u"txtText"_s);
    txtText_->setReadOnly(true);
    txtText_->setAcceptRichText(false);
    txtText_->setUndoRedoEnabled(false);
    txtText_->setTabChangesFocus(true);
    txtText_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtText_->document()->setDocumentMargin(fontMetrics().height());
    txtStudyNo_ = withOwnText(new QLineEdit(this), u"txtStudyNo"_s);
    txtStudyNo_->setFocusPolicy(Qt::NoFocus);
    txtStudyNo_->hide();
    auto* column = new QVBoxLayout(this);
    column->setSpacing(qMax(3, fontMetrics().height() / 4));
    column->addLayout(buildToolbar());
    column->addWidget(txtText_, 1);
    column->addWidget(find_ = new TextFindBar(*txtText_, this));
}

QHBoxLayout* frmDocument::buildToolbar() {
    using Move = DescriptionModel::Move;
    auto* row = new QHBoxLayout;
    back_ =
        button(u"zurück"_s, u"go-back"_s, Qt::ALT | Qt::Key_Up, [this] { model_.FillDescriptionForm(Move::Previous); });
    next_ =
        button(u"weiter"_s, u"go-next"_s, Qt::ALT | Qt::Key_Down, [this] { model_.FillDescriptionForm(Move::Next); });
    cmbAuswahl_ = new ChoicePicker(u"cmbAuswahl"_s, ChoicePicker::Kind::Searched, this);
    cmbAuswahl_->onChosen = [this](int line) { gesture([&] { model_.cmbAuswahl_Click(line); }); };
    cmbAuswahl_->onLeft = [this] {
        if (!cmbAuswahl_->finish())
            cmbAuswahl_->restore();
    };
    lblPosition_ = withOwnText(new QLabel(this), u"lblPosition"_s);
    english_ = button(u"english"_s, u"contents-english"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_E,
                      [this] { model_.setEnglish(!model_.bEL()); });
    english_->setCheckable(true);
    mono_ = button(u"mono"_s, u"font"_s, Qt::CTRL | Qt::SHIFT | Qt::Key_F,
                   [this] { setTextFont(font_ == fixedFont_ ? propFont_ : fixedFont_); });
    mono_->setCheckable(true);
    row->addWidget(back_);
    row->addWidget(next_);
    row->addWidget(cmbAuswahl_, 1);
    row->addWidget(lblPosition_);
    row->addWidget(english_);
    row->addWidget(mono_);
    return row;
}

QToolButton* frmDocument::button(const QString& key, const QString& icon, QKeyCombination keys,
                                 const std::function<void()>& action) {
    auto* made = withOwnText(new QToolButton(this), key);
    made->setIcon(Icons::get(icon));
    made->setAutoRaise(true);
    const auto perform = [this, action] { gesture(action); };
    connect(made, &QToolButton::clicked, this, perform);
    connect(new QShortcut(QKeySequence(keys), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
            &QShortcut::activated, this, perform);
    return made;
}

void frmDocument::addShortcuts() {
    const auto add = [this](const QList<QKeySequence>& keys, const std::function<void()>& action) {
        for (const QKeySequence& sequence : keys)
            connect(new QShortcut(sequence, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                    &QShortcut::activated, this, [this, action] { gesture(action); });
    };
    add({Qt::ALT | Qt::Key_Home}, [this] { model_.FillDescriptionForm(DescriptionModel::Move::First); });
    add({Qt::ALT | Qt::Key_End}, [this] { model_.FillDescriptionForm(model_.count()); });
    add({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, [this] { txtText_->zoomIn(); });
    add({Qt::CTRL | Qt::Key_Minus}, [this] { txtText_->zoomOut(); });
    add({Qt::CTRL | Qt::Key_0}, [this] {
        txtText_->setFont({});
        setTextFont(font_);
    });
}

// ---- moving

/// Also where it is refused the window shows the model: a button that was pressed comes up again.
void frmDocument::gesture(const std::function<void()>& steps) {
    onGesture(steps);
    showModel();
}

bool frmDocument::showEntry(const QString& id) {
    const bool shown = model_.showEntry(id);
    showModel();
    return shown;
}

void frmDocument::setEnglish(bool english) {
    model_.setEnglish(english);
    showModel();
}

void frmDocument::showModel() {
    QStringList titles;
    for (const DescriptionModel::Line& line : model_.cmbAuswahl)
        titles << inOneLine(line.title);
    cmbAuswahl_->setChoices(titles);
    const int line = model_.line();
    cmbAuswahl_->showChoice(line);
    // The title of an entry without a line is seen all the same.
    cmbAuswahl_->setPrompt(line < 0 ? inOneLine(model_.title()) : QString());
    if (line < 0)
        cmbAuswahl_->setEditText(inOneLine(model_.title()));
    english_->setChecked(model_.bEL());
    mono_->setChecked(font_ == fixedFont_);
    showText();
    txtStudyNo_->setText(model_.txtStudyNo());
    showPosition();
}

void frmDocument::showText() {
    if (shown_ == model_.txtText() && txtStudyNo_->text() == model_.txtStudyNo())
        return; // what is selected or marked in it stays
    shown_ = model_.txtText();
    txtText_->clear();
    QTextCursor cursor(txtText_->document());
    cursor.beginEditBlock();
    for (const TextRun& run : textRuns(shown_)) {
        QTextCharFormat style;
        if (run.bold)
            style.setFontWeight(QFont::Bold);
        if (run.italic)
            style.setFontItalic(true);
        cursor.insertText(run.text, style);
    }
    cursor.endEditBlock();
    txtText_->moveCursor(QTextCursor::Start);
    txtText_->verticalScrollBar()->setValue(0);
}

void frmDocument::showPosition() {
    for (QWidget* walking :
         {static_cast<QWidget*>(lblPosition_), static_cast<QWidget*>(back_), static_cast<QWidget*>(next_)})
        walking->setVisible(viewNumber() > 0); // the catalogue has one description
    lblPosition_->setText(QString::number(model_.position() + 1) + u' ' + TranslateText(u"von"_s) + u' ' +
                          QString::number(model_.count()));
}

// ---- looks

void frmDocument::ChangeFont() {
    const QString fixed = u"Courier New"_s;
    setTextFont(font_ == fixed ? u"MS Sans Serif"_s : fixed);
}

/// Selection and size stay.
void frmDocument::setTextFont(const QString& family) {
    font_ = family;
    QFont font = txtText_->font();
    font.setFamily(family);
    txtText_->setFont(font);
    mono_->setChecked(font_ == fixedFont_);
}

void frmDocument::optionsApplied() {
    const QString font = font_ == fixedFont_ ? gOptions.FixedFont : font_ == propFont_ ? gOptions.PropFont : font_;
    fixedFont_ = gOptions.FixedFont;
    propFont_ = gOptions.PropFont;
    setTextFont(font);
}

void frmDocument::refreshTitles() {
    const int view = viewNumber();
    setWindowTitle(view == 0 ? TranslateText(u"Datenbankbeschreibung"_s)
                             : gViews.at(view, gLanguage == 0 ? ViewTable::DescName : ViewTable::DescNameEnglish) +
                                   u' ' + Tag);
    const std::pair<QToolButton*, QString> buttons[] = {
        {back_, TranslateText(u"Vorige Beschreibung (Alt+Nach oben)"_s)},
        {next_, TranslateText(u"Nächste Beschreibung (Alt+Nach unten)"_s)},
        {english_, TranslateText(u"Inhalte englisch oder in der Originalsprache (Strg+Umschalt+E)"_s)},
        {mono_, TranslateText(u"Schrift mit fester oder mit wechselnder Breite (Strg+Umschalt+F)"_s)}};
    for (const auto& [button, text] : buttons) {
        button->setToolTip(text);
        button->setAccessibleName(text);
    }
    cmbAuswahl_->setAccessibleName(TranslateText(u"Eintrag"_s));
    txtText_->setAccessibleName(TranslateText(u"Beschreibung"_s));
    txtText_->setPlaceholderText(view == 0 ? TranslateText(u"Der Katalog hat in dieser Sprache keine Beschreibung."_s)
                                           : TranslateText(u"In dieser Sprache gibt es keine Beschreibungen."_s));
    find_->refreshTexts();
    showPosition();
}

QSize frmDocument::sizeHint() const {
    const int line = fontMetrics().height();
    return {fontMetrics().averageCharWidth() * 90, line * 32};
}
