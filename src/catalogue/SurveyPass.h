#pragma once

#include <QString>
#include <exception>
#include <readstat.h>

/// What every pass shares: a failure of ours leaves the C reader by its own way out and is thrown afterwards.
struct SurveyPass {
    std::exception_ptr failure;

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
    void variable(readstat_variable_t*, const char*) {}
    void weight(const readstat_variable_t*) {}
    void valueLabel(const char*, const readstat_value_t&, const char*) {}
    void value(int, readstat_variable_t*, const readstat_value_t&) {}
    void progress(double) {}
    static constexpr bool wantsValues = false;
};

/// The words for a text in no encoding that is known, and the option that helps.
QString unreadableText(const QString& where);
/// "Variable NAME".
QString variableWord(const QString& name);
