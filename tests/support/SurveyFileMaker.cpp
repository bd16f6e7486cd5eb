#include "support/SurveyFileMaker.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

SurveyFileMaker::SurveyFileMaker() : writer_(readstat_writer_init()) {
    readstat_set_data_writer(writer_, [](const void* data, size_t length, void* context) {
        static_cast<QByteArray*>(context)->append(static_cast<const char*>(data), static_cast<qsizetype>(length));
        return static_cast<ssize_t>(length);
    });
}

SurveyFileMaker::~SurveyFileMaker() {
    readstat_writer_free(writer_);
}

readstat_variable_t* SurveyFileMaker::number(const char* name, const char* label, const char* format) {
    readstat_variable_t* variable = readstat_add_variable(writer_, name, READSTAT_TYPE_DOUBLE, 0);
    readstat_variable_set_label(variable, label);
    readstat_variable_set_format(variable, format);
    variables_.push_back(variable);
    return variable;
}

readstat_variable_t* SurveyFileMaker::single(const char* name) {
    variables_.push_back(readstat_add_variable(writer_, name, READSTAT_TYPE_FLOAT, 0));
    return variables_.back();
}

readstat_variable_t* SurveyFileMaker::text(const char* name, int width, const char* label) {
    readstat_variable_t* variable =
        readstat_add_variable(writer_, name, READSTAT_TYPE_STRING, static_cast<size_t>(width));
    readstat_variable_set_label(variable, label);
    variables_.push_back(variable);
    return variable;
}

void SurveyFileMaker::longText(const char* name, const char* text) {
    variables_.push_back(readstat_add_variable(writer_, name, READSTAT_TYPE_STRING_REF, 0));
    longText_ = readstat_add_string_ref(writer_, text);
}

void SurveyFileMaker::label(readstat_variable_t* variable, const std::vector<std::pair<Cell, const char*>>& labels) {
    readstat_label_set_t* set = readstat_add_label_set(writer_, readstat_variable_get_type(variable),
                                                       ("set" + std::to_string(++labelSets_)).c_str());
    for (const auto& [code, text] : labels) {
        if (const double* number = std::get_if<double>(&code))
            readstat_label_double_value(set, *number, text);
        else if (const Letter* letter = std::get_if<Letter>(&code))
            readstat_label_tagged_value(set, letter->letter, text);
        else
            readstat_label_string_value(set, std::get<const char*>(code), text);
    }
    readstat_variable_set_label_set(variable, set);
}

void SurveyFileMaker::begin(const QString& path, int count) {
    readstat_error_t result = READSTAT_OK;
    if (path.endsWith(u".dta"_s)) {
        readstat_writer_set_file_format_version(writer_, stataVersion_);
        result = readstat_begin_writing_dta(writer_, &content_, count);
    } else if (path.endsWith(u".por"_s)) {
        result = readstat_begin_writing_por(writer_, &content_, count);
    } else {
        if (path.endsWith(u".zsav"_s))
            readstat_writer_set_compression(writer_, READSTAT_COMPRESS_BINARY);
        result = readstat_begin_writing_sav(writer_, &content_, count);
    }
    ASSERT_EQ(result, READSTAT_OK) << readstat_error_message(result);
}

void SurveyFileMaker::append(const Row& row) {
    readstat_begin_row(writer_);
    for (size_t i = 0; i < row.size(); ++i) {
        const double* number = std::get_if<double>(&row[i]);
        if (number && readstat_variable_get_type(variables_[i]) == READSTAT_TYPE_FLOAT)
            readstat_insert_float_value(writer_, variables_[i], static_cast<float>(*number));
        else if (number)
            readstat_insert_double_value(writer_, variables_[i], *number);
        else if (readstat_variable_get_type(variables_[i]) == READSTAT_TYPE_STRING_REF)
            readstat_insert_string_ref(writer_, variables_[i], longText_);
        else if (const char* const* text = std::get_if<const char*>(&row[i]))
            readstat_insert_string_value(writer_, variables_[i], *text);
        else if (const Letter* letter = std::get_if<Letter>(&row[i]))
            readstat_insert_tagged_missing_value(writer_, variables_[i], letter->letter);
        else
            readstat_insert_missing_value(writer_, variables_[i]);
    }
    const readstat_error_t result = readstat_end_row(writer_);
    ASSERT_EQ(result, READSTAT_OK) << readstat_error_message(result);
}

void SurveyFileMaker::end(const QString& path) {
    const readstat_error_t result = readstat_end_writing(writer_);
    ASSERT_EQ(result, READSTAT_OK) << readstat_error_message(result);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content_);
}

void SurveyFileMaker::write(const QString& path, const std::vector<Row>& rows) {
    write(path, static_cast<int>(rows.size()), [&](int i) { return rows[static_cast<size_t>(i)]; });
}

void rewrite(const QString& path, const std::function<void(QByteArray&)>& change) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    change(content);
    file.resize(0);
    file.seek(0);
    file.write(content);
}

void truncateTo(const QString& path, qint64 bytes) {
    QFile file(path);
    ASSERT_TRUE(file.resize(bytes));
}
