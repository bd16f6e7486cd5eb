#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <readstat.h>
#include <string>
#include <variant>
#include <vector>

/// Writes small survey files for tests; the kind is the extension's.
class SurveyFileMaker {
public:
    struct Letter {
        char letter;
    };
    /// One value: system-missing, a number, a string, or a missing value with a letter.
    using Cell = std::variant<std::monostate, double, const char*, Letter>;
    using Row = std::vector<Cell>;

    SurveyFileMaker();
    ~SurveyFileMaker();
    SurveyFileMaker(const SurveyFileMaker&) = delete;
    SurveyFileMaker& operator=(const SurveyFileMaker&) = delete;

    readstat_variable_t* number(const char* name, const char* label = nullptr, const char* format = nullptr);
    /// A number of single precision.
    readstat_variable_t* single(const char* name);
    readstat_variable_t* text(const char* name, int width, const char* label = nullptr);
    /// A set of value labels for a variable: numbers, strings or letters as codes.
    void label(readstat_variable_t* variable, const std::vector<std::pair<Cell, const char*>>& labels);
    void note(const char* line) { readstat_add_note(writer_, line); }
    void fileLabel(const char* label) { readstat_writer_set_file_label(writer_, label); }
    void weight(const readstat_variable_t* variable) { readstat_writer_set_fweight_variable(writer_, variable); }
    /// Version of a .dta file; 118 unless said otherwise.
    void stataVersion(uint8_t version) { stataVersion_ = version; }
    /// A .sav file whose small numbers stand as codes of one byte.
    void compressRows() { readstat_writer_set_compression(writer_, READSTAT_COMPRESS_ROWS); }
    /// A variable of a .dta file whose one text, in every case, stands in a section of its own.
    void longText(const char* name, const char* text);

    void write(const QString& path, const std::vector<Row>& rows);
    /// Rows that a function gives, for large files.
    template<class RowAt>
    void write(const QString& path, int count, RowAt&& rowAt) {
        begin(path, count);
        for (int i = 0; i < count; ++i)
            append(rowAt(i));
        end(path);
    }

private:
    readstat_writer_t* writer_;
    std::vector<readstat_variable_t*> variables_;
    readstat_string_ref_t* longText_ = nullptr;
    QByteArray content_;
    uint8_t stataVersion_ = 118;
    int labelSets_ = 0;

    void begin(const QString& path, int count);
    void append(const Row& row);
    void end(const QString& path);
};

/// Changes a file as a whole.
void rewrite(const QString& path, const std::function<void(QByteArray&)>& change);

/// The file cut off after so many bytes.
void truncateTo(const QString& path, qint64 bytes);
