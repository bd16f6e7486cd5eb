#pragma once

#include "platform/ui/TerminalAsker.h"
#include "vdx/TablePrinter.h"

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <cstdio>
#include <functional>
#include <memory>

/// What every command takes.
struct CommonOptions {
    TablePrinter::Format format = TablePrinter::Format::Text;
    QString decimal;    ///< "comma", "point"; empty: the locale's
    QString language;   ///< "de", "en"; empty: the locale's
    QString contents;   ///< "original", "english"; empty: what the catalogue says
    bool plain = false; ///< nothing beside the cells of a table
    QStringList set;    ///< KEY=VALUE of any option, for this run
};

/// Wrong usage: the command line itself cannot be understood. Exit status 2.
struct UsageError {
    QString text; ///< in the language of the run
};

/// The world of one run: options at their defaults (the user's stored ones are not read, so that a run can be repeated
/// anywhere), language, texts, number format, an asker that writes boxes to standard error, and at most one open
/// catalogue, whose links and stored queries stay in memory. All of it is put back at the end.
class Session {
public:
    /// @throws UsageError for an unknown option key or a value that it does not take
    Session(const CommonOptions& options, std::FILE* out, std::FILE* err);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Opens a catalogue as the windowed program does, to write only when asked to, and applies --contents. False after
    /// words on standard error.
    bool open(const QString& catalogue, bool readOnly = true);

    TablePrinter& printer() { return printer_; }
    /// A line on standard error.
    void say(const QString& line);
    /// True once an error box was shown; a warning is none.
    bool failed() const { return asker_->failed(); }
    /// From now on an exclamation counts as an error: for what has no warnings, only failures.
    void takeWarningsAsFailures();
    /// True when standard error is a terminal, where a progress line makes sense.
    bool errIsTerminal() const;
    /// Rewrites the progress line; an empty text removes it.
    void progressLine(const QString& text);
    /// Shows the share done (0 to 1) of what takes long; never ends it. In the progress line where standard error is a
    /// terminal; with `inLines` a line "progress N" for each percent, for a program that reads along; else nothing.
    std::function<bool(double)> progress(bool inLines);

private:
    CommonOptions common_;
    std::FILE* err_;
    TablePrinter printer_;
    QString boxText_, noInput_;
    QTextStream askerIn_, askerOut_;
    std::unique_ptr<ui::TerminalAsker> asker_;
    ui::Asker* askerBefore_;
    bool progressShown_ = false;

    void flushBoxes();
};
