#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <readstat.h>

/// What every pass shares: a failure of ours leaves the C reader by its own way out and is thrown afterwards.
struct SurveyPass {
    std::exception_ptr failure;
    /// How many bytes a Stata file has for the names of sets of labels, with its variables and with the labels: a
    /// name that fills its field has no zero behind it.
    size_t setBytesOfVariable = 256, setBytesOfLabels = 256;

    void formatIs(int format);
    QByteArray setOfVariable(const char* name) const { return cString(name, setBytesOfVariable); }
    QByteArray setOfLabels(const char* name) const { return cString(name, setBytesOfLabels); }

    template<class Step>
    int guarded(Step&& step) {
        try {
            step();
            return READSTAT_HANDLER_OK;
        } catch (...) {
            failure = std::current_exception();
            return READSTAT_HANDLER_ABORT;
        }
    }

    void metadata(readstat_metadata_t*) {}
    void note(int, const char*) {}
    /// The name of the set of labels is null for a variable without one.
    void variable(readstat_variable_t*, const QByteArray&) {}
    void weight(const readstat_variable_t*) {}
    void valueLabel(const QByteArray&, const readstat_value_t&, const char*) {}
    void value(int, readstat_variable_t*, const readstat_value_t&) {}
    void progress(double) {}
    static constexpr bool wantsValues = false;

private:
    static QByteArray cString(const char* text, size_t most) {
        return text ? QByteArray(text, static_cast<qsizetype>(qstrnlen(text, most))) : QByteArray();
    }
};

/// The message for a text in no encoding that is known, and the option that helps.
QString unreadableText(const QString& where);
/// "Variable NAME".
QString variableWord(const QString& name);
