#pragma once

#include "platform/ui/Progress.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

class QImage;
class QPagedPaintDevice;

/// What code below the windows may ask of a user. One implementation each for Qt dialogs, a terminal and tests.
namespace ui {

enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, AbortRetryIgnore, RetryCancel };
enum class Answer { Ok, Cancel, Abort, Retry, Ignore, Yes, No };
enum class Pointer { Default, Wait };

struct Box {
    QString text;
    QString title = QString(); ///< empty: the application's title
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    /// The button that Enter presses; nothing: the first. Where an answer loses work it is the one that keeps it.
    std::optional<Answer> defaultButton = std::nullopt;
    QString check = QString();   ///< caption of a check box in the box; empty: none
    bool* checked = nullptr;     ///< what the check box begins with, and what the user leaves it at
    QString details = QString(); ///< what only some want to know, such as the engine's own words
    bool mustAnswer = false;     ///< neither Escape nor the window's frame closes it
};

struct FileChoice {
    QString title;
    QString filter;    ///< pairs "text|pattern" separated by "|"
    QString extension; ///< without a point
    QString folder;
    QString name;
    bool save = false;
    bool mayBeThere = false; ///< of a file to be saved: what is there already is not replaced, so nobody asks
};

/// Lines to be put into another order.
struct LineOrder {
    QStringList lines;
    int current = 0; ///< line that is marked at first
};

/// A tree to choose an entry from.
struct TreeChoice {
    struct Entry {
        QString text;
        int parent = -1;          ///< place of its parent, which stands before it; -1 for a root
        bool selectable = true;   ///< else it is shown but cannot be chosen
        QString why = QString();  ///< not selectable: what the user is told of it
        QString icon = QString(); ///< name of its picture; empty for none
    };
    QString title;
    std::vector<Entry> entries;
    int current = 0;
};

/// A printer of the system, as it is set up.
struct Printer {
    QString name = QString();
    QString place = QString(); ///< where it stands, else its queue
    int paper = 0;             ///< code of the paper that it takes by default, 1 to 41; 0 for any other
    bool color = false, landscape = false, isDefault = false;
};

/// What of a report is to be printed, on what.
struct PrintJob {
    QString printer = QString(); ///< by name
    QString title = QString();
    int firstPage = 1, pageCount = 99999; ///< pages of the report, from 1
    int firstPageNumber = 1;              ///< number that stands on the report's first page
    int copies = 1;
    bool color = true;
    int paper = 0; ///< code of the paper that the report is laid out for; 0 for none
};

/// The answer that changes nothing: No, Cancel, Abort, or Ok where there is nothing else.
Answer safeAnswer(Buttons buttons);

class Asker {
public:
    virtual ~Asker() = default;

    virtual Answer messageBox(const Box& box) = 0;
    /// Nothing on Cancel.
    virtual std::optional<QString> inputBox(const QString& prompt, const QString& title, const QString& proposal) = 0;
    /// A text of several lines. Nothing on Cancel, which needs no thought while the text is `kept`, what is stored.
    virtual std::optional<QString> editText(const QString& /*caption*/, const QString& /*text*/,
                                            const QString& /*kept*/) {
        return {};
    }
    /// The places of the lines in the order that is wanted; nothing on Cancel.
    virtual std::optional<std::vector<int>> orderLines(const LineOrder& /*order*/) { return {}; }
    /// Place of the entry that was chosen; nothing on Cancel.
    virtual std::optional<int> chooseFromTree(const TreeChoice& /*choice*/) { return {}; }
    virtual std::optional<QString> chooseFile(const FileChoice& choice) = 0;
    /// @param folder where the choice begins; empty: wherever the user was last
    virtual std::optional<QString> chooseFolder(const QString& title, const QString& folder) = 0;
    /// A colour as 0xRRGGBB; nothing on Cancel.
    virtual std::optional<unsigned> chooseColor(const QString& title, unsigned proposal) = 0;
    virtual void setClipboard(const QString& text, const QString& html) = 0;
    /// Puts a picture on the clipboard. @param svg the same as shapes; empty for none
    virtual void copyPicture(const QImage& picture, const QByteArray& svg) = 0;
    virtual void setPointer(Pointer pointer) = 0;
    virtual Pointer pointer() const = 0;
    virtual void beep() {}
    /// Hands a file to the application that the desktop has for it.
    /// @return whether one took it
    virtual bool openFile(const QString& /*path*/) { return false; }
    /// The printers of the system as they are now; it may take a while to ask a server for them.
    virtual std::vector<Printer> printers() const { return {}; }
    /// What of a report to print, and on what; nothing on Cancel. @param pages that the report has
    virtual std::optional<PrintJob> choosePrintJob(const PrintJob& /*proposal*/, int /*pages*/) { return {}; }
    /// A printer ready to be painted on; its page layout is the caller's to set. Null where it is not there any more.
    virtual std::shared_ptr<QPagedPaintDevice> openPrinter(const PrintJob& /*job*/) { return {}; }
    /// A view of a step that takes long; null where nothing is shown of it.
    virtual std::unique_ptr<ProgressView> openProgress(bool /*mayStop*/) { return nullptr; }
    /// Lets pending window events run once.
    virtual void eventTurn() {}
};

/// The asker of the process; one that answers on the terminal until another is set.
Asker& asker();
/// Sets the asker (not owned) and returns the one before; nullptr sets the terminal's.
Asker* setAsker(Asker* asker);

/// Shows the wait pointer until the scope ends, then the default one.
class WaitPointer {
public:
    WaitPointer() { asker().setPointer(Pointer::Wait); }
    ~WaitPointer() { asker().setPointer(Pointer::Default); }
    WaitPointer(const WaitPointer&) = delete;
    WaitPointer& operator=(const WaitPointer&) = delete;
};

} // namespace ui
