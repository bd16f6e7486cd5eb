#include "widgets/QtAsker.h"

#include "app/globals.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/DesktopApplications.h"
#include "widgets/RunGuard.h"
#include "widgets/StandardTexts.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QColorDialog>
#include <QDesktopServices>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// A name may be longer than a field takes by itself, and must come back whole.
constexpr int longestInput = 1 << 20;

struct Button {
    QMessageBox::StandardButton standard;
    ui::Answer answer;
};

std::vector<Button> buttonsOf(ui::Buttons buttons) {
    switch (buttons) {
    case ui::Buttons::Ok:
        return {{QMessageBox::Ok, ui::Answer::Ok}};
    case ui::Buttons::OkCancel:
        return {{QMessageBox::Ok, ui::Answer::Ok}, {QMessageBox::Cancel, ui::Answer::Cancel}};
    case ui::Buttons::YesNo:
        return {{QMessageBox::Yes, ui::Answer::Yes}, {QMessageBox::No, ui::Answer::No}};
    case ui::Buttons::YesNoCancel:
        return {{QMessageBox::Yes, ui::Answer::Yes},
                {QMessageBox::No, ui::Answer::No},
                {QMessageBox::Cancel, ui::Answer::Cancel}};
    case ui::Buttons::AbortRetryIgnore:
        return {{QMessageBox::Abort, ui::Answer::Abort},
                {QMessageBox::Retry, ui::Answer::Retry},
                {QMessageBox::Ignore, ui::Answer::Ignore}};
    case ui::Buttons::RetryCancel:
        return {{QMessageBox::Retry, ui::Answer::Retry}, {QMessageBox::Cancel, ui::Answer::Cancel}};
    }
    return {};
}

/// Captions follow the language of the program, not that of the desktop.
QString captionOf(ui::Answer answer) {
    switch (answer) {
    case ui::Answer::Ok:
        return u"OK"_s;
    case ui::Answer::Cancel:
        return said(u"Abbrechen"_s, u"Cancel"_s);
    case ui::Answer::Abort:
        return said(u"&Abbrechen"_s, u"&Abort"_s);
    case ui::Answer::Retry:
        return said(u"&Wiederholen"_s, u"&Retry"_s);
    case ui::Answer::Ignore:
        return said(u"&Ignorieren"_s, u"&Ignore"_s);
    case ui::Answer::Yes:
        return said(u"&Ja"_s, u"&Yes"_s);
    case ui::Answer::No:
        return said(u"&Nein"_s, u"&No"_s);
    }
    return {};
}

QMessageBox::Icon iconOf(ui::Icon icon) {
    switch (icon) {
    case ui::Icon::None:
        return QMessageBox::NoIcon;
    case ui::Icon::Information:
        return QMessageBox::Information;
    case ui::Icon::Question:
        return QMessageBox::Question;
    case ui::Icon::Exclamation:
        return QMessageBox::Warning;
    case ui::Icon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

/// "Text|*.mdb|Text|*.klor" as the dialog takes it.
QStringList filtersOf(const QString& pairs) {
    const QStringList parts = pairs.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString pattern = parts[i + 1] == u"*.*" ? u"*"_s : parts[i + 1];
        const QString text = parts[i].left(parts[i].indexOf(u'(')).trimmed();
        filters << text + u" ("_s + QString(pattern).replace(u';', u' ') + u')';
    }
    return filters;
}

/// The wait pointer must not lie over a dialog that waits for an answer.
class PlainPointer {
public:
    PlainPointer() : waiting_(QApplication::overrideCursor() != nullptr) {
        if (waiting_)
            QApplication::changeOverrideCursor(Qt::ArrowCursor);
    }
    ~PlainPointer() {
        if (waiting_ && QApplication::overrideCursor())
            QApplication::changeOverrideCursor(Qt::WaitCursor);
    }
    PlainPointer(const PlainPointer&) = delete;
    PlainPointer& operator=(const PlainPointer&) = delete;

private:
    bool waiting_;
};

/// A box that only its buttons close.
class MustAnswer : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!event->matches(QKeySequence::Cancel))
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

std::unique_ptr<QMessageBox> messageWindow(const ui::Box& box) {
    const QString title = box.title.isEmpty() ? ApplicationInfo::title : box.title;
    QWidget* parent = QApplication::activeWindow();
    if (!box.mustAnswer)
        return std::make_unique<QMessageBox>(iconOf(box.icon), title, QString(), QMessageBox::NoButton, parent);
    auto window = std::make_unique<MustAnswer>(iconOf(box.icon), title, QString(), QMessageBox::NoButton, parent);
    window->setWindowFlag(Qt::WindowCloseButtonHint, false);
    return window;
}

} // namespace

ui::Answer QtAsker::messageBox(const ui::Box& box) {
    const PlainPointer plain;
    const std::unique_ptr<QMessageBox> owned = messageWindow(box);
    QMessageBox& window = *owned;
    window.setTextFormat(Qt::PlainText);
    window.setText(QString(box.text).replace(u"\r\n"_s, u"\n"_s));
    window.setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (!box.details.isEmpty()) {
        StandardTexts::followLanguage(); // the button that shows them is Qt's own
        window.setDetailedText(box.details);
    }
    const std::vector<Button> buttons = buttonsOf(box.buttons);
    for (const Button& button : buttons) {
        QPushButton* shown = window.addButton(button.standard);
        shown->setText(captionOf(button.answer));
        shown->setIcon({});
    }
    for (const Button& button : buttons)
        if (button.answer == ui::safeAnswer(box.buttons) && buttons.size() > 1 && !box.mustAnswer)
            window.setEscapeButton(button.standard);
    for (const Button& button : buttons)
        if (button.answer == box.defaultButton.value_or(buttons.front().answer))
            window.setDefaultButton(button.standard);
    auto* check = box.check.isEmpty() || !box.checked ? nullptr : new QCheckBox(box.check, &window);
    if (check) {
        check->setChecked(*box.checked);
        window.setCheckBox(check);
    }
    const int chosen = window.exec();
    if (check)
        *box.checked = check->isChecked();
    for (const Button& button : buttons)
        if (button.standard == chosen)
            return button.answer;
    return ui::safeAnswer(box.buttons);
}

std::optional<QString> QtAsker::inputBox(const QString& prompt, const QString& title, const QString& proposal) {
    const PlainPointer plain;
    QInputDialog window(QApplication::activeWindow());
    window.setWindowTitle(title.isEmpty() ? ApplicationInfo::title : title);
    window.setLabelText(prompt);
    window.setInputMode(QInputDialog::TextInput);
    if (auto* line = window.findChild<QLineEdit*>())
        line->setMaxLength(longestInput);
    window.setTextValue(proposal);
    window.setOkButtonText(captionOf(ui::Answer::Ok));
    window.setCancelButtonText(captionOf(ui::Answer::Cancel));
    // A long question goes on below.
    if (auto* question = window.findChild<QLabel*>()) {
        question->setTextFormat(Qt::PlainText);
        question->setWordWrap(true);
    }
    const int width = window.fontMetrics().averageCharWidth() * 60;
    window.resize(width, std::max(window.sizeHint().height(), window.heightForWidth(width)));
    if (window.exec() != QDialog::Accepted)
        return std::nullopt;
    return window.textValue();
}

std::optional<QString> QtAsker::editText(const QString& caption, const QString& text, const QString& kept) {
    const PlainPointer plain;
    return textEditor ? textEditor(caption, text, kept) : std::nullopt;
}

std::optional<std::vector<int>> QtAsker::orderLines(const ui::LineOrder& order) {
    const PlainPointer plain;
    return lineOrderer ? lineOrderer(order) : std::nullopt;
}

std::optional<int> QtAsker::chooseFromTree(const ui::TreeChoice& choice) {
    const PlainPointer plain;
    return treeChooser ? treeChooser(choice) : std::nullopt;
}

std::optional<ui::PrintJob> QtAsker::choosePrintJob(const ui::PrintJob& proposal, int pages) {
    const PlainPointer plain;
    return printJobChooser ? printJobChooser(proposal, pages) : std::nullopt;
}

std::optional<QString> QtAsker::chooseFile(const ui::FileChoice& choice) {
    const PlainPointer plain;
    StandardTexts::followLanguage();
    QFileDialog window(QApplication::activeWindow(), choice.title, choice.folder);
    // The desktop's own dialog speaks the language of the desktop.
    window.setOption(QFileDialog::DontUseNativeDialog);
    window.setOption(QFileDialog::DontConfirmOverwrite, choice.mayBeThere);
    window.setAcceptMode(choice.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    window.setFileMode(choice.save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    window.setNameFilters(filtersOf(choice.filter));
    window.setDefaultSuffix(choice.extension);
    // A name typed without an extension is a file of the kind that is chosen.
    QObject::connect(&window, &QFileDialog::filterSelected, &window, [&](const QString& filter) {
        const qsizetype point = filter.indexOf(u"(*."_s) + 3;
        const qsizetype end = filter.indexOf(QRegularExpression(u"[ )]"_s), point);
        if (point > 2 && end > point)
            window.setDefaultSuffix(filter.mid(point, end - point));
    });
    if (!choice.name.isEmpty())
        window.selectFile(choice.name);
    if (window.exec() != QDialog::Accepted || window.selectedFiles().isEmpty())
        return std::nullopt;
    return window.selectedFiles().constFirst();
}

std::optional<QString> QtAsker::chooseFolder(const QString& title, const QString& folder) {
    const PlainPointer plain;
    StandardTexts::followLanguage();
    const QString chosen = QFileDialog::getExistingDirectory(
        QApplication::activeWindow(), title, folder, QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    if (chosen.isEmpty())
        return std::nullopt;
    return chosen;
}

std::optional<unsigned> QtAsker::chooseColor(const QString& title, unsigned proposal) {
    const PlainPointer plain;
    StandardTexts::followLanguage();
    const QColor chosen = QColorDialog::getColor(QColor::fromRgb(proposal), QApplication::activeWindow(), title,
                                                 QColorDialog::DontUseNativeDialog);
    if (!chosen.isValid())
        return std::nullopt;
    return chosen.rgb() & RGB_MASK;
}

bool QtAsker::openFile(const QString& path) {
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
#else
    // Qt says that it has opened a file here as soon as it knows a way to ask, whether or not anything answers.
    return DesktopApplications::open(path);
#endif
}

void QtAsker::setClipboard(const QString& text, const QString& html) {
    auto* content = new QMimeData;
    content->setText(text);
    if (!html.isEmpty())
        content->setHtml(html);
    QApplication::clipboard()->setMimeData(content);
}

void QtAsker::copyPicture(const QImage& picture, const QByteArray& svg) {
    auto* content = new QMimeData;
    content->setImageData(picture);
    if (!svg.isEmpty())
        content->setData(u"image/svg+xml"_s, svg);
    QApplication::clipboard()->setMimeData(content);
}

void QtAsker::setPointer(ui::Pointer pointer) {
    if (pointer_ == pointer)
        return;
    pointer_ = pointer;
    if (pointer == ui::Pointer::Wait)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtAsker::beep() {
    QApplication::beep();
}

std::unique_ptr<ui::ProgressView> QtAsker::openProgress(bool mayStop) {
    return progressWindow ? progressWindow(mayStop) : nullptr;
}

void QtAsker::eventTurn() {
    // A guarded run decides what the user may do meanwhile. Elsewhere a window may be half built, and keys wait their
    // turn.
    QCoreApplication::processEvents(RunGuard::running() ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
}
