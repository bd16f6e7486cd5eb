#include "config/frmOptions.h"

#include "analysis/frmDescriptives.h"
#include "config/CProfile.h"
#include "config/OptionPaths.h"
#include "config/frmOptionsPages.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/Desktop.h"
#include "widgets/faultMark.h"
#include "widgets/radioGroup.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int fontSizes[] = {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 24, 28, 36, 48, 72};

/// Number of the member that an option array's control is.
QString memberIndex(const QString& objectName) {
    return objectName.section(u'(', 1).chopped(1);
}

/// Chooses an item by its text; a text that no item has yet, as a font that this machine lacks, becomes one, so that
/// what nobody touches stays as it is.
void choose(QComboBox* list, const QString& text) {
    int row = list->findText(text);
    if (row < 0 && !text.isEmpty()) {
        list->insertItem(0, text);
        row = 0;
    }
    list->setCurrentIndex(row);
}

QPushButton* addButton(QHBoxLayout* row, const QString& name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    row->addWidget(button);
    return button;
}

} // namespace

void frmOptions::showOptions(QWidget* parent, const std::optional<OptionDescriptor::Member>& option) {
    std::optional<frmOptions> window;
    {
        const BusyScope building;
        window.emplace(parent);
    }
    if (option) {
        window->turnToPageOf(OptionsModel::controlOf(*option));
        window->led_ = true;
    }
    window->exec();
}

void frmOptions::showOptionsAt(QWidget* parent, QString Options::*path, const QString& proposal) {
    std::optional<frmOptions> window;
    {
        const BusyScope building;
        window.emplace(parent);
    }
    const QString field = OptionsModel::controlOf(path);
    if (window->model_.value(field).isEmpty())
        window->take(field, proposal);
    window->goTo(field);
    window->led_ = true;
    window->exec();
}

frmOptions::frmOptions(QWidget* parent) : QDialog(parent), Form(*this, u"frmOptions"_s) {
    setWindowTitle(u"Optionen"_s);
    auto* column = new QVBoxLayout(this);
    tbsOptions_ = makeOptionPages(this);
    column->addWidget(tbsOptions_, 1);
    auto* row = new QHBoxLayout;
    addButton(row, u"cmdLoad"_s, u"&Laden..."_s);
    addButton(row, u"cmdSave"_s, u"&Speichern..."_s);
    addButton(row, u"cmdDefaults"_s, u"Sta&ndardwerte dieser Seite"_s);
    row->addStretch();
    addButton(row, u"cmdOK"_s, u"OK"_s)->setDefault(true);
    addButton(row, u"cmdCancel"_s, u"Abbrechen"_s);
    addButton(row, u"cmdApply"_s, u"&Übernehmen"_s);
    column->addLayout(row);

    fillLists();
    connectControls();
    connectButtons();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    tbsOptions_->setCurrentIndex(storedSetting(SettingsKeys::optionsPage, 0).toInt());
    turnTab(0);
    showModel();
    tbsOptions_->setFocus();
    resizeToContent();
}

frmOptions::~frmOptions() = default;

/// The size at which every tab and every page shows whole, as far as the screen has room for it.
void frmOptions::resizeToContent() {
    ensurePolished();
    // The two groups of paths stand under each other and share one column of labels.
    int widest = 0;
    const QList<QLabel*> labels = findChild<QWidget*>(u"picOptions(0)"_s)->findChildren<QLabel*>();
    for (const QLabel* label : labels)
        if (label->buddy())
            widest = std::max(widest, label->sizeHint().width());
    for (QLabel* label : labels)
        if (label->buddy())
            label->setMinimumWidth(widest);
    const QMargins margins = layout()->contentsMargins();
    const int tabs = tbsOptions_->tabBar()->sizeHint().width() + margins.left() + margins.right();
    const QSize wanted = sizeHint().expandedTo({tabs, 0});
    resize(wanted.boundedTo(screen()->availableSize() * 0.95));
}

void frmOptions::fillLists() {
    const auto list = [&](const QString& name) { return findChild<QComboBox*>(name); };
    for (const QString& name : OptionsModel::controlsOf(OptionControl::Form::FontList))
        list(name)->addItems(QFontDatabase::families());
    for (const QString& name : OptionsModel::controlsOf(OptionControl::Form::Position))
        list(name)->addItems(OptionsModel::positionTexts());
    for (const QString& name : OptionsModel::controlsOf(OptionControl::Form::SizeList))
        for (const int size : fontSizes)
            list(name)->addItem(QString::number(size));
}

void frmOptions::connectControls() {
    for (auto* box : findChildren<QCheckBox*>())
        connect(box, &QCheckBox::toggled, this, [=, this](bool on) { take(box->objectName(), on ? u"1"_s : u"0"_s); });
    for (auto* button : findChildren<QRadioButton*>())
        connect(button, &QRadioButton::toggled, this, [=, this](bool on) {
            if (on)
                take(button->objectName().section(u'(', 0, 0), memberIndex(button->objectName()));
        });
    // The only ones of the dialog.
    stopAtChosen(findChildren<QRadioButton*>());
    for (auto* list : findChildren<QComboBox*>())
        connect(list, &QComboBox::currentTextChanged, this,
                [=, this](const QString& text) { take(list->objectName(), text); });
    for (auto* number : findChildren<QSpinBox*>())
        connect(number, &QSpinBox::valueChanged, this,
                [=, this](int value) { take(number->objectName(), QString::number(value)); });
    for (auto* field : findChildren<QLineEdit*>())
        if (!qobject_cast<QSpinBox*>(field->parentWidget()))
            connect(field, &QLineEdit::textChanged, this,
                    [=, this](const QString& text) { take(field->objectName(), text); });
}

void frmOptions::connectButtons() {
    // The command that has opened the dialog lasts until it closes; what is done in it are gestures of their own.
    const auto onClick = [this](const QString& name, auto&& handler) {
        connect(findChild<QPushButton*>(name), &QPushButton::clicked, this, [handler] {
            GestureScope::startAnew();
            handler();
        });
    };
    onClick(u"cmdOK"_s, [this] { cmdOK_Click(); });
    onClick(u"cmdCancel"_s, [this] { cmdCancel_Click(); });
    onClick(u"cmdApply"_s, [this] { cmdApply_Click(); });
    onClick(u"cmdLoad"_s, [this] { cmdLoad_Click(); });
    onClick(u"cmdSave"_s, [this] { cmdSave_Click(); });
    onClick(u"cmdDefaults"_s, [this] { cmdDefaults_Click(); });
    onClick(u"cmdDescriptives"_s, [this] { trapped([this] { frmDescriptives(nullptr, this).exec(); }); });
    for (const QString& field : OptionsModel::controlsOf(OptionControl::Form::Path)) {
        onClick(browseButtonOf(field), [=, this] { browse(field, false); });
        findChild<QLineEdit*>(field)->installEventFilter(this);
    }
    connect(tbsOptions_, &QTabWidget::currentChanged, this, [this] { turnTab(0); });
}

/// What has no caption gets a name for screen readers.
void frmOptions::refreshTitles() {
    for (const QString& field : OptionsModel::controlsOf(OptionControl::Form::Path)) {
        auto* button = findChild<QPushButton*>(browseButtonOf(field));
        button->setAccessibleName(button->toolTip());
    }
}

void frmOptions::showModel() {
    showing_ = true;
    for (const OptionDescriptor* option : OptionsModel::shown()) {
        const QString name = option->control.name.toString();
        if (option->control.form != OptionControl::Form::Choices) {
            showValue(control(name), name);
            continue;
        }
        for (auto* button : findChildren<QRadioButton*>())
            if (button->objectName().startsWith(name + u'('))
                button->setChecked(memberIndex(button->objectName()) == model_.value(name));
    }
    showValue(control(u"chkbSys"_s), u"chkbSys"_s);
    showing_ = false;
    showSamples();
    showFaults();
}

void frmOptions::showValue(QObject* object, const QString& name) {
    if (auto* box = qobject_cast<QCheckBox*>(object)) {
        box->setChecked(model_.isOn(name));
        box->setEnabled(model_.isEnabled(name));
    } else if (auto* list = qobject_cast<QComboBox*>(object)) {
        choose(list, model_.value(name));
    } else if (auto* number = qobject_cast<QSpinBox*>(object)) {
        // One that came from elsewhere is shown as it is.
        const int value = model_.value(name).toInt();
        number->setRange(std::min(number->minimum(), value), std::max(number->maximum(), value));
        number->setValue(value);
    } else if (auto* field = qobject_cast<QLineEdit*>(object)) {
        // A field that shows the value already keeps its caret.
        if (field->text() != model_.value(name))
            field->setText(model_.value(name));
    }
}

void frmOptions::showSamples() {
    const std::pair<QString, QString> samples[] = {{u"lblSample1"_s, OptionsModel::controlOf(&Options::FixedFont)},
                                                   {u"lblSample2"_s, OptionsModel::controlOf(&Options::PropFont)}};
    for (const auto& [label, list] : samples) {
        QFont sample = font();
        sample.setFamilies({model_.value(list)});
        findChild<QLabel*>(label)->setFont(sample);
    }
}

/// A path that leads nowhere is marked in its field and in words below it.
void frmOptions::showFaults() {
    for (const QString& name : OptionsModel::controlsOf(OptionControl::Form::Path)) {
        // A folder far away is asked for once for each text, not with every change of the dialog.
        const QString asked =
            model_.value(name) + u'\n' + model_.value(OptionsModel::controlOf(&Options::DatabasePath));
        if (!faults_.contains(name) || faults_[name].first != asked)
            faults_[name] = {asked, model_.faultOf(name)};
        const QString words = faults_[name].second;
        auto* field = findChild<QLineEdit*>(name);
        auto* label = findChild<QLabel*>(faultLabelOf(name));
        markFault(*field, !words.isEmpty());
        field->setAccessibleDescription(words);
        label->setText(words);
        label->setVisible(!words.isEmpty());
    }
}

void frmOptions::turnToPageOf(const QString& field) {
    const auto* control = findChild<QWidget*>(field);
    for (int i = 0; i < tbsOptions_->count(); ++i)
        if (tbsOptions_->widget(i)->isAncestorOf(control))
            tbsOptions_->setCurrentIndex(i);
}

void frmOptions::goTo(const QString& field) {
    turnToPageOf(field);
    auto* line = findChild<QLineEdit*>(field);
    line->selectAll();
    line->setFocus();
}

void frmOptions::take(const QString& name, const QString& value) {
    if (showing_)
        return;
    model_.setValue(name, value);
    showModel();
}

void frmOptions::browse(const QString& field, bool byDoubleClick) {
    GestureScope::startAnew();
    trapped([&] {
        if (byDoubleClick ? OptionPaths::browseByDoubleClick(model_, field) : OptionPaths::browse(model_, field))
            showModel();
    });
}

void frmOptions::cmdApply_Click() {
    trapped([this] {
        try {
            if (!model_.apply())
                return;
            showModel();
            // A window may close another when it follows the options.
            const std::vector<Form*> forms = Form::open();
            for (Form* form : forms)
                if (std::ranges::find(Form::open(), form) != Form::open().end())
                    form->optionsApplied();
        } catch (const dao::Error& error) {
            const QString text = missingPlaceText(error.number());
            if (text.isEmpty())
                throw;
            ui::asker().messageBox({text});
        }
    });
}

void frmOptions::cmdOK_Click() {
    cmdApply_Click();
    cmdCancel_Click();
}

void frmOptions::cmdDefaults_Click() {
    QStringList controls;
    for (const QObject* control : tbsOptions_->currentWidget()->findChildren<QWidget*>())
        controls << control->objectName().section(u'(', 0, 0) << control->objectName();
    model_.restoreDefaults(controls);
    showModel();
}

/// The next time it opens on the page that it is left on.
void frmOptions::done(int result) {
    const QString page = QString::number(tbsOptions_->currentIndex());
    // No message if it fails: whoever has cancelled has nothing to lose.
    if (!led_ && storedSetting(SettingsKeys::optionsPage, u"0"_s).toString() != page)
        Registry::write(Registry::CurrentUser, SettingsKeys::user, SettingsKeys::optionsPage, {.text = page});
    QDialog::done(result);
}

void frmOptions::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !showing_)
        showFaults();
}

void frmOptions::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}

void frmOptions::cmdLoad_Click() {
    trapped([this] {
        const QString file = OptionPaths::chooseIniFile(false);
        if (file.isEmpty())
            return;
        OptionsFromIniFile(file);
        model_.load();
        showModel();
    });
}

void frmOptions::cmdSave_Click() {
    trapped([] {
        const QString file = OptionPaths::chooseIniFile(true);
        if (!file.isEmpty())
            OptionsToIniFile(file);
    });
}

/// Goes to the tab so many places on, round the ends; only the page in view is enabled.
void frmOptions::turnTab(int step) {
    const int count = tbsOptions_->count();
    tbsOptions_->setCurrentIndex((tbsOptions_->currentIndex() + step + count) % count);
    for (int i = 0; i < count; ++i)
        findChild<QWidget*>(arrayName(u"picOptions"_s, i))->setEnabled(i == tbsOptions_->currentIndex());
}

void frmOptions::keyPressEvent(QKeyEvent* event) {
    const bool isTab = event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
    if (!isTab || !(event->modifiers() & Qt::ControlModifier)) {
        QDialog::keyPressEvent(event);
        return;
    }
    const bool back = event->key() == Qt::Key_Backtab || (event->modifiers() & Qt::ShiftModifier);
    turnTab(back ? -1 : 1);
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    const QString field = watched->objectName();
    if (event->type() == QEvent::MouseButtonDblClick) {
        browse(field, true);
        return true;
    }
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F4) {
        browse(field, false);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}
