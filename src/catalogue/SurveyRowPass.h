#pragma once

#include "catalogue/SurveyFile.h"
#include "catalogue/SurveyPass.h"

#include <algorithm>
#include <functional>
#include <vector>

/// Hands every value of every case to a receiver.
struct SurveyRowPass : SurveyPass {
    static constexpr bool wantsValues = true;
    const SurveyFile& head;
    RowReceiver& receiver;
    const std::function<bool(double)>& report;
    int row = -1;
    int last = -1; ///< variable that was read last
    qint64 rowsPerReport, nextReport = 0;
    qint64 cutTexts = 0, lostTexts = 0;
    std::vector<bool> inexact; ///< variables of single precision whose numbers have a binary remainder

    SurveyRowPass(const SurveyFile& file, RowReceiver& rows, const std::function<bool(double)>& progressReport)
        : head(file), receiver(rows), report(progressReport), rowsPerReport(std::max<qint64>(file.rows / 100, 1)),
          inexact(file.variables.size()) {}

    void value(int rowIndex, readstat_variable_t* variable, const readstat_value_t& value) {
        if (rowIndex != row) {
            if (row >= 0)
                receiver.endRow();
            row = rowIndex;
            if (row >= nextReport && head.rows > 0) {
                nextReport = row + rowsPerReport;
                tell(static_cast<double>(row) / static_cast<double>(head.rows));
            }
        }
        const int index = variable->index;
        if (index < 0 || index >= static_cast<int>(head.variables.size()))
            contradict();
        // Most values by far; the library's own questions would take longer than the answer.
        if (value.type == READSTAT_TYPE_DOUBLE && !value.is_system_missing && !value.is_tagged_missing)
            receiver.number(index, value.v.double_value);
        else if (readstat_value_type_class(value) == READSTAT_TYPE_CLASS_STRING)
            text(index, readstat_string_value(value));
        else if (readstat_value_is_tagged_missing(value))
            receiver.letter(index, readstat_value_tag(value));
        else if (!readstat_value_is_system_missing(value))
            otherNumber(index, value);
        last = index;
    }

    [[noreturn]] static void contradict();
    void otherNumber(int index, const readstat_value_t& value);
    void text(int index, const char* utf8);
    /// What the library tells may come only once, at the beginning; it counts where the rows are not known.
    void progress(double share);
    void tell(double share);
};
